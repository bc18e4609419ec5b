#pragma once

#include <QMargins>
#include <QQuickView>
#include <QTimer>

#include <memory>
#include <optional>

#include "DesktopAppearance.h"
#include "Gallery.h"

namespace quellton {

class AppModel;
class SettingsStore;

// The gallery's window: the QML scene with the model, the window title from the selection, its place
// and size remembered between runs. Closing only hides it; it is shown again as it was left, but with
// everything selected.
class GalleryWindow : public QQuickView {
    Q_OBJECT
public:
    static constexpr QSize minimumSize{960, 660};
    static constexpr QSize firstSize{1240, 860};

    explicit GalleryWindow(AppModel& model);
    ~GalleryWindow() override;

    Gallery& gallery() { return gallery_; }

    // Shows, raised and activated, also when it was minimised.
    void present();

protected:
    bool event(QEvent* event) override;

private:

    void restorePlacement();
    // At `wanted`, or the first place, fitted to the screen with the frame known now.
    void place(std::optional<QRect> wanted);
    void rememberPlacement();

    std::shared_ptr<SettingsStore> settings_;  // the window's place lives in the model's file
    Gallery gallery_;
    DesktopAppearance appearance_;
    QTimer remember_;
    QMargins placedFrame_;
};

}  // namespace quellton
