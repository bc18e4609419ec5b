#pragma once

// The client bindings of every protocol the wallpaper speaks, generated at build time.
#include <wayland-client.h>

#include "viewporter-client-protocol.h"
#include "wlr-foreign-toplevel-management-unstable-v1-client-protocol.h"
#include "wlr-output-power-management-unstable-v1-client-protocol.h"
#include "xdg-output-unstable-v1-client-protocol.h"
#include "xdg-shell-client-protocol.h"
// The layer shell names an argument `namespace`, a C++ keyword.
#define namespace namespace_
#include "wlr-layer-shell-unstable-v1-client-protocol.h"
#undef namespace

#include <memory>

namespace quellton::wayland {

// Ends our side of a protocol object with the request its protocol names for that (release
// where the bound version has it, destroy otherwise).
void destroy(wl_registry* proxy);
void destroy(wl_compositor* proxy);
void destroy(wl_shm* proxy);
void destroy(wl_surface* proxy);
void destroy(wl_output* proxy);
void destroy(wl_seat* proxy);
void destroy(wl_pointer* proxy);
void destroy(wp_viewporter* proxy);
void destroy(wp_viewport* proxy);
void destroy(zwlr_layer_shell_v1* proxy);
void destroy(zwlr_layer_surface_v1* proxy);
void destroy(zxdg_output_manager_v1* proxy);
void destroy(zxdg_output_v1* proxy);
void destroy(zwlr_output_power_manager_v1* proxy);
void destroy(zwlr_output_power_v1* proxy);
void destroy(zwlr_foreign_toplevel_manager_v1* proxy);
void destroy(zwlr_foreign_toplevel_handle_v1* proxy);
void destroy(xdg_wm_base* proxy);
void destroy(xdg_surface* proxy);
void destroy(xdg_toplevel* proxy);
void destroy(wl_region* proxy);

struct ProxyDeleter {
    template <typename T>
    void operator()(T* proxy) const {
        if (proxy) destroy(proxy);
    }
};
template <typename T>
using Proxy = std::unique_ptr<T, ProxyDeleter>;

}  // namespace quellton::wayland
