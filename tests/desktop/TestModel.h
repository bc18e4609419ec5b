#pragma once

#include <QString>

#include <memory>

#include "AppModel.h"

namespace quellton::test {

// A model on a private settings file, with no login item and no system log.
inline std::unique_ptr<AppModel> makeTestModel(const QString& settingsFile) {
    struct NoLoginItem : LoginItem {
        bool isRegistered() override { return false; }
        bool registerItem() override { return false; }
        bool unregisterItem() override { return false; }
    };
    ModelServices services;
    services.settings = std::make_unique<SettingsStore>(settingsFile);
    services.clock = std::make_shared<SystemClock>();
    services.loginItem = std::make_shared<NoLoginItem>();
    services.log = [](const std::string&) {};
    return std::make_unique<AppModel>(std::move(services));
}

}  // namespace quellton::test
