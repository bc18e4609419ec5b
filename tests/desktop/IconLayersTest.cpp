#include <QGuiApplication>

#include <gtest/gtest.h>

#include <algorithm>

#include "IconLayers.h"
#include "IconManagerSettings.h"
#include "PulseTestServer.h"
#include "SessionTestSupport.h"
#include "WindowOverlay.h"
#include "X11TestClient.h"

namespace quellton {
namespace {

using test::settle;
using test::waitUntil;

const QRect screen(0, 0, 1280, 720);

// Keys every backdrop that can be keyed, as the real stores would, and remembers what it was asked.
struct KeyEverything : IconManagerSettings {
    void prepare() override {}
    std::optional<std::uint32_t> keyBackdrop(IconManager manager) override {
        keyed.push_back(manager);
        return backdropKeyColor;
    }
    void restoreBackdrop(IconManager manager) override { restored.push_back(manager); }
    void finish() override {}
    std::vector<IconManager> keyed, restored;
};

// Counts the warnings that name a text.
struct WarningCounter {
    explicit WarningCounter(QString text) {
        needle = std::move(text);
        count = 0;
        previous = qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString& message) {
            if (message.contains(needle)) ++count;
        });
    }
    ~WarningCounter() { qInstallMessageHandler(previous); }
    static inline QString needle;
    static inline int count = 0;
    QtMessageHandler previous;
};

class IconLayersTest : public ::testing::Test {
protected:
    void SetUp() override {
        ours = client.window(screen);
        client.desktop(ours, "quellton", "Quellton");
        client.map(ours);
        ASSERT_TRUE(layers.start());
        layers.addWindow(ours, screen, 1.0, overlay);
    }
    void TearDown() override { layers.stop(); }

    xcb_window_t layer(const std::string& instance, const std::string& className, bool alpha = false) {
        const xcb_window_t w = client.window(screen, alpha);
        client.desktop(w, instance, className);
        client.map(w);
        return w;
    }
    bool directly(bool above, xcb_window_t theirs) const {
        const auto order = client.stacking();
        const auto a = std::ranges::find(order, ours), b = std::ranges::find(order, theirs);
        return a != order.end() && b != order.end() && (above ? a == b + 1 : b == a + 1);
    }

    test::X11Client client;
    KeyEverything settings;
    x11::IconLayers layers{&settings};
    std::shared_ptr<WindowOverlay> overlay = std::make_shared<WindowOverlay>();
    xcb_window_t ours = XCB_WINDOW_NONE;
};

TEST_F(IconLayersTest, AKeyedLayerIsShownAboveUsWithoutItsKeyAndEveryChangeFollows) {
    const xcb_window_t desktop = layer("xfdesktop", "Xfdesktop");
    client.fill(desktop, screen, 0xff000000u);
    client.fill(desktop, QRect(100, 100, 40, 40), 0xffffffffu);

    ASSERT_TRUE(waitUntil([&] { return layers.route(ours) == IconLayerRoute::keyed && directly(true, desktop); }));
    EXPECT_EQ(settings.keyed, std::vector<IconManager>{IconManager::xfdesktop});
    EXPECT_FALSE(layers.blocks(screen));
    ASSERT_TRUE(waitUntil([&] { return overlay->pixel(120, 120) == 0xffffffffu; }));
    EXPECT_EQ(overlay->size(), screen.size());
    EXPECT_EQ(overlay->pixel(640, 400), 0u);

    // The icon manager paints (a hover, a selection): the change reaches the overlay.
    client.fill(desktop, QRect(300, 300, 20, 20), 0xffff0000u);
    ASSERT_TRUE(waitUntil([&] { return overlay->pixel(310, 310) == 0xffff0000u; }, 3000));
    client.fill(desktop, QRect(100, 100, 40, 40), 0xff000000u);
    ASSERT_TRUE(waitUntil([&] { return overlay->pixel(120, 120) == 0u; }, 3000));

    // Raised over us (a click on the desktop does that under some managers): we go back above it.
    client.stack(desktop, XCB_STACK_MODE_ABOVE);
    ASSERT_TRUE(waitUntil([&] { return directly(true, desktop); }, 3000));

    // The manager quits: its backdrop is given back and nothing is drawn over the picture.
    client.destroy(desktop);
    ASSERT_TRUE(waitUntil([&] { return !layers.route(ours); }));
    EXPECT_EQ(settings.restored, std::vector<IconManager>{IconManager::xfdesktop});
    EXPECT_EQ(overlay->size(), QSize(0, 0));
}

