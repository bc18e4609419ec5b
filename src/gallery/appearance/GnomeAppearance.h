#pragma once

#include "AppearanceSource.h"

namespace quellton {

// GSettings org.gnome.desktop.interface: color-scheme (or an older dark GTK theme) and enable-animations.
// Says nothing where the schema is not installed.
class GnomeAppearance : public AppearanceSource {
    Q_OBJECT
public:
    explicit GnomeAppearance(QObject* parent = nullptr);
    ~GnomeAppearance() override;
    AppearanceHints hints() const override;

    // GSettings calls this on the thread that runs GLib's default main context, which is Qt's main loop.
    void notify() { emit changed(); }

private:
    void* settings_ = nullptr;  // GSettings*
    bool hasColorScheme_ = false;
    bool hasAnimations_ = false;
};

}  // namespace quellton
