#pragma once

#include <QSettings>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "AppModel.h"

namespace quellton::test {

struct FakeClock : Clock {
    double time = 1000;
    double now() override { return time; }
};

struct FakeAudio : AudioRecordSource {
    AudioSignal signal;
    AudioSignal read() override { return signal; }
};

struct FakeCompilation : ShaderCompilation {
    std::vector<std::optional<std::string>> requests;
    std::function<void()> completion;
    std::map<std::string, std::string> failed;
    void compileAll(std::optional<std::string> first, std::function<void()> done) override {
        requests.push_back(std::move(first));
        completion = std::move(done);
    }
    std::map<std::string, std::string> failures() override { return failed; }
};

struct FakeLoginItem : LoginItem {
    bool registered = false;
    bool failing = false;
    int registerCalls = 0, unregisterCalls = 0;
    bool isRegistered() override { return registered; }
    bool registerItem() override {
        ++registerCalls;
        if (!failing) registered = true;
        return !failing;
    }
    bool unregisterItem() override {
        ++unregisterCalls;
        if (!failing) registered = false;
        return !failing;
    }
};

// A model on a private settings file with controllable collaborators and counted hooks.
class ModelTest : public ::testing::Test {
protected:
    QTemporaryDir dir;
    std::shared_ptr<FakeClock> clock = std::make_shared<FakeClock>();
    std::shared_ptr<FakeAudio> audio = std::make_shared<FakeAudio>();
    std::shared_ptr<FakeCompilation> shaders = std::make_shared<FakeCompilation>();
    std::shared_ptr<FakeLoginItem> login = std::make_shared<FakeLoginItem>();
    int scheduled = 0, restored = 0, thumbnailPasses = 0;
    std::vector<std::string> logLines;

    QString path() const { return dir.filePath("Quellton.conf"); }

    std::unique_ptr<AppModel> makeModel() { return makeModel(path()); }
    // The store's complaints about the file land in logLines too.
    std::unique_ptr<AppModel> makeModel(const QString& file) {
        ModelServices services;
        services.settings =
            std::make_unique<SettingsStore>(file, [this](const std::string& line) { logLines.push_back(line); });
        services.clock = clock;
        services.audio = audio;
        services.shaders = shaders;
        services.loginItem = login;
        services.hooks = {.scheduleWallpaper = [this] { ++scheduled; },
                          .restoreWallpaper = [this] { ++restored; },
                          .renderThumbnails = [this] { ++thumbnailPasses; }};
        services.log = [this](const std::string& line) { logLines.push_back(line); };
        return std::make_unique<AppModel>(std::move(services));
    }

    // QSettings shares one cache per file inside a process, so these see the model's writes.
    void store(const QString& key, const QVariant& value) {
        QSettings settings(path(), QSettings::IniFormat);
        settings.setValue(key, value);
    }
    QVariant stored(const QString& key) const { return QSettings(path(), QSettings::IniFormat).value(key); }
};

}  // namespace quellton::test
