#pragma once

#include <xcb/xcb.h>

#include <QImage>
#include <QRect>

#include <cstdint>
#include <initializer_list>
#include <string>
#include <vector>

#include "Ewmh.h"
#include "XcbHandles.h"

namespace quellton::test {

// A plain X client of the test's own: another program's windows, and what a person sees.
class X11Client {
public:
    X11Client() : connection_(x11::openConnection(&screen_)), atoms_(connection_.get()) {
        root_ = x11::rootWindow(c(), screen_);
    }
    xcb_connection_t* c() const { return connection_.get(); }
    xcb_window_t root() const { return root_; }
    const x11::Atoms& atoms() const { return atoms_; }

    // A window of the default visual, or of a 32-bit visual with alpha.
    xcb_window_t window(QRect geometry, bool alpha = false) {
        const xcb_window_t id = xcb_generate_id(c());
        std::uint8_t depth = XCB_COPY_FROM_PARENT;
        xcb_visualid_t visual = XCB_COPY_FROM_PARENT;
        std::uint32_t mask = 0;
        std::uint32_t values[3] = {};
        if (alpha) {
            visual = argbVisual();
            depth = 32;
            const xcb_colormap_t colormap = xcb_generate_id(c());
            xcb_create_colormap(c(), XCB_COLORMAP_ALLOC_NONE, colormap, root_, visual);
            mask = XCB_CW_BACK_PIXEL | XCB_CW_BORDER_PIXEL | XCB_CW_COLORMAP;
            values[2] = colormap;
        }
        xcb_create_window(c(), depth, id, root_, std::int16_t(geometry.x()), std::int16_t(geometry.y()),
                          std::uint16_t(geometry.width()), std::uint16_t(geometry.height()), 0,
                          XCB_WINDOW_CLASS_INPUT_OUTPUT, visual, mask, values);
        return id;
    }
    // Marks a window as a desktop window of a program with this class hint.
    void desktop(xcb_window_t window, const std::string& instance, const std::string& className) {
        x11::writeAtoms(c(), window, atoms_[x11::Atom::_NET_WM_WINDOW_TYPE], {atoms_[x11::Atom::_NET_WM_WINDOW_TYPE_DESKTOP]});
        const std::string both = instance + '\0' + className + '\0';
        xcb_change_property(c(), XCB_PROP_MODE_REPLACE, window, XCB_ATOM_WM_CLASS, XCB_ATOM_STRING, 8,
                            std::uint32_t(both.size()), both.data());
        xcb_flush(c());
    }
    void states(xcb_window_t window, std::initializer_list<x11::Atom> names) {
        std::vector<xcb_atom_t> list;
        for (x11::Atom name : names) list.push_back(atoms_[name]);
        x11::writeAtoms(c(), window, atoms_[x11::Atom::_NET_WM_STATE], list);
        xcb_flush(c());
    }
    // Paints a rectangle in a 0xAARRGGBB colour (premultiplied on a 32-bit window).
    void fill(xcb_window_t window, QRect rect, std::uint32_t color) {
        const xcb_gcontext_t gc = xcb_generate_id(c());
        xcb_create_gc(c(), gc, window, XCB_GC_FOREGROUND, &color);
        const xcb_rectangle_t r{std::int16_t(rect.x()), std::int16_t(rect.y()), std::uint16_t(rect.width()),
                                std::uint16_t(rect.height())};
        xcb_poly_fill_rectangle(c(), window, gc, 1, &r);
        xcb_free_gc(c(), gc);
        xcb_flush(c());
    }
    void stack(xcb_window_t window, std::uint32_t mode) {
        xcb_configure_window(c(), window, XCB_CONFIG_WINDOW_STACK_MODE, &mode);
        xcb_flush(c());
    }
    void map(xcb_window_t window) {
        xcb_map_window(c(), window);
        xcb_flush(c());
    }
    void unmap(xcb_window_t window) {
        xcb_unmap_window(c(), window);
        xcb_flush(c());
    }
    void destroy(xcb_window_t window) {
        xcb_destroy_window(c(), window);
        xcb_flush(c());
    }
    // The root's children that can be seen, from the bottom to the top.
    std::vector<xcb_window_t> stacking() const {
        std::vector<xcb_window_t> seen;
        for (xcb_window_t w : children())
            if (viewable(w, XCB_WINDOW_CLASS_INPUT_OUTPUT)) seen.push_back(w);
        return seen;
    }

