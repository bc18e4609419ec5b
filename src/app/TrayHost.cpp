#include "TrayHost.h"

#include <QDBusInterface>
#include <QGuiApplication>
#include <QTimer>

#include <xcb/xcb.h>

#include <cstdlib>
#include <memory>
#include <string>

namespace quellton {

namespace {

constexpr int recheckMilliseconds = 3000;

}  // namespace

TrayHost::TrayHost(QObject* parent) : QObject(parent), timer(new QTimer(this)) {
    timer->setInterval(recheckMilliseconds);
    connect(timer, &QTimer::timeout, this, [this] {
        if (!present()) return;
        timer->stop();
        emit appeared();
    });
}

void TrayHost::watch() { timer->start(); }

// Read through the introspected interface, as Qt reads it when it decides.
bool TrayHost::statusNotifierHostRegistered() {
    QDBusInterface watcher(QStringLiteral("org.kde.StatusNotifierWatcher"), QStringLiteral("/StatusNotifierWatcher"),
                           QStringLiteral("org.kde.StatusNotifierWatcher"));
    return watcher.isValid() && watcher.property("IsStatusNotifierHostRegistered").toBool();
}

// The tray manager owns the selection _NET_SYSTEM_TRAY_S<screen>.
bool TrayHost::xembedTrayPresent() {
    auto* x11 = qGuiApp ? qGuiApp->nativeInterface<QNativeInterface::QX11Application>() : nullptr;
    if (!x11) return false;
    xcb_connection_t* connection = x11->connection();
    char* host = nullptr;
    int display = 0, screen = 0;
    if (!xcb_parse_display(nullptr, &host, &display, &screen)) screen = 0;
    std::free(host);
    const std::string name = "_NET_SYSTEM_TRAY_S" + std::to_string(screen);
    const std::unique_ptr<xcb_intern_atom_reply_t, decltype(&std::free)> atom(
        xcb_intern_atom_reply(connection, xcb_intern_atom(connection, 1, uint16_t(name.size()), name.c_str()), nullptr),
        &std::free);
    if (!atom || atom->atom == XCB_ATOM_NONE) return false;
    const std::unique_ptr<xcb_get_selection_owner_reply_t, decltype(&std::free)> owner(
        xcb_get_selection_owner_reply(connection, xcb_get_selection_owner(connection, atom->atom), nullptr), &std::free);
    return owner && owner->owner != XCB_WINDOW_NONE;
}

}  // namespace quellton
