// The real collaborators of AppModel::shared().
#include <chrono>

#include "AppModel.h"
#include "AudioSpectrum.h"
#include "ProcessWide.h"
#include "ShaderLibrary.h"
#include "Thumbnails.h"
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

class SpectrumRecord : public AudioRecordSource {
public:
    AudioSignal read() override {
        const PublishedAudio record = AudioSpectrum::shared().published();
        return {record.lastSignal, record.frame.beat};
    }
};

}  // namespace

double SystemClock::now() {
    return wallClockNow();  // the clock of the analyser's lastSignal
}

ModelServices defaultServices() {
    ModelServices services;
    services.settings = std::make_shared<SettingsStore>(SettingsStore::standardPath());
    services.clock = std::make_shared<SystemClock>();
    services.loginItem = std::make_shared<XdgAutostart>(XdgAutostart::forCurrentUser());
    services.shaders = std::make_shared<LibraryCompilation>();
    services.audio = std::make_shared<SpectrumRecord>();
    services.hooks.scheduleWallpaper = [] {
        if (const auto& hook = sharedModelHooks().scheduleWallpaper) hook();
    };
    services.hooks.restoreWallpaper = [] {
        if (const auto& hook = sharedModelHooks().restoreWallpaper) hook();
    };
    services.hooks.renderThumbnails = applicationThumbnailHook();
    return services;
}

ModelHooks& sharedModelHooks() {
    static ModelHooks hooks;
    return hooks;
}

// Created on first use and never destroyed: it lives as long as the process.
AppModel& AppModel::shared() {
    return ProcessWide<AppModel>::instance([] { return std::make_unique<AppModel>(defaultServices()); });
}

}  // namespace quellton
