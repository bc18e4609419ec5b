#pragma once

#include <QObject>
#include <QRect>
#include <QTimer>

#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "EventConnection.h"
#include "Ewmh.h"
#include "IconLayerCapture.h"
#include "IconLayerRules.h"

namespace quellton {
class IconManagerSettings;
class WindowOverlay;
}

namespace quellton::x11 {

// Finds the desktop's icon window on the screen of each of our wallpaper windows (a desktop-type
// window of another program), follows it appearing, going and being restacked, and keeps our
// window in its place: directly below a see-through layer, directly above an opaque one, whose
// pixels our window then shows over the picture. Where an opaque layer cannot be shown, the
// screen is blocked: its picture cannot be seen.
class IconLayers : public QObject {
    Q_OBJECT
public:
    // `settings` switches opaque layers' backdrops to the key; may be null (no keyed layers then).
    explicit IconLayers(IconManagerSettings* settings, QObject* parent = nullptr);
    ~IconLayers() override;

    bool start();
    // One of our wallpaper windows: its screen in root pixels and the overlay over its picture.
    void addWindow(xcb_window_t window, const QRect& screen, double devicePixelRatio,
                   std::shared_ptr<WindowOverlay> overlay);
    void removeWindow(xcb_window_t window);
    // Ends the composites and gives every icon manager its backdrop back.
    void stop();

    // No picture can be seen on this screen (root pixels) because of its icon layer.
    bool blocks(const QRect& screen) const;
    // For diagnostics and tests: the route on the screen of our window, if it has an icon layer.
    std::optional<IconLayerRoute> route(xcb_window_t window) const;

signals:
    void blockingChanged();
    // One of our windows was put into another parent, a window manager's frame.
    void reparented(xcb_window_t window, xcb_window_t parent);

private:
    struct IconWindow {
        xcb_window_t client = XCB_WINDOW_NONE;
        xcb_window_t topLevel = XCB_WINDOW_NONE;  // the root's child that holds it
        QRect geometry;
        IconManager manager = IconManager::unknown;
        std::string instance;
        bool alphaVisual = false;
    };
    struct Ours {
        xcb_window_t window = XCB_WINDOW_NONE;
        QRect screen;
        double devicePixelRatio = 1.0;
        std::shared_ptr<WindowOverlay> overlay;
        xcb_window_t layer = XCB_WINDOW_NONE;
        std::optional<IconLayerRoute> route;
        int attempts = 0;
        bool gaveUp = false;
        bool blocked = false;
        qint64 requestedAt = 0;  // ms; 0: no restack waits for an answer
    };

    void onEvent(const xcb_generic_event_t& event);
    void followParent(xcb_window_t window);
    void scheduleRefresh();
    void refresh();
    std::vector<IconWindow> findIconWindows();
    std::optional<IconWindow> describe(xcb_window_t client, const std::set<xcb_window_t>& ourTopLevels);
    xcb_window_t topLevelOf(xcb_window_t window) const;
    std::vector<std::uint32_t> visibleOrder(const QRect& screen) const;
    bool compositing() const;
    void readManager();
    std::optional<std::uint32_t> keyFor(const IconWindow& layer);
    void releaseKeys(const std::vector<IconWindow>& present);
    void giveBackKey(IconManager manager);
    IconLayerRoute routeOf(const IconWindow& layer);
    void place(Ours& ours, const IconWindow& layer, bool above);
    void restack(const Ours& ours, const IconWindow& layer, bool above);
    void raiseWithTime(xcb_timestamp_t time);
    void updateCaptures(const std::vector<IconWindow>& layers);
    void logOnce(const std::string& key, const QString& line);

    IconManagerSettings* settings_;
    EventConnection connection_;
    std::unique_ptr<Atoms> atoms_;
    xcb_atom_t compositorSelection_ = XCB_ATOM_NONE;
    bool managerRuns_ = false;
    bool managerRestacks_ = false;
    bool stopped_ = false;
    std::vector<Ours> ours_;
    std::set<xcb_window_t> watched_;
    std::map<IconManager, std::optional<std::uint32_t>> keys_;  // none: the backdrop cannot be keyed
    std::map<xcb_window_t, std::unique_ptr<IconLayerCapture>> captures_;
    std::set<xcb_window_t> uncapturable_;
    std::set<std::string> logged_;
    // Managers of the metacity family only raise a window whose last user time is not older than
    // the active window's: the raise waits for a fresh server time, read off this window.
    xcb_window_t clock_ = XCB_WINDOW_NONE;
    std::vector<std::pair<xcb_window_t, std::uint32_t>> raises_;
    QTimer refreshSoon_;
    std::set<IconManager> rekeySoon_;
    QTimer rekeyTimer_;
};

}  // namespace quellton::x11
