// What a wallpaper shows over its picture (the desktop's icons), drawn at the window's resolution.
#include <gtest/gtest.h>

#include <QPainter>
#include <QRasterWindow>
#include <QScreen>

#include "Canvas.h"
#include "Catalog.h"
#include "RenderSettings.h"
#include "SessionTestSupport.h"
#include "ShaderLibrary.h"
#include "WindowOverlay.h"

using namespace quellton;

namespace {

using test::waitUntil;

// Another application's window, all magenta.
class Magenta : public QRasterWindow {
    void paintEvent(QPaintEvent*) override { QPainter(this).fillRect(QRect(QPoint(), size()), Qt::magenta); }
};

void show(const std::string& id, bool paused) {
    RenderSettings s;
    s.currentID = id;
    s.paused = paused;
    s.fps = 30;
    RenderState::set(s);
}

QRgb pixel(Canvas& canvas, int x, int y) {
    return canvas.screen()->grabWindow(canvas.winId()).toImage().pixel(x, y);
}

std::vector<std::uint32_t> square(std::uint32_t color) { return std::vector<std::uint32_t>(20 * 20, color); }

TEST(CanvasOverlay, ShowsOverThePictureAndFollowsChangesAndExposuresWhilePaused) {
    ShaderLibrary::shared().compileBlocking(std::vector<Visualizer>{*Catalog::byID("halo")});
    show("halo", false);
    Canvas canvas(Role::wallpaper);
    canvas.setGeometry(0, 0, 320, 180);
    canvas.show();
    ASSERT_TRUE(waitUntil([&] { return canvas.framesDrawn() > 3; }));

    WindowOverlay& overlay = *canvas.overlay();
    overlay.reset(320, 180);
    overlay.write(QRect(10, 10, 20, 20), square(0xffffffffu));
    ASSERT_TRUE(waitUntil([&] { return pixel(canvas, 20, 20) == qRgb(255, 255, 255); }));
    // A see-through overlay leaves the picture as it is.
    const QRgb picture = pixel(canvas, 160, 90);
    EXPECT_NE(picture, qRgb(255, 255, 255));

    // Paused, nothing is drawn, yet a change of the overlay shows with the last frame under it.
    show("halo", true);
    test::settle(300);
    const long frames = canvas.framesDrawn();
    const QRgb still = pixel(canvas, 160, 90);
    overlay.write(QRect(100, 50, 20, 20), square(0xffff0000u));
    ASSERT_TRUE(waitUntil([&] { return pixel(canvas, 110, 60) == qRgb(255, 0, 0); }, 3000));
    EXPECT_EQ(pixel(canvas, 160, 90), still);
    // Premultiplied: half-covering white over the picture lies between the two.
    overlay.write(QRect(150, 80, 20, 20), square(0x80808080u));
    ASSERT_TRUE(waitUntil([&] { return qRed(pixel(canvas, 160, 90)) >= 0x80; }, 3000));
    EXPECT_NEAR(qRed(pixel(canvas, 160, 90)), 0x80 + qRed(still) * 127 / 255, 2);

    // Covered by another window and uncovered again: the paused picture comes back, not the other window.
    Magenta other;
    other.setFlags(Qt::Window | Qt::FramelessWindowHint);
    other.setGeometry(0, 0, 320, 180);
    other.show();
    ASSERT_TRUE(waitUntil([&] { return pixel(canvas, 110, 60) == qRgb(255, 0, 255); }));
    other.hide();
    ASSERT_TRUE(waitUntil([&] { return pixel(canvas, 110, 60) == qRgb(255, 0, 0); }, 3000));
    EXPECT_EQ(pixel(canvas, 20, 20), qRgb(255, 255, 255));
    EXPECT_EQ(canvas.framesDrawn(), frames);

    // Emptied, the overlay draws nothing.
    show("halo", false);
    overlay.reset(0, 0);
    ASSERT_TRUE(waitUntil([&] { return pixel(canvas, 20, 20) != qRgb(255, 255, 255); }));
}

}  // namespace