    // The display as a person sees it: a screenshot and the window manager's lists.
    QImage shot() const {
        const x11::Reply<xcb_get_geometry_reply_t> g(
            xcb_get_geometry_reply(c(), xcb_get_geometry(c(), root_), nullptr));
        if (!g) return {};
        const x11::Reply<xcb_get_image_reply_t> image(xcb_get_image_reply(
            c(), xcb_get_image(c(), XCB_IMAGE_FORMAT_Z_PIXMAP, root_, 0, 0, g->width, g->height, ~0u), nullptr));
        if (!image) return {};
        // A copy: the reply's memory goes with it.
        return QImage(xcb_get_image_data(image.get()), g->width, g->height, QImage::Format_RGB32).copy();
    }
    std::vector<xcb_window_t> clients() const {
        return x11::readWindows(c(), root_, atoms_[x11::Atom::_NET_CLIENT_LIST]);
    }
    xcb_window_t active() const {
        const std::vector<xcb_window_t> active = x11::readWindows(c(), root_, atoms_[x11::Atom::_NET_ACTIVE_WINDOW]);
        return active.empty() ? xcb_window_t{XCB_WINDOW_NONE} : active.front();
    }
    std::string name(xcb_window_t window) const {
        const x11::Reply<xcb_get_property_reply_t> reply(xcb_get_property_reply(
            c(), xcb_get_property(c(), 0, window, XCB_ATOM_WM_NAME, XCB_GET_PROPERTY_TYPE_ANY, 0, 256), nullptr));
        if (!reply) return {};
        return std::string(static_cast<const char*>(xcb_get_property_value(reply.get())),
                           std::size_t(xcb_get_property_value_length(reply.get())));
    }
    // The first mapped client or root child whose class hint has this class name.
    xcb_window_t byClass(const std::string& className) const {
        std::vector<xcb_window_t> candidates = clients();
        for (xcb_window_t w : children()) candidates.push_back(w);
        for (xcb_window_t w : candidates)
            if (viewable(w) && x11::readWmClass(c(), w).className == className) return w;
        return XCB_WINDOW_NONE;
    }

private:
    std::vector<xcb_window_t> children() const {
        const x11::Reply<xcb_query_tree_reply_t> tree(xcb_query_tree_reply(c(), xcb_query_tree(c(), root_), nullptr));
        if (!tree) return {};
        const xcb_window_t* first = xcb_query_tree_children(tree.get());
        return {first, first + xcb_query_tree_children_length(tree.get())};
    }
    // Mapped and seen, and of this window class unless it is 0.
    bool viewable(xcb_window_t window, std::uint16_t windowClass = 0) const {
        const x11::Reply<xcb_get_window_attributes_reply_t> a(
            xcb_get_window_attributes_reply(c(), xcb_get_window_attributes(c(), window), nullptr));
        return a && a->map_state == XCB_MAP_STATE_VIEWABLE && (!windowClass || a->_class == windowClass);
    }
    xcb_visualid_t argbVisual() const {
        for (auto depths = xcb_screen_allowed_depths_iterator(xcb_setup_roots_iterator(xcb_get_setup(c())).data);
             depths.rem; xcb_depth_next(&depths)) {
            if (depths.data->depth != 32) continue;
            for (auto visuals = xcb_depth_visuals_iterator(depths.data); visuals.rem; xcb_visualtype_next(&visuals))
                if (visuals.data->_class == XCB_VISUAL_CLASS_TRUE_COLOR) return visuals.data->visual_id;
        }
        return XCB_COPY_FROM_PARENT;
    }

    int screen_ = 0;
    x11::Connection connection_;
    x11::Atoms atoms_;
    xcb_window_t root_ = XCB_WINDOW_NONE;
};

}  // namespace quellton::test
