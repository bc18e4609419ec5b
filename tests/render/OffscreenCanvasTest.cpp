// Frames read back from the GPU without waiting, and the offscreen canvas that the gallery shows.
#include <gtest/gtest.h>

#include <epoxy/gl.h>

#include <chrono>
#include <thread>

#include "Catalog.h"
#include "FrameReadback.h"
#include "OffscreenCanvas.h"
#include "RenderSettings.h"
#include "RenderThread.h"
#include "ShaderLibrary.h"
#include "VisualRenderer.h"

using namespace quellton;

namespace {

// Top half `top`, bottom half `bottom`, alpha 0 everywhere: GL's rows start at the bottom.
void paint(const RenderTarget& target, QColor top, QColor bottom) {
    target.bindForDrawing();
    glEnable(GL_SCISSOR_TEST);
    for (const auto& [colour, y] : {std::pair(bottom, 0), std::pair(top, target.height / 2)}) {
        glScissor(0, y, target.width, target.height / 2);
        glClearColor(colour.redF(), colour.greenF(), colour.blueF(), 0.0f);
        glClear(GL_COLOR_BUFFER_BIT);
    }
    glDisable(GL_SCISSOR_TEST);
}

bool waitFor(const std::function<bool()>& condition, double seconds = 30) {
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::duration<double>(seconds);
    while (!condition()) {
        if (std::chrono::steady_clock::now() > deadline) return false;
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    return true;
}

class Readback : public ::testing::Test {
protected:
    void SetUp() override { ASSERT_TRUE(ShaderLibrary::shared().bindThreadContext()); }
    std::shared_ptr<FrameMailbox> mailbox = std::make_shared<FrameMailbox>();
};

TEST_F(Readback, AFrameArrivesUprightAndOpaqueWithTheNextCapture) {
    auto first = RenderTarget::create(64, 36, GL_RGBA8);
    auto second = RenderTarget::create(40, 20, GL_RGBA8);
    ASSERT_TRUE(first && second);
    int notified = 0;
    mailbox->setReceiver([&] { ++notified; });
    FrameReadback readback(mailbox);

    paint(*first, Qt::red, Qt::blue);
    readback.capture(*first);
    glFinish();  // the first frame's fence has surely signalled now; capturing never waits for it itself
    EXPECT_EQ(mailbox->latest().second, 0);

    paint(*second, Qt::green, Qt::green);
    readback.capture(*second);
    const auto [image, serial] = mailbox->latest();
    EXPECT_EQ(serial, 1);
    EXPECT_EQ(notified, 1);
    ASSERT_EQ(image.size(), QSize(64, 36));  // the earlier frame, at its own size
    EXPECT_EQ(image.pixel(10, 2), qRgb(255, 0, 0));
    EXPECT_EQ(image.pixel(50, 33), qRgb(0, 0, 255));

    glFinish();
    readback.capture(*first);
    EXPECT_EQ(mailbox->latest().first.size(), QSize(40, 20));
    EXPECT_EQ(mailbox->latest().first.pixel(0, 0), qRgb(0, 255, 0));
    EXPECT_EQ(readback.counts().started, 3);
    EXPECT_EQ(readback.counts().delivered, 2);
}

class Offscreen : public ::testing::Test {
protected:
    static void SetUpTestSuite() {
        const std::vector<Visualizer> entries = {*Catalog::byID("halo")};
        ShaderLibrary::shared().compileBlocking(entries);
        RenderSettings settings;
        settings.currentID = "halo";
        settings.fps = 60;
        RenderState::set(settings);
    }
};

TEST_F(Offscreen, DrawsOnlyWhileShownAtThePreviewSize) {
    OffscreenCanvas canvas(Role::preview);
    std::atomic<int> notified{0};
    canvas.setFrameReceiver([&] { ++notified; });
    canvas.setGeometry(QRectF(100, 50, 320, 180), 1.0);
    EXPECT_EQ(canvas.framesDrawn(), 0);

    canvas.setShown(true);
    ASSERT_TRUE(waitFor([&] { return canvas.latestFrame().second > 3; })) << "no frames came back";
    EXPECT_EQ(canvas.latestFrame().first.size(), QSize(320, 180));
    EXPECT_GT(notified, 3);

    canvas.setShown(false);  // returns once the render thread let go of it
    const long drawn = canvas.framesDrawn();
    const long serial = canvas.latestFrame().second;
    std::this_thread::sleep_for(std::chrono::milliseconds(300));
    EXPECT_EQ(canvas.framesDrawn(), drawn);
    EXPECT_EQ(canvas.latestFrame().second, serial);

    canvas.setShown(true);
    ASSERT_TRUE(waitFor([&] { return canvas.framesDrawn() > drawn + 3; }));
}

TEST_F(Offscreen, AClickStartsARippleWhereItLands) {
    OffscreenCanvas canvas(Role::preview);
    canvas.setGeometry(QRectF(0, 0, 200, 100), 1.0);
    canvas.click(QPointF(200, 0));  // the top right corner, in y-down points
    const Inputs inputs = canvas.renderer().inputs().copy();
    EXPECT_GT(inputs.clickedAt, 0);
    EXPECT_NEAR(inputs.click[0], 2.0, 1e-4);  // p-coordinates: aspect 2, y up
    EXPECT_NEAR(inputs.click[1], 1.0, 1e-4);
}

}  // namespace
