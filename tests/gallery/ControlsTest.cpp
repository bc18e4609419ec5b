// What the toolbar's popovers show beyond plain bindings, the level meter's sampling, and the choice
// of the desktop's sound settings, over a real model and without a window.
#include <QElapsedTimer>
#include <QSignalSpy>
#include <QTest>

#include <gtest/gtest.h>

#include <map>

#include "Catalog.h"
#include "ControlsModel.h"
#include "LevelMeterModel.h"
#include "ModelTestSupport.h"
#include "SoundSettings.h"

namespace quellton::test {
namespace {

class Controls : public ModelTest {
protected:
    std::unique_ptr<AppModel> model = makeModel();
    ControlsModel controls{*model};
};

TEST_F(Controls, ThePresetFollowsTheStrengthAndChoosingOneSetsItsExactStrength) {
    ASSERT_EQ(controls.presets(), QStringList({"Ruhig", "Normal", "Stark", "Extrem"}));
    QSignalSpy changed(&controls, &ControlsModel::presetChanged);
    const std::map<double, int> nearest = {{1.5, 2}, {0.6, 0}, {0.0, 0}, {1.25, 1}, {2.5, 3}, {9, 3}};
    for (const auto& [strength, row] : nearest) {
        model->setReactivity(strength);
        EXPECT_EQ(controls.preset(), row) << strength;
    }
    EXPECT_EQ(changed.count(), int(nearest.size()));

    const double strengths[] = {0.35, 1.0, 1.6, 2.4};
    for (int row = 3; row >= 0; --row) {
        controls.choosePreset(row);
        EXPECT_EQ(model->reactivity(), strengths[row]);
        EXPECT_EQ(controls.preset(), row);
    }
    EXPECT_EQ(QSettings(path(), QSettings::IniFormat).value("reactivity").toDouble(), 0.35);
    controls.choosePreset(4);
    controls.choosePreset(-1);
    EXPECT_EQ(model->reactivity(), 0.35);
}

TEST_F(Controls, ChoiceListsMarkTheModelsValueOrNoneAndWriteTheChosenOne) {
    QStringList intervalTexts;
    for (const QVariant& choice : controls.intervals()) intervalTexts.append(choice.toMap().value("text").toString());
    EXPECT_EQ(intervalTexts, QStringList({"15 Sekunden", "30 Sekunden", "1 Minute", "2 Minuten", "5 Minuten"}));
    EXPECT_EQ(controls.interval(), 2);  // the default minute
    QSignalSpy intervalChanged(&controls, &ControlsModel::intervalChanged);
    controls.chooseInterval(4);
    EXPECT_EQ(model->mixInterval(), 300);
    model->setMixInterval(45);  // a value from an older version or a hand-edited file
    EXPECT_EQ(controls.interval(), -1);
    EXPECT_EQ(intervalChanged.count(), 2);

    EXPECT_EQ(controls.frameRate(), 1);
    controls.chooseFrameRate(0);
    EXPECT_EQ(model->fps(), 30);
    model->setFps(144);
    EXPECT_EQ(controls.frameRate(), -1);
    controls.chooseFrameRate(3);
    EXPECT_EQ(model->fps(), 144);

    EXPECT_EQ(controls.qualities(), QStringList({"Sparsam", "Ausgewogen", "Maximal"}));
}

TEST_F(Controls, AllAndNoneFillAndEmptyTheMixAndNextThenStepsThroughTheCatalog) {
    const QString total = QString::number(catalog().size());
    EXPECT_EQ(controls.selectedCount(), "12 von " + total);
    QSignalSpy counted(&controls, &ControlsModel::selectedCountChanged);
    controls.selectAll();
    EXPECT_EQ(controls.selectedCount(), total + " von " + total);
    controls.selectAll();  // unchanged: stored again, but nobody is told
    EXPECT_EQ(counted.count(), 1);
    EXPECT_EQ(QSettings(path(), QSettings::IniFormat).value("mix").toStringList().size(), catalog().size());

    model->setMixEnabled(true);
    model->setCurrentID(catalog()[5].id);
    controls.selectNone();
    EXPECT_EQ(controls.selectedCount(), "0 von " + total);
    model->next();  // an empty Mix is no Mix
    EXPECT_EQ(model->currentID(), catalog()[6].id);
}

TEST_F(Controls, PalettesCarryTheirNamesAndFourColours) {
    const QVariantList palettes = controls.palettes();
    ASSERT_EQ(palettes.size(), 14);
    const QVariantMap first = palettes.first().toMap(), last = palettes.last().toMap();
    EXPECT_EQ(first.value("name"), "Neonnacht");
    EXPECT_EQ(last.value("id"), 13);
    const QVariantList colours = first.value("colors").toList();
    ASSERT_EQ(colours.size(), 4);
    EXPECT_EQ(colours[0].value<QColor>().name(), "#ff2fd0");
    EXPECT_EQ(colours[3].value<QColor>().name(), "#2b5bff");
}

TEST(LevelMeter, ShowsBassMidsHighsAndBeatShapedWithItsStrength) {
    AudioFrame frame;
    frame.bass = 0.9f;
    frame.mid = 0.5f;
    frame.high = 0.05f;
    frame.level = 0.7f;
    frame.beat = 0.6f;
    const auto expect = [&](float strength, std::array<float, 4> wanted) {
        const std::array<float, 4> shown = LevelMeterModel::levelsOf(frame, strength);
        for (std::size_t i = 0; i < 4; ++i) EXPECT_FLOAT_EQ(shown[i], wanted[i]) << strength << " bar " << i;
    };
    expect(1.0f, {0.9f, 0.5f, 0.05f, 0.6f});
    expect(2.5f, {1.0f, 0.875f, 0.0f, 1.0f});
    expect(0.0f, {0.25f, 0.25f, 0.25f, 0.0f});
    EXPECT_EQ(LevelMeterModel::names(), QStringList({"Bass", "Mitten", "Höhen", "Schlag"}));
}

TEST(LevelMeter, ReadsTheAnalyserOnlyWhileRunningAndAtMostThirtyTimesASecond) {
    int reads = 0;
    AudioFrame frame;
    frame.bass = 0.5f;
    LevelMeterModel meter([&] {
        ++reads;
        return frame;
    });
    QTest::qWait(120);
    EXPECT_EQ(reads, 0);

    QSignalSpy redrawn(&meter, &LevelMeterModel::levelsChanged);
    meter.setRunning(true);
    EXPECT_EQ(reads, 1);  // the first picture comes at once
    EXPECT_EQ(meter.levels().first(), 0.5);

    // A new strength shows without waiting for the next frame.
    meter.setStrength(2.0);
    EXPECT_DOUBLE_EQ(meter.levels().first(), 0.75);
    const int before = reads;
    QElapsedTimer clock;
    clock.start();
    QTest::qWait(600);
    const double seconds = double(clock.elapsed()) / 1000;
    EXPECT_GT(reads, before);
    EXPECT_LE(reads - before, int(seconds * LevelMeterModel::maxRedrawsPerSecond) + 1);
    EXPECT_EQ(redrawn.count(), 2);  // the same frame is not drawn again

    meter.setRunning(false);
    const int stopped = reads;
    meter.setStrength(1.0);
    QTest::qWait(120);
    EXPECT_EQ(reads, stopped);
}

std::optional<QStringList> commandFor(const QString& desktops, const QStringList& installed) {
    return soundSettingsCommand(desktops, [&](const QString& program) { return installed.contains(program); });
}

TEST(SoundSettings, EachDesktopOpensItsOwnSoundSettingsWhenInstalled) {
    const QStringList everything = {"gnome-control-center", "budgie-control-center", "kcmshell6", "kcmshell5",
                                    "systemsettings", "cinnamon-settings", "mate-volume-control", "pavucontrol",
                                    "pavucontrol-qt"};
    const std::map<QString, QStringList> expected = {
        {"GNOME", {"gnome-control-center", "sound"}},
        {"ubuntu:GNOME", {"gnome-control-center", "sound"}},
        {"Budgie:GNOME", {"budgie-control-center", "sound"}},
        {"KDE", {"kcmshell6", "kcm_pulseaudio"}},
        {"X-Cinnamon", {"cinnamon-settings", "sound"}},
        {"MATE", {"mate-volume-control"}},
        {"XFCE", {"pavucontrol"}},
        {"LXQt", {"pavucontrol-qt"}},
        {"", {"pavucontrol"}},
        {"sway", {"pavucontrol"}},
    };
    for (const auto& [desktops, command] : expected) EXPECT_EQ(commandFor(desktops, everything), command) << desktops.toStdString();
}

TEST(SoundSettings, FallsBackAlongTheDesktopsChoicesThenToAMixerAndElseToNothing) {
    EXPECT_EQ(commandFor("KDE", {"systemsettings", "kcmshell5"}), QStringList({"kcmshell5", "kcm_pulseaudio"}));
    EXPECT_EQ(commandFor("KDE", {"systemsettings", "pavucontrol"}), QStringList({"systemsettings", "kcm_pulseaudio"}));
    EXPECT_EQ(commandFor("GNOME", {"pavucontrol-qt"}), QStringList({"pavucontrol-qt"}));
    // An unknown first name does not hide a known later one.
    EXPECT_EQ(commandFor("Pop:GNOME", {"gnome-control-center", "pavucontrol"}),
              QStringList({"gnome-control-center", "sound"}));
    EXPECT_EQ(commandFor("XFCE", {"gnome-control-center"}), std::nullopt);
    EXPECT_EQ(commandFor("GNOME", {}), std::nullopt);
}

}  // namespace
}  // namespace quellton::test
