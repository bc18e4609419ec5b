#pragma once

#include "ManagerBackdrop.h"

namespace quellton {

// caja (MATE) draws the backdrop of GSettings org.mate.background. The key is no picture (an
// empty picture-filename; caja ignores picture-opacity for a picture it can load) on a solid
// colour: color-shading-type "solid", primary-color the key. While keyed, the desktop-picture
// sync reads the user's picture from our record instead.
class CajaBackdrop : public ManagerBackdrop {
public:
    std::optional<QVariantMap> read() override;
    std::optional<std::uint32_t> solidColor(const QVariantMap&) const override { return std::nullopt; }
    bool key() override;
    QVariantMap keyedValues() override;
    bool restore(const QVariantMap& saved) override;
};

}  // namespace quellton
