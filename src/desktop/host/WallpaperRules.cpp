#include "WallpaperRules.h"

namespace quellton {

std::vector<std::size_t> framesContaining(const std::vector<RectF>& frames, double x, double y) {
    std::vector<std::size_t> hits;
    for (std::size_t i = 0; i < frames.size(); ++i) {
        if (frames[i].contains(x, y)) hits.push_back(i);
    }
    return hits;
}

QPointF pixelToGlobal(QPoint rootPixel, double devicePixelRatio) {
    const double ratio = devicePixelRatio > 0 ? devicePixelRatio : 1.0;
    return QPointF((rootPixel.x() + 0.5) / ratio, (rootPixel.y() + 0.5) / ratio);
}

}  // namespace quellton
