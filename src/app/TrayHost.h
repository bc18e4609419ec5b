#pragma once

#include <QObject>

class QTimer;

namespace quellton {

// Whether a desktop panel can show a tray item: a StatusNotifierItem host registered with
// org.kde.StatusNotifierWatcher on the session bus, or an XEmbed system tray on the X screen.
// Qt picks between the two once per process, when the first tray icon is made, and remembers a
// "no" for good; so the item is made only after a host is known to exist.
class TrayHost : public QObject {
    Q_OBJECT
public:
    explicit TrayHost(QObject* parent = nullptr);

    static bool statusNotifierHostRegistered();
    static bool xembedTrayPresent();
    static bool present() { return statusNotifierHostRegistered() || xembedTrayPresent(); }

    // Looks again every few seconds until a host turns up (a panel that starts after us at login,
    // or one the user adds), then emits `appeared` once.
    void watch();

signals:
    void appeared();

private:
    QTimer* timer;
};

}  // namespace quellton