TEST_F(IconLayersTest, ALayerThatAlwaysRaisesItselfGetsItsBackdropBackAndBlocksThePicture) {
    WarningCounter warnings(QStringLiteral("nicht über die Schreibtischsymbole von »xfdesktop«"));
    const xcb_window_t desktop = layer("xfdesktop", "Xfdesktop");
    // Raised over us whenever we got above it, as a manager that keeps its desktop window on top would.
    ASSERT_TRUE(waitUntil([&] {
        client.stack(desktop, XCB_STACK_MODE_ABOVE);
        return layers.blocks(screen);
    }));
    EXPECT_EQ(settings.restored, std::vector<IconManager>{IconManager::xfdesktop});
    EXPECT_EQ(WarningCounter::count, 1);
    ASSERT_TRUE(waitUntil([&] { return layers.route(ours) == IconLayerRoute::blocked && directly(false, desktop); }));
    EXPECT_EQ(overlay->size(), QSize(0, 0));
    // Its backdrop stays the user's while it runs.
    const std::size_t keyed = settings.keyed.size();
    client.fill(desktop, screen, 0xff102030u);
    settle(800);
    EXPECT_EQ(settings.keyed.size(), keyed);
    EXPECT_EQ(settings.restored.size(), 1u);
}

TEST_F(IconLayersTest, ASeeThroughLayerHasUsDirectlyBelowOnceSomethingCompositesIt) {
    // Desktop Icons NG cannot run here (it needs GNOME Shell): a window of the same kind stands in.
    const xcb_window_t ding = layer("ding", "Ding", true);
    client.fill(ding, screen, 0u);
    client.fill(ding, QRect(40, 40, 10, 10), 0x80400020u);
    // Nobody composites: its own alpha is what our window shows over the picture.
    ASSERT_TRUE(waitUntil([&] { return layers.route(ours) == IconLayerRoute::ownAlpha && directly(true, ding); }));
    ASSERT_TRUE(waitUntil([&] { return overlay->pixel(45, 45) == 0x80400020u; }));
    EXPECT_EQ(overlay->pixel(400, 400), 0u);
    EXPECT_TRUE(settings.keyed.empty());

    const pid_t compositor = test::spawn({"picom", "--backend", "xrender", "--log-level", "error"});
    ASSERT_TRUE(waitUntil([&] { return layers.route(ours) == IconLayerRoute::below && directly(false, ding); }));
    EXPECT_EQ(overlay->size(), QSize(0, 0));
    // It lowers itself to the bottom, as nemo does when it maps: we follow below it.
    client.stack(ding, XCB_STACK_MODE_BELOW);
    ASSERT_TRUE(waitUntil([&] { return directly(false, ding); }, 3000));
    EXPECT_FALSE(layers.blocks(screen));
    test::terminate(compositor);
    client.destroy(ding);
}

TEST_F(IconLayersTest, AnUnknownOpaqueLayerBlocksThePictureAndSaysSoOnce) {
    WarningCounter warnings(QStringLiteral("»spacefm«"));
    const xcb_window_t spacefm = layer("spacefm", "Spacefm");
    ASSERT_TRUE(waitUntil([&] { return layers.blocks(screen) && directly(false, spacefm); }));
    EXPECT_EQ(layers.route(ours), IconLayerRoute::blocked);
    client.stack(spacefm, XCB_STACK_MODE_BELOW);
    ASSERT_TRUE(waitUntil([&] { return directly(false, spacefm); }, 3000));
    EXPECT_EQ(WarningCounter::count, 1);
    EXPECT_TRUE(settings.keyed.empty());
    client.destroy(spacefm);
    ASSERT_TRUE(waitUntil([&] { return !layers.blocks(screen); }));
}

}  // namespace
}  // namespace quellton
