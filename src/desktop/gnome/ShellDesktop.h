#pragma once

#include <QDBusAbstractAdaptor>
#include <QDBusArgument>
#include <QList>
#include <QRect>

#include <memory>
#include <optional>
#include <vector>

#include "DesktopHost.h"
#include "OutputScale.h"
#include "Protocols.h"

namespace quellton::wayland {
class DisplayDispatcher;
}

namespace quellton::gnome {

class ShellWindow;

// The desktop of GNOME Shell under Wayland, for a program our Shell extension started: on the
// connection the shell handed to it, one toplevel per monitor, which the extension shows as the
// background. The extension also tells which monitors nobody sees and where the desktop was
// pressed, over D-Bus (ShellWallpaperAdaptor).
class ShellDesktop : public DesktopHost {
    Q_OBJECT
public:
    // Learns the shell's globals and monitors with two round trips.
    explicit ShellDesktop(wl_display* display, QObject* parent = nullptr);
    ~ShellDesktop() override;

    bool usable() const { return compositor_ && windows_; }

    QString name() const override;
    void start() override;
    std::vector<DesktopScreen> screens() const override;
    std::unique_ptr<WallpaperSurface> makeSurface(const DesktopScreen& screen) override;
    bool covered(const QRect& screen, double devicePixelRatio) const override;
    bool displaysAsleep() const override { return false; }

    // From the extension: a left press on the desktop, in the shell's logical coordinates.
    void click(double x, double y);
    // From the extension: the monitors that are hidden now (all others are seen).
    void setHidden(std::vector<QRect> monitors);

private:
    struct Monitor;
    static void global(void* data, wl_registry* registry, uint32_t name, const char* interface, uint32_t version);
    static void globalRemove(void* data, wl_registry* registry, uint32_t name);
    void addMonitor(wl_output* output, uint32_t name);
    void watch(Monitor& monitor);
    void monitorDone(Monitor& monitor);
    void lose();

    wl_display* display_;
    wayland::Proxy<wl_registry> registry_;
    wayland::Proxy<wl_compositor> compositor_;
    wayland::Proxy<xdg_wm_base> windows_;
    wayland::Proxy<zxdg_output_manager_v1> xdgOutputs_;
    std::vector<std::unique_ptr<Monitor>> monitors_;
    std::vector<QRect> hidden_;
    std::unique_ptr<wayland::DisplayDispatcher> dispatcher_;
    bool lost_ = false;
};

// A monitor's logical rectangle as the extension sends it: (iiii), x, y, width, height.
struct MonitorRect {
    int x = 0, y = 0, width = 0, height = 0;
};
QDBusArgument& operator<<(QDBusArgument& argument, const MonitorRect& rect);
const QDBusArgument& operator>>(const QDBusArgument& argument, MonitorRect& rect);

// The D-Bus face of ShellDesktop that the extension calls.
class ShellWallpaperAdaptor : public QDBusAbstractAdaptor {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "io.github.quellton.Quellton.ShellWallpaper")
public:
    explicit ShellWallpaperAdaptor(ShellDesktop* desktop);

public slots:
    void Click(double x, double y);
    void SetHidden(const QList<quellton::gnome::MonitorRect>& monitors);

private:
    ShellDesktop* desktop_;
};

}  // namespace quellton::gnome

Q_DECLARE_METATYPE(quellton::gnome::MonitorRect)
