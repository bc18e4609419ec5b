#pragma once

#include <QDBusConnection>

#include <map>
#include <set>

#include "DesktopPicture.h"
#include "XfconfClient.h"

namespace quellton {

// XFCE: xfdesktop reads one picture per monitor and workspace from the xfconf channel
// "xfce4-desktop", under /backdrop/screen0/monitor<connector>/workspace<n>/. Every such
// picture that exists is set, and those of the screens' connectors on the workspaces in use
// (only the shared one in single-workspace mode), so a monitor xfdesktop names differently
// still gets a picture: the first screen's.
class XfcePicture : public DesktopPicture {
public:
    explicit XfcePicture(QDBusConnection bus = QDBusConnection::sessionBus());

    std::optional<QUrl> current(const ScreenInfo& mainScreen) override;
    void show(std::span<const ScreenPicture> stills) override;
    QVariantMap presentation(std::span<const ScreenInfo> screens) override;
    void restore(const QUrl& picture, const QVariantMap& presentation, std::span<const ScreenInfo> screens) override;

private:
    // Monitor name (without "monitor") to the workspaces whose picture is set.
    using Targets = std::map<QString, std::set<int>>;
    Targets targets(std::span<const ScreenInfo> screens) const;
    std::set<int> workspaces() const;

    XfconfClient desktop_;
    XfconfClient windowManager_;
};

}  // namespace quellton
