#pragma once

#include <QColor>
#include <QImage>
#include <QPainterPath>
#include <QPointF>

namespace quellton {

// Paints a blurred, offset copy of the path's shape in the given colour, as a drop shadow.
void drawSoftShadow(QImage& canvas, const QPainterPath& path, QPointF offset, double blurRadius, QColor colour);

}  // namespace quellton
