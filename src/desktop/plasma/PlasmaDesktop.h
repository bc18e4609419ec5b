#pragma once

#include <QDBusConnection>
#include <QPointer>
#include <QTimer>

#include <cstdint>
#include <memory>
#include <vector>

#include "DesktopHost.h"
#include "StreamSurface.h"

namespace quellton {
class SettingsStore;
}

namespace quellton::plasma {

class PipeWireConnection;
class SavedWallpapers;

// KDE Plasma, on Wayland and on X11: plasmashell draws the desktop and its icons in one window, so
// the picture goes into it. Each screen's picture is a PipeWire stream; every desktop of that screen
// gets our wallpaper plugin, told the stream's node. The user's own wallpapers are saved before the
// first change and given back when the wallpaper stops (or at the next start after a crash).
class PlasmaDesktop : public DesktopHost {
    Q_OBJECT
public:
    PlasmaDesktop(std::shared_ptr<SettingsStore> settings, QDBusConnection bus = QDBusConnection::sessionBus(),
                  QObject* parent = nullptr);
    ~PlasmaDesktop() override;

    QString name() const override;
    void start() override;
    std::vector<DesktopScreen> screens() const override { return qtScreens(); }
    std::unique_ptr<WallpaperSurface> makeSurface(const DesktopScreen& screen) override;
    void stop() override;
    bool covered(const QRect&, double) const override { return false; }
    bool displaysAsleep() const override { return false; }

    // From the wallpaper plugin: a press at a point of the screen whose stream is `node`, in its
    // own logical pixels (top left, y down).
    void press(std::uint32_t node, QPointF local, int buttons);

private:
    void connectPipeWire();
    void place(StreamSurface& surface);
    bool evaluate(const QString& script, QString* answer = nullptr);
    void saveUserWallpapers();

    std::shared_ptr<SettingsStore> settings_;
    std::unique_ptr<SavedWallpapers> saved_;
    QDBusConnection bus_;
    std::shared_ptr<PipeWireConnection> pipewire_;
    std::vector<QPointer<StreamSurface>> surfaces_;  // owned by the controller
    QTimer reconnect_;
    qint64 generation_ = 0;
    bool stopped_ = false;
    bool warned_ = false;
};

}  // namespace quellton::plasma
