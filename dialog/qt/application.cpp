#include "dialog/qt/application.h"

#include "dialog/qt/platform_choice.h"

#include <QApplication>
#include <QSet>
#include <QThread>

#include <clocale>
#include <cstdio>
#include <string>

namespace orvane {
namespace {

/// The application object sets the process's locale from the environment; that is the host's affair.
class LocaleKept {
public:
    LocaleKept() {
        if (const char* locale = std::setlocale(LC_ALL, nullptr)) before_ = locale;
    }
    ~LocaleKept() { std::setlocale(LC_ALL, before_.c_str()); }
    LocaleKept(const LocaleKept&) = delete;
    LocaleKept& operator=(const LocaleKept&) = delete;

private:
    std::string before_;
};

void MakeApplication(const QByteArray& platform) {
    // Both are used as long as the object lives, which is never destroyed: the toolkit's own globals may be
    // gone before ours.
    static QByteArray name("orvane"), option("-platform"), value;
    static char* arguments[] = {nullptr, nullptr, nullptr, nullptr};
    static int count;
    value = platform;
    arguments[0] = name.data();
    arguments[1] = option.data();
    arguments[2] = value.data();
    count = 3;
    const LocaleKept locale;
    static QApplication* application;
    application = new QApplication(count, arguments);
    application->setQuitOnLastWindowClosed(false);
}

} // namespace

QString ApplicationProblem() {
    if (QCoreApplication::instance() == nullptr) {
        const PlatformChoice choice = ChoosePlatform();
        if (choice.platform.isEmpty()) return choice.problem;
        MakeApplication(choice.platform);
    }
    const auto* application = qobject_cast<QApplication*>(QCoreApplication::instance());
    if (application == nullptr) return "the host's application object is no QApplication";
    if (QThread::currentThread() != application->thread())
        return "the call comes from another thread than windows need";
    if (QCoreApplication::closingDown()) return "the application is at its end";
    return {};
}

bool HasApplication() {
    const QString problem = ApplicationProblem();
    if (problem.isEmpty()) return true;
    static QSet<QString> told; // of the host's one thread
    if (!told.contains(problem)) {
        told.insert(problem);
        std::fprintf(stderr, "orvane: working without a window: %s\n", qPrintable(problem));
    }
    return false;
}

} // namespace orvane
