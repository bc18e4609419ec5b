#include "PipeWireTestServer.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <regex>

#include "PrivateSession.h"

namespace quellton::test {

namespace {

// WirePlumber reads these after its own defaults; a device monitor off opens no device.
constexpr const char* mainOverrides =
    "alsa_monitor.enabled = false\n"
    "v4l2_monitor.enabled = false\n"
    "libcamera_monitor.enabled = false\n";
constexpr const char* bluetoothOverrides = "bluez_monitor.enabled = false\n";

void write(const std::filesystem::path& file, const char* text) {
    std::filesystem::create_directories(file.parent_path());
    std::ofstream(file) << text;
}

}  // namespace

PipeWireTestServer::PipeWireTestServer() : SoundTestServer("quellton-pipewire") {
    if (dir().empty()) return;
    // wpctl and every other PipeWire client of the test reach only this server.
    setenv("PIPEWIRE_RUNTIME_DIR", (dir() + "/runtime").c_str(), 1);
    unsetenv("PIPEWIRE_REMOTE");
    write(dir() + "/config/wireplumber/main.lua.d/51-quellton-test.lua", mainOverrides);
    write(dir() + "/config/wireplumber/bluetooth.lua.d/51-quellton-test.lua", bluetoothOverrides);
    // WirePlumber does not run without a session bus.
    const std::string socket = dir() + "/bus";
    bus_ = spawnWith({"dbus-daemon", "--session", "--nofork", "--nopidfile", "--address=unix:path=" + socket}, {},
                     dir() + "/dbus.log");
    if (pollUntil([&] { return std::filesystem::exists(socket); }, std::chrono::seconds(10))) begin();
}

PipeWireTestServer::~PipeWireTestServer() {
    kill();
    terminate(bus_);
}

std::map<std::string, std::optional<std::string>> PipeWireTestServer::daemonEnvironment() const {
    return {
        {"XDG_CONFIG_HOME", dir() + "/config"},
        {"XDG_STATE_HOME", dir() + "/state"},
        {"DBUS_SESSION_BUS_ADDRESS", "unix:path=" + dir() + "/bus"},
        {"PIPEWIRE_RUNTIME_DIR", dir() + "/runtime"},
        {"PIPEWIRE_REMOTE", std::nullopt},
        // Keeps WirePlumber's GLib from starting gvfs on the private bus.
        {"GIO_USE_VFS", "local"},
    };
}

bool PipeWireTestServer::launch() {
    // The session manager and the pulse front end give up at once when the core is not there yet.
    const auto start = [this](const char* daemon) {
        const pid_t pid = spawnDaemon({daemon}, daemon);
        if (pid > 0) daemons_.push_back(pid);
        return pid > 0;
    };
    if (!start("pipewire")) return false;
    const std::string core = dir() + "/runtime/pipewire-0";
    if (!pollUntil([&] { return std::filesystem::exists(core) && shell("pw-cli info 0 >/dev/null 2>&1"); },
                   std::chrono::seconds(20)))
        return false;
    return start("wireplumber") && start("pipewire-pulse") && waitForServer();
}

int PipeWireTestServer::nodeId(const std::string& name) const {
    const std::string status = output("wpctl status 2>/dev/null");
    std::smatch match;
    if (std::regex_search(status, match, std::regex("(\\d+)\\. " + name + "\\b"))) return std::stoi(match[1]);
    return -1;
}

bool PipeWireTestServer::switchDefaultSink(const std::string& sink) {
    const int id = nodeId(sink);
    return id >= 0 && shell("wpctl set-default " + std::to_string(id) + " >/dev/null 2>&1") &&
           awaitDefaultSink(sink);
}

}  // namespace quellton::test
