#include <QFile>
#include <QSignalSpy>

#include "Catalog.h"
#include "ModelTestSupport.h"
#include "Palette.h"
#include "RenderSettings.h"

namespace quellton::test {
namespace {

using Settings = ModelTest;

const std::set<std::string> defaultMix = {"nation", "halo", "nachtfahrt", "gargantua", "plasmakugel", "funkenwirbel",
                                          "echo", "tesserakt", "aurora", "prisma", "wasserlicht", "stachelkugel"};

TEST_F(Settings, FirstStartLoadsDefaultsAndWritesNothing) {
    auto model = makeModel();
    EXPECT_EQ(loaded(*model), (Loaded{.currentID = "nation", .mix = defaultMix, .mixEnabled = false, .mixOnBeat = true,
                                      .allScreens = true, .syncSystemWallpaper = true, .mixInterval = 60,
                                      .reactivity = 1.0, .smoothing = 0.15, .palette = std::nullopt,
                                      .quality = Quality::balanced, .fps = 60}));
    EXPECT_FALSE(model->paused());
    EXPECT_FALSE(model->hearing());
    EXPECT_FALSE(model->ready());
    EXPECT_EQ(model->mixStarted(), clock->time);
    EXPECT_FALSE(QFile::exists(path()));
    EXPECT_EQ(scheduled + restored + thumbnailPasses, 0);
}

TEST_F(Settings, StaleOrForeignValuesLoadAsDefaultsAndStayInTheStore) {
    store("current", "gibtsnicht");
    store("mix", QStringList{"halo", "gibtsnicht", "echo"});
    auto model = makeModel();
    EXPECT_EQ(model->currentID(), "nation");
    EXPECT_EQ(model->mix(), (std::set<std::string>{"halo", "echo"}));
    // Loading does not correct the store; the next assignment does.
    EXPECT_EQ(stored("current").toString(), "gibtsnicht");
    EXPECT_TRUE(stored("mix").toStringList().contains("gibtsnicht"));
    model->setMix(model->mix());
    EXPECT_EQ(stored("mix").toStringList(), (QStringList{"echo", "halo"}));
}

// A palette index must lie in the palette list; quality labels are case-sensitive.
TEST_F(Settings, PaletteIndexAndQualityLabelLoadOnlyWhenValid) {
    const int last = int(Palette::all().size()) - 1;
    for (const auto& [storedIndex, loaded] : std::vector<std::pair<int, std::optional<int>>>{
             {-1, std::nullopt}, {0, 0}, {3, 3}, {last, last}, {last + 1, std::nullopt}, {-7, std::nullopt}}) {
        store("palette", storedIndex);
        EXPECT_EQ(makeModel()->paletteOverride(), loaded) << "stored " << storedIndex;
    }
    for (const auto& [label, quality] : std::vector<std::pair<QString, Quality>>{
             {"Sparsam", Quality::saver}, {"Maximal", Quality::max}, {"maximal", Quality::balanced},
             {"Ausgewogen", Quality::balanced}}) {
        store("quality", label);
        EXPECT_EQ(makeModel()->quality(), quality) << label.toStdString();
    }
}

TEST_F(Settings, WrongTypedValuesLoadAsDefaultsWithoutLosingTheOthers) {
    store("fps", "abc");
    store("mixInterval", "lang");
    store("mixOnBeat", "vielleicht");
    store("mixEnabled", "ja");
    store("reactivity", 2.4);
    store("current", "halo");
    auto model = makeModel();
    EXPECT_EQ(model->fps(), 60);
    EXPECT_EQ(model->mixInterval(), 60);
    EXPECT_TRUE(model->mixOnBeat());
    EXPECT_FALSE(model->mixEnabled());
    EXPECT_EQ(model->reactivity(), 2.4);
    EXPECT_EQ(model->currentID(), "halo");
}

TEST_F(Settings, DamagedFileLoadsWhatIsReadable) {
    writeFile(path(), "[General]\nfps=30\n\x01\x02\xff\xfe garbage\n=\ncurrent=@ByteArray(halo)\n"
                      "quality=Sparsam\nmix=@Variant(\\0\\0\\0\\x7f\\0)\nsmoothing=0.5\n[kaputt\n");
    auto model = makeModel();
    EXPECT_EQ(model->fps(), 30);
    EXPECT_EQ(model->quality(), Quality::saver);
    EXPECT_EQ(model->smoothing(), 0.5);
    EXPECT_EQ(model->currentID(), "nation");
    EXPECT_EQ(model->mix(), defaultMix);
    // It stays writable.
    model->setFps(24);
    EXPECT_EQ(makeModel()->fps(), 24);
}

// The keys other parts keep in the file (the frame log switch, the gallery's place, the icon
// layers' flags) go through the same store under the same rule.
TEST_F(Settings, OtherPartsKeysFollowTheSameRule) {
    QFile file(path());
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("[General]\nframeLog=vielleicht\n[Galerie]\ngeometry=@Rect(0 0 kaputt)\n"
               "[IconLayerFlags]\nnemo=true\nwrong=@Rect(1 2 3 4)\n");
    file.close();
    auto model = makeModel();
    EXPECT_FALSE(RenderState::get().frameLog);
    SettingsStore& settings = *model->settingsStore();
    const SettingKey<QRect> place{QStringLiteral("Galerie/geometry"), QRect(1, 2, 3, 4)};
    EXPECT_EQ(settings.get(place), QRect(1, 2, 3, 4));
    EXPECT_EQ(settings.childKeys(QStringLiteral("IconLayerFlags")), (QStringList{"nemo", "wrong"}));
    EXPECT_TRUE(settings.get(SettingKey<bool>{QStringLiteral("IconLayerFlags/nemo")}));
    EXPECT_FALSE(settings.get(SettingKey<bool>{QStringLiteral("IconLayerFlags/wrong")}));

    settings.set(place, QRect(10, 20, 800, 600));
    settings.remove(QStringLiteral("IconLayerFlags/nemo"));
    store("frameLog", true);
    auto again = makeModel();
    EXPECT_TRUE(RenderState::get().frameLog);
    EXPECT_EQ(again->settingsStore()->get(place), QRect(10, 20, 800, 600));
    EXPECT_EQ(again->settingsStore()->childKeys(QStringLiteral("IconLayerFlags")), QStringList{"wrong"});
}

TEST_F(Settings, AssignedValuesPersistAcrossInstances) {
    {
        auto model = makeModel();
        model->setCurrentID("halo");
        model->setMix({});
        model->setMixEnabled(true);
        model->setMixInterval(12.5);
        model->setMixOnBeat(false);
        model->setPaletteOverride(4);
        model->setReactivity(1.6);
        model->setSmoothing(0.4);
        model->setQuality(Quality::max);
        model->setFps(144);
        model->setAllScreens(false);
        model->setSyncSystemWallpaper(false);
        model->setPaused(true);
        model->setHoverID("echo");
    }
    auto model = makeModel();
    // An empty Mix is not the default one.
    EXPECT_EQ(loaded(*model), (Loaded{.currentID = "halo", .mix = {}, .mixEnabled = true, .mixOnBeat = false,
                                      .allScreens = false, .syncSystemWallpaper = false, .mixInterval = 12.5,
                                      .reactivity = 1.6, .smoothing = 0.4, .palette = 4, .quality = Quality::max,
                                      .fps = 144}));
    // Run-time state starts fresh.
    EXPECT_FALSE(model->paused());
    EXPECT_EQ(model->hoverID(), std::nullopt);
    // A list of one element survives the file too.
    model->setMix({"echo"});
    EXPECT_EQ(makeModel()->mix(), (std::set<std::string>{"echo"}));
}

TEST_F(Settings, EqualAssignmentsRunTheirEffectsWithoutNotifying) {
    auto model = makeModel();
    QSignalSpy currentChanged(model.get(), &AppModel::currentIDChanged);
    QSignalSpy enabledChanged(model.get(), &AppModel::mixEnabledChanged);
    QSignalSpy paletteChanged(model.get(), &AppModel::paletteOverrideChanged);
    QSignalSpy screensChanged(model.get(), &AppModel::allScreensChanged);
    int screenCallbacks = 0;
    model->setOnScreensChanged([&] { ++screenCallbacks; });

    store("current", "fremd");
    clock->time += 5;
    model->setCurrentID("nation");
    EXPECT_EQ(stored("current").toString(), "nation");
    EXPECT_EQ(model->mixStarted(), clock->time);
    EXPECT_EQ(scheduled, 1);
    EXPECT_EQ(currentChanged.count(), 0);

    clock->time += 5;
    model->setMixEnabled(false);
    EXPECT_EQ(model->mixStarted(), clock->time);
    EXPECT_EQ(stored("mixEnabled").toBool(), false);
    EXPECT_EQ(enabledChanged.count(), 0);

    model->setPaletteOverride(std::nullopt);
    EXPECT_EQ(stored("palette").toInt(), -1);
    EXPECT_EQ(thumbnailPasses, 1);
    EXPECT_EQ(scheduled, 2);
    EXPECT_EQ(paletteChanged.count(), 0);

    model->setAllScreens(true);
    EXPECT_EQ(screenCallbacks, 1);
    EXPECT_EQ(screensChanged.count(), 0);

    model->setCurrentID("halo");
    model->setPaletteOverride(2);
    model->setAllScreens(false);
    EXPECT_EQ(currentChanged.count(), 1);
    EXPECT_EQ(paletteChanged.count(), 1);
    EXPECT_EQ(screensChanged.count(), 1);
    EXPECT_EQ(screenCallbacks, 2);
}

TEST_F(Settings, DesktopPictureFollowsTheSyncSwitch) {
    auto model = makeModel();
    model->setSyncSystemWallpaper(false);
    EXPECT_EQ(restored, 1);
    EXPECT_EQ(scheduled, 0);
    model->setSyncSystemWallpaper(true);
    EXPECT_EQ(restored, 1);
    EXPECT_EQ(scheduled, 1);
    model->setQuality(Quality::saver);  // not a setting the desktop picture depends on
    EXPECT_EQ(scheduled, 1);
}

TEST_F(Settings, PublishCarriesTheRenderSettings) {
    store("quality", "Maximal");
    store("palette", 5);
    auto model = makeModel();
    EXPECT_EQ(RenderState::get().quality, Quality::max);
    EXPECT_EQ(RenderState::get().paletteOverride, 5);

    model->setCurrentID("echo");
    model->setHoverID("halo");
    model->setReactivity(2.4);
    model->setSmoothing(0.3);
    model->setFps(30);
    model->setPaused(true);
    const RenderSettings expected{.currentID = "echo",
                                  .hoverID = "halo",
                                  .paletteOverride = 5,
                                  .reactivity = 2.4f,
                                  .smoothing = 0.3f,
                                  .quality = Quality::max,
                                  .fps = 30,
                                  .paused = true};
    EXPECT_EQ(RenderState::get(), expected);
    model->setHoverID(std::nullopt);
    model->setPaletteOverride(std::nullopt);
    EXPECT_EQ(RenderState::get().hoverID, std::nullopt);
    EXPECT_EQ(RenderState::get().paletteOverride, std::nullopt);
}

TEST_F(Settings, QtPropertiesMirrorTheModel) {
    auto model = makeModel();
    EXPECT_TRUE(model->setProperty("currentID", QString("echo")));
    EXPECT_EQ(model->currentID(), "echo");
    model->setProperty("paletteOverride", 2);
    EXPECT_EQ(model->paletteOverride(), 2);
    model->setProperty("paletteOverride", -1);
    EXPECT_EQ(model->paletteOverride(), std::nullopt);
    model->setProperty("quality", QString("Sparsam"));
    EXPECT_EQ(model->quality(), Quality::saver);
    model->setProperty("quality", QString("Unsinn"));  // not a label: ignored
    EXPECT_EQ(model->property("quality").toString(), "Sparsam");
    model->setProperty("hoverID", QString());
    EXPECT_EQ(model->hoverID(), std::nullopt);
}

TEST_F(Settings, LaunchAtLoginFollowsTheLoginItem) {
    login->registered = true;
    auto model = makeModel();
    EXPECT_TRUE(model->launchAtLogin());
    model->setLaunchAtLogin(true);
    EXPECT_EQ(login->registerCalls + login->unregisterCalls, 0);
    model->setLaunchAtLogin(false);
    EXPECT_EQ(login->unregisterCalls, 1);
    EXPECT_FALSE(login->registered);

    login->failing = true;
    QSignalSpy changed(model.get(), &AppModel::launchAtLoginChanged);
    model->setLaunchAtLogin(true);
    EXPECT_EQ(login->registerCalls, 1);
    EXPECT_TRUE(model->launchAtLogin());  // keeps the assigned value despite the failure
    EXPECT_EQ(changed.count(), 1);
}

}  // namespace
}  // namespace quellton::test
