#include "dialog/qt/platform_choice.h"

#include <QCoreApplication>
#include <QDir>
#include <QJsonArray>
#include <QJsonObject>
#include <QList>
#include <QPluginLoader>
#include <QStringList>

#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>
#include <xcb/xcb.h>

#include <cstring>

namespace orvane {
namespace {

bool HasKey(const QPluginLoader& loader, const QString& key) {
    const QJsonArray keys = loader.metaData().value("MetaData").toObject().value("Keys").toArray();
    for (const auto& present : keys) {
        if (present.toString().compare(key, Qt::CaseInsensitive) == 0) return true;
    }
    return false;
}

/// Loads the plug-in with a key. What is wrong with it; empty when it loads.
QString PluginProblem(const QString& kind, const QString& key) {
    QStringList folders;
    if (kind == "platforms") folders << qEnvironmentVariable("QT_QPA_PLATFORM_PLUGIN_PATH");
    for (const QString& path : QCoreApplication::libraryPaths()) folders << path + '/' + kind;
    QString problem;
    for (const QString& folder : folders) {
        if (folder.isEmpty()) continue;
        const QDir directory(folder);
        for (const QString& file : directory.entryList({"*.so"}, QDir::Files)) {
            QPluginLoader loader(directory.filePath(file));
            if (!HasKey(loader, key)) continue;
            if (loader.load()) return {};
            problem = loader.errorString();
        }
    }
    return problem.isEmpty() ? "Qt's plug-in for " + key + " is not installed" : problem;
}

/// A socket that is closed at the end of its scope.
class Socket {
public:
    Socket() : handle_(socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0)) {}
    ~Socket() {
        if (handle_ >= 0) close(handle_);
    }
    Socket(const Socket&) = delete;
    Socket& operator=(const Socket&) = delete;

    bool Reaches(const QByteArray& path) const {
        sockaddr_un address{};
        if (handle_ < 0 || path.size() >= static_cast<qsizetype>(sizeof address.sun_path)) return false;
        address.sun_family = AF_UNIX;
        std::memcpy(address.sun_path, path.constData(), static_cast<std::size_t>(path.size()));
        return connect(handle_, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0;
    }

private:
    int handle_;
};

QString WaylandProblem(const QString& name) {
    if (!qEnvironmentVariableIsSet("WAYLAND_SOCKET")) { // a connection that was inherited can't be tried out
        QByteArray path = qgetenv("WAYLAND_DISPLAY");
        if (path.isEmpty()) return "WAYLAND_DISPLAY is not set";
        if (!path.startsWith('/')) path = qgetenv("XDG_RUNTIME_DIR") + '/' + path;
        if (!Socket().Reaches(path)) return "no Wayland display answers at " + QString::fromLocal8Bit(path);
    }
    const QString problem = PluginProblem("platforms", name);
    return problem.isEmpty() ? PluginProblem("wayland-shell-integration", "xdg-shell") : problem;
}

QString XcbProblem() {
    const QByteArray display = qgetenv("DISPLAY");
    if (display.isEmpty()) return "DISPLAY is not set";
    xcb_connection_t* connection = xcb_connect(nullptr, nullptr);
    const bool answers = xcb_connection_has_error(connection) == 0;
    xcb_disconnect(connection);
    if (!answers) return "no X server answers at " + QString::fromLocal8Bit(display);
    return PluginProblem("platforms", "xcb");
}

QString ProblemOf(const QByteArray& candidate) {
    const QString name = QString::fromLocal8Bit(candidate.split(':').first()).trimmed();
    if (name == "xcb") return XcbProblem();
    if (name.startsWith("wayland")) return WaylandProblem(name);
    return PluginProblem("platforms", name);
}

} // namespace

PlatformChoice ChoosePlatform() {
    const QByteArray asked = qgetenv("QT_QPA_PLATFORM");
    const QList<QByteArray> candidates = asked.isEmpty() ? QList<QByteArray>{"wayland", "xcb"} : asked.split(';');
    QStringList problems;
    for (const QByteArray& candidate : candidates) {
        const QString problem = ProblemOf(candidate);
        if (problem.isEmpty()) return {candidate, {}};
        problems << problem;
    }
    return {{}, "no display: " + problems.join(", ")};
}

} // namespace orvane
