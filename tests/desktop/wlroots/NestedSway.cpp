#include "NestedSway.h"

#include <pwd.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iostream>

#include "IconDesktop.h"
#include "PrivateSession.h"
#include "PulseTestServer.h"

namespace quellton::test {

namespace fs = std::filesystem;

namespace {

// sway refuses to run as root, so a test run by root hands the desktop to `nobody`.
const passwd* compositorUser() { return geteuid() == 0 ? getpwnam("nobody") : nullptr; }

void giveToUser(const std::string& path) {
    if (const passwd* user = compositorUser()) {
        if (chown(path.c_str(), user->pw_uid, user->pw_gid) != 0) return;
    }
}

std::string makeDir(const std::string& path, fs::perms perms) {
    fs::create_directories(path);
    fs::permissions(path, perms);
    giveToUser(path);
    return path;
}

void writeFile(const std::string& path, const std::string& text) {
    std::ofstream(path) << text;
    giveToUser(path);
}

std::string quoted(const std::string& text) {
    std::string result = "'";
    for (char c : text) result += c == '\'' ? std::string("'\\''") : std::string(1, c);
    return result + "'";
}

// Ends what is left of the programs run in the session's home: a bus daemon whose launcher was
// ended first, say, would hold the test's output open and keep ctest waiting.
void endLeftovers(const std::string& home) {
    std::error_code error;
    for (const auto& entry : fs::directory_iterator("/proc", error)) {
        const std::string pid = entry.path().filename().string();
        if (pid.find_first_not_of("0123456789") != std::string::npos) continue;
        std::ifstream in(entry.path() / "environ");
        const std::string environment = '\0' + std::string(std::istreambuf_iterator<char>(in), {});
        const std::string ours = std::string(1, '\0') + "HOME=" + home + '\0';
        if (environment.find(ours) != std::string::npos) kill(std::stoi(pid), SIGKILL);
    }
}

}  // namespace

NestedSway::NestedSway(const std::string& innerBackground) {
    std::string pattern = (fs::temp_directory_path() / "quellton-sway-XXXXXX").string();
    if (!mkdtemp(pattern.data())) return;
    dir_ = pattern;
    fs::permissions(dir_, fs::perms::owner_all | fs::perms::group_read | fs::perms::group_exec |
                              fs::perms::others_read | fs::perms::others_exec);
    makeDir(dir_ + "/home", fs::perms::owner_all);
    // Without a background line no swaybg: the desktop is sway's flat clear colour. The outer sway
    // lets the inner one's outputs keep the size they ask for.
    writeFile(dir_ + "/outer.conf", "swaybg_command -\nfor_window [app_id=\"wlroots\"] floating enable\n");
    writeFile(dir_ + "/inner.conf", (innerBackground.empty() ? "swaybg_command -\n" : innerBackground + "\n") +
                                        "default_border none\nfocus_follows_mouse no\n");

    const std::string outerRuntime = makeDir(dir_ + "/outer-runtime", fs::perms::owner_all);
    outer_ = startSway(outerRuntime, dir_ + "/outer.conf",
                       "WLR_BACKENDS=headless WLR_LIBINPUT_NO_DEVICES=1 WLR_HEADLESS_OUTPUTS=1", &outerSocket_,
                       &outerIpc_);
    if (outer_ <= 0) return;
    const std::string innerRuntime = makeDir(dir_ + "/inner-runtime", fs::perms::owner_all);
    inner_ = startSway(innerRuntime, dir_ + "/inner.conf", "WLR_BACKENDS=wayland WLR_WL_OUTPUTS=1 WAYLAND_DISPLAY=" + outerSocket_,
                       &socket_, &ipc_);
    ready_ = inner_ > 0 && eventually([this] { return query("get_outputs").find("\"WL-1\"") != std::string::npos; });
    if (!ready_) std::cerr << "sway did not start:\n" << output("tail -n 20 " + dir_ + "/*.log") << std::endl;
}

NestedSway::~NestedSway() {
    terminate(inner_);
    terminate(outer_);
    if (!dir_.empty()) {
        endLeftovers(dir_ + "/home");
        std::error_code ignored;
        fs::remove_all(dir_, ignored);
    }
}

std::string NestedSway::asUser(const std::string& environment) const {
    std::string prefix;
    if (const passwd* user = compositorUser())
        prefix = "setpriv --reuid=" + std::to_string(user->pw_uid) + " --regid=" + std::to_string(user->pw_gid) +
                 " --clear-groups ";
    return prefix + "env -u DISPLAY -u WAYLAND_DISPLAY -u QT_QPA_PLATFORM -u DBUS_SESSION_BUS_ADDRESS HOME=" + dir_ +
           "/home " + environment;
}

pid_t NestedSway::startSway(const std::string& runtime, const std::string& config, const std::string& environment,
                            std::string* socket, std::string* ipc) {
    const std::string log = runtime + ".log";
    const std::string command = asUser("XDG_RUNTIME_DIR=" + runtime +
                                       " WLR_RENDERER=pixman " + environment) +
                                " sway -c " + config + " >" + log + " 2>&1";
    const pid_t pid = spawn({"sh", "-c", "exec " + command});
    if (pid <= 0) return -1;
    const bool up = eventually([&] {
        for (const auto& entry : fs::directory_iterator(runtime)) {
            const std::string name = entry.path().filename().string();
            if (entry.is_socket() && name.starts_with("wayland-")) *socket = entry.path().string();
            if (entry.is_socket() && name.starts_with("sway-ipc")) *ipc = entry.path().string();
        }
        return !socket->empty() && !ipc->empty();
    });
    if (!up) {
        std::cerr << "sway did not start:\n" << output("tail -n 20 " + log) << std::endl;
        terminate(pid);
        return -1;
    }
    return pid;
}

std::string NestedSway::swaymsg(const std::string& ipc, const std::string& arguments) const {
    return output("timeout 20 swaymsg -s " + ipc + " " + arguments + " 2>&1");
}

bool NestedSway::command(const std::string& text) const {
    return swaymsg(ipc_, quoted(text)).find("\"success\": true") != std::string::npos;
}

std::string NestedSway::query(const std::string& type) const { return swaymsg(ipc_, "-t " + type); }

bool NestedSway::unplug(const std::string& name) const {
    return swaymsg(outerIpc_, quoted("[title=\"wlroots - " + name + "\"] kill")).find("\"success\": true") !=
           std::string::npos;
}

QImage NestedSway::grab() const {
    const std::string file = dir_ + "/grab.png";
    fs::remove(file);
    if (run("WAYLAND_DISPLAY=" + socket_ + " timeout 20 grim " + file + " 2>/dev/null") != 0) return {};
    return QImage(QString::fromStdString(file));
}

pid_t NestedSway::spawnClient(const std::vector<std::string>& argv) const {
    std::string command = asUser("XDG_RUNTIME_DIR=" + dir_ + "/inner-runtime WAYLAND_DISPLAY=" + socket_);
    for (const std::string& a : argv) command += " " + quoted(a);
    return spawn({"sh", "-c", "exec " + command + " >/dev/null 2>&1"});
}

}  // namespace quellton::test
