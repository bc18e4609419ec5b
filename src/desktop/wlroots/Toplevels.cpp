#include "Toplevels.h"

#include <algorithm>
#include <cstring>
#include <span>

namespace quellton::wayland {

// One window; its state changes arrive in parts and count from their `done`.
struct Toplevels::Window {
    struct State {
        std::vector<wl_output*> outputs;
        bool fullscreen = false;
        bool maximized = false;
        bool minimized = false;

        bool hidesSome() const { return (fullscreen || maximized) && !minimized && !outputs.empty(); }
        bool hides(wl_output* output) const {
            return hidesSome() && std::ranges::find(outputs, output) != outputs.end();
        }
    };

    Toplevels* owner;
    Proxy<zwlr_foreign_toplevel_handle_v1> handle;
    State pending, current;
};

Toplevels::Toplevels(zwlr_foreign_toplevel_manager_v1* manager, QObject* parent) : QObject(parent), manager_(manager) {
    static const zwlr_foreign_toplevel_manager_v1_listener listener{&Toplevels::created, &Toplevels::finished};
    zwlr_foreign_toplevel_manager_v1_add_listener(manager_, &listener, this);
}

Toplevels::~Toplevels() {
    windows_.clear();
    if (manager_) destroy(manager_);
}

bool Toplevels::hides(wl_output* output) const {
    return std::ranges::any_of(windows_, [output](const auto& window) { return window->current.hides(output); });
}

void Toplevels::forget(wl_output* output) {
    for (auto& window : windows_) {
        std::erase(window->pending.outputs, output);
        std::erase(window->current.outputs, output);
    }
}

void Toplevels::created(void* data, zwlr_foreign_toplevel_manager_v1*, zwlr_foreign_toplevel_handle_v1* handle) {
    auto* self = static_cast<Toplevels*>(data);
    auto window = std::make_unique<Window>();
    window->owner = self;
    window->handle.reset(handle);
    using W = Window;
    static const zwlr_foreign_toplevel_handle_v1_listener listener{
        [](void*, zwlr_foreign_toplevel_handle_v1*, const char*) {},  // title
        [](void*, zwlr_foreign_toplevel_handle_v1*, const char*) {},  // app_id
        [](void* data, zwlr_foreign_toplevel_handle_v1*, wl_output* output) {
            auto& outputs = static_cast<W*>(data)->pending.outputs;
            if (std::ranges::find(outputs, output) == outputs.end()) outputs.push_back(output);
        },
        [](void* data, zwlr_foreign_toplevel_handle_v1*, wl_output* output) {
            std::erase(static_cast<W*>(data)->pending.outputs, output);
        },
        [](void* data, zwlr_foreign_toplevel_handle_v1*, wl_array* states) {
            W::State& pending = static_cast<W*>(data)->pending;
            pending.fullscreen = pending.maximized = pending.minimized = false;
            const std::span<const uint32_t> list(static_cast<const uint32_t*>(states->data),
                                                 states->size / sizeof(uint32_t));
            for (uint32_t state : list) {
                if (state == ZWLR_FOREIGN_TOPLEVEL_HANDLE_V1_STATE_FULLSCREEN) pending.fullscreen = true;
                if (state == ZWLR_FOREIGN_TOPLEVEL_HANDLE_V1_STATE_MAXIMIZED) pending.maximized = true;
                if (state == ZWLR_FOREIGN_TOPLEVEL_HANDLE_V1_STATE_MINIMIZED) pending.minimized = true;
            }
        },
        [](void* data, zwlr_foreign_toplevel_handle_v1*) {  // done
            auto* window = static_cast<W*>(data);
            const bool hid = window->current.hidesSome();
            window->current = window->pending;
            if (hid || window->current.hidesSome()) emit window->owner->changed();
        },
        [](void* data, zwlr_foreign_toplevel_handle_v1*) {  // closed
            auto* window = static_cast<W*>(data);
            window->owner->remove(window);
        },
        [](void*, zwlr_foreign_toplevel_handle_v1*, zwlr_foreign_toplevel_handle_v1*) {},  // parent
    };
    zwlr_foreign_toplevel_handle_v1_add_listener(handle, &listener, window.get());
    self->windows_.push_back(std::move(window));
}

void Toplevels::finished(void* data, zwlr_foreign_toplevel_manager_v1*) {
    auto* self = static_cast<Toplevels*>(data);
    // The compositor destroyed the manager; the windows it announced stay valid until closed.
    destroy(self->manager_);
    self->manager_ = nullptr;
}

void Toplevels::remove(Window* window) {
    const bool hid = window->current.hidesSome();
    std::erase_if(windows_, [window](const auto& w) { return w.get() == window; });
    if (hid) emit changed();
}

}  // namespace quellton::wayland
