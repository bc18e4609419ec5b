// The real collaborators of AppModel::shared().
#include <syslog.h>

#include <chrono>

#include "AppModel.h"
#include "ShaderLibrary.h"
#include "XdgAutostart.h"

namespace quellton {

namespace {

class LibraryCompilation : public ShaderCompilation {
public:
    void compileAll(std::optional<std::string> first, std::function<void()> completion) override {
        ShaderLibrary::shared().compileAll(std::move(first), std::move(completion));
    }
    std::map<std::string, std::string> failures() override { return ShaderLibrary::shared().failures(); }
};

}  // namespace

double SystemClock::now() {
    using namespace std::chrono;
    return duration<double>(system_clock::now().time_since_epoch()).count();
}

void systemLog(const std::string& line) { syslog(LOG_ERR, "%s", line.c_str()); }

ModelServices defaultServices() {
    ModelServices services;
    services.settings = std::make_unique<SettingsStore>(SettingsStore::standardPath());
    services.clock = std::make_shared<SystemClock>();
    services.loginItem = std::make_shared<XdgAutostart>(XdgAutostart::forCurrentUser());
    services.shaders = std::make_shared<LibraryCompilation>();
    // WIRING PENDING — filled in when the colleagues' subsystems merge:
    //   services.audio:   an AudioRecordSource reading AudioSpectrum::shared().published()
    //                     (lastSignal and frame.beat) from src/audio/AudioSpectrum.h;
    //   services.hooks:   SystemWallpaper schedule()/restoreOriginal() and renderThumbnails().
    // Until then nothing is heard, nothing is compiled (ready stays false) and the hooks are empty.
    return services;
}

// Created on first use and never destroyed: it lives as long as the process.
AppModel& AppModel::shared() {
    static AppModel* const model = new AppModel(defaultServices());
    return *model;
}

}  // namespace quellton
