#pragma once

#include "ManagerBackdrop.h"

namespace quellton {

// caja (MATE) draws the backdrop of GSettings org.mate.background. The key leaves the picture's
// file alone (so the desktop's picture still reads as the user's) and makes it fully transparent
// over a solid colour: picture-opacity 0, color-shading-type "solid", primary-color the key.
class CajaBackdrop : public ManagerBackdrop {
public:
    std::optional<QVariantMap> read() override;
    std::optional<std::uint32_t> solidColor(const QVariantMap&) const override { return std::nullopt; }
    bool key() override;
    bool restore(const QVariantMap& saved) override;
};

}  // namespace quellton
