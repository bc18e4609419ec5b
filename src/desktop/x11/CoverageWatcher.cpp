#include "CoverageWatcher.h"

#include <algorithm>

namespace quellton::x11 {

namespace {

constexpr std::uint32_t rootEvents = XCB_EVENT_MASK_PROPERTY_CHANGE | XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY;
constexpr std::uint32_t clientEvents = XCB_EVENT_MASK_PROPERTY_CHANGE | XCB_EVENT_MASK_STRUCTURE_NOTIFY;

bool contains(const std::vector<xcb_atom_t>& atoms, xcb_atom_t atom) {
    return std::ranges::find(atoms, atom) != atoms.end();
}

}  // namespace

CoverageWatcher::CoverageWatcher(QObject* parent) : QObject(parent) {
    refreshTimer_.setSingleShot(true);
    refreshTimer_.setInterval(30);
    connect(&refreshTimer_, &QTimer::timeout, this, &CoverageWatcher::refresh);
}

CoverageWatcher::~CoverageWatcher() = default;

bool CoverageWatcher::start() {
    if (atoms_) return true;
    if (!connection_.open()) return false;
    xcb_connection_t* c = connection_.get();
    atoms_ = std::make_unique<Atoms>(c);
    root_ = connection_.root();
    xcb_change_window_attributes(c, root_, XCB_CW_EVENT_MASK, &rootEvents);
    connection_.listen([this](const xcb_generic_event_t& event) {
        // Errors come from windows that vanished while being read; the next refresh drops them.
        if (event.response_type != 0 && !refreshTimer_.isActive()) refreshTimer_.start();
    });
    refresh();
    return true;
}

bool CoverageWatcher::covered(const QRect& screen) const { return screenCovered(windows_, screen, workArea_); }

std::vector<xcb_window_t> CoverageWatcher::clients() const {
    xcb_connection_t* c = connection_.get();
    if (hasProperty(c, root_, (*atoms_)[Atom::_NET_CLIENT_LIST]))
        return readWindows(c, root_, (*atoms_)[Atom::_NET_CLIENT_LIST]);
    // Without a window manager the top-level windows are the root's children.
    const Reply<xcb_query_tree_reply_t> tree(xcb_query_tree_reply(c, xcb_query_tree(c, root_), nullptr));
    if (!tree) return {};
    const xcb_window_t* children = xcb_query_tree_children(tree.get());
    return std::vector<xcb_window_t>(children, children + xcb_query_tree_children_length(tree.get()));
}

std::optional<ClientWindow> CoverageWatcher::describe(xcb_window_t window, std::optional<std::uint32_t> desktop) {
    xcb_connection_t* c = connection_.get();
    const Atoms& a = *atoms_;
    // Listen before reading, so a change made in between is not lost.
    if (!watched_.contains(window)) xcb_change_window_attributes(c, window, XCB_CW_EVENT_MASK, &clientEvents);
    const Reply<xcb_get_window_attributes_reply_t> attributes(
        xcb_get_window_attributes_reply(c, xcb_get_window_attributes(c, window), nullptr));
    const Reply<xcb_get_geometry_reply_t> geometry(xcb_get_geometry_reply(c, xcb_get_geometry(c, window), nullptr));
    const Reply<xcb_translate_coordinates_reply_t> origin(
        xcb_translate_coordinates_reply(c, xcb_translate_coordinates(c, window, root_, 0, 0), nullptr));
    if (!attributes || !geometry || !origin) return std::nullopt;

    ClientWindow client;
    client.viewable = attributes->map_state == XCB_MAP_STATE_VIEWABLE;
    const std::vector<std::uint32_t> extents = readCardinals(c, window, a[Atom::_NET_FRAME_EXTENTS]);
    const int left = extents.size() == 4 ? int(extents[0]) : 0, right = extents.size() == 4 ? int(extents[1]) : 0;
    const int top = extents.size() == 4 ? int(extents[2]) : 0, bottom = extents.size() == 4 ? int(extents[3]) : 0;
    client.frame = QRect(origin->dst_x - left, origin->dst_y - top, geometry->width + left + right,
                         geometry->height + top + bottom);

    const std::vector<xcb_atom_t> types = readAtoms(c, window, a[Atom::_NET_WM_WINDOW_TYPE]);
    // The first listed type is the preferred one; a window without a type is a normal one.
    client.normal = !attributes->override_redirect &&
                    (types.empty() || types.front() == a[Atom::_NET_WM_WINDOW_TYPE_NORMAL]);
    const std::vector<xcb_atom_t> states = readAtoms(c, window, a[Atom::_NET_WM_STATE]);
    client.minimized = contains(states, a[Atom::_NET_WM_STATE_HIDDEN]);
    client.maximizedVert = contains(states, a[Atom::_NET_WM_STATE_MAXIMIZED_VERT]);
    client.maximizedHorz = contains(states, a[Atom::_NET_WM_STATE_MAXIMIZED_HORZ]);
    const std::vector<std::uint32_t> onDesktop = readCardinals(c, window, a[Atom::_NET_WM_DESKTOP]);
    client.onCurrentDesktop =
        !desktop || onDesktop.empty() || onDesktop.front() == *desktop || onDesktop.front() == allDesktops;
    return client;
}

QRect CoverageWatcher::workArea(std::optional<std::uint32_t> desktop) const {
    xcb_connection_t* c = connection_.get();
    const std::vector<std::uint32_t> area = readCardinals(c, root_, (*atoms_)[Atom::_NET_WORKAREA]);
    const std::size_t at = 4 * desktop.value_or(0);
    if (area.size() >= at + 4) return QRect(int(area[at]), int(area[at + 1]), int(area[at + 2]), int(area[at + 3]));
    const Reply<xcb_get_geometry_reply_t> geometry(xcb_get_geometry_reply(c, xcb_get_geometry(c, root_), nullptr));
    return geometry ? QRect(0, 0, geometry->width, geometry->height) : QRect();
}

void CoverageWatcher::refresh() {
    if (connection_.broken()) return;
    xcb_connection_t* c = connection_.get();
    const std::vector<std::uint32_t> current = readCardinals(c, root_, (*atoms_)[Atom::_NET_CURRENT_DESKTOP]);
    const std::optional<std::uint32_t> desktop =
        current.empty() ? std::nullopt : std::optional<std::uint32_t>(current.front());

    std::vector<ClientWindow> windows;
    std::set<xcb_window_t> seen;
    for (xcb_window_t window : clients()) {
        if (const std::optional<ClientWindow> client = describe(window, desktop)) {
            windows.push_back(*client);
            seen.insert(window);
        }
    }
    watched_ = std::move(seen);
    xcb_flush(c);
    const QRect area = workArea(desktop);
    // Events that arrived during the round trips above wait in the queue, not on the socket.
    connection_.deliverPending();
    if (windows == windows_ && area == workArea_) return;
    windows_ = std::move(windows);
    workArea_ = area;
    emit changed();
}

}  // namespace quellton::x11
