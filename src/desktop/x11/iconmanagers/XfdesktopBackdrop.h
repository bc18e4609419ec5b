#pragma once

#include <set>

#include "ManagerBackdrop.h"
#include "XfconfClient.h"

namespace quellton {

// xfdesktop keeps a backdrop per monitor and workspace in the xfconf channel "xfce4-desktop",
// under /backdrop/screen0/monitor<name>/workspace<n>/. The key is no image (image-style 0) on
// a solid colour (color-style 0) of the key's value (rgba1, four doubles), for every monitor and
// workspace the channel knows and for workspace 0 of every screen.
class XfdesktopBackdrop : public ManagerBackdrop {
public:
    explicit XfdesktopBackdrop(QStringList monitors, XfconfClient client = XfconfClient(QStringLiteral("xfce4-desktop")));

    std::optional<QVariantMap> read() override;
    std::optional<std::uint32_t> solidColor(const QVariantMap&) const override { return std::nullopt; }
    bool key() override;
    QVariantMap keyedValues() override;
    bool restore(const QVariantMap& saved) override;

private:
    std::set<QString> places();

    QStringList monitors_;
    XfconfClient client_;
};

}  // namespace quellton
