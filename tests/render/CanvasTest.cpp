// The live path end to end: a canvas window under a private X server, drawn by the render thread.
#include <gtest/gtest.h>

#include <QGuiApplication>
#include <QScreen>
#include <QTest>

#include <sys/times.h>

#include <functional>
#include <memory>

#include "Canvas.h"
#include "Catalog.h"
#include "RenderSettings.h"
#include "ShaderLibrary.h"
#include "VisualRenderer.h"
#include "WindowSystemGl.h"
#include "AudioSpectrum.h"
#include "PrivateSession.h"
#include "PulseTestServer.h"
#include "SessionTestSupport.h"

using namespace quellton;

namespace {

std::unique_ptr<test::PrivateSession> session;
std::unique_ptr<QGuiApplication> app;

using test::settle;

bool waitFor(const std::function<bool()>& condition, int milliseconds = 20000) {
    return test::waitUntil(condition, milliseconds);
}

QImage grab(Canvas& canvas) { return canvas.screen()->grabWindow(canvas.winId()).toImage(); }

double meanBrightness(const QImage& image) {
    double sum = 0;
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x) {
            const QRgb c = image.pixel(x, y);
            sum += qRed(c) + qGreen(c) + qBlue(c);
        }
    return sum / (3.0 * image.width() * image.height());
}

// CPU time of the whole process in clock ticks: the render thread and the rasteriser's workers.
long processTicks() {
    tms t{};
    times(&t);
    return long(t.tms_utime + t.tms_stime);
}

void useSettings(const std::string& id, bool paused = false) {
    RenderSettings s;
    s.currentID = id;
    s.paused = paused;
    s.fps = 30;
    RenderState::set(s);
}

class CanvasWindow : public ::testing::Test {
protected:
    static void SetUpTestSuite() {
        std::vector<Visualizer> entries;
        for (const char* id : {"halo", "pegel", "spektrogramm"}) entries.push_back(*Catalog::byID(id));
        ShaderLibrary::shared().compileBlocking(entries);
    }
    void SetUp() override {
        useSettings("halo");
        canvas = std::make_unique<Canvas>(Role::wallpaper);
        canvas->setGeometry(0, 0, 320, 180);
        canvas->show();
        ASSERT_TRUE(waitFor([this] { return canvas->framesDrawn() > 3; })) << "the canvas never drew";
    }
    std::unique_ptr<Canvas> canvas;
};

}  // namespace

TEST_F(CanvasWindow, ShowsTheCurrentVisualizationAndASwitchChangesThePicture) {
    settle(300);
    const QImage before = grab(*canvas);
    ASSERT_EQ(before.size(), QSize(320, 180));
    EXPECT_GT(meanBrightness(before), 3.0);
    const RectF rect = canvas->inputs().copy().screenRect;
    EXPECT_EQ(rect.width, 320);
    EXPECT_EQ(rect.height, 180);

    useSettings("pegel");
    settle(1500);
    EXPECT_NE(before, grab(*canvas));
    const long frames = canvas->framesDrawn();
    settle(500);
    EXPECT_GT(canvas->framesDrawn(), frames);
}

// Hidden, the render thread sleeps: almost no CPU, and drawing again costs more.
TEST_F(CanvasWindow, PausedOrHiddenDrawsNothingAndHiddenCostsAlmostNoCpu) {
    useSettings("spektrogramm", true);
    settle(300);
    long frames = canvas->framesDrawn();
    settle(600);
    EXPECT_EQ(canvas->framesDrawn(), frames);
    useSettings("spektrogramm");
    canvas->inputs().setHidden(true);
    settle(300);
    frames = canvas->framesDrawn();
    long before = processTicks();
    settle(2000);
    const long hidden = processTicks() - before;
    EXPECT_EQ(canvas->framesDrawn(), frames);
    EXPECT_LT(hidden, 20) << "ticks of CPU in two seconds (100 per second is one full core)";
    canvas->inputs().setHidden(false);
    EXPECT_TRUE(waitFor([&] { return canvas->framesDrawn() > frames + 3; }));
    before = processTicks();
    settle(2000);
    EXPECT_GT(processTicks() - before, hidden) << "drawing should cost more than not drawing";
}

