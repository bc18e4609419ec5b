#include <QSignalSpy>
#include <QTimer>

#include "Catalog.h"
#include "ModelTestSupport.h"

namespace quellton::test {
namespace {

using Selection = ModelTest;

const std::string& firstID() { return catalog().front().id; }
const std::string& lastID() { return catalog().back().id; }

TEST_F(Selection, StepsWrapAroundTheCatalogAndLeaveAnUnknownOneForTheEnds) {
    auto model = makeModel();
    model->setCurrentID(lastID());
    model->next();
    EXPECT_EQ(model->currentID(), firstID());
    model->previous();
    EXPECT_EQ(model->currentID(), lastID());
    model->setCurrentID(catalog()[1].id);
    model->next();
    EXPECT_EQ(model->currentID(), catalog()[2].id);
    model->previous();
    model->previous();
    EXPECT_EQ(model->currentID(), firstID());

    model->setCurrentID("gibtsnicht");
    EXPECT_EQ(model->current().id, firstID());
    model->next();
    EXPECT_EQ(model->currentID(), firstID());
    model->setCurrentID("gibtsnicht");
    model->previous();
    EXPECT_EQ(model->currentID(), lastID());

    model->setMix({"echo"});  // one member: the Mix behaves as off
    model->setMixEnabled(true);
    model->next();
    EXPECT_EQ(model->currentID(), firstID());
}

TEST_F(Selection, RandomNeverPicksTheCurrentOne) {
    auto model = makeModel();
    std::set<std::string> seen;
    for (int i = 0; i < 300; ++i) {
        const std::string before = model->currentID();
        model->random();
        ASSERT_NE(model->currentID(), before);
        ASSERT_NE(Catalog::byID(model->currentID()), nullptr);
        seen.insert(model->currentID());
    }
    EXPECT_GT(seen.size(), 20u);  // it really is random, not a fixed step
}

TEST_F(Selection, MixShowsEveryMemberOncePerRound) {
    auto model = makeModel();
    const std::set<std::string> members = {"halo", "echo", "aurora", "prisma"};
    model->setMix(members);
    model->setMixEnabled(true);
    model->setCurrentID("halo");
    for (int round = 0; round < 30; ++round) {
        // A round is a refill: every member except the one showing, each once.
        std::set<std::string> expected = members;
        expected.erase(model->currentID());
        std::set<std::string> shown;
        for (int i = 0; i < 3; ++i) {
            const std::string before = model->currentID();
            model->next();
            ASSERT_NE(model->currentID(), before);
            shown.insert(model->currentID());
        }
        ASSERT_EQ(shown, expected) << "round " << round;
    }
}

TEST_F(Selection, MixQueueSkipsChosenAndRemovedMembersAndLeavesAForeignCurrent) {
    auto model = makeModel();
    model->setMix({"halo", "echo", "aurora", "prisma", "nation"});
    model->setMixEnabled(true);
    model->setCurrentID("nation");
    model->next();
    ASSERT_EQ(model->mixOrder().size(), 3u);
    // A queued member chosen by hand is not repeated.
    const std::string picked = model->mixOrder().front();
    model->setCurrentID(picked);
    model->next();
    EXPECT_NE(model->currentID(), picked);

    ASSERT_FALSE(model->mixOrder().empty());
    const std::string queued = model->mixOrder().back();
    model->toggleMix(queued);
    for (int i = 0; i < 100; ++i) {
        model->next();
        ASSERT_NE(model->currentID(), queued);
    }

    model->setCurrentID("sonar");
    model->next();
    EXPECT_TRUE(model->mix().contains(model->currentID()));
}

TEST_F(Selection, ToggleMixWritesEveryTime) {
    auto model = makeModel();
    QSignalSpy changed(model.get(), &AppModel::mixChanged);
    const auto before = model->mix();
    model->toggleMix("sonar");
    EXPECT_TRUE(model->mix().contains("sonar"));
    EXPECT_TRUE(stored("mix").toStringList().contains("sonar"));
    store("mix", "fremd");
    model->toggleMix("sonar");
    EXPECT_EQ(model->mix(), before);
    EXPECT_EQ(stored("mix").toStringList().size(), int(before.size()));
    EXPECT_EQ(changed.count(), 2);
}

// Drives the tick every 0.2 s from the last switch; returns the elapsed time of the next switch, if any.
class MixTimer : public ModelTest {
protected:
    std::unique_ptr<AppModel> model = makeModel();

    void SetUp() override {
        model->setMix({"halo", "echo", "aurora"});
        model->setCurrentID("halo");
        model->setMixEnabled(true);
    }

