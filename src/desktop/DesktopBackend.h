#pragma once

#include <QObject>
#include <QPointF>
#include <QRect>
#include <QString>

#include <memory>
#include <vector>

class QScreen;
class QWindow;

namespace quellton {

class Canvas;
class LockedInputs;

// A screen that may carry a wallpaper.
struct DesktopScreen {
    QString name;
    QRect geometry;  // Qt's global coordinates: logical pixels, top left, y down
    QScreen* qtScreen = nullptr;  // where Qt's windows show the wallpaper

    bool operator==(const DesktopScreen&) const = default;
};

// The picture on one screen, as the controller sees it.
class WallpaperSurface {
public:
    virtual ~WallpaperSurface() = default;
    virtual LockedInputs& inputs() = 0;
    // Where it shows, in Qt's global coordinates.
    virtual QRect geometry() const = 0;
    virtual double devicePixelRatio() const = 0;
    virtual long framesDrawn() const = 0;
    // The Qt window that shows it, where it is one.
    virtual Canvas* window() { return nullptr; }
};

// What the wallpaper needs from the display server: the screens, a desktop-layer surface on each,
// whether a screen is hidden behind a window, whether the displays sleep, and every left click on
// the desktop.
class DesktopBackend : public QObject {
    Q_OBJECT
public:
    using QObject::QObject;

    // Starts watching; parts the display server does not offer stay quiet.
    virtual void start() = 0;
    // The screens, the primary first: Qt's, unless the back end has its own connection.
    virtual std::vector<DesktopScreen> screens() const;
    // The wallpaper for one of those screens: by default a desktop-layer Canvas window, prepared
    // and shown through the two calls below.
    virtual std::unique_ptr<WallpaperSurface> makeSurface(const DesktopScreen& screen);
    // Called on a created window before it is shown, and once more after.
    virtual void prepareWindow(QWindow& window) = 0;
    virtual void windowShown(QWindow& window) = 0;
    // Called before a window is closed.
    virtual void windowClosing(QWindow&) {}
    // The wallpaper stops: give back whatever was changed in the desktop for it.
    virtual void stop() {}
    // A screen, by its geometry in Qt's global coordinates, cannot show its picture: a window hides
    // it completely, an icon layer does that the picture cannot get behind, or (where the server
    // tells) its display alone is off.
    virtual bool covered(const QRect& screen, double devicePixelRatio) const = 0;
    virtual bool displaysAsleep() const = 0;

signals:
    // Position of the pointer at a left press, in Qt's global coordinates.
    void leftClick(QPointF global);
    void displaysAsleepChanged(bool asleep);
    void coverageChanged();
    // The back end's own screens changed (Qt's screens are watched by the controller).
    void screensChanged();
};

// The back end of the session: Wayland where our own layer-shell connection exists, else the X11
// desktop Qt runs on; none where no desktop layer exists.
std::unique_ptr<DesktopBackend> makeDesktopBackend();

}  // namespace quellton
