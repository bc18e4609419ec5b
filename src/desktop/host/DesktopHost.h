#pragma once

#include <QObject>
#include <QPointF>
#include <QRect>
#include <QString>

#include <memory>
#include <vector>

class QScreen;

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

// The picture on one screen, as the controller sees it: a window of ours, a layer surface or a
// stream that the desktop shows. Destroying it takes the picture away and undoes what its host
// changed for it.
class WallpaperSurface {
public:
    virtual ~WallpaperSurface() = default;
    virtual LockedInputs& inputs() = 0;
    // Where it shows, in Qt's global coordinates.
    virtual QRect geometry() const = 0;
    virtual double devicePixelRatio() const = 0;
    virtual long framesDrawn() const = 0;
    // The window that shows it, where it is a Qt window of ours; for diagnostics and tests.
    virtual Canvas* window() { return nullptr; }
};

// What the wallpaper needs from the desktop it runs on (its host): the screens, a picture on each,
// whether a screen is hidden behind a window, whether the displays sleep, and every left click on
// the desktop.
class DesktopHost : public QObject {
    Q_OBJECT
public:
    using QObject::QObject;

    // For the log: which way the picture reaches the desktop.
    virtual QString name() const = 0;
    // Starts watching; parts the desktop does not offer stay quiet.
    virtual void start() = 0;
    // The screens, the primary first.
    virtual std::vector<DesktopScreen> screens() const = 0;
    // The picture for one of those screens; null where this screen cannot have one now.
    virtual std::unique_ptr<WallpaperSurface> makeSurface(const DesktopScreen& screen) = 0;
    // The wallpaper stops: give back whatever was changed in the desktop for it.
    virtual void stop() {}
    // A screen, by its geometry in Qt's global coordinates, cannot show its picture: a window hides
    // it completely, an icon layer does that the picture cannot get behind, or (where the desktop
    // tells) its display alone is off.
    virtual bool covered(const QRect& screen, double devicePixelRatio) const = 0;
    virtual bool displaysAsleep() const = 0;

signals:
    // Position of the pointer at a left press, in Qt's global coordinates.
    void leftClick(QPointF global);
    void displaysAsleepChanged(bool asleep);
    void coverageChanged();
    // The host's own screens changed (Qt's screens are watched by the controller).
    void screensChanged();
};

// Qt's screens, the primary first, for hosts whose screens are the toolkit's.
std::vector<DesktopScreen> qtScreens();

}  // namespace quellton
