#include <QCoreApplication>
#include <QSettings>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <cstdlib>

#include "DeferredPicture.h"
#include "DesktopIconManagerSettings.h"
#include "GSettingsClient.h"
#include "SettingsStore.h"

namespace quellton {
namespace {

// A settings store in memory, standing in for one desktop's store: key() writes the key's values.
struct MemoryStore {
    QVariantMap values;
    bool refuseKey = false;
    std::vector<QString> log;
};

class MemoryBackdrop : public ManagerBackdrop {
public:
    explicit MemoryBackdrop(MemoryStore& store) : store_(store) {}
    std::optional<QVariantMap> read() override { return store_.values; }
    std::optional<std::uint32_t> solidColor(const QVariantMap& current) const override {
        if (current.value("style") != QStringLiteral("solid")) return std::nullopt;
        return current.value("color").toUInt();
    }
    QVariantMap keyedValues() override {
        return {{"style", QStringLiteral("none")}, {"color", 0u}, {"picture", QString()}};
    }
    bool key() override {
        store_.log.push_back("key");
        const QVariantMap keyed = keyedValues();
        for (auto it = keyed.begin(); it != keyed.end(); ++it) store_.values[it.key()] = it.value();
        return !store_.refuseKey;
    }
    bool restore(const QVariantMap& saved) override {
        store_.log.push_back("restore");
        store_.values = saved;
        return true;
    }

private:
    MemoryStore& store_;
};

// The desktop-picture adapter of the same desktop, writing the same store as the sync would.
class StorePicture : public DesktopPicture {
public:
    explicit StorePicture(MemoryStore& store) : store_(store) {}
    std::optional<QUrl> current(const ScreenInfo&) override {
        const QString file = store_.values.value("picture").toString();
        return file.isEmpty() ? std::nullopt : std::optional(QUrl::fromLocalFile(file));
    }
    void show(std::span<const ScreenPicture> stills) override {
        store_.log.push_back("show " + stills.front().file);
        store_.values["picture"] = stills.front().file;
        store_.values["style"] = QStringLiteral("zoom");
    }
    QVariantMap presentation(std::span<const ScreenInfo>) override { return {{"style", store_.values.value("style")}}; }
    void restore(const QUrl& picture, const QVariantMap& presentation, std::span<const ScreenInfo>) override {
        store_.log.push_back("picture " + picture.toLocalFile());
        store_.values["picture"] = picture.toLocalFile();
        if (presentation.contains("style")) store_.values["style"] = presentation.value("style");
    }

private:
    MemoryStore& store_;
};

const ScreenInfo screen{QStringLiteral("DP-1"), QRect(0, 0, 1920, 1080), 1.0};

class IconManagerSettingsTest : public ::testing::Test {
protected:
    // On the settings file of this run, or of a new run that reads it afresh.
    std::unique_ptr<DesktopIconManagerSettings> make(std::shared_ptr<SettingsStore> settings = nullptr) {
        IconManagerServices services;
        services.settings = settings ? settings : ourSettings;
        services.backdrop = [this](IconManager m) -> std::unique_ptr<ManagerBackdrop> {
            if (m != IconManager::xfdesktop) return nullptr;
            return std::make_unique<MemoryBackdrop>(store);
        };
        services.picture = [this](IconManager) { return std::make_unique<StorePicture>(store); };
        services.screens = [] { return std::vector<ScreenInfo>{screen}; };
        services.windowClass = QStringLiteral("Quellton");
        services.nemoMayManage = [this] { return nemoManages; };
        return std::make_unique<DesktopIconManagerSettings>(std::move(services));
    }
    QString vaultPath() const { return dir.filePath(QStringLiteral("Quellton.conf")); }
    std::shared_ptr<SettingsStore> fileSettings() const { return std::make_shared<SettingsStore>(vaultPath()); }
    // What the file holds now.
    BackdropVault fileVault() const { return BackdropVault(fileSettings()); }

