#pragma once

#include <QVariantMap>

#include <memory>

#include "BackdropVault.h"
#include "DesktopPicture.h"
#include "IconLayerRules.h"

namespace quellton {

// A change of the desktop's picture, kept as plain values until it can be made.
QVariantMap deferShow(std::span<const ScreenPicture> stills);
QVariantMap deferRestore(const QUrl& picture, const QVariantMap& presentation, std::span<const ScreenInfo> screens);
// The picture the desktop shows once the change is made.
std::optional<QUrl> deferredResult(const QVariantMap& deferred);
void replayDeferred(DesktopPicture& picture, const QVariantMap& deferred);

// The desktop-picture sync's adapter, guarded for the time an icon manager's backdrop holds the
// key colour: the sync then reads the user's picture (or the one it asked for meanwhile)
// instead of the key, and its changes wait in the record and are made when the backdrop is
// given back. So the sync never overwrites the key, and the still it makes becomes the picture
// the desktop returns to.
class GuardedDesktopPicture : public DesktopPicture {
public:
    GuardedDesktopPicture(std::unique_ptr<DesktopPicture> inner, IconManager manager,
                          std::shared_ptr<SettingsStore> settings);

    std::optional<QUrl> current(const ScreenInfo& mainScreen) override;
    void show(std::span<const ScreenPicture> stills) override;
    QVariantMap presentation(std::span<const ScreenInfo> screens) override;
    void restore(const QUrl& picture, const QVariantMap& presentation, std::span<const ScreenInfo> screens) override;

private:
    // True when the change waits; false when the backdrop is the user's and it may be made now.
    bool defer(const QVariantMap& change);

    std::unique_ptr<DesktopPicture> inner_;
    IconManager manager_;
    BackdropVault vault_;
};

// The icon manager whose backdrop the adapter of `desktop` writes, if it is one we key.
std::optional<IconManager> keyedManagerOf(PictureDesktop desktop);
// `picture` guarded where its desktop's icon manager may be keyed; as it is elsewhere.
std::unique_ptr<DesktopPicture> guardDesktopPicture(std::unique_ptr<DesktopPicture> picture, PictureDesktop desktop,
                                                    std::shared_ptr<SettingsStore> settings);

}  // namespace quellton
