#include "IconLayerCapture.h"

#include <sys/ipc.h>
#include <sys/shm.h>
#include <xcb/composite.h>
#include <xcb/shm.h>
#include <xcb/xfixes.h>

#include <algorithm>

#include "IconMatte.h"
#include "WindowOverlay.h"
#include "XcbHandles.h"

namespace quellton::x11 {

namespace {

// Beyond this many rectangles one bounding rectangle costs less than the round trips.
constexpr int mostRectangles = 16;

bool extensionPresent(xcb_connection_t* c, xcb_extension_t* id) {
    const xcb_query_extension_reply_t* extension = xcb_get_extension_data(c, id);
    return extension && extension->present;
}

}  // namespace

IconLayerCapture::IconLayerCapture(xcb_connection_t* connection, xcb_window_t window, std::optional<std::uint32_t> key,
                                   std::function<void()> repainted)
    : connection_(connection), window_(window), key_(key), repainted_(std::move(repainted)) {}

IconLayerCapture::~IconLayerCapture() {
    for (const Target& target : targets_) target.overlay->reset(0, 0);
    xcb_connection_t* c = connection_;
    if (damage_) xcb_damage_destroy(c, damage_);
    releasePixmap();
    if (redirected_) xcb_composite_unredirect_window(c, window_, XCB_COMPOSITE_REDIRECT_AUTOMATIC);
    releaseSharedMemory();
    xcb_flush(c);
}

bool IconLayerCapture::start() {
    xcb_connection_t* c = connection_;
    if (!extensionPresent(c, &xcb_composite_id) || !extensionPresent(c, &xcb_damage_id) ||
        !extensionPresent(c, &xcb_xfixes_id))
        return false;
    // Each extension wants its version handshake on the connection before use.
    const Reply<xcb_composite_query_version_reply_t> composite(
        xcb_composite_query_version_reply(c, xcb_composite_query_version(c, 0, 4), nullptr));
    const Reply<xcb_damage_query_version_reply_t> damage(
        xcb_damage_query_version_reply(c, xcb_damage_query_version(c, 1, 1), nullptr));
    const Reply<xcb_xfixes_query_version_reply_t> fixes(
        xcb_xfixes_query_version_reply(c, xcb_xfixes_query_version(c, 2, 0), nullptr));
    if (!composite || !damage || !fixes || (composite->major_version == 0 && composite->minor_version < 2)) return false;

    const Reply<xcb_get_geometry_reply_t> geometry(xcb_get_geometry_reply(c, xcb_get_geometry(c, window_), nullptr));
    if (!geometry || (geometry->depth != 24 && geometry->depth != 32)) return false;

    const Reply<xcb_generic_error_t> error(xcb_request_check(
        c, xcb_composite_redirect_window_checked(c, window_, XCB_COMPOSITE_REDIRECT_AUTOMATIC)));
    if (error) return false;
    redirected_ = true;
    damageEvent_ = xcb_get_extension_data(c, &xcb_damage_id)->first_event;
    damage_ = xcb_generate_id(c);
    xcb_damage_create(c, damage_, window_, XCB_DAMAGE_REPORT_LEVEL_NON_EMPTY);
    refreshGeometry();
    return true;
}

bool IconLayerCapture::refreshGeometry() {
    xcb_connection_t* c = connection_;
    const Reply<xcb_get_window_attributes_reply_t> attributes(
        xcb_get_window_attributes_reply(c, xcb_get_window_attributes(c, window_), nullptr));
    const Reply<xcb_get_geometry_reply_t> geometry(xcb_get_geometry_reply(c, xcb_get_geometry(c, window_), nullptr));
    const xcb_window_t root = geometry ? geometry->root : xcb_window_t{XCB_WINDOW_NONE};
    const Reply<xcb_translate_coordinates_reply_t> origin(
        xcb_translate_coordinates_reply(c, xcb_translate_coordinates(c, window_, root, 0, 0), nullptr));
    if (!attributes || !geometry || !origin) return false;
    const QRect rect(origin->dst_x, origin->dst_y, geometry->width, geometry->height);
    const bool viewable = attributes->map_state == XCB_MAP_STATE_VIEWABLE;
    const bool sizeChanged = rect.size() != geometry_.size();
    const bool changed = rect != geometry_ || viewable != viewable_;
    geometry_ = rect;
    viewable_ = viewable;
    // The named pixmap keeps the old contents after a resize or an unmap: name it again.
    if (sizeChanged || !viewable || !pixmap_) releasePixmap();
    if (viewable && !pixmap_) namePixmap();
    return changed;
}

void IconLayerCapture::namePixmap() {
    pixmap_ = xcb_generate_id(connection_);
    const Reply<xcb_generic_error_t> error(
        xcb_request_check(connection_, xcb_composite_name_window_pixmap_checked(connection_, window_, pixmap_)));
    if (error) pixmap_ = 0;
}

void IconLayerCapture::releasePixmap() {
    if (pixmap_) xcb_free_pixmap(connection_, pixmap_);
    pixmap_ = 0;
}

void IconLayerCapture::setTargets(std::vector<Target> targets) {
    for (const Target& old : targets_)
        if (std::ranges::none_of(targets, [&](const Target& t) { return t.overlay == old.overlay; }))
            old.overlay->reset(0, 0);
    targets_ = std::move(targets);
    for (const Target& target : targets_) target.overlay->reset(target.screen.width(), target.screen.height());
    copy(QRect(QPoint(0, 0), geometry_.size()));
}

bool IconLayerCapture::sameTargets(const std::vector<Target>& targets) const {
    return std::ranges::equal(targets, targets_, [](const Target& a, const Target& b) {
        return a.overlay == b.overlay && a.screen == b.screen && a.devicePixelRatio == b.devicePixelRatio;
    });
}

bool IconLayerCapture::handle(const xcb_generic_event_t& event) {
    const std::uint8_t type = event.response_type & 0x7f;
    if (type == std::uint8_t(damageEvent_ + XCB_DAMAGE_NOTIFY)) {
        const auto& notify = reinterpret_cast<const xcb_damage_notify_event_t&>(event);
        if (notify.damage != damage_) return false;
        copyDamage();
        return true;
    }
    xcb_window_t about = XCB_WINDOW_NONE;
    if (type == XCB_CONFIGURE_NOTIFY) about = reinterpret_cast<const xcb_configure_notify_event_t&>(event).window;
    if (type == XCB_MAP_NOTIFY) about = reinterpret_cast<const xcb_map_notify_event_t&>(event).window;
    if (type == XCB_UNMAP_NOTIFY) about = reinterpret_cast<const xcb_unmap_notify_event_t&>(event).window;
    if (about != window_) return false;
    if (refreshGeometry()) setTargets(std::move(targets_));
    return true;
}

void IconLayerCapture::copyDamage() {
    xcb_connection_t* c = connection_;
    const xcb_xfixes_region_t region = xcb_generate_id(c);
    xcb_xfixes_create_region(c, region, 0, nullptr);
    xcb_damage_subtract(c, damage_, XCB_NONE, region);
    const Reply<xcb_xfixes_fetch_region_reply_t> reply(
        xcb_xfixes_fetch_region_reply(c, xcb_xfixes_fetch_region(c, region), nullptr));
    xcb_xfixes_destroy_region(c, region);
    if (!reply) return;
    const xcb_rectangle_t* rects = xcb_xfixes_fetch_region_rectangles(reply.get());
    const int count = xcb_xfixes_fetch_region_rectangles_length(reply.get());
    // Hovers and selections touch a little; a new backdrop touches (nearly) everything.
    const QRect extents(reply->extents.x, reply->extents.y, reply->extents.width, reply->extents.height);
    if (repainted_ && 2 * std::int64_t(extents.width()) * extents.height() >=
                          std::int64_t(geometry_.width()) * geometry_.height())
        repainted_();
    if (count > mostRectangles) {
        copy(QRect(reply->extents.x, reply->extents.y, reply->extents.width, reply->extents.height));
        return;
    }
    for (int i = 0; i < count; ++i) copy(QRect(rects[i].x, rects[i].y, rects[i].width, rects[i].height));
}

void IconLayerCapture::copy(const QRect& area) {
    if (!pixmap_ || area.isEmpty()) return;
    const QRect window(QPoint(0, 0), geometry_.size());
    for (const Target& target : targets_) {
        const double ratio = target.devicePixelRatio;
        const MatteStyle style = MatteStyle::forScale(key_.value_or(0), ratio);
        const int margin = key_ ? style.margin() : 0;
        // Our window's part of the icon window, in window coordinates.
        const QRect shown = target.screen.translated(-geometry_.topLeft()).intersected(window);
        const QRect out = area.adjusted(-margin, -margin, margin, margin).intersected(shown);
        if (out.isEmpty()) continue;
        const QRect fetch = out.adjusted(-margin, -margin, margin, margin).intersected(window);
        std::vector<std::uint32_t> fallback;
        const std::uint32_t* pixels = read(fetch, fallback);
        if (!pixels) return;
        const PixelView view{pixels, fetch.width(), fetch.height(), fetch.width()};
        const QRect local = out.translated(-fetch.topLeft());
        const std::vector<std::uint32_t> result = key_ ? matteKeyed(view, local, style) : copyArea(view, local);
        target.overlay->write(out.translated(geometry_.topLeft() - target.screen.topLeft()), result);
    }
}

const std::uint32_t* IconLayerCapture::read(const QRect& rect, std::vector<std::uint32_t>& fallback) {
    xcb_connection_t* c = connection_;
    const std::size_t bytes = std::size_t(rect.width()) * std::size_t(rect.height()) * 4;
    if (attachSharedMemory(std::size_t(geometry_.width()) * std::size_t(geometry_.height()) * 4)) {
        const Reply<xcb_shm_get_image_reply_t> reply(xcb_shm_get_image_reply(
            c,
            xcb_shm_get_image(c, pixmap_, std::int16_t(rect.x()), std::int16_t(rect.y()), std::uint16_t(rect.width()),
                              std::uint16_t(rect.height()), ~0u, XCB_IMAGE_FORMAT_Z_PIXMAP, shmSegment_, 0),
            nullptr));
        if (reply && reply->size >= bytes) return static_cast<const std::uint32_t*>(shmAddress_);
    }
    // Without shared memory (a remote display) the pixels come through the socket.
    const Reply<xcb_get_image_reply_t> reply(xcb_get_image_reply(
        c,
        xcb_get_image(c, XCB_IMAGE_FORMAT_Z_PIXMAP, pixmap_, std::int16_t(rect.x()), std::int16_t(rect.y()),
                      std::uint16_t(rect.width()), std::uint16_t(rect.height()), ~0u),
        nullptr));
    if (!reply || std::size_t(xcb_get_image_data_length(reply.get())) < bytes) return nullptr;
    const auto* data = reinterpret_cast<const std::uint32_t*>(xcb_get_image_data(reply.get()));
    fallback.assign(data, data + bytes / 4);
    return fallback.data();
}

bool IconLayerCapture::attachSharedMemory(std::size_t bytes) {
    if (shmAddress_ && shmBytes_ >= bytes) return true;
    releaseSharedMemory();
    if (bytes == 0 || shmFailed_) return false;
    // Tried once: a display that refuses it (a remote one) refuses it every time.
    shmFailed_ = true;
    if (!extensionPresent(connection_, &xcb_shm_id)) return false;
    shmId_ = shmget(IPC_PRIVATE, bytes, IPC_CREAT | 0600);
    if (shmId_ < 0) return false;
    void* address = shmat(shmId_, nullptr, 0);
    if (address == reinterpret_cast<void*>(-1)) {
        shmctl(shmId_, IPC_RMID, nullptr);
        shmId_ = -1;
        return false;
    }
    shmAddress_ = address;
    shmBytes_ = bytes;
    shmSegment_ = xcb_generate_id(connection_);
    const Reply<xcb_generic_error_t> error(
        xcb_request_check(connection_, xcb_shm_attach_checked(connection_, shmSegment_, std::uint32_t(shmId_), 0)));
    // Once the server holds it, the segment may go when both sides let go.
    shmctl(shmId_, IPC_RMID, nullptr);
    if (error) {
        shmSegment_ = 0;
        releaseSharedMemory();
        return false;
    }
    shmFailed_ = false;
    return true;
}

void IconLayerCapture::releaseSharedMemory() {
    if (shmSegment_) xcb_shm_detach(connection_, shmSegment_);
    shmSegment_ = 0;
    if (shmAddress_) shmdt(shmAddress_);
    shmAddress_ = nullptr;
    shmBytes_ = 0;
    shmId_ = -1;
}

}  // namespace quellton::x11
