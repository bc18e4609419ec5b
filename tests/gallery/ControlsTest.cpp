// What the toolbar's popovers show beyond plain bindings, the level meter's sampling, and the choice
// of the desktop's sound settings, over a real model and without a window.
#include <QElapsedTimer>
#include <QSignalSpy>
#include <QTest>

#include <gtest/gtest.h>

#include <map>

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

// What the popovers show, choose and store, and an empty Mix's "Nächste", are driven through the window by
// gallery_controls_ui_test.py; here what the window cannot reach.
TEST_F(Controls, AValueNoChoiceHasMarksNoneAndRowsOutOfRangeChangeNothing) {
    QStringList intervalTexts;
    for (const QVariant& choice : controls.intervals()) intervalTexts.append(choice.toMap().value("text").toString());
    EXPECT_EQ(intervalTexts, QStringList({"15 Sekunden", "30 Sekunden", "1 Minute", "2 Minuten", "5 Minuten"}));
    QSignalSpy intervalChanged(&controls, &ControlsModel::intervalChanged);
    controls.chooseInterval(4);
    EXPECT_EQ(model->mixInterval(), 300);
    model->setMixInterval(45);  // a value from an older version or a hand-edited file
    EXPECT_EQ(controls.interval(), -1);
    EXPECT_EQ(intervalChanged.count(), 2);
    model->setFps(144);
    EXPECT_EQ(controls.frameRate(), -1);

    model->setReactivity(1.6);
    for (const auto& [preset, interval, frameRate] : {std::tuple(-1, -1, -1), std::tuple(4, 5, 3)}) {
        controls.choosePreset(preset);
        controls.chooseInterval(interval);
        controls.chooseFrameRate(frameRate);
    }
    EXPECT_EQ(std::tuple(model->reactivity(), model->mixInterval(), model->fps()), std::tuple(1.6, 45, 144));
}

TEST_F(Controls, SelectingAllAgainTellsNobodyAndPalettesCarryTheirColours) {
    QSignalSpy counted(&controls, &ControlsModel::selectedCountChanged);
    controls.selectAll();
    controls.selectAll();  // unchanged: stored again, but nobody is told
    EXPECT_EQ(counted.count(), 1);

    const QVariantList palettes = controls.palettes();
    ASSERT_EQ(palettes.size(), 14);
    EXPECT_EQ(palettes.last().toMap().value("id"), 13);
    const QVariantList colours = palettes.first().toMap().value("colors").toList();
    ASSERT_EQ(colours.size(), 4);
    EXPECT_EQ(colours[0].value<QColor>().name(), "#ff2fd0");
    EXPECT_EQ(colours[3].value<QColor>().name(), "#2b5bff");
}

// The bars' names and their shaping at other strengths are read through the window with a real tone.
TEST(LevelMeter, ShowsBassMidsHighsAndBeatOnlyWhileRunningAndAtMostThirtyTimesASecond) {
    int reads = 0;
    AudioFrame frame;
    frame.bass = 0.5f;
    frame.mid = 0.375f;
    frame.high = 0.125f;
    frame.beat = 0.625f;
    LevelMeterModel meter([&] {
        ++reads;
        return frame;
    });
    QTest::qWait(120);
    EXPECT_EQ(reads, 0);

    QSignalSpy redrawn(&meter, &LevelMeterModel::levelsChanged);
    meter.setRunning(true);
    EXPECT_EQ(reads, 1);  // the first picture comes at once
    EXPECT_EQ(meter.levels(), QList<qreal>({0.5, 0.375, 0.125, 0.625}));

    // A new strength shows without waiting for the next frame.
    meter.setStrength(2.0);
    EXPECT_EQ(meter.levels(), QList<qreal>({0.75, 0.5, 0.0, 1.0}));
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
