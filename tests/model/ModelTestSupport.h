#pragma once

#include <QFile>
#include <QSettings>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <map>
#include <memory>
#include <optional>
#include <ostream>
#include <set>
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

// Writes the bytes as the whole file; an empty text makes an empty file.
inline void writeFile(const QString& file, const QByteArray& text) {
    QFile out(file);
    ASSERT_TRUE(out.open(QIODevice::WriteOnly)) << file.toStdString();
    out.write(text);
}

// Every setting the model loads, to compare loads in one assertion.
struct Loaded {
    std::string currentID;
    std::set<std::string> mix;
    bool mixEnabled, mixOnBeat, allScreens, syncSystemWallpaper;
    double mixInterval, reactivity, smoothing;
    std::optional<int> palette;
    Quality quality;
    int fps;
    bool operator==(const Loaded&) const = default;
};

inline void PrintTo(const Loaded& l, std::ostream* out) {
    *out << "current=" << l.currentID << " mix=" << l.mix.size() << " mixEnabled=" << l.mixEnabled
         << " mixOnBeat=" << l.mixOnBeat << " allScreens=" << l.allScreens << " sync=" << l.syncSystemWallpaper
         << " mixInterval=" << l.mixInterval << " reactivity=" << l.reactivity << " smoothing=" << l.smoothing
         << " palette=" << l.palette.value_or(-1) << " quality=" << int(l.quality) << " fps=" << l.fps;
}

inline Loaded loaded(const AppModel& m) {
    return {m.currentID(), m.mix(), m.mixEnabled(), m.mixOnBeat(), m.allScreens(), m.syncSystemWallpaper(),
            m.mixInterval(), m.reactivity(), m.smoothing(), m.paletteOverride(), m.quality(), m.fps()};
}

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
