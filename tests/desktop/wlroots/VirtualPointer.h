#pragma once

#include <cstdint>
#include <string>

struct wl_display;
struct wl_seat;
struct zwlr_virtual_pointer_manager_v1;
struct zwlr_virtual_pointer_v1;

namespace quellton::test {

// A pointer device of the test's own on a wlroots compositor (wlr-virtual-pointer), for real
// pointer events where the compositor has no input devices.
class VirtualPointer {
public:
    explicit VirtualPointer(const std::string& socket);
    ~VirtualPointer();

    bool ready() const { return pointer_ != nullptr; }
    // Moves to (x, y) of a layout `width` by `height` and presses and releases a button (Linux code).
    void click(std::uint32_t x, std::uint32_t y, std::uint32_t width, std::uint32_t height, std::uint32_t button);

private:
    wl_display* display_ = nullptr;
    wl_seat* seat_ = nullptr;
    zwlr_virtual_pointer_manager_v1* manager_ = nullptr;
    zwlr_virtual_pointer_v1* pointer_ = nullptr;
    std::uint32_t time_ = 1;
};

}  // namespace quellton::test
