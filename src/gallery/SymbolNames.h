#pragma once

#include <QString>
#include <QStringList>

namespace quellton {

// Icon-theme names (freedesktop and the common themes) of the same meaning as a gallery symbol,
// most fitting first; empty where no theme has one, so our own drawing is used.
inline QStringList symbolThemeNames(const QString& symbol) {
    static const QHash<QString, QStringList> names = {
        {"square.grid.2x2", {"view-grid-symbolic", "view-app-grid-symbolic", "view-grid"}},
        {"shuffle", {"media-playlist-shuffle-symbolic", "media-playlist-shuffle"}},
        {"circle.circle", {"media-optical-symbolic"}},
        {"chart.bar.fill", {"office-chart-bar-symbolic", "office-chart-bar"}},
        {"cube.transparent", {"draw-cuboid"}},
        {"rotate.3d", {"object-rotate-right-symbolic", "object-rotate-right"}},
        {"sparkles", {"weather-clear-night-symbolic"}},
        {"camera.filters", {"color-management", "preferences-color-symbolic"}},
        {"tornado", {"weather-storm-symbolic", "weather-storm"}},
        {"backward.fill", {"media-skip-backward-symbolic", "media-skip-backward"}},
        {"forward.fill", {"media-skip-forward-symbolic", "media-skip-forward"}},
        {"plus", {"list-add-symbolic", "list-add"}},
        {"checkmark", {"object-select-symbolic", "checkmark"}},
        {"play.fill", {"media-playback-start-symbolic", "media-playback-start"}},
        {"pause.fill", {"media-playback-pause-symbolic", "media-playback-pause"}},
        {"speaker.slash", {"audio-volume-muted-symbolic", "audio-volume-muted"}},
    };
    return names.value(symbol);
}

}  // namespace quellton
