#pragma once

#include <functional>
#include <memory>
#include <string>

#include "AudioRecordSource.h"
#include "Clock.h"
#include "LoginItem.h"
#include "SettingsStore.h"
#include "ShaderCompilation.h"
#include "SystemLog.h"

namespace quellton {

// Work of later subsystems that the model triggers; an empty hook does nothing.
struct ModelHooks {
    std::function<void()> scheduleWallpaper;  // SystemWallpaper.schedule()
    std::function<void()> restoreWallpaper;   // SystemWallpaper.restoreOriginal()
    std::function<void()> renderThumbnails;
};

// The hooks of AppModel::shared(), filled in by the application at start; the shared model
// looks them up on every call, so they may be installed after it was made.
ModelHooks& sharedModelHooks();

// Writes one line to the system log.
using LogSink = std::function<void(const std::string& line)>;

// Everything the model talks to. `settings`, `clock` and `loginItem` are required; `audio` and
// `shaders` may be null while those subsystems are absent: then nothing is heard and nothing
// is compiled.
struct ModelServices {
    // Shared with the parts that keep groups of their own in the same file.
    std::shared_ptr<SettingsStore> settings;
    std::shared_ptr<Clock> clock;
    std::shared_ptr<AudioRecordSource> audio;
    std::shared_ptr<ShaderCompilation> shaders;
    std::shared_ptr<LoginItem> loginItem;
    ModelHooks hooks;
    LogSink log = systemLog;
};

// The services of the running application: the user's settings file, the wall clock,
// the XDG autostart entry and syslog.
ModelServices defaultServices();

}  // namespace quellton
