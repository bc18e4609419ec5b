#pragma once

#include <QPointF>

#include <cstdint>
#include <functional>
#include <memory>
#include <vector>

#include "Protocols.h"

struct wl_cursor_theme;

namespace quellton::wayland {

// The pointers of the compositor's seats over our surfaces: where they are and their left presses.
// Other buttons, the wheel and keys are not ours to act on.
class SeatPointers {
public:
    struct Handlers {
        // Surface-local position in logical pixels; left() when the pointer leaves our surfaces.
        std::function<void(wl_surface*, QPointF)> moved;
        std::function<void()> left;
        std::function<void(wl_surface*, QPointF)> leftPressed;
    };
    // `compositor` and `shm` give the pointer its arrow over our surfaces; both may be null.
    SeatPointers(Handlers handlers, wl_compositor* compositor, wl_shm* shm);
    ~SeatPointers();

    void addSeat(wl_seat* seat, uint32_t globalName);
    void removeSeat(uint32_t globalName);

private:
    struct Seat;
    static void capabilities(void* data, wl_seat* seat, uint32_t caps);
    static void entered(void* data, wl_pointer*, uint32_t serial, wl_surface* surface, wl_fixed_t x, wl_fixed_t y);
    static void leaving(void* data, wl_pointer*, uint32_t serial, wl_surface* surface);
    static void motion(void* data, wl_pointer*, uint32_t time, wl_fixed_t x, wl_fixed_t y);
    static void button(void* data, wl_pointer*, uint32_t serial, uint32_t time, uint32_t button, uint32_t state);
    void showArrow(wl_pointer* pointer, uint32_t serial);

    Handlers handlers_;
    std::vector<std::unique_ptr<Seat>> seats_;
    wl_cursor_theme* theme_ = nullptr;
    Proxy<wl_surface> arrow_;
    QPointF hotspot_;
};

}  // namespace quellton::wayland
