#pragma once

#include <QObject>
#include <QWindow>

#include <memory>
#include <optional>
#include <span>
#include <string>

namespace quellton {

// What happens at launch, on reopening and at the end of the interactive application.
class AppDelegate : public QObject {
    Q_OBJECT
public:
    explicit AppDelegate(bool launchedAtLogin, QObject* parent = nullptr);

    // Model, audio capture, wallpaper, and the gallery unless the launch was a login launch.
    void didFinishLaunching();
    // A second start or an activation through the session bus.
    void reopen();
    void showGallery();
    // Capture is torn down before the process ends; the windows close with it.
    void willTerminate();

    // Started by the desktop's autostart (its entry passes --autostart) or within 180 s of boot.
    static bool launchedAtLogin(std::span<const std::string> args, std::optional<double> uptimeSeconds);
    // Seconds since boot from /proc/uptime.
    static std::optional<double> systemUptime();

private:
    bool launchedAtLogin_;
    std::unique_ptr<QWindow> gallery_;  // made on first showing, then kept
};

}  // namespace quellton
