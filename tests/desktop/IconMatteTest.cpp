#include <QFont>
#include <QGuiApplication>
#include <QImage>
#include <QPainter>

#include <gtest/gtest.h>

#include <cmath>

#include "IconMatte.h"

namespace quellton {
namespace {

// A small desktop as an icon manager paints it: a label in white, anti-aliased, and a sheet of
// paper with grey lines, on a transparent layer (the truth) and on the black key (what we read).
struct Layer {
    QImage truth;  // premultiplied ARGB
    QImage keyed;  // RGB32 over the key
};

Layer paintLayer() {
    Layer layer;
    layer.truth = QImage(160, 90, QImage::Format_ARGB32_Premultiplied);
    layer.truth.fill(Qt::transparent);
    {
        QPainter p(&layer.truth);
        p.setRenderHint(QPainter::Antialiasing);
        p.setRenderHint(QPainter::TextAntialiasing);
        QFont font = p.font();
        font.setPixelSize(22);
        p.setFont(font);
        p.setPen(Qt::white);
        p.drawText(QRect(4, 50, 150, 36), Qt::AlignCenter, QStringLiteral("Projekte"));
        p.setPen(Qt::NoPen);
        p.setBrush(QColor(250, 250, 250));
        p.drawRoundedRect(QRectF(20.5, 4.5, 40, 40), 4, 4);
        p.setBrush(QColor(120, 120, 120));
        for (int y = 12; y < 40; y += 6) p.drawRect(26, y, 28, 2);
    }
    layer.keyed = QImage(layer.truth.size(), QImage::Format_RGB32);
    layer.keyed.fill(Qt::black);
    QPainter(&layer.keyed).drawImage(0, 0, layer.truth);
    return layer;
}

PixelView view(const QImage& image) {
    return {reinterpret_cast<const std::uint32_t*>(image.constBits()), image.width(), image.height(),
            int(image.bytesPerLine() / 4)};
}

// A premultiplied pixel over a picture's colour, one channel.
double over(std::uint32_t pixel, int shift, double picture) {
    const double alpha = (pixel >> 24) / 255.0;
    return ((pixel >> shift) & 0xff) + (1.0 - alpha) * picture;
}

// Over black the matte is exactly what the icon manager showed, and the key is clear. Over a light
// and a mid picture, without the shadow, the label's anti-aliased edges keep their coverage (no dark
// or light fringe), and grey lines on white paper stay opaque.
TEST(IconMatte, OverBlackItIsWhatTheManagerShowedAndOverPicturesTheEdgesKeepTheirCoverage) {
    const Layer layer = paintLayer();
    const QRect all = layer.keyed.rect();
    const std::vector<std::uint32_t> matte = matteKeyed(view(layer.keyed), all, MatteStyle{});
    MatteStyle withoutShadow;
    withoutShadow.shadowStrength = 0;
    const std::vector<std::uint32_t> plain = matteKeyed(view(layer.keyed), all, withoutShadow);
    int clear = 0, edges = 0;
    double worstOnWhite = 0, worstOnGrey = 0;
    for (int y = 0; y < all.height(); ++y)
        for (int x = 0; x < all.width(); ++x) {
            const std::size_t i = std::size_t(y * all.width() + x);
            const QRgb k = layer.keyed.pixel(x, y);
            ASSERT_NEAR(over(matte[i], 16, 0), qRed(k), 1.0) << x << "," << y;
            ASSERT_NEAR(over(matte[i], 0, 0), qBlue(k), 1.0) << x << "," << y;
            clear += matte[i] == 0;
            const std::uint32_t truth = layer.truth.pixel(x, y);
            edges += (truth >> 24) > 0 && (truth >> 24) < 255;
            for (int shift : {16, 8, 0}) {
                worstOnWhite = std::max(worstOnWhite, std::abs(over(plain[i], shift, 255) - over(truth, shift, 255)));
                worstOnGrey = std::max(worstOnGrey, std::abs(over(plain[i], shift, 128) - over(truth, shift, 128)));
            }
        }
    // Most of the layer is backdrop, which must vanish (the shadow reaches a little way around).
    EXPECT_GT(clear, all.width() * all.height() / 2);
    EXPECT_EQ(matte[0], 0u);
    EXPECT_GT(edges, 200) << "the test label has anti-aliased edges";
    // Rounding in the layer grows when the coverage is divided out: a few steps at most.
    EXPECT_LT(worstOnWhite, 12);
    EXPECT_LT(worstOnGrey, 8);
    // The grey lines are the paper's own colour, next to white and far from the key: opaque.
    for (int x = 27; x < 53; ++x) EXPECT_EQ(plain[std::size_t(12 * all.width() + x)] >> 24, 255u) << x;
}

TEST(IconMatte, AShadowFallsBelowRightOfTheContentAndNowhereElse) {
    QImage keyed(40, 40, QImage::Format_RGB32);
    keyed.fill(Qt::black);
    QPainter(&keyed).fillRect(QRect(10, 10, 10, 10), Qt::white);
    const MatteStyle style = MatteStyle::forScale(0xff000000u, 2.0);
    const std::vector<std::uint32_t> m = matteKeyed(view(keyed), QRect(0, 0, 40, 40), style);
    const auto alphaAt = [&](int x, int y) { return int(m[std::size_t(y * 40 + x)] >> 24); };
    EXPECT_EQ(alphaAt(15, 15), 255);
    // Below and right of the square: dark, see-through shadow, no colour.
    EXPECT_GT(alphaAt(21, 21), 40);
    EXPECT_EQ(m[std::size_t(21 * 40 + 21)] & 0x00ffffffu, 0u);
    EXPECT_GT(alphaAt(21, 21), alphaAt(8, 8));
    EXPECT_EQ(alphaAt(35, 35), 0);
    EXPECT_EQ(alphaAt(2, 30), 0);
}

TEST(IconMatte, APartMattedWithItsMarginEqualsTheSamePartOfTheWhole) {
    // The capture copies only damaged areas with the style's margin around them.
    const Layer layer = paintLayer();
    const MatteStyle style = MatteStyle::forScale(0xff000000u, 2.0);
    const QRect all(0, 0, layer.keyed.width(), layer.keyed.height());
    const std::vector<std::uint32_t> whole = matteKeyed(view(layer.keyed), all, style);
    const QRect part(30, 40, 50, 30);
    const QRect fetched = part.adjusted(-style.margin(), -style.margin(), style.margin(), style.margin()).intersected(all);
    const QImage source = layer.keyed.copy(fetched);
    const std::vector<std::uint32_t> piece = matteKeyed(view(source), part.translated(-fetched.topLeft()), style);
    for (int y = 0; y < part.height(); ++y)
        for (int x = 0; x < part.width(); ++x)
            ASSERT_EQ(piece[std::size_t(y * part.width() + x)],
                      whole[std::size_t((y + part.top()) * all.width() + x + part.left())])
                << x << "," << y;
}

TEST(IconMatte, ALayerWithItsOwnAlphaIsCopiedAsItIs) {
    const Layer layer = paintLayer();
    const QRect part(10, 40, 20, 10);
    const std::vector<std::uint32_t> copied = copyArea(view(layer.truth), part);
    for (int y = 0; y < part.height(); ++y)
        for (int x = 0; x < part.width(); ++x)
            ASSERT_EQ(copied[std::size_t(y * part.width() + x)], layer.truth.pixel(x + part.left(), y + part.top()));
    // Outside the layer: transparent.
    const std::vector<std::uint32_t> edge = copyArea(view(layer.truth), QRect(150, 80, 20, 20));
    EXPECT_EQ(edge.back(), 0u);
}

}  // namespace
}  // namespace quellton

// QPainter draws text only with a font database, which needs an application.
int main(int argc, char** argv) {
    ::testing::InitGoogleTest(&argc, argv);
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QGuiApplication app(argc, argv);
    return RUN_ALL_TESTS();
}
