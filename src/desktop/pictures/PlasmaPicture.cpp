#include "PlasmaPicture.h"

#include <QDBusMessage>
#include <QDBusPendingCall>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <utility>
#include <vector>

namespace quellton {

namespace {

const QString service = QStringLiteral("org.kde.plasmashell");
const QString path = QStringLiteral("/PlasmaShell");
const QString interface = QStringLiteral("org.kde.PlasmaShell");
constexpr int readTimeoutMs = 3000;
// Our own wallpaper plugin shows the live picture; the sync only keeps its still in step and leaves
// giving back the user's wallpaper to the Plasma host, which saved all of it.
const QString ourWallpaper = QStringLiteral(QUELLTON_PLASMA_WALLPAPER_ID);

struct Placement {
    QRect geometry;
    QString url;
};

const QString fillModeKey = QStringLiteral("FillMode");
constexpr int scaledAndCropped = 2;

// One picture per screen. The data go in as JSON, so no path can break the script's syntax.
QString setScript(const std::vector<Placement>& placements, std::optional<int> fillMode) {
    QJsonArray stills;
    for (const Placement& p : placements)
        stills.append(QJsonObject{{"x", p.geometry.x()}, {"y", p.geometry.y()}, {"url", p.url}});
    const QString data = QString::fromUtf8(QJsonDocument(stills).toJson(QJsonDocument::Compact));
    const QString fill = fillMode ? QStringLiteral("d.writeConfig('FillMode', %1);").arg(*fillMode) : QString();
    return QStringLiteral(R"(var stills = %1;
var all = desktops();
for (var i = 0; i < all.length; ++i) {
    var d = all[i];
    var pick = stills[0];
    if (d.screen >= 0 && d.screen < stills.length) pick = stills[d.screen];
    var g = d.screen >= 0 ? screenGeometry(d.screen) : null;
    for (var j = 0; g && j < stills.length; ++j)
        if (stills[j].x == g.x && stills[j].y == g.y) pick = stills[j];
    if (d.wallpaperPlugin == '%3') {
        d.currentConfigGroup = ['Wallpaper', '%3', 'General'];
        d.writeConfig('Still', pick.url);
        continue;
    }
    d.wallpaperPlugin = 'org.kde.image';
    d.currentConfigGroup = ['Wallpaper', 'org.kde.image', 'General'];
    d.writeConfig('Image', pick.url);
    %2
})")
        .arg(data, fill, ourWallpaper);
}

// A setting of the picture of screen 0's desktop in the current activity, if it shows one.
QString readScript(const QString& key) {
    return QStringLiteral(R"(var d = typeof desktopForScreen == 'function' ? desktopForScreen(0) : null;
if (!d) {
    var all = desktops();
    for (var i = 0; i < all.length; ++i) if (all[i].screen == 0) { d = all[i]; break; }
}
if (d && d.wallpaperPlugin == 'org.kde.image') {
    d.currentConfigGroup = ['Wallpaper', 'org.kde.image', 'General'];
    var value = d.readConfig('%1');
    if (value !== undefined && value !== null && value !== '') print(value);
})").arg(key);
}

QDBusMessage evaluation(const QString& script) {
    QDBusMessage message = QDBusMessage::createMethodCall(service, path, interface, QStringLiteral("evaluateScript"));
    message.setArguments({script});
    return message;
}

}  // namespace

PlasmaPicture::PlasmaPicture(QDBusConnection bus) : bus_(std::move(bus)) {}

QString PlasmaPicture::read(const QString& key) {
    const QDBusMessage reply = bus_.call(evaluation(readScript(key)), QDBus::Block, readTimeoutMs);
    if (reply.type() != QDBusMessage::ReplyMessage || reply.arguments().isEmpty()) return {};
    return reply.arguments().constFirst().toString().trimmed();
}

std::optional<QUrl> PlasmaPicture::current(const ScreenInfo&) {
    const QString image = read(QStringLiteral("Image"));
    if (image.isEmpty()) return std::nullopt;
    // Plasma keeps plain paths as well as URLs.
    return image.startsWith(u'/') ? QUrl::fromLocalFile(image) : QUrl(image);
}

void PlasmaPicture::show(std::span<const ScreenPicture> stills) {
    if (stills.empty()) return;
    std::vector<Placement> placements;
    for (const ScreenPicture& s : stills)
        placements.push_back({s.screen.geometry, QUrl::fromLocalFile(s.file).toString(QUrl::FullyEncoded)});
    evaluateLater(setScript(placements, scaledAndCropped));
}

QVariantMap PlasmaPicture::presentation(std::span<const ScreenInfo>) {
    bool isNumber = false;
    const int fillMode = read(fillModeKey).toInt(&isNumber);
    if (!isNumber) return {};
    return {{fillModeKey, fillMode}};
}

void PlasmaPicture::restore(const QUrl& picture, const QVariantMap& presentation, std::span<const ScreenInfo> screens) {
    std::vector<Placement> placements;
    for (const ScreenInfo& screen : screens) placements.push_back({screen.geometry, picture.toString(QUrl::FullyEncoded)});
    if (placements.empty()) placements.push_back({QRect(), picture.toString(QUrl::FullyEncoded)});
    std::optional<int> fillMode;
    if (presentation.contains(fillModeKey)) fillMode = presentation.value(fillModeKey).toInt();
    evaluateLater(setScript(placements, fillMode));
}

// Setting does not wait for the answer: plasmashell may take its time to load the pictures.
void PlasmaPicture::evaluateLater(const QString& script) { bus_.asyncCall(evaluation(script)); }

}  // namespace quellton
