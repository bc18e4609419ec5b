// The real collaborators of AppModel::shared().
#include <syslog.h>

#include <chrono>

#include "AppModel.h"
#include "XdgAutostart.h"

namespace quellton {

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
    // WIRING PENDING — filled in when the colleagues' subsystems merge:
    //   services.audio:   an AudioRecordSource reading AudioSpectrum::shared().published()
    //                     (lastSignal and frame.beat) from src/audio/AudioSpectrum.h;
    //   services.shaders: a ShaderCompilation forwarding to ShaderLibrary::shared().compileAll()
    //                     and ShaderLibrary::shared().failures();
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
