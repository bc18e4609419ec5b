#pragma once

#include <QList>
#include <QRect>
#include <QSize>

#include <optional>

namespace quellton {

// Where the gallery opens: its remembered place and size where that still fits a screen, grown to
// the minimum; otherwise the first size (or as much of it as the screen has), centred on the primary screen.
QRect windowPlacement(std::optional<QRect> remembered, const QList<QRect>& screens, QRect primary, QSize minimum,
                      QSize first);

}  // namespace quellton
