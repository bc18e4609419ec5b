#include "IconLayers.h"

#include <xcb/damage.h>
#include <xcb/xfixes.h>

#include <QDateTime>

#include <algorithm>
#include <cstdlib>

#include "IconManagerSettings.h"
#include "WindowOverlay.h"

namespace quellton::x11 {

namespace {

constexpr std::uint32_t rootEvents = XCB_EVENT_MASK_PROPERTY_CHANGE | XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY;
constexpr std::uint32_t layerEvents = XCB_EVENT_MASK_PROPERTY_CHANGE | XCB_EVENT_MASK_STRUCTURE_NOTIFY;
// How long a restack request may take before it counts as refused, and how many are tried in a row.
constexpr int answerMs = 300;
constexpr int mostAttempts = 4;

qint64 nowMs() { return QDateTime::currentMSecsSinceEpoch(); }

int overlap(const QRect& a, const QRect& b) {
    const QRect both = a.intersected(b);
    return both.isEmpty() ? 0 : both.width() * both.height();
}

}  // namespace

IconLayers::IconLayers(IconManagerSettings* settings, QObject* parent) : QObject(parent), settings_(settings) {
    refreshSoon_.setSingleShot(true);
    // Soon enough that a layer raised over ours is put back within a frame or two.
    refreshSoon_.setInterval(10);
    connect(&refreshSoon_, &QTimer::timeout, this, &IconLayers::refresh);
    // Once the store and the manager have settled after a repaint.
    rekeyTimer_.setSingleShot(true);
    rekeyTimer_.setInterval(250);
    connect(&rekeyTimer_, &QTimer::timeout, this, [this] {
        for (IconManager manager : std::exchange(rekeySoon_, {}))
            if (settings_ && !stopped_ && keys_.contains(manager) && keys_[manager])
                keys_[manager] = settings_->keyBackdrop(manager);
        scheduleRefresh();
    });
}

IconLayers::~IconLayers() {
    stop();
    if (clock_ && !connection_.broken()) xcb_destroy_window(connection_.get(), clock_);
}

bool IconLayers::start() {
    if (atoms_) return true;
    if (!connection_.open()) return false;
    xcb_connection_t* c = connection_.get();
    atoms_ = std::make_unique<Atoms>(c);
    xcb_change_window_attributes(c, connection_.root(), XCB_CW_EVENT_MASK, &rootEvents);

    // A compositing manager owns this selection; its arrival turns see-through layers see-through.
    const std::string selection = "_NET_WM_CM_S" + std::to_string(connection_.screenNumber());
    const Reply<xcb_intern_atom_reply_t> atom(xcb_intern_atom_reply(
        c, xcb_intern_atom(c, 0, std::uint16_t(selection.size()), selection.c_str()), nullptr));
    if (atom) compositorSelection_ = atom->atom;
    const xcb_query_extension_reply_t* fixes = xcb_get_extension_data(c, &xcb_xfixes_id);
    if (fixes && fixes->present && compositorSelection_) {
        // The extension's version handshake comes before its first request on a connection.
        std::free(xcb_xfixes_query_version_reply(c, xcb_xfixes_query_version(c, 2, 0), nullptr));
        xcb_xfixes_select_selection_input(c, connection_.root(), compositorSelection_,
                                          XCB_XFIXES_SELECTION_EVENT_MASK_SET_SELECTION_OWNER |
                                              XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_WINDOW_DESTROY |
                                              XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_CLIENT_CLOSE);
    }
    clock_ = xcb_generate_id(c);
    const std::uint32_t clockEvents = XCB_EVENT_MASK_PROPERTY_CHANGE;
    xcb_create_window(c, XCB_COPY_FROM_PARENT, clock_, connection_.root(), -1, -1, 1, 1, 0, XCB_WINDOW_CLASS_INPUT_ONLY,
                      XCB_COPY_FROM_PARENT, XCB_CW_EVENT_MASK, &clockEvents);
    connection_.listen([this](const xcb_generic_event_t& event) { onEvent(event); });
    xcb_flush(c);
    scheduleRefresh();
    return true;
}

void IconLayers::addWindow(xcb_window_t window, const QRect& screen, double devicePixelRatio,
                           std::shared_ptr<WindowOverlay> overlay) {
    Ours ours;
    ours.window = window;
    ours.screen = screen;
    ours.devicePixelRatio = devicePixelRatio;
    ours.overlay = std::move(overlay);
    ours_.push_back(std::move(ours));
    followParent(window);
    scheduleRefresh();
}

void IconLayers::followParent(xcb_window_t window) {
    if (!connection_.get() || connection_.broken()) return;
    xcb_connection_t* c = connection_.get();
    const std::uint32_t structure = XCB_EVENT_MASK_STRUCTURE_NOTIFY;
    xcb_change_window_attributes(c, window, XCB_CW_EVENT_MASK, &structure);
    // The window manager may have framed it before we listened.
    const Reply<xcb_query_tree_reply_t> tree(xcb_query_tree_reply(c, xcb_query_tree(c, window), nullptr));
    if (tree && tree->parent != tree->root) emit reparented(window, tree->parent);
}

void IconLayers::removeWindow(xcb_window_t window) {
    std::erase_if(ours_, [&](const Ours& o) { return o.window == window; });
    scheduleRefresh();
}

void IconLayers::stop() {
    if (stopped_) return;
    stopped_ = true;
    refreshSoon_.stop();
    rekeyTimer_.stop();
    captures_.clear();
    for (const auto& [manager, key] : keys_)
        if (key && settings_) settings_->restoreBackdrop(manager);
    keys_.clear();
    if (!connection_.broken()) xcb_flush(connection_.get());
}

bool IconLayers::blocks(const QRect& screen) const {
    return std::ranges::any_of(ours_, [&](const Ours& o) { return o.screen == screen && o.blocked; });
}

std::optional<IconLayerRoute> IconLayers::route(xcb_window_t window) const {
    for (const Ours& o : ours_)
        if (o.window == window) return o.route;
    return std::nullopt;
}

void IconLayers::onEvent(const xcb_generic_event_t& event) {
    const std::uint8_t type = event.response_type & 0x7f;
    if (type == 0) return;  // an error about a window that went while being read
    if (type == XCB_PROPERTY_NOTIFY && reinterpret_cast<const xcb_property_notify_event_t&>(event).window == clock_) {
        raiseWithTime(reinterpret_cast<const xcb_property_notify_event_t&>(event).time);
        return;
    }
    if (type == XCB_REPARENT_NOTIFY) {
        const auto& reparent = reinterpret_cast<const xcb_reparent_notify_event_t&>(event);
        if (std::ranges::any_of(ours_, [&](const Ours& o) { return o.window == reparent.window; }))
            emit reparented(reparent.window, reparent.parent);
    }
    for (const auto& [window, capture] : captures_)
        if (capture->handle(event)) break;
    // Damage changes pixels, not windows.
    const xcb_query_extension_reply_t* damage = xcb_get_extension_data(connection_.get(), &xcb_damage_id);
    if (damage && damage->present && type == std::uint8_t(damage->first_event + XCB_DAMAGE_NOTIFY)) return;
    scheduleRefresh();
}

void IconLayers::scheduleRefresh() {
    if (!stopped_ && !refreshSoon_.isActive()) refreshSoon_.start();
}

void IconLayers::readManager() {
    xcb_connection_t* c = connection_.get();
    const xcb_window_t root = connection_.root();
    const std::vector<xcb_window_t> check = readWindows(c, root, (*atoms_)[Atom::_NET_SUPPORTING_WM_CHECK]);
    managerRuns_ = !check.empty() && !readWindows(c, check.front(), (*atoms_)[Atom::_NET_SUPPORTING_WM_CHECK]).empty();
    const std::vector<xcb_atom_t> supported = readAtoms(c, root, (*atoms_)[Atom::_NET_SUPPORTED]);
    managerRestacks_ = managerRuns_ && std::ranges::find(supported, (*atoms_)[Atom::_NET_RESTACK_WINDOW]) != supported.end();
}

bool IconLayers::compositing() const {
    if (!compositorSelection_) return false;
    xcb_connection_t* c = connection_.get();
    const Reply<xcb_get_selection_owner_reply_t> owner(
        xcb_get_selection_owner_reply(c, xcb_get_selection_owner(c, compositorSelection_), nullptr));
    return owner && owner->owner != XCB_WINDOW_NONE;
}

xcb_window_t IconLayers::topLevelOf(xcb_window_t window) const {
    xcb_connection_t* c = connection_.get();
    for (int depth = 0; depth < 16; ++depth) {
        const Reply<xcb_query_tree_reply_t> tree(xcb_query_tree_reply(c, xcb_query_tree(c, window), nullptr));
        if (!tree) return XCB_WINDOW_NONE;
        if (tree->parent == tree->root || tree->parent == XCB_WINDOW_NONE) return window;
        window = tree->parent;
    }
    return XCB_WINDOW_NONE;
}

std::optional<IconLayers::IconWindow> IconLayers::describe(xcb_window_t client, const std::set<xcb_window_t>& ourTopLevels) {
    xcb_connection_t* c = connection_.get();
    const Atoms& a = *atoms_;
    const std::vector<xcb_atom_t> types = readAtoms(c, client, a[Atom::_NET_WM_WINDOW_TYPE]);
    if (std::ranges::find(types, a[Atom::_NET_WM_WINDOW_TYPE_DESKTOP]) == types.end()) return std::nullopt;
    const xcb_window_t topLevel = topLevelOf(client);
    if (!topLevel || ourTopLevels.contains(topLevel)) return std::nullopt;
    // Listen before reading the rest, so no change in between is lost.
    if (!watched_.contains(client)) xcb_change_window_attributes(c, client, XCB_CW_EVENT_MASK, &layerEvents);
    const Reply<xcb_get_window_attributes_reply_t> attributes(
        xcb_get_window_attributes_reply(c, xcb_get_window_attributes(c, client), nullptr));
    const Reply<xcb_get_geometry_reply_t> geometry(xcb_get_geometry_reply(c, xcb_get_geometry(c, client), nullptr));
    const Reply<xcb_translate_coordinates_reply_t> origin(xcb_translate_coordinates_reply(
        c, xcb_translate_coordinates(c, client, connection_.root(), 0, 0), nullptr));
    if (!attributes || !geometry || !origin || attributes->map_state != XCB_MAP_STATE_VIEWABLE) return std::nullopt;

    IconWindow layer;
    layer.client = client;
    layer.topLevel = topLevel;
    layer.geometry = QRect(origin->dst_x, origin->dst_y, geometry->width, geometry->height);
    layer.alphaVisual = geometry->depth == 32;
    const WmClass wmClass = readWmClass(c, client);
    layer.instance = wmClass.instance;
    layer.manager = recognizeIconManager(wmClass.instance, wmClass.className);
    return layer;
}

std::vector<IconLayers::IconWindow> IconLayers::findIconWindows() {
    xcb_connection_t* c = connection_.get();
    std::set<xcb_window_t> ourTopLevels;
    for (const Ours& o : ours_) {
        ourTopLevels.insert(o.window);
        ourTopLevels.insert(topLevelOf(o.window));
    }
    // Managed windows from the manager's list; without a manager (or for unmanaged ones) the root's children.
    std::vector<xcb_window_t> candidates = readWindows(c, connection_.root(), (*atoms_)[Atom::_NET_CLIENT_LIST]);
    const Reply<xcb_query_tree_reply_t> tree(xcb_query_tree_reply(c, xcb_query_tree(c, connection_.root()), nullptr));
    if (tree) {
        const xcb_window_t* children = xcb_query_tree_children(tree.get());
        candidates.insert(candidates.end(), children, children + xcb_query_tree_children_length(tree.get()));
    }
    std::ranges::sort(candidates);
    candidates.erase(std::unique(candidates.begin(), candidates.end()), candidates.end());

    std::vector<IconWindow> layers;
    std::set<xcb_window_t> seen;
    for (xcb_window_t candidate : candidates) {
        if (ourTopLevels.contains(candidate)) continue;
        if (auto layer = describe(candidate, ourTopLevels)) {
            seen.insert(layer->client);
            layers.push_back(std::move(*layer));
        }
    }
    watched_ = std::move(seen);
    return layers;
}

std::vector<std::uint32_t> IconLayers::visibleOrder(const QRect& screen) const {
    xcb_connection_t* c = connection_.get();
    const Reply<xcb_query_tree_reply_t> tree(xcb_query_tree_reply(c, xcb_query_tree(c, connection_.root()), nullptr));
    if (!tree) return {};
    const xcb_window_t* children = xcb_query_tree_children(tree.get());
    const int count = xcb_query_tree_children_length(tree.get());
    std::vector<xcb_get_window_attributes_cookie_t> attributes;
    std::vector<xcb_get_geometry_cookie_t> geometries;
    for (int i = 0; i < count; ++i) {
        attributes.push_back(xcb_get_window_attributes(c, children[i]));
        geometries.push_back(xcb_get_geometry(c, children[i]));
    }
    std::vector<std::uint32_t> order;
    for (int i = 0; i < count; ++i) {
        const Reply<xcb_get_window_attributes_reply_t> a(xcb_get_window_attributes_reply(c, attributes[i], nullptr));
        const Reply<xcb_get_geometry_reply_t> g(xcb_get_geometry_reply(c, geometries[i], nullptr));
        if (!a || !g || a->map_state != XCB_MAP_STATE_VIEWABLE || a->_class != XCB_WINDOW_CLASS_INPUT_OUTPUT) continue;
        const int border = 2 * g->border_width;
        if (overlap(QRect(g->x, g->y, g->width + border, g->height + border), screen) > 0) order.push_back(children[i]);
    }
    return order;
}

std::optional<std::uint32_t> IconLayers::keyFor(const IconWindow& layer) {
    if (!settings_) return std::nullopt;
    const auto known = keys_.find(layer.manager);
    if (known != keys_.end()) return known->second;
    const std::optional<std::uint32_t> key = settings_->keyBackdrop(layer.manager);
    keys_[layer.manager] = key;
    return key;
}

void IconLayers::giveBackKey(IconManager manager) {
    const auto it = keys_.find(manager);
    if (it == keys_.end() || !it->second) return;
    if (settings_) settings_->restoreBackdrop(manager);
    it->second = std::nullopt;  // not keyed again while this manager's window stays
    scheduleRefresh();
}

void IconLayers::releaseKeys(const std::vector<IconWindow>& present) {
    for (auto it = keys_.begin(); it != keys_.end();) {
        const bool stays = std::ranges::any_of(present, [&](const IconWindow& l) { return l.manager == it->first; });
        if (stays) {
            ++it;
            continue;
        }
        // The manager is gone: its own settings are the user's again, for its next start.
        if (it->second && settings_) settings_->restoreBackdrop(it->first);
        it = keys_.erase(it);
    }
}

IconLayerRoute IconLayers::routeOf(const IconWindow& layer) {
    IconLayerFacts facts;
    facts.manager = layer.manager;
    facts.alphaVisual = layer.alphaVisual;
    facts.compositing = compositing();
    facts.keyAvailable = !layer.alphaVisual && backdropKeyable(layer.manager) && keyFor(layer).has_value();
    IconLayerRoute route = chooseRoute(facts);
    if (!showsIconLayer(route) || uncapturable_.contains(layer.client)) {
        return showsIconLayer(route) ? IconLayerRoute::blocked : route;
    }
    auto& capture = captures_[layer.client];
    const std::optional<std::uint32_t> key = route == IconLayerRoute::keyed ? keys_[layer.manager] : std::nullopt;
    if (capture && capture->key() != key) capture.reset();
    if (!capture) {
        // A new backdrop may be the user's choice made while the key held: kept for later, keyed again.
        const IconManager manager = layer.manager;
        auto repainted = [this, manager] {
            if (keys_.contains(manager) && keys_[manager]) rekeySoon_.insert(manager);
            if (!rekeyTimer_.isActive()) rekeyTimer_.start();
        };
        capture = std::make_unique<IconLayerCapture>(connection_.get(), layer.client, key,
                                                     key ? std::function<void()>(repainted) : nullptr);
        if (!capture->start()) {
            captures_.erase(layer.client);
            uncapturable_.insert(layer.client);
            logOnce("capture" + layer.instance,
                    QStringLiteral("Quellton: Die Symbole von »%1« lassen sich nicht über das Bild legen "
                                   "(Composite, DAMAGE oder XFIXES fehlen); dort bleibt das Bild aus.")
                        .arg(QString::fromStdString(iconManagerName(layer.manager, layer.instance))));
            return IconLayerRoute::blocked;
        }
    }
    return route;
}

void IconLayers::refresh() {
    if (stopped_ || connection_.broken()) return;
    readManager();
    const std::vector<IconWindow> layers = findIconWindows();
    releaseKeys(layers);
    bool blockingChanged = false;
    for (Ours& ours : ours_) {
        const IconWindow* layer = nullptr;
        for (const IconWindow& candidate : layers)
            if (overlap(candidate.geometry, ours.screen) > (layer ? overlap(layer->geometry, ours.screen) : 0))
                layer = &candidate;
        const std::optional<IconLayerRoute> route = layer ? std::optional(routeOf(*layer)) : std::nullopt;
        if (!layer || layer->client != ours.layer || route != ours.route) {
            ours.attempts = 0;
            ours.gaveUp = false;
            ours.requestedAt = 0;
        }
        ours.layer = layer ? layer->client : xcb_window_t{XCB_WINDOW_NONE};
        ours.route = route;
        if (layer && ours.route == IconLayerRoute::blocked && !uncapturable_.contains(layer->client))
            logOnce("blocked" + layer->instance,
                    QStringLiteral("Quellton: Die Schreibtischsymbole von »%1« verdecken das Bild, und es gibt keinen "
                                   "Weg, es dahinter zu zeigen; auf diesem Bildschirm bleibt das Bild aus.")
                        .arg(QString::fromStdString(iconManagerName(layer->manager, layer->instance))));
        if (layer) place(ours, *layer, showsIconLayer(*ours.route));
        // Not above the layer after all: the user's own backdrop is better than the key.
        if (layer && ours.gaveUp && ours.route == IconLayerRoute::keyed) giveBackKey(layer->manager);
        const bool blocked = ours.route == IconLayerRoute::blocked || (ours.route && showsIconLayer(*ours.route) && ours.gaveUp);
        blockingChanged |= blocked != ours.blocked;
        ours.blocked = blocked;
    }
    updateCaptures(layers);
    xcb_flush(connection_.get());
    // Events that came in during the round trips above wait in the queue, not on the socket.
    connection_.deliverPending();
    if (blockingChanged) emit this->blockingChanged();
}

void IconLayers::place(Ours& ours, const IconWindow& layer, bool above) {
    const std::vector<std::uint32_t> order = visibleOrder(ours.screen);
    const xcb_window_t ourTop = topLevelOf(ours.window);
    const bool right = above ? directlyAbove(order, ourTop, layer.topLevel) : directlyBelow(order, ourTop, layer.topLevel);
    if (right) {
        ours.attempts = 0;
        ours.gaveUp = false;
        ours.requestedAt = 0;
        return;
    }
    if (ours.gaveUp) return;
    const qint64 now = nowMs();
    if (ours.requestedAt && now - ours.requestedAt < answerMs) return;
    if (ours.attempts >= mostAttempts) {
        ours.gaveUp = true;
        logOnce("place" + layer.instance,
                QStringLiteral("Quellton: Der Fenstermanager lässt das Bild nicht %1 die Schreibtischsymbole von »%2«.")
                    .arg(above ? QStringLiteral("über") : QStringLiteral("unter"),
                         QString::fromStdString(iconManagerName(layer.manager, layer.instance))));
        return;
    }
    ++ours.attempts;
    ours.requestedAt = now;
    restack(ours, layer, above);
    // A manager that ignores the request sends no event: look again when the answer is due.
    QTimer::singleShot(answerMs + 20, this, &IconLayers::scheduleRefresh);
}

void IconLayers::restack(const Ours& ours, const IconWindow& layer, bool above) {
    xcb_connection_t* c = connection_.get();
    const std::uint32_t mode = above ? XCB_STACK_MODE_ABOVE : XCB_STACK_MODE_BELOW;
    if (managerRestacks_) {
        requestRestack(c, connection_.root(), ours.window, (*atoms_)[Atom::_NET_RESTACK_WINDOW], layer.client, mode);
    } else if (managerRuns_) {
        // A manager without _NET_RESTACK_WINDOW raises or lowers the window within its layer,
        // where only the desktop windows live, once a fresh user time allows it.
        raises_.emplace_back(ours.window, mode);
        xcb_change_property(c, XCB_PROP_MODE_APPEND, clock_, XCB_ATOM_WM_NAME, XCB_ATOM_STRING, 8, 0, nullptr);
    } else {
        const std::uint32_t values[] = {layer.topLevel, mode};
        xcb_configure_window(c, topLevelOf(ours.window), XCB_CONFIG_WINDOW_SIBLING | XCB_CONFIG_WINDOW_STACK_MODE, values);
    }
    xcb_flush(c);
}

void IconLayers::raiseWithTime(xcb_timestamp_t time) {
    xcb_connection_t* c = connection_.get();
    const xcb_atom_t userTime = (*atoms_)[Atom::_NET_WM_USER_TIME];
    for (const auto& [window, mode] : raises_) {
        const std::vector<xcb_window_t> timeWindow = readWindows(c, window, (*atoms_)[Atom::_NET_WM_USER_TIME_WINDOW]);
        writeCardinal(c, timeWindow.empty() ? window : timeWindow.front(), userTime, time);
        xcb_configure_window(c, window, XCB_CONFIG_WINDOW_STACK_MODE, &mode);
    }
    raises_.clear();
    xcb_flush(c);
}

void IconLayers::updateCaptures(const std::vector<IconWindow>& layers) {
    for (auto it = captures_.begin(); it != captures_.end();) {
        std::vector<IconLayerCapture::Target> targets;
        for (const Ours& o : ours_)
            if (o.layer == it->first && o.route && showsIconLayer(*o.route) && !o.gaveUp)
                targets.push_back({o.screen, o.overlay, o.devicePixelRatio});
        if (targets.empty()) {
            it = captures_.erase(it);
            continue;
        }
        if (!it->second->sameTargets(targets)) it->second->setTargets(std::move(targets));
        ++it;
    }
    std::erase_if(uncapturable_, [&](xcb_window_t w) {
        return std::ranges::none_of(layers, [&](const IconWindow& l) { return l.client == w; });
    });
}

void IconLayers::logOnce(const std::string& key, const QString& line) {
    if (logged_.insert(key).second) qWarning("%s", qPrintable(line));
}

}  // namespace quellton::x11
