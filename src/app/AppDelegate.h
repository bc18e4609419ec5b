#pragma once

#include <QObject>

#include <memory>
#include <optional>
#include <span>
#include <string>

class QWindow;

namespace quellton {

class TrayItem;

// What happens at launch, on reopening and at the end of the interactive application.
class AppDelegate : public QObject {
    Q_OBJECT
public:
    explicit AppDelegate(bool launchedAtLogin, QObject* parent = nullptr);
    ~AppDelegate() override;

    // Model, tray item, audio capture, wallpaper, and the gallery unless the launch was a login launch.
    void didFinishLaunching();
    // A second start or an activation through the session bus.
    void reopen();
    // Makes the gallery window the first time, then shows it, brings it to the front and gives it
    // the keyboard. It has a taskbar entry while open; without it only the tray item is left.
    void showGallery();
    // The gallery was closed: hovering drives no preview any more.
    void windowWillClose();
    // Capture is torn down before the process ends; the windows close with it.
    void willTerminate();

    // Started by the desktop's autostart (its entry passes --autostart) or within 180 s of boot.
    static bool launchedAtLogin(std::span<const std::string> args, std::optional<double> uptimeSeconds);
    // Seconds since boot from /proc/uptime.
    static std::optional<double> systemUptime();

private:
    bool launchedAtLogin_;
    std::unique_ptr<TrayItem> tray;
    std::unique_ptr<QWindow> gallery;  // made on first use, then kept
};

}  // namespace quellton