    std::optional<double> switchAfter(bool music, std::optional<double> beatAt = std::nullopt, double limit = 200) {
        const double start = model->mixStarted();
        const std::string before = model->currentID();
        for (int k = 1; k * 0.2 <= limit; ++k) {
            clock->time = start + k * 0.2;
            const bool beat = beatAt && clock->time - start >= *beatAt;
            audio->signal = {.lastSignal = music ? clock->time - 0.05 : 0, .beat = beat ? 0.9f : 0.8f};
            model->tick();
            if (model->currentID() != before) return clock->time - start;
        }
        return std::nullopt;
    }
};

TEST_F(MixTimer, SilenceSwitchesAtTheIntervalMusicWaitsEightSecondsAtMostForABeat) {
    const double silence = switchAfter(false).value_or(-1);
    EXPECT_GE(silence, 60);
    EXPECT_LE(silence, 60.2 + 1e-9);
    const double music = switchAfter(true).value_or(-1);
    EXPECT_GT(music, 68);
    EXPECT_LE(music, 68.2 + 1e-9);
    // The switch restarts the interval.
    EXPECT_EQ(model->mixStarted(), clock->time);
}

TEST_F(MixTimer, StrongBeatSwitchesEarlyUnlessSwitchedOff) {
    EXPECT_NEAR(switchAfter(true, 63.0).value_or(-1), 63, 0.2 + 1e-9);
    // A beat before the interval is over changes nothing.
    EXPECT_NEAR(switchAfter(true, 10.0).value_or(-1), 60, 0.2 + 1e-9);
    // Without beat switching, music without a beat does not hold the switch back.
    model->setMixOnBeat(false);
    model->setMixInterval(5);
    EXPECT_NEAR(switchAfter(true).value_or(-1), 5, 0.2 + 1e-9);
}

TEST_F(MixTimer, InactiveOrPausedMixNeverSwitches) {
    model->setPaused(true);
    EXPECT_EQ(switchAfter(false), std::nullopt);
    EXPECT_FALSE(model->hearing());
    EXPECT_EQ(switchAfter(true), std::nullopt);
    EXPECT_TRUE(model->hearing());  // still follows the sound while paused

    model->setPaused(false);
    model->setMix({"halo"});
    EXPECT_EQ(switchAfter(false), std::nullopt);
    model->setMix({"halo", "echo"});
    model->setMixEnabled(false);
    EXPECT_EQ(switchAfter(false), std::nullopt);
}

TEST_F(MixTimer, HearingMeansASignalWithinOneAndAHalfSeconds) {
    QSignalSpy changed(model.get(), &AppModel::hearingChanged);
    audio->signal.lastSignal = clock->time - 1.4;
    model->tick();
    model->tick();
    EXPECT_TRUE(model->hearing());
    audio->signal.lastSignal = clock->time - 1.5;
    model->tick();
    EXPECT_FALSE(model->hearing());
    EXPECT_EQ(changed.count(), 2);
}

TEST_F(Selection, StartCompilesTheCurrentOneFirstAndLogsFailures) {
    auto model = makeModel();
    model->setCurrentID("echo");
    QSignalSpy ready(model.get(), &AppModel::readyChanged);
    model->start();
    ASSERT_EQ(shaders->requests.size(), 1u);
    EXPECT_EQ(shaders->requests[0], "echo");
    ASSERT_NE(model->timer(), nullptr);
    EXPECT_EQ(model->timer()->interval(), 200);
    EXPECT_TRUE(model->timer()->isActive());
    EXPECT_FALSE(model->ready());
    EXPECT_EQ(thumbnailPasses, 1) << "the cached thumbnails show before anything is compiled";

    shaders->failed = {{"halo", "0:12: syntax error"}, {"echo", "undefined x"}};
    const int scheduledBefore = scheduled;
    shaders->completion();
    EXPECT_TRUE(model->ready());
    EXPECT_EQ(ready.count(), 1);
    EXPECT_EQ(thumbnailPasses, 2);
    EXPECT_EQ(scheduled, scheduledBefore + 1);
    EXPECT_EQ(logLines, (std::vector<std::string>{"Quellton: Shader echo fehlerhaft: undefined x",
                                                  "Quellton: Shader halo fehlerhaft: 0:12: syntax error"}));
    shaders->completion();  // a second completion notifies nobody
    EXPECT_EQ(ready.count(), 1);
}

TEST_F(Selection, CompletionAfterTheModelIsGoneStillSchedulesAndLogs) {
    auto model = makeModel();
    model->start();
    model.reset();
    shaders->failed = {{"halo", "kaputt"}};
    shaders->completion();
    EXPECT_EQ(thumbnailPasses, 1) << "only the one at the start";
    EXPECT_EQ(scheduled, 1);
    EXPECT_EQ(logLines.size(), 1u);
}

TEST_F(Selection, TheTimerTicksOnTheEventLoop) {
    auto model = makeModel();
    audio->signal.lastSignal = clock->time;
    model->start();
    QSignalSpy hearing(model.get(), &AppModel::hearingChanged);
    EXPECT_TRUE(hearing.wait(2000));
    EXPECT_TRUE(model->hearing());
}

TEST(StableHash, IsFnv1aInBase36) {
    // Expected values from a separate Python FNV-1a (it gives 0xaf63dc4c8601ec8c for "a", the published
    // vector) written in base 36; the empty text is the offset basis 0xcbf29ce484222325.
    EXPECT_EQ(AppModel::stableHash(""), "33niihzj4ux45");
    EXPECT_EQ(AppModel::stableHash("a"), "2o0ongoiv4rrg");
    EXPECT_EQ(AppModel::stableHash("Quellton"), "3tac9j5xmzi3n");
    EXPECT_EQ(AppModel::stableHash("Farbwelt \xc3\xbc"), "2046lmleivzyr");  // UTF-8 bytes, not characters
}

}  // namespace
}  // namespace quellton::test
