// A host for the tests: host LIBRARY KIND loads the library at run time, with or without an application object of
// its own, and lets it work on a picture with a face. What happened goes to standard output, a line each.
#include "orvane/orvane.h"
#include "tests/support/face_scene.h"
#include "tests/support/host_block.h"

#include <QApplication>
#include <QPushButton>
#include <QTimer>

#include <clocale>
#include <cstdio>
#include <cstring>
#include <dlfcn.h>
#include <memory>
#include <thread>

using namespace orvane::test;

namespace {

void* g_library;

template <typename Function>
Function* Find(const char* name, Function*) {
    return reinterpret_cast<Function*>(dlsym(g_library, name));
}
#define CALL(function) Find(#function, static_cast<decltype(function)*>(nullptr))

bool g_confirmed;

/// Sees the confirmation being painted, in whichever application object there is.
class Watch : public QObject {
protected:
    bool eventFilter(QObject* watched, QEvent* event) override {
        const auto* widget = qobject_cast<QWidget*>(watched);
        if (widget != nullptr && widget->objectName() == "1029" && event->type() == QEvent::Paint) g_confirmed = true;
        return false;
    }
};

void WatchApplication() {
    static Watch watch;
    QCoreApplication::instance()->installEventFilter(&watch);
}

void Detect(const char* name) {
    const HostBlock picture(FaceScene(160, 120, 60, 40, 40));
    g_confirmed = false;
    const int32_t result = CALL(orv_DetectFacePicture)(picture.Handle());
    std::printf("%s: result %d, %s\n", name, static_cast<int>(result), g_confirmed ? "confirmed" : "not confirmed");
}

/// Clicks OK in whatever window of the library is open.
void ClickOk() {
    for (const QWidget* top : QApplication::topLevelWidgets()) {
        auto* button = top->findChild<QPushButton*>("1015");
        if (button == nullptr || !button->isVisible()) continue;
        std::printf("clicked OK\n");
        return button->click();
    }
    QTimer::singleShot(50, qApp, ClickOk);
}

void Work(bool clicks) {
    CALL(orv_InitDLL)();
    CALL(orv_EnableAction)(ORV_CROP, 1);
    CALL(orv_SetVisibleMode)(0);
    Detect("hidden");
    Detect("hidden again");
    if (clicks) {
        CALL(orv_SetVisibleMode)(1);
        QTimer::singleShot(50, qApp, ClickOk);
        Detect("visible");
    }
    std::printf("no window 12345: %d\n", static_cast<int>(CALL(orv_SetOwnerWindow)(reinterpret_cast<void*>(12345))));
    CALL(orv_ReleaseDLL)();
}

} // namespace

int main(int count, char** arguments) {
    if (count != 3) return 2;
    qAddPreRoutine(WatchApplication);
    g_library = dlopen(arguments[1], RTLD_NOW | RTLD_LOCAL);
    if (g_library == nullptr) {
        std::printf("%s\n", dlerror());
        return 2;
    }
    const char* kind = arguments[2];
    std::unique_ptr<QCoreApplication> application;
    if (std::strcmp(kind, "core") == 0) application = std::make_unique<QCoreApplication>(count, arguments);
    if (std::strcmp(kind, "widgets") == 0) application = std::make_unique<QApplication>(count, arguments);
    if (std::strcmp(kind, "thread") == 0) {
        application = std::make_unique<QApplication>(count, arguments);
        std::thread(Work, false).join();
    } else {
        Work(std::strcmp(kind, "widgets") == 0);
    }
    std::printf("locale %s\n", std::setlocale(LC_ALL, nullptr));
    dlclose(g_library);
    return 0;
}
