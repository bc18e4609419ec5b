#include "SoftShadow.h"

#include <QPainter>

#include <cmath>
#include <vector>

namespace quellton {

namespace {

std::vector<float> gaussianKernel(double sigma) {
    const int radius = int(std::ceil(sigma * 3));
    std::vector<float> kernel(std::size_t(2 * radius + 1));
    float sum = 0;
    for (int i = -radius; i <= radius; ++i) sum += kernel[std::size_t(i + radius)] = float(std::exp(-i * i / (2 * sigma * sigma)));
    for (float& k : kernel) k /= sum;
    return kernel;
}

// Separable Gaussian blur of one channel, edges clamped.
void blur(std::vector<float>& plane, int width, int height, double sigma) {
    const auto kernel = gaussianKernel(sigma);
    const int radius = int(kernel.size() / 2);
    std::vector<float> tmp(plane.size());
    auto pass = [&](const std::vector<float>& in, std::vector<float>& out, bool horizontal) {
        for (int y = 0; y < height; ++y)
            for (int x = 0; x < width; ++x) {
                float acc = 0;
                for (int k = -radius; k <= radius; ++k) {
                    const int sx = horizontal ? std::clamp(x + k, 0, width - 1) : x;
                    const int sy = horizontal ? y : std::clamp(y + k, 0, height - 1);
                    acc += kernel[std::size_t(k + radius)] * in[std::size_t(sy) * std::size_t(width) + std::size_t(sx)];
                }
                out[std::size_t(y) * std::size_t(width) + std::size_t(x)] = acc;
            }
    };
    pass(plane, tmp, true);
    pass(tmp, plane, false);
}

}  // namespace

void drawSoftShadow(QImage& canvas, const QPainterPath& path, QPointF offset, double blurRadius, QColor colour) {
    const int w = canvas.width(), h = canvas.height();
    QImage mask(w, h, QImage::Format_Alpha8);
    mask.fill(0);
    {
        QPainter p(&mask);
        p.setRenderHint(QPainter::Antialiasing);
        p.fillPath(path.translated(offset), Qt::black);
    }
    std::vector<float> plane(std::size_t(w) * std::size_t(h));
    for (int y = 0; y < h; ++y)
        for (int x = 0; x < w; ++x) plane[std::size_t(y) * std::size_t(w) + std::size_t(x)] = mask.constScanLine(y)[x] / 255.0f;
    blur(plane, w, h, blurRadius / 2);  // a blur radius covers about two standard deviations

    QImage shadow(w, h, QImage::Format_ARGB32_Premultiplied);
    for (int y = 0; y < h; ++y) {
        auto* line = reinterpret_cast<QRgb*>(shadow.scanLine(y));
        for (int x = 0; x < w; ++x) {
            const float a = plane[std::size_t(y) * std::size_t(w) + std::size_t(x)] * float(colour.alphaF());
            line[x] = qPremultiply(qRgba(colour.red(), colour.green(), colour.blue(), int(std::lround(a * 255))));
        }
    }
    QPainter painter(&canvas);
    painter.drawImage(0, 0, shadow);
}

}  // namespace quellton
