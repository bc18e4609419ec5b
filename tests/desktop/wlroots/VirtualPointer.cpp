#include "VirtualPointer.h"

#include <linux/input-event-codes.h>
#include <wayland-client.h>

#include <cstring>

#include "wlr-virtual-pointer-unstable-v1-client-protocol.h"

namespace quellton::test {

VirtualPointer::VirtualPointer(const std::string& socket) {
    display_ = wl_display_connect(socket.c_str());
    if (!display_) return;
    wl_registry* registry = wl_display_get_registry(display_);
    static const wl_registry_listener listener{
        [](void* data, wl_registry* registry, uint32_t name, const char* interface, uint32_t) {
            auto* self = static_cast<VirtualPointer*>(data);
            if (std::strcmp(interface, wl_seat_interface.name) == 0 && !self->seat_)
                self->seat_ = static_cast<wl_seat*>(wl_registry_bind(registry, name, &wl_seat_interface, 1));
            if (std::strcmp(interface, zwlr_virtual_pointer_manager_v1_interface.name) == 0)
                self->manager_ = static_cast<zwlr_virtual_pointer_manager_v1*>(
                    wl_registry_bind(registry, name, &zwlr_virtual_pointer_manager_v1_interface, 1));
        },
        [](void*, wl_registry*, uint32_t) {},
    };
    wl_registry_add_listener(registry, &listener, this);
    wl_display_roundtrip(display_);
    wl_registry_destroy(registry);
    if (manager_) pointer_ = zwlr_virtual_pointer_manager_v1_create_virtual_pointer(manager_, seat_);
    wl_display_roundtrip(display_);
}

VirtualPointer::~VirtualPointer() {
    if (pointer_) zwlr_virtual_pointer_v1_destroy(pointer_);
    if (manager_) zwlr_virtual_pointer_manager_v1_destroy(manager_);
    if (seat_) wl_seat_destroy(seat_);
    if (display_) {
        wl_display_roundtrip(display_);
        wl_display_disconnect(display_);
    }
}

void VirtualPointer::click(std::uint32_t x, std::uint32_t y, std::uint32_t width, std::uint32_t height,
                           std::uint32_t button) {
    if (!pointer_) return;
    zwlr_virtual_pointer_v1_motion_absolute(pointer_, time_++, x, y, width, height);
    zwlr_virtual_pointer_v1_frame(pointer_);
    wl_display_roundtrip(display_);
    zwlr_virtual_pointer_v1_button(pointer_, time_++, button, WL_POINTER_BUTTON_STATE_PRESSED);
    zwlr_virtual_pointer_v1_frame(pointer_);
    zwlr_virtual_pointer_v1_button(pointer_, time_++, button, WL_POINTER_BUTTON_STATE_RELEASED);
    zwlr_virtual_pointer_v1_frame(pointer_);
    wl_display_roundtrip(display_);
}

}  // namespace quellton::test
