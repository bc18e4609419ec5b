#include "DesktopBackend.h"

#include <QGuiApplication>
#include <QScreen>

#include "Canvas.h"
#include "WindowSystemGl.h"
#include "wayland/WaylandDesktop.h"
#include "x11/X11Desktop.h"

namespace quellton {

namespace {

// A wallpaper that is a Qt window of its own.
class WindowWallpaper : public WallpaperSurface {
public:
    explicit WindowWallpaper(std::unique_ptr<Canvas> canvas) : canvas_(std::move(canvas)) {}
    ~WindowWallpaper() override { canvas_->close(); }

    LockedInputs& inputs() override { return canvas_->inputs(); }
    QRect geometry() const override { return canvas_->geometry(); }
    double devicePixelRatio() const override { return canvas_->devicePixelRatio(); }
    long framesDrawn() const override { return canvas_->framesDrawn(); }
    Canvas* window() override { return canvas_.get(); }

private:
    std::unique_ptr<Canvas> canvas_;
};

}  // namespace

std::vector<DesktopScreen> DesktopBackend::screens() const {
    std::vector<DesktopScreen> result;
    for (QScreen* screen : QGuiApplication::screens()) result.push_back({screen->name(), screen->geometry(), screen});
    return result;
}

std::unique_ptr<WallpaperSurface> DesktopBackend::makeSurface(const DesktopScreen& screen) {
    auto canvas = std::make_unique<Canvas>(Role::wallpaper);
    canvas->setFlags(Qt::Window | Qt::FramelessWindowHint | Qt::WindowTransparentForInput |
                     Qt::WindowDoesNotAcceptFocus | Qt::WindowStaysOnBottomHint);
    canvas->setTitle(QStringLiteral("Quellton"));
    if (screen.qtScreen) canvas->setScreen(screen.qtScreen);
    canvas->setGeometry(screen.geometry);
    canvas->create();
    prepareWindow(*canvas);
    canvas->show();
    windowShown(*canvas);
    return std::make_unique<WindowWallpaper>(std::move(canvas));
}

std::unique_ptr<DesktopBackend> makeDesktopBackend() {
    if (wl_display* display = windowSystemWaylandDisplay()) return wayland::makeWaylandDesktop(display);
    return x11::makeX11Desktop();
}

}  // namespace quellton
