#include <linux/input-event-codes.h>

#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <cstring>
#include <optional>

#include "AppModel.h"
#include "Catalog.h"
#include "DesktopHosts.h"
#include "TestModel.h"
#include "LayerSurface.h"
#include "NestedSway.h"
#include "PulseTestServer.h"
#include "SessionLock.h"
#include "SessionTestSupport.h"
#include "ShaderLibrary.h"
#include "VirtualPointer.h"
#include "Wallpaper.h"
#include "WaylandDesktop.h"
#include "WaylandTestSupport.h"
#include "WindowSystemGl.h"
#include "wlr-output-power-management-unstable-v1-client-protocol.h"

namespace quellton {
namespace {

using test::keepShot;
using test::nonFlatShare;
using test::settle;
using test::sway;
using test::waitUntil;

// The controller on the Wayland desktop of the nested sway, with the shown visualization compiled.
class WaylandWallpaperTest : public ::testing::Test {
protected:
    static void SetUpTestSuite() {
        const Visualizer* shown = Catalog::byID("nation");
        ASSERT_TRUE(shown);
        ShaderLibrary::shared().compileBlocking(std::span(shown, 1));
    }

    void SetUp() override {
        model = test::makeTestModel(dir.filePath(QStringLiteral("Quellton.conf")));
        model->setFps(30);  // two cores draw, and two compositors copy the frames

        auto backend = makeDesktopHost(model->settingsStore());
        desktop = dynamic_cast<wayland::WaylandDesktop*>(backend.get());
        ASSERT_TRUE(desktop) << "no Wayland desktop";
        controller = std::make_unique<WallpaperController>(*model, std::move(backend), nullptr);
        controller->start();
        ASSERT_TRUE(waitUntil([&] { return controller->surfaces().size() == 1; }));
    }

    void TearDown() override {
        controller.reset();
        for (pid_t client : clients) test::terminate(client);
    }

    WallpaperSurface& first() const { return *controller->surfaces().front(); }
    bool hidden(const WallpaperSurface& s) const { return const_cast<WallpaperSurface&>(s).inputs().copy().hidden; }
    // The first screenshot that shows what is wanted, or a null image.
    static QImage grabWhen(const std::function<bool(const QImage&)>& wanted) {
        QImage shot;
        return waitUntil([&] { return wanted(shot = sway().grab()); }) ? shot : QImage();
    }
    // Drawing goes on on the screen's surface: its frame count grows within the time. A change of the
    // output may still make the controller build the surface anew meanwhile; the new one counts afresh.
    bool drawing(std::size_t screen = 0) const {
        const WallpaperSurface* counted = nullptr;
        long before = 0;
        return waitUntil([&] {
            const std::vector<WallpaperSurface*> now = controller->surfaces();
            if (screen >= now.size()) return false;
            const long frames = now[screen]->framesDrawn();
            if (now[screen] != counted || frames < before) {
                counted = now[screen];
                before = frames;
                return false;
            }
            return frames > before + 2;
        }, 20000);
    }

