#include "SeatPointers.h"

#include <linux/input-event-codes.h>
#include <wayland-cursor.h>

#include <algorithm>
#include <cstdlib>

namespace quellton::wayland {

namespace {

int cursorSize() {
    const char* size = std::getenv("XCURSOR_SIZE");
    const int value = size ? std::atoi(size) : 0;
    return value > 0 ? value : 24;
}

}  // namespace

struct SeatPointers::Seat {
    SeatPointers* owner;
    uint32_t globalName;
    Proxy<wl_seat> seat;
    Proxy<wl_pointer> pointer;
    wl_surface* over = nullptr;  // the surface under the pointer, one of ours
    QPointF position;
};

SeatPointers::SeatPointers(Handlers handlers, wl_compositor* compositor, wl_shm* shm) : handlers_(std::move(handlers)) {
    if (!compositor || !shm) return;
    theme_ = wl_cursor_theme_load(std::getenv("XCURSOR_THEME"), cursorSize(), shm);
    wl_cursor* cursor = theme_ ? wl_cursor_theme_get_cursor(theme_, "left_ptr") : nullptr;
    if (!cursor && theme_) cursor = wl_cursor_theme_get_cursor(theme_, "default");
    if (!cursor || cursor->image_count == 0) return;
    wl_cursor_image* image = cursor->images[0];
    arrow_.reset(wl_compositor_create_surface(compositor));
    wl_surface_attach(arrow_.get(), wl_cursor_image_get_buffer(image), 0, 0);
    wl_surface_damage(arrow_.get(), 0, 0, int32_t(image->width), int32_t(image->height));
    wl_surface_commit(arrow_.get());
    hotspot_ = QPointF(image->hotspot_x, image->hotspot_y);
}

SeatPointers::~SeatPointers() {
    seats_.clear();
    arrow_.reset();
    if (theme_) wl_cursor_theme_destroy(theme_);
}

void SeatPointers::addSeat(wl_seat* seat, uint32_t globalName) {
    auto record = std::make_unique<Seat>();
    record->owner = this;
    record->globalName = globalName;
    record->seat.reset(seat);
    static const wl_seat_listener listener{&SeatPointers::capabilities, [](void*, wl_seat*, const char*) {}};
    wl_seat_add_listener(seat, &listener, record.get());
    seats_.push_back(std::move(record));
}

void SeatPointers::removeSeat(uint32_t globalName) {
    std::erase_if(seats_, [&](const auto& seat) { return seat->globalName == globalName; });
}

void SeatPointers::capabilities(void* data, wl_seat* seat, uint32_t caps) {
    auto* record = static_cast<Seat*>(data);
    const bool hasPointer = caps & WL_SEAT_CAPABILITY_POINTER;
    if (hasPointer && !record->pointer) {
        // Every member named: newer headers add events, which the seat's bound version never sends.
        static const wl_pointer_listener listener{
            .enter = &SeatPointers::entered,
            .leave = &SeatPointers::leaving,
            .motion = &SeatPointers::motion,
            .button = &SeatPointers::button,
            .axis = [](void*, wl_pointer*, uint32_t, uint32_t, wl_fixed_t) {},
            .frame = [](void*, wl_pointer*) {},
            .axis_source = [](void*, wl_pointer*, uint32_t) {},
            .axis_stop = [](void*, wl_pointer*, uint32_t, uint32_t) {},
            .axis_discrete = [](void*, wl_pointer*, uint32_t, int32_t) {},
            .axis_value120 = [](void*, wl_pointer*, uint32_t, int32_t) {},
#ifdef WL_POINTER_AXIS_RELATIVE_DIRECTION_SINCE_VERSION
            .axis_relative_direction = [](void*, wl_pointer*, uint32_t, uint32_t) {},
#endif
        };
        record->pointer.reset(wl_seat_get_pointer(seat));
        wl_pointer_add_listener(record->pointer.get(), &listener, record);
    } else if (!hasPointer && record->pointer) {
        if (record->over && record->owner->handlers_.left) record->owner->handlers_.left();
        record->over = nullptr;
        record->pointer.reset();
    }
}

void SeatPointers::entered(void* data, wl_pointer* pointer, uint32_t serial, wl_surface* surface, wl_fixed_t x,
                           wl_fixed_t y) {
    auto* record = static_cast<Seat*>(data);
    record->over = surface;
    record->owner->showArrow(pointer, serial);
    motion(data, pointer, 0, x, y);
}

void SeatPointers::leaving(void* data, wl_pointer*, uint32_t, wl_surface*) {
    auto* record = static_cast<Seat*>(data);
    record->over = nullptr;
    if (record->owner->handlers_.left) record->owner->handlers_.left();
}

void SeatPointers::motion(void* data, wl_pointer*, uint32_t, wl_fixed_t x, wl_fixed_t y) {
    auto* record = static_cast<Seat*>(data);
    record->position = QPointF(wl_fixed_to_double(x), wl_fixed_to_double(y));
    if (record->over && record->owner->handlers_.moved) record->owner->handlers_.moved(record->over, record->position);
}

void SeatPointers::button(void* data, wl_pointer*, uint32_t, uint32_t, uint32_t button, uint32_t state) {
    auto* record = static_cast<Seat*>(data);
    if (button != BTN_LEFT || state != WL_POINTER_BUTTON_STATE_PRESSED || !record->over) return;
    if (record->owner->handlers_.leftPressed) record->owner->handlers_.leftPressed(record->over, record->position);
}

void SeatPointers::showArrow(wl_pointer* pointer, uint32_t serial) {
    // Over a surface the client chooses the pointer's image; without one it would keep the last.
    if (arrow_) wl_pointer_set_cursor(pointer, serial, arrow_.get(), int32_t(hotspot_.x()), int32_t(hotspot_.y()));
}

}  // namespace quellton::wayland
