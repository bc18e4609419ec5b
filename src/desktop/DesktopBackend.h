#pragma once

#include <QObject>
#include <QPointF>
#include <QRect>

#include <memory>

class QWindow;

namespace quellton {

// What the wallpaper needs from the display server: desktop-layer windows, whether a screen is
// hidden behind a window, whether the displays sleep, and every left click on the desktop.
class DesktopBackend : public QObject {
    Q_OBJECT
public:
    using QObject::QObject;

    // Starts watching; parts the display server does not offer stay quiet.
    virtual void start() = 0;
    // Called on a created window before it is shown, and once more after.
    virtual void prepareWindow(QWindow& window) = 0;
    virtual void windowShown(QWindow& window) = 0;
    // Called before a window is closed.
    virtual void windowClosing(QWindow&) {}
    // The wallpaper stops: give back whatever was changed in the desktop for it.
    virtual void stop() {}
    // A screen, by its geometry in Qt's global coordinates, cannot show its picture: a window hides
    // it completely, or an icon layer does that the picture cannot get behind.
    virtual bool covered(const QRect& screen, double devicePixelRatio) const = 0;
    virtual bool displaysAsleep() const = 0;

signals:
    // Position of the pointer at a left press, in Qt's global coordinates.
    void leftClick(QPointF global);
    void displaysAsleepChanged(bool asleep);
    void coverageChanged();
};

// The back end of the platform Qt runs on; none where no desktop layer exists.
std::unique_ptr<DesktopBackend> makeDesktopBackend();

}  // namespace quellton
