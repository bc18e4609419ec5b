#include "DesktopAppearance.h"

#include <QByteArray>

#include "GnomeAppearance.h"
#include "KdeAppearance.h"
#include "PortalAppearance.h"

namespace quellton {

namespace {

bool onKde() { return qgetenv("XDG_CURRENT_DESKTOP").split(':').contains("KDE"); }

std::vector<AppearanceSource*> desktopSources() {
    std::vector<AppearanceSource*> sources{new PortalAppearance};
    AppearanceSource* gnome = new GnomeAppearance;
    AppearanceSource* kde = new KdeAppearance;
    if (onKde())
        sources.insert(sources.end(), {kde, gnome});
    else
        sources.insert(sources.end(), {gnome, kde});
    return sources;
}

}  // namespace

DesktopAppearance::DesktopAppearance() : DesktopAppearance(desktopSources()) {}

DesktopAppearance::DesktopAppearance(std::vector<AppearanceSource*> sources) : sources_(std::move(sources)) {
    for (AppearanceSource* source : sources_) {
        source->setParent(this);
        connect(source, &AppearanceSource::changed, this, &DesktopAppearance::update);
    }
    update();
}

void DesktopAppearance::update() {
    AppearanceHints combined;
    for (const AppearanceSource* source : sources_) combined = firstAnswers({combined, source->hints()});
    const bool dark = combined.dark.value_or(false);
    const bool reduceMotion = combined.reduceMotion.value_or(false);
    if (dark != dark_) {
        dark_ = dark;
        emit darkChanged();
    }
    if (reduceMotion != reduceMotion_) {
        reduceMotion_ = reduceMotion;
        emit reduceMotionChanged();
    }
}

}  // namespace quellton