TEST_F(CanvasWindow, ClicksBecomeRipples) {
    const double before = canvas->inputs().copy().clickedAt;
    QTest::mouseClick(canvas.get(), Qt::LeftButton, {}, QPoint(160, 90));
    const Inputs after = canvas->inputs().copy();
    EXPECT_GT(after.clickedAt, before);
    EXPECT_NEAR(after.click[0], 0.0f, 0.02f);
    EXPECT_NEAR(after.click[1], 0.0f, 0.02f);
    QTest::mouseClick(canvas.get(), Qt::LeftButton, {}, QPoint(320, 0));  // the top right corner
    EXPECT_NEAR(canvas->inputs().copy().click[0], 1.7777f, 0.02f);
    EXPECT_NEAR(canvas->inputs().copy().click[1], 1.0f, 0.02f);
}

TEST_F(CanvasWindow, LeavingTheWindowSystemStopsDrawing) {
    canvas->destroy();
    const long frames = canvas->framesDrawn();
    settle(500);
    EXPECT_EQ(canvas->framesDrawn(), frames);
    canvas->show();  // a fresh link on a fresh surface
    EXPECT_TRUE(waitFor([&] { return canvas->framesDrawn() > frames + 3; }));
}

// The pixel column with the most light.
int brightestColumn(const QImage& image) {
    int best = 0;
    double most = -1;
    for (int x = 0; x < image.width(); ++x) {
        double sum = 0;
        for (int y = 0; y < image.height(); ++y) sum += qGreen(image.pixel(x, y)) + qRed(image.pixel(x, y));
        if (sum > most) {
            most = sum;
            best = x;
        }
    }
    return best;
}

// Last, since it leaves the shared analyser capturing for the rest of the process.
TEST(CanvasWithSound, ThePictureFollowsWhatIsPlaying) {
    test::PulseTestServer pulse;
    ASSERT_TRUE(pulse.ready());
    const std::string tone = pulse.dir() + "/tone.wav";
    ASSERT_TRUE(test::shell("sox -n -r 48000 -c 2 -b 16 " + tone + " synth 30 sine 440 vol 0.5 2>/dev/null"));
    ShaderLibrary::shared().compileBlocking(std::vector<Visualizer>{*Catalog::byID("pegel")});
    RenderSettings settings;
    settings.currentID = "pegel";  // a level meter: the column of 440 Hz stands out
    settings.smoothing = 0;
    RenderState::set(settings);
    ASSERT_TRUE(AudioSpectrum::shared().start());

    Canvas canvas(Role::wallpaper);
    canvas.setGeometry(0, 0, 384, 216);
    canvas.show();
    ASSERT_TRUE(waitFor([&] { return canvas.framesDrawn() > 3; }));
    settle(2000);  // silence: the idle animation
    const QImage quiet = grab(canvas);
    pulse.play(tone, "one");
    EXPECT_TRUE(waitFor([] { return wallClockNow() - AudioSpectrum::shared().lastSignal() < 0.5; }, 10000));
    settle(1500);  // the idle signal fades out with a 0.6 s time constant
    const QImage playing = grab(canvas);
    pulse.stopPlaying();
    AudioSpectrum::shared().stop();

    // 440 Hz is band 27 of 64: its column, at about 43 % of the width, stands tallest; the treble falls silent.
    const double tallest = brightestColumn(playing) / double(playing.width());
    EXPECT_GT(tallest, 0.38);
    EXPECT_LT(tallest, 0.50);
    EXPECT_LT(meanBrightness(playing.copy(int(0.75 * playing.width()), 0, playing.width() / 4, playing.height())),
              meanBrightness(quiet.copy(int(0.75 * quiet.width()), 0, quiet.width() / 4, quiet.height())));
}

int main(int argc, char** argv) {
    ::testing::InitGoogleTest(&argc, argv);
    session = std::make_unique<test::PrivateSession>("1024x768x24");
    if (!session->ready()) {
        std::fprintf(stderr, "no private X session\n");
        return 1;
    }
    setenv("QT_QPA_PLATFORM", "xcb", 1);
    app = std::make_unique<QGuiApplication>(argc, argv);
    std::string error;
    if (!useWindowSystemGl(&error)) {
        std::fprintf(stderr, "no OpenGL on the X server: %s\n", error.c_str());
        return 1;
    }
    const int status = RUN_ALL_TESTS();
    app.reset();
    session.reset();
    return status;
}