    QTemporaryDir dir;
    std::unique_ptr<AppModel> model;
    wayland::WaylandDesktop* desktop = nullptr;
    std::unique_ptr<WallpaperController> controller;
    std::vector<pid_t> clients;
};

// That the picture moves, and follows outputs as they come, the program's own test on sway shows.
TEST_F(WaylandWallpaperTest, ThePictureLiesUnderTheWindowsAndStopsBehindAFullscreenOneUntilItGoes) {
    ASSERT_EQ(controller->layout().size(), 1u);
    EXPECT_EQ(first().geometry(), QRect(0, 0, 1280, 720));
    ASSERT_TRUE(drawing());

    // A window covers its part of the desktop; the picture goes on around it.
    clients.push_back(sway().spawnClient({"foot", "--app-id=cover", "-o", "colors.background=ff0000", "sleep", "600"}));
    ASSERT_TRUE(waitUntil([] { return sway().query("get_tree").find("\"cover\"") != std::string::npos; }));
    settle(300);
    EXPECT_FALSE(hidden(first())) << "a tiled window is no fullscreen one";
    ASSERT_TRUE(sway().command("[app_id=cover] floating enable, resize set 600 400, move position 340 160"));
    const auto red = [](QRgb p) { return qRed(p) == 255 && qGreen(p) == 0 && qBlue(p) == 0; };
    const QImage covered = grabWhen([&](const QImage& shot) {
        return !shot.isNull() && red(shot.pixel(640, 360)) && !red(shot.pixel(100, 100));
    });
    ASSERT_FALSE(covered.isNull()) << "the window did not show";
    keepShot(covered, "wayland-window");
    EXPECT_GT(nonFlatShare(covered, QRect(0, 0, 300, 720)), 0.5) << "no picture beside the window";
    EXPECT_FALSE(hidden(first())) << "a window that leaves the desktop visible hides nothing";

    ASSERT_TRUE(sway().command("[app_id=cover] fullscreen enable"));
    ASSERT_TRUE(waitUntil([&] { return hidden(first()); })) << "the compositor's fullscreen state was not seen";
    settle(300);
    const long frames = first().framesDrawn();
    settle(1000);
    EXPECT_LE(first().framesDrawn(), frames + 1) << "frames drawn behind a fullscreen window";
    ASSERT_TRUE(sway().command("[app_id=cover] fullscreen disable"));
    ASSERT_TRUE(waitUntil([&] { return !hidden(first()); }));
    ASSERT_TRUE(drawing());
    ASSERT_TRUE(sway().command("[app_id=cover] fullscreen enable"));
    ASSERT_TRUE(waitUntil([&] { return hidden(first()); }));
    // The window's end uncovers the desktop as well.
    ASSERT_TRUE(sway().command("[app_id=cover] kill"));
    ASSERT_TRUE(waitUntil([&] { return !hidden(first()); }));
    EXPECT_TRUE(drawing());
}

TEST_F(WaylandWallpaperTest, EachOutputGetsItsSurfaceAndLosesItWithTheOutput) {
    ASSERT_TRUE(sway().command("create_output"));
    ASSERT_TRUE(waitUntil([&] { return controller->surfaces().size() == 2; }));
    const auto surfaces = controller->surfaces();
    EXPECT_EQ(surfaces[0]->geometry(), QRect(0, 0, 1280, 720));
    EXPECT_EQ(surfaces[1]->geometry(), QRect(1280, 0, 1280, 720));
    EXPECT_TRUE(drawing(1));

    // Only the first output with "Auf allen Bildschirmen" off.
    model->setAllScreens(false);
    ASSERT_EQ(controller->surfaces().size(), 1u);
    EXPECT_EQ(first().geometry(), QRect(0, 0, 1280, 720));
    model->setAllScreens(true);
    ASSERT_EQ(controller->surfaces().size(), 2u);

    const std::string second = sway().query("get_outputs").find("\"WL-2\"") != std::string::npos ? "WL-2" : "WL-3";
    ASSERT_TRUE(sway().unplug(second));
    ASSERT_TRUE(waitUntil([&] { return controller->surfaces().size() == 1; }));
    EXPECT_EQ(controller->layout().size(), 1u);
    EXPECT_EQ(first().geometry(), QRect(0, 0, 1280, 720));
    EXPECT_TRUE(drawing());
}

TEST_F(WaylandWallpaperTest, FollowsIntegerAndFractionalOutputScales) {
    ASSERT_TRUE(sway().command("output WL-1 scale 2"));
    ASSERT_TRUE(waitUntil([&] { return first().geometry() == QRect(0, 0, 640, 360); }));
    // The surface as it is now: an output change may still make it anew.
    const auto layout = [&] { return desktop->surfaces().front()->bufferLayout(); };
    ASSERT_TRUE(waitUntil([&] { return layout().pixels == QSize(1280, 720); }));
    EXPECT_EQ(layout().bufferScale, 2);
    EXPECT_FALSE(layout().viewport);
    EXPECT_TRUE(drawing());

    ASSERT_TRUE(sway().command("output WL-1 scale 1.5"));
    ASSERT_TRUE(waitUntil([&] { return first().geometry().width() == 853; }));
    // Every pixel of the panel drawn once: the viewporter maps the full-size buffer onto the output.
    ASSERT_TRUE(waitUntil([&] { return layout().pixels == QSize(1280, 720); }));
    EXPECT_EQ(layout().bufferScale, 1);
    EXPECT_TRUE(layout().viewport);
    EXPECT_TRUE(drawing());
    const QImage scaled = grabWhen([](const QImage& shot) { return nonFlatShare(shot) > 0.5; });
    ASSERT_FALSE(scaled.isNull());
    keepShot(scaled, "wayland-scale-1.5");
    ASSERT_TRUE(sway().command("output WL-1 scale 1"));
    ASSERT_TRUE(waitUntil([&] { return first().geometry() == QRect(0, 0, 1280, 720); }));
}

TEST_F(WaylandWallpaperTest, ALeftPressOnTheDesktopRipplesThePictureThere) {
    test::VirtualPointer pointer(sway().socket());
    ASSERT_TRUE(pointer.ready());
    const Inputs before = first().inputs().copy();
    // A new pointer device reaches the clients only after the compositor has told them of it.
    ASSERT_TRUE(waitUntil([&] {
        pointer.click(320, 180, 1280, 720, BTN_LEFT);
        return test::settle(100), first().inputs().copy().clickedAt != before.clickedAt;
    }));
    const Inputs clicked = first().inputs().copy();
    // p-coordinates: the centre is the origin, y up, one unit is half the height.
    EXPECT_NEAR(clicked.click[0], (2.0 * 320 - 1280) / 720, 0.01);
    EXPECT_NEAR(clicked.click[1], (720 - 2.0 * 180) / 720, 0.01);

    for (std::uint32_t other : {BTN_RIGHT, BTN_MIDDLE}) pointer.click(900, 500, 1280, 720, other);
    settle(400);
    EXPECT_EQ(first().inputs().copy().clickedAt, clicked.clickedAt);
}

// Whether a client of its own gets the first output's power control, as wlopm would ask for it.
bool powerControlFree() {
    struct Client {
        wl_display* display = wl_display_connect(sway().socket().c_str());
        zwlr_output_power_manager_v1* manager = nullptr;
        wl_output* output = nullptr;
        std::optional<bool> granted;
        ~Client() {
            if (display) wl_display_disconnect(display);
        }
    } client;
    if (!client.display) return false;
    static const wl_registry_listener registryListener{
        [](void* data, wl_registry* registry, uint32_t name, const char* interface, uint32_t) {
            auto* c = static_cast<Client*>(data);
            if (std::strcmp(interface, zwlr_output_power_manager_v1_interface.name) == 0)
                c->manager = static_cast<zwlr_output_power_manager_v1*>(
                    wl_registry_bind(registry, name, &zwlr_output_power_manager_v1_interface, 1));
            if (std::strcmp(interface, wl_output_interface.name) == 0 && !c->output)
                c->output = static_cast<wl_output*>(wl_registry_bind(registry, name, &wl_output_interface, 1));
        },
        [](void*, wl_registry*, uint32_t) {},
    };
    wl_registry_add_listener(wl_display_get_registry(client.display), &registryListener, &client);
    wl_display_roundtrip(client.display);
    if (!client.manager || !client.output) return false;
    static const zwlr_output_power_v1_listener powerListener{
        [](void* data, zwlr_output_power_v1*, uint32_t) { static_cast<Client*>(data)->granted = true; },
        [](void* data, zwlr_output_power_v1*) { static_cast<Client*>(data)->granted = false; },
    };
    zwlr_output_power_v1_add_listener(zwlr_output_power_manager_v1_get_output_power(client.manager, client.output),
                                      &powerListener, &client);
    wl_display_roundtrip(client.display);
    return client.granted.value_or(false);
}

TEST_F(WaylandWallpaperTest, LeavesTheOutputsPowerControlToTheUsersTools) {
    // wlroots grants it to one client at a time; the wallpaper only looks for a moment now and then.
    for (int i = 0; i < 5; ++i) {
        bool free = false;
        for (int attempt = 0; attempt < 3 && !free; ++attempt) free = powerControlFree() || (settle(50), false);
        EXPECT_TRUE(free) << "the output's power control is held";
        settle(500);
    }
    EXPECT_FALSE(hidden(first())) << "the output is on";
}

}  // namespace
}  // namespace quellton
