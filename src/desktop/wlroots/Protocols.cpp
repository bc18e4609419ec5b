#include "Protocols.h"

namespace quellton::wayland {

namespace {

template <typename T>
void destroyProxy(T* proxy) {
    wl_proxy_destroy(reinterpret_cast<wl_proxy*>(proxy));
}

}  // namespace

void destroy(wl_registry* proxy) { wl_registry_destroy(proxy); }
void destroy(wl_compositor* proxy) { wl_compositor_destroy(proxy); }
void destroy(wl_shm* proxy) { wl_shm_destroy(proxy); }
void destroy(wl_surface* proxy) { wl_surface_destroy(proxy); }
void destroy(wp_viewporter* proxy) { wp_viewporter_destroy(proxy); }
void destroy(wp_viewport* proxy) { wp_viewport_destroy(proxy); }
void destroy(zwlr_layer_surface_v1* proxy) { zwlr_layer_surface_v1_destroy(proxy); }
void destroy(zxdg_output_manager_v1* proxy) { zxdg_output_manager_v1_destroy(proxy); }
void destroy(zxdg_output_v1* proxy) { zxdg_output_v1_destroy(proxy); }
void destroy(zwlr_output_power_manager_v1* proxy) { zwlr_output_power_manager_v1_destroy(proxy); }
void destroy(zwlr_output_power_v1* proxy) { zwlr_output_power_v1_destroy(proxy); }
void destroy(zwlr_foreign_toplevel_manager_v1* proxy) { zwlr_foreign_toplevel_manager_v1_destroy(proxy); }
void destroy(zwlr_foreign_toplevel_handle_v1* proxy) { zwlr_foreign_toplevel_handle_v1_destroy(proxy); }
void destroy(xdg_wm_base* proxy) { xdg_wm_base_destroy(proxy); }
void destroy(xdg_surface* proxy) { xdg_surface_destroy(proxy); }
void destroy(xdg_toplevel* proxy) { xdg_toplevel_destroy(proxy); }
void destroy(wl_region* proxy) { wl_region_destroy(proxy); }

void destroy(wl_output* proxy) {
    if (wl_output_get_version(proxy) >= WL_OUTPUT_RELEASE_SINCE_VERSION) return wl_output_release(proxy);
    destroyProxy(proxy);
}

void destroy(wl_seat* proxy) {
    if (wl_seat_get_version(proxy) >= WL_SEAT_RELEASE_SINCE_VERSION) return wl_seat_release(proxy);
    destroyProxy(proxy);
}

void destroy(wl_pointer* proxy) {
    if (wl_pointer_get_version(proxy) >= WL_POINTER_RELEASE_SINCE_VERSION) return wl_pointer_release(proxy);
    destroyProxy(proxy);
}

void destroy(zwlr_layer_shell_v1* proxy) {
    if (zwlr_layer_shell_v1_get_version(proxy) >= ZWLR_LAYER_SHELL_V1_DESTROY_SINCE_VERSION)
        return zwlr_layer_shell_v1_destroy(proxy);
    destroyProxy(proxy);
}

}  // namespace quellton::wayland
