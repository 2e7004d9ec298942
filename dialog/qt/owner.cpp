#include "dialog/qt/owner.h"

#include <QApplication>
#include <QtGui/qguiapplication_platform.h>

#include <xcb/xcb.h>

#include <cstdint>
#include <cstdlib>

namespace orvane {
namespace {

WId NumberOf(void* handle) { return static_cast<WId>(reinterpret_cast<std::uintptr_t>(handle)); }

/// A window of this process, or null. Asking a window for its number would create it, so only those are asked
/// that are there; an object that stands for another's window says nothing about that one.
QWindow* OwnWindow(WId number) {
    for (QWindow* window : QGuiApplication::allWindows()) {
        if (window->handle() == nullptr || window->type() == Qt::ForeignWindow) continue;
        if (window->winId() == number) return window;
    }
    return nullptr;
}

bool IsXWindow(WId number) {
    // Other platforms may offer the interface without a server behind it.
    if (QGuiApplication::platformName() != "xcb" || number == 0 || number > UINT32_MAX) return false;
    const auto* x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    if (x11 == nullptr || x11->connection() == nullptr) return false;
    xcb_connection_t* connection = x11->connection();
    xcb_generic_error_t* error = nullptr;
    const auto cookie = xcb_get_window_attributes(connection, static_cast<xcb_window_t>(number));
    const std::unique_ptr<xcb_get_window_attributes_reply_t, void (*)(void*)> reply(
        xcb_get_window_attributes_reply(connection, cookie, &error), std::free);
    std::free(error);
    return reply != nullptr;
}

} // namespace

bool OwnerWindow::IsWindow(void* handle) {
    const WId number = NumberOf(handle);
    return handle != nullptr && (OwnWindow(number) != nullptr || IsXWindow(number));
}

OwnerWindow::OwnerWindow(void* handle) {
    if (handle == nullptr) return;
    const WId number = NumberOf(handle);
    own_ = OwnWindow(number);
    if (own_ == nullptr && IsXWindow(number)) foreign_.reset(QWindow::fromWinId(number));
    // What may own others is a window of its own, not a part of one.
    while (own_ != nullptr && own_->parent() != nullptr) own_ = own_->parent();
}

} // namespace orvane
