#pragma once

#include <xcb/damage.h>
#include <xcb/xcb.h>

#include <QRect>

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

namespace quellton {
class WindowOverlay;
}

namespace quellton::x11 {

// The pixels of another program's icon window, kept in step with XComposite, DAMAGE and MIT-SHM.
// The window is redirected automatically, so the server keeps showing it wherever it is visible,
// while its whole picture stays readable under ours. Each damaged area is copied, matted and
// written into the overlays of our windows on the screens the icon window covers.
class IconLayerCapture {
public:
    struct Target {
        QRect screen;  // our window, in root pixels
        std::shared_ptr<WindowOverlay> overlay;
        double devicePixelRatio = 1.0;
    };

    // `key`: the colour the layer paints as backdrop; none for a layer with its own alpha.
    // `repainted` is called when most of the layer was drawn anew (its backdrop may have changed).
    IconLayerCapture(xcb_connection_t* connection, xcb_window_t window, std::optional<std::uint32_t> key,
                     std::function<void()> repainted = {});
    ~IconLayerCapture();
    IconLayerCapture(const IconLayerCapture&) = delete;
    IconLayerCapture& operator=(const IconLayerCapture&) = delete;

    // Redirects the window and starts following its damage; false when the server cannot.
    bool start();
    xcb_window_t window() const { return window_; }
    std::optional<std::uint32_t> key() const { return key_; }
    // Where the pixels go; each overlay is filled anew.
    void setTargets(std::vector<Target> targets);
    bool sameTargets(const std::vector<Target>& targets) const;
    // An event of the shared connection; true when it concerned this capture.
    bool handle(const xcb_generic_event_t& event);

private:
    bool refreshGeometry();
    void namePixmap();
    void releasePixmap();
    bool attachSharedMemory(std::size_t bytes);
    void releaseSharedMemory();
    void copyDamage();
    void copy(const QRect& area);
    // The window's pixels in `rect` (window coordinates), stride rect.width(); empty on failure.
    const std::uint32_t* read(const QRect& rect, std::vector<std::uint32_t>& fallback);

    xcb_connection_t* connection_;
    xcb_window_t window_;
    std::optional<std::uint32_t> key_;
    std::function<void()> repainted_;
    std::uint8_t damageEvent_ = 0;
    xcb_damage_damage_t damage_ = 0;
    xcb_pixmap_t pixmap_ = 0;
    bool redirected_ = false;
    QRect geometry_;  // in root pixels
    bool viewable_ = false;
    std::vector<Target> targets_;

    // MIT-SHM segment for reads of up to the whole window.
    std::uint32_t shmSegment_ = 0;
    int shmId_ = -1;
    void* shmAddress_ = nullptr;
    std::size_t shmBytes_ = 0;
    bool shmFailed_ = false;
};

}  // namespace quellton::x11
