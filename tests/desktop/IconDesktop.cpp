#include "IconDesktop.h"

#include <fcntl.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <QDir>

#include <chrono>
#include <cstdlib>
#include <thread>

#include "Ewmh.h"

extern char** environ;

namespace quellton::test {

Program::Program(const std::vector<std::string>& argv, const std::string& log) {
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, 1, log.c_str(), O_WRONLY | O_CREAT | O_APPEND, 0644);
    posix_spawn_file_actions_adddup2(&actions, 1, 2);
    std::vector<char*> args;
    for (const std::string& a : argv) args.push_back(const_cast<char*>(a.c_str()));
    args.push_back(nullptr);
    if (posix_spawnp(&pid_, args[0], &actions, nullptr, args.data(), environ) != 0) pid_ = -1;
    posix_spawn_file_actions_destroy(&actions);
}

Program::~Program() { stop(3000); }

Program::Program(Program&& other) noexcept : pid_(std::exchange(other.pid_, -1)) {}

Program& Program::operator=(Program&& other) noexcept {
    if (this != &other) {
        stop(3000);
        pid_ = std::exchange(other.pid_, -1);
    }
    return *this;
}

bool Program::running() {
    if (pid_ <= 0) return false;
    if (waitpid(pid_, nullptr, WNOHANG) == 0) return true;
    pid_ = -1;
    return false;
}

bool Program::stop(int milliseconds) {
    if (pid_ <= 0) return false;
    ::kill(pid_, SIGTERM);
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::milliseconds(milliseconds);
    while (std::chrono::steady_clock::now() < deadline) {
        if (waitpid(pid_, nullptr, WNOHANG) == pid_) {
            pid_ = -1;
            return true;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
    }
    kill();
    return false;
}

void Program::kill() {
    if (pid_ <= 0) return;
    ::kill(pid_, SIGKILL);
    waitpid(pid_, nullptr, 0);
    pid_ = -1;
}

Screen::Screen() {
    int screen = 0;
    connection_ = x11::openConnection(&screen);
    if (connection_) root_ = x11::rootWindow(connection_.get(), screen);
}

QImage Screen::shot() const {
    xcb_connection_t* c = connection_.get();
    const x11::Reply<xcb_get_geometry_reply_t> geometry(xcb_get_geometry_reply(c, xcb_get_geometry(c, root_), nullptr));
    if (!geometry) return {};
    const x11::Reply<xcb_get_image_reply_t> image(xcb_get_image_reply(
        c, xcb_get_image(c, XCB_IMAGE_FORMAT_Z_PIXMAP, root_, 0, 0, geometry->width, geometry->height, ~0u), nullptr));
    if (!image) return {};
    QImage shot(xcb_get_image_data(image.get()), geometry->width, geometry->height, QImage::Format_RGB32);
    return shot.copy();  // the reply's memory goes with it
}

std::vector<xcb_window_t> Screen::clients() const {
    const x11::Atoms atoms(connection_.get());
    return x11::readWindows(connection_.get(), root_, atoms[x11::Atom::_NET_CLIENT_LIST]);
}

xcb_window_t Screen::active() const {
    const x11::Atoms atoms(connection_.get());
    const std::vector<xcb_window_t> active = x11::readWindows(connection_.get(), root_, atoms[x11::Atom::_NET_ACTIVE_WINDOW]);
    return active.empty() ? xcb_window_t{XCB_WINDOW_NONE} : active.front();
}

std::string Screen::name(xcb_window_t window) const {
    xcb_connection_t* c = connection_.get();
    const x11::Reply<xcb_get_property_reply_t> reply(xcb_get_property_reply(
        c, xcb_get_property(c, 0, window, XCB_ATOM_WM_NAME, XCB_GET_PROPERTY_TYPE_ANY, 0, 256), nullptr));
    if (!reply) return {};
    return std::string(static_cast<const char*>(xcb_get_property_value(reply.get())),
                       std::size_t(xcb_get_property_value_length(reply.get())));
}

xcb_window_t Screen::byClass(const std::string& className) const {
    xcb_connection_t* c = connection_.get();
    std::vector<xcb_window_t> candidates = clients();
    const x11::Reply<xcb_query_tree_reply_t> tree(xcb_query_tree_reply(c, xcb_query_tree(c, root_), nullptr));
    if (tree) {
        const xcb_window_t* children = xcb_query_tree_children(tree.get());
        candidates.insert(candidates.end(), children, children + xcb_query_tree_children_length(tree.get()));
    }
    for (xcb_window_t w : candidates) {
        const x11::Reply<xcb_get_window_attributes_reply_t> a(
            xcb_get_window_attributes_reply(c, xcb_get_window_attributes(c, w), nullptr));
        if (a && a->map_state == XCB_MAP_STATE_VIEWABLE && x11::readWmClass(c, w).className == className) return w;
    }
    return XCB_WINDOW_NONE;
}

double differing(const QImage& a, const QImage& b, const QRect& area, int tolerance) {
    long count = 0, all = 0;
    for (int y = area.top(); y <= area.bottom(); ++y)
        for (int x = area.left(); x <= area.right(); ++x, ++all) {
            const QRgb p = a.pixel(x, y), q = b.pixel(x, y);
            if (std::abs(qRed(p) - qRed(q)) > tolerance || std::abs(qGreen(p) - qGreen(q)) > tolerance ||
                std::abs(qBlue(p) - qBlue(q)) > tolerance)
                ++count;
        }
    return all ? double(count) / double(all) : 0.0;
}

int agreeing(const QImage& a, const QImage& b, const QRect& area, int tolerance) {
    const double share = 1.0 - differing(a, b, area, tolerance);
    return int(share * area.width() * area.height() + 0.5);
}

int selectionBlue(const QImage& image, const QRect& area) {
    int count = 0;
    for (int y = area.top(); y <= area.bottom(); ++y)
        for (int x = area.left(); x <= area.right(); ++x) {
            const QRgb p = image.pixel(x, y);
            if (qBlue(p) > 80 && qBlue(p) > qRed(p) + 40 && qBlue(p) > qGreen(p) + 15) ++count;
        }
    return count;
}

void keepShot(const QImage& image, const std::string& name) {
    const QByteArray folder = qgetenv("QUELLTON_SHOTS");
    if (folder.isEmpty() || image.isNull()) return;
    QDir().mkpath(QString::fromLocal8Bit(folder));
    image.save(QString::fromLocal8Bit(folder) + u'/' + QString::fromStdString(name) + QStringLiteral(".png"));
}

}  // namespace quellton::test
