#include "XfcePicture.h"

#include <QRegularExpression>

#include <algorithm>
#include <utility>

namespace quellton {

namespace {

const QString backdrop = QStringLiteral("/backdrop/screen0");
constexpr int zoomed = 5;  // xfdesktop's image-style: scaled to fill, the overhang cut off

// One setting of a monitor's backdrop on one workspace, e.g. "last-image".
QString backdropProperty(const QString& monitor, int workspace, const char* name) {
    return backdrop + QStringLiteral("/monitor%1/workspace%2/%3").arg(monitor).arg(workspace).arg(QLatin1String(name));
}

struct Backdrop {
    QString monitor;
    int workspace = 0;
};

std::optional<Backdrop> lastImage(const QString& property) {
    static const QRegularExpression pattern(QStringLiteral("^/backdrop/screen0/monitor(.+)/workspace(\\d+)/last-image$"));
    const QRegularExpressionMatch match = pattern.match(property);
    if (!match.hasMatch()) return std::nullopt;
    return Backdrop{match.captured(1), match.captured(2).toInt()};
}

QString pictureFor(const QString& monitor, std::span<const ScreenPicture> stills) {
    const auto own = std::ranges::find(stills, monitor, [](const ScreenPicture& s) { return s.screen.name; });
    return own != stills.end() ? own->file : stills.front().file;
}

}  // namespace

XfcePicture::XfcePicture(QDBusConnection bus)
    : desktop_(QStringLiteral("xfce4-desktop"), bus), windowManager_(QStringLiteral("xfwm4"), std::move(bus)) {}

std::set<int> XfcePicture::workspaces() const {
    if (desktop_.get(QStringLiteral("/backdrop/single-workspace-mode")).value_or(false).toBool())
        return {desktop_.get(QStringLiteral("/backdrop/single-workspace-number")).value_or(0).toInt()};
    const int count = std::max(1, windowManager_.get(QStringLiteral("/general/workspace_count")).value_or(1).toInt());
    std::set<int> all;
    for (int i = 0; i < count; ++i) all.insert(i);
    return all;
}

XfcePicture::Targets XfcePicture::targets(std::span<const ScreenInfo> screens) const {
    Targets targets;
    for (const QString& property : desktop_.properties(backdrop).keys())
        if (const auto found = lastImage(property)) targets[found->monitor].insert(found->workspace);
    const std::set<int> used = workspaces();
    for (const ScreenInfo& screen : screens) targets[screen.name].insert(used.begin(), used.end());
    return targets;
}

std::optional<QUrl> XfcePicture::current(const ScreenInfo& mainScreen) {
    const QVariantMap all = desktop_.properties(backdrop);
    QString file = all.value(backdropProperty(mainScreen.name, *workspaces().begin(), "last-image")).toString();
    for (auto it = all.begin(); file.isEmpty() && it != all.end(); ++it)
        if (lastImage(it.key())) file = it.value().toString();
    if (file.isEmpty()) return std::nullopt;
    return QUrl::fromLocalFile(file);
}

void XfcePicture::show(std::span<const ScreenPicture> stills) {
    if (stills.empty()) return;
    std::vector<ScreenInfo> screens;
    for (const ScreenPicture& still : stills) screens.push_back(still.screen);
    for (const auto& [monitor, numbers] : targets(screens)) {
        for (int workspace : numbers) {
            desktop_.set(backdropProperty(monitor, workspace, "image-style"), zoomed);
            desktop_.set(backdropProperty(monitor, workspace, "last-image"), pictureFor(monitor, stills));
        }
    }
}

// Each backdrop's image-style, by its property: monitors and workspaces may differ.
QVariantMap XfcePicture::presentation(std::span<const ScreenInfo> screens) {
    QVariantMap shown;
    for (const auto& [monitor, numbers] : targets(screens)) {
        for (int workspace : numbers) {
            const QString property = backdropProperty(monitor, workspace, "image-style");
            if (const auto style = desktop_.get(property)) shown.insert(property, style->toInt());
        }
    }
    return shown;
}

void XfcePicture::restore(const QUrl& picture, const QVariantMap& presentation, std::span<const ScreenInfo> screens) {
    if (!picture.isLocalFile()) return;
    for (const auto& [monitor, numbers] : targets(screens)) {
        for (int workspace : numbers) {
            const QString style = backdropProperty(monitor, workspace, "image-style");
            // Remembered as JSON, the number may come back as a double; xfdesktop wants an int.
            if (presentation.contains(style)) desktop_.set(style, presentation.value(style).toInt());
            desktop_.set(backdropProperty(monitor, workspace, "last-image"), picture.toLocalFile());
        }
    }
}

}  // namespace quellton
