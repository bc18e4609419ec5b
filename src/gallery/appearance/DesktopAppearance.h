#pragma once

#include <QObject>

#include <vector>

#include "AppearanceSource.h"

namespace quellton {

// Light or dark and whether animations are wanted, as the desktop says, followed live: the desktop
// portal first, then KDE's or GNOME's own settings (KDE's first on a KDE desktop).
class DesktopAppearance : public QObject {
    Q_OBJECT
    Q_PROPERTY(bool dark READ dark NOTIFY darkChanged)
    Q_PROPERTY(bool reduceMotion READ reduceMotion NOTIFY reduceMotionChanged)

public:
    DesktopAppearance();
    // With the sources in the order they are asked (it takes them as children), for tests.
    explicit DesktopAppearance(std::vector<AppearanceSource*> sources);

    bool dark() const { return dark_; }
    bool reduceMotion() const { return reduceMotion_; }

signals:
    void darkChanged();
    void reduceMotionChanged();

private:
    void update();

    std::vector<AppearanceSource*> sources_;  // children of this object
    bool dark_ = false;
    bool reduceMotion_ = false;
};

}  // namespace quellton
