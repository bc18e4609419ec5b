#pragma once

#include <sys/types.h>

#include <QString>
#include <QStringList>

#include "OwnProcesses.h"

#include <memory>
#include <vector>

namespace quellton {

class SettingsStore;

namespace wayland {

// The compositor's own wallpaper programs (swaybg, which sway's stock configuration starts,
// hyprpaper, swww-daemon, wbg, wpaperd) hold the background layer above our surfaces. They are
// stopped while the picture runs and started again as they ran (arguments, environment, folder)
// when it stops. The list is written to our settings before any is stopped, so the start after a
// crash still gives them back.
class WallpaperClients {
public:
    // `compositor` is the compositor's process, `socket` the absolute path of our Wayland socket:
    // only clients of that compositor are touched.
    WallpaperClients(std::shared_ptr<SettingsStore> settings, pid_t compositor, QString socket);

    // Stops the clients running now; called again, those the compositor has started since.
    // Returns the names of the clients it stopped.
    QStringList stopRunning();
    // Starts every client stopped in this or an earlier run again and forgets them.
    void restart();

    static inline const QString settingsKey = QStringLiteral("stoppedWallpaperClients");
    static const QStringList names;

private:
    bool ofOurCompositor(const ClientProcess& process) const;
    std::vector<ClientProcess> stopped() const;
    void remember(const std::vector<ClientProcess>& clients);

    std::shared_ptr<SettingsStore> settings_;
    pid_t compositor_;
    QString socket_;
};

// The compositor's process, from our connection's socket; 0 when it cannot be told.
pid_t compositorProcess(int displayFd);
// The absolute path of the socket WAYLAND_DISPLAY names in `environment` (XDG_RUNTIME_DIR-relative
// unless absolute, "wayland-0" when unset); empty when it cannot be told.
QString waylandSocketPath(const QStringList& environment);

}  // namespace wayland
}  // namespace quellton