    QTemporaryDir dir;
    std::shared_ptr<SettingsStore> ourSettings = fileSettings();
    bool nemoManages = true;
    MemoryStore store{{{"style", QStringLiteral("zoom")}, {"color", 0x336699u}, {"picture", QStringLiteral("/home/u/see.jpg")},
                       {"unset", QVariant()}},
                      false,
                      {}};
};

TEST_F(IconManagerSettingsTest, TheUsersBackdropIsSavedBeforeTheKeyAndComesBackExactly) {
    const QVariantMap before = store.values;
    auto settings = make();
    EXPECT_EQ(settings->keyBackdrop(IconManager::xfdesktop), backdropKeyColor);
    EXPECT_EQ(store.values.value("style"), QStringLiteral("none"));
    // Saved in our settings file, in case the process dies now.
    ASSERT_TRUE(fileVault().record(QStringLiteral("xfdesktop")));
    EXPECT_EQ(fileVault().record(QStringLiteral("xfdesktop"))->settings, before);

    // The manager's window comes back: keyed again without losing the saved values.
    EXPECT_EQ(settings->keyBackdrop(IconManager::xfdesktop), backdropKeyColor);
    settings->restoreBackdrop(IconManager::xfdesktop);
    EXPECT_EQ(store.values, before);
    EXPECT_FALSE(fileVault().record(QStringLiteral("xfdesktop")));
    // Nothing to give back twice; a manager without a backdrop cannot be keyed.
    settings->restoreBackdrop(IconManager::xfdesktop);
    EXPECT_EQ(std::ranges::count(store.log, QStringLiteral("restore")), 1);
    EXPECT_FALSE(settings->keyBackdrop(IconManager::caja));
}

TEST_F(IconManagerSettingsTest, WhatTheUserChoosesWhileTheKeyHoldsIsKeptAndKeyedAgain) {
    auto settings = make();
    settings->keyBackdrop(IconManager::xfdesktop);
    // In the desktop's own settings dialog: a new picture, shown zoomed; the colour left alone.
    store.values["picture"] = QStringLiteral("/home/u/new.jpg");
    store.values["style"] = QStringLiteral("zoom");
    EXPECT_EQ(settings->keyBackdrop(IconManager::xfdesktop), backdropKeyColor);
    EXPECT_EQ(store.values.value("style"), QStringLiteral("none"));
    // Nothing changed since: nothing is written.
    const std::size_t writes = store.log.size();
    settings->keyBackdrop(IconManager::xfdesktop);
    EXPECT_EQ(store.log.size(), writes);
    settings->finish();
    EXPECT_EQ(store.values.value("picture"), QStringLiteral("/home/u/new.jpg"));
    EXPECT_EQ(store.values.value("style"), QStringLiteral("zoom"));
    EXPECT_EQ(store.values.value("color"), 0x336699u);
}

TEST_F(IconManagerSettingsTest, TheNextStartGivesBackWhatARunThatDiedLeftKeyed) {
    const QVariantMap before = store.values;
    make()->keyBackdrop(IconManager::xfdesktop);  // and the process is killed: no finish()
    ASSERT_NE(store.values, before);
    make(fileSettings())->prepare();
    EXPECT_EQ(store.values, before);
    EXPECT_TRUE(fileVault().managers().isEmpty());
}

TEST_F(IconManagerSettingsTest, ASolidBackdropIsItsOwnKeyAndARefusedKeyChangesNothing) {
    store.values["style"] = QStringLiteral("solid");
    const QVariantMap solid = store.values;
    auto settings = make();
    EXPECT_EQ(settings->keyBackdrop(IconManager::xfdesktop), 0x336699u);
    EXPECT_EQ(store.values, solid);
    EXPECT_TRUE(store.log.empty());
    settings->restoreBackdrop(IconManager::xfdesktop);

    store.values["style"] = QStringLiteral("zoom");
    const QVariantMap before = store.values;
    store.refuseKey = true;
    EXPECT_FALSE(make()->keyBackdrop(IconManager::xfdesktop));
    EXPECT_EQ(store.values, before);
    EXPECT_TRUE(fileVault().managers().isEmpty());
}

TEST_F(IconManagerSettingsTest, TheSyncsPictureWaitsWhileKeyedAndBecomesTheBackdropToReturnTo) {
    GuardedDesktopPicture guarded(std::make_unique<StorePicture>(store), IconManager::xfdesktop, ourSettings);
    const std::vector<ScreenPicture> stills{{screen, QStringLiteral("/data/Hintergrund/nation-0-1.jpg")}};
    // Not keyed: the sync writes as it would without us.
    guarded.show(stills);
    EXPECT_EQ(store.values.value("picture"), stills.front().file);

    store.values["picture"] = QStringLiteral("/home/u/see.jpg");
    auto settings = make();
    settings->keyBackdrop(IconManager::xfdesktop);
    // Keyed: the sync reads the user's picture and style, not the key's, and its write waits.
    EXPECT_EQ(guarded.current(screen), QUrl::fromLocalFile(QStringLiteral("/home/u/see.jpg")));
    EXPECT_EQ(guarded.presentation(std::vector{screen}).value("style"), QStringLiteral("zoom"));
    const std::size_t writes = store.log.size();
    guarded.show(stills);
    EXPECT_EQ(store.log.size(), writes);
    EXPECT_EQ(store.values.value("style"), QStringLiteral("none"));
    EXPECT_EQ(guarded.current(screen), QUrl::fromLocalFile(stills.front().file));

    // Turning the sync off meanwhile puts the user's picture first in line again.
    guarded.restore(QUrl::fromLocalFile(QStringLiteral("/home/u/see.jpg")), {}, std::vector<ScreenInfo>{screen});
    EXPECT_EQ(guarded.current(screen), QUrl::fromLocalFile(QStringLiteral("/home/u/see.jpg")));
    guarded.show(stills);

    // At the end the user's settings come back first, then the still over them.
    settings->finish();
    EXPECT_EQ(store.values.value("picture"), stills.front().file);
    EXPECT_EQ(store.values.value("style"), QStringLiteral("zoom"));
    ASSERT_GE(store.log.size(), 2u);
    EXPECT_EQ(store.log[store.log.size() - 2], QStringLiteral("restore"));
    EXPECT_EQ(store.log.back(), "show " + stills.front().file);
}

TEST_F(IconManagerSettingsTest, RecordsKeepTheirTypesAndADamagedOneReadsAsNothing) {
    BackdropVault vault(ourSettings);
    BackdropRecord record;
    record.settings = {{"/backdrop/image-style", 5}, {"/backdrop/rgba1", QVariantList{0.25, 0.5, 0.75, 1.0}},
                       {"/backdrop/absent", QVariant()}};
    vault.store(QStringLiteral("xfdesktop"), record);
    const std::optional<BackdropRecord> back = fileVault().record(QStringLiteral("xfdesktop"));
    ASSERT_TRUE(back);
    EXPECT_EQ(back->settings.value("/backdrop/image-style").typeId(), QMetaType::Int);
    EXPECT_EQ(back->settings.value("/backdrop/rgba1").toList().at(1).typeId(), QMetaType::Double);
    EXPECT_FALSE(back->settings.value("/backdrop/absent").isValid());
    EXPECT_TRUE(back->settings.contains("/backdrop/absent"));

    {
        QSettings file(vaultPath(), QSettings::IniFormat);
        file.setValue(QStringLiteral("IconLayerBackdrops/caja"), QStringLiteral("not a record"));
    }
    EXPECT_FALSE(fileVault().record(QStringLiteral("caja")));
    make(fileSettings())->prepare();
    EXPECT_FALSE(fileVault().managers().contains(QStringLiteral("caja")));
}

TEST(NemoDesktop, MayManageOnCinnamonOrWhereverItRuns) {
    EXPECT_TRUE(nemoMayManageDesktop("X-Cinnamon", false));
    EXPECT_TRUE(nemoMayManageDesktop("ubuntu:Cinnamon", false));
    EXPECT_TRUE(nemoMayManageDesktop("XFCE", true));
    for (const char* other : {"XFCE", "MATE", "LXQt", "GNOME", "ubuntu:GNOME", "X-Cinnamonish", ""})
        EXPECT_FALSE(nemoMayManageDesktop(other, false)) << other;
}

TEST_F(IconManagerSettingsTest, NemoIgnoresOurWindowsWhileWeRunAndItsListComesBackAsItWas) {
    // The real schema in a GSettings key file of this test.
    ASSERT_TRUE(GSettingsClient::schemaExists(QStringLiteral("org.nemo.desktop")));
    std::optional<GSettingsClient> nemo = GSettingsClient::open(QStringLiteral("org.nemo.desktop"));
    const QString key = QStringLiteral("ignored-desktop-handlers");
    nemo->reset(key);
    const QStringList defaults = *nemo->getStrv(key);

    // Where nemo-desktop neither runs nor may run (not Cinnamon), its settings stay as they are.
    nemoManages = false;
    make()->prepare();
    EXPECT_FALSE(nemo->hasUserValue(key));
    nemoManages = true;

    auto settings = make();
    settings->prepare();
    settings->prepare();  // once only
    EXPECT_EQ(nemo->getStrv(key), defaults + QStringList{QStringLiteral("Quellton")});
    settings->finish();
    EXPECT_EQ(nemo->getStrv(key), defaults);
    EXPECT_FALSE(nemo->hasUserValue(key));

    // The user's own list, and an entry the user made, stay.
    nemo->setStrv(key, {QStringLiteral("conky"), QStringLiteral("Quellton")});
    settings->prepare();
    settings->finish();
    EXPECT_EQ(nemo->getStrv(key), (QStringList{QStringLiteral("conky"), QStringLiteral("Quellton")}));
    nemo->setStrv(key, {QStringLiteral("conky")});
    settings->prepare();
    settings->finish();
    EXPECT_EQ(nemo->getStrv(key), QStringList{QStringLiteral("conky")});
    EXPECT_TRUE(nemo->hasUserValue(key));
}

}  // namespace
}  // namespace quellton

int main(int argc, char** argv) {
    ::testing::InitGoogleTest(&argc, argv);
    // GSettings in a key file of this test's own.
    QTemporaryDir config;
    qputenv("XDG_CONFIG_HOME", config.path().toUtf8());
    qputenv("GSETTINGS_BACKEND", "keyfile");
    QCoreApplication app(argc, argv);
    return RUN_ALL_TESTS();
}
