#include "PcmanfmQtBackdrop.h"

#include <QColor>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDir>
#include <QFile>
#include <QImage>
#include <QStandardPaths>

#include "IconManagerSettings.h"
#include "PcmanfmQtSettings.h"

namespace quellton {

namespace {

const QString service = QStringLiteral("org.pcmanfm.PCManFM");
const QString wallpaperKey = QStringLiteral("Wallpaper");
const QString modeKey = QStringLiteral("WallpaperMode");
const QString colorKey = QStringLiteral("BgColor");
// The modes its interface takes; pcmanfm-qt 1.2 writes "none" into its file for every mode.
const QStringList modes{QStringLiteral("stretch"), QStringLiteral("fit"), QStringLiteral("center"),
                        QStringLiteral("tile"), QStringLiteral("zoom")};

QString profileFromCommandLine(const QByteArray& commandLine) {
    const QList<QByteArray> arguments = commandLine.split('\0');
    for (qsizetype i = 0; i < arguments.size(); ++i) {
        const QByteArray& a = arguments[i];
        if ((a == "--profile" || a == "-p") && i + 1 < arguments.size()) return QString::fromUtf8(arguments[i + 1]);
        if (a.startsWith("--profile=")) return QString::fromUtf8(a.mid(10));
    }
    return QStringLiteral("default");
}

}  // namespace

PcmanfmQtBackdrop::PcmanfmQtBackdrop(QDBusConnection bus) : bus_(std::move(bus)) {}

QString PcmanfmQtBackdrop::runningProfile() const {
    const QDBusReply<uint> pid = bus_.interface()->servicePid(service);
    if (!pid.isValid()) return PcmanfmQtSettings::lxqtProfile;
    QFile commandLine(QStringLiteral("/proc/%1/cmdline").arg(pid.value()));
    if (!commandLine.open(QIODevice::ReadOnly)) return PcmanfmQtSettings::lxqtProfile;
    return profileFromCommandLine(commandLine.readAll());
}

QString PcmanfmQtBackdrop::keyPicture() {
    const QString folder = QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) + QStringLiteral("/Quellton");
    const QString file = folder + QStringLiteral("/Symbolebene-Schluessel.png");
    if (!QFile::exists(file)) {
        QDir().mkpath(folder);
        QImage key(16, 16, QImage::Format_RGB32);
        key.fill(QColor::fromRgb(backdropKeyColor));
        key.save(file);
    }
    return file;
}

std::optional<QVariantMap> PcmanfmQtBackdrop::read() {
    const PcmanfmQtSettings settings(runningProfile());
    return QVariantMap{{wallpaperKey, settings.wallpaper()},
                       {modeKey, settings.wallpaperMode()},
                       {colorKey, settings.value(PcmanfmQtSettings::desktopGroup, colorKey)}};
}

std::optional<std::uint32_t> PcmanfmQtBackdrop::solidColor(const QVariantMap& current) const {
    if (!current.value(wallpaperKey).toString().isEmpty()) return std::nullopt;
    const QColor color(current.value(colorKey).toString());
    // Its default colour when the file has none.
    return color.isValid() ? color.rgb() : 0xff000000u;
}

QVariantMap PcmanfmQtBackdrop::keyedValues() {
    return {{wallpaperKey, keyPicture()}, {modeKey, modes.front()}};
}

bool PcmanfmQtBackdrop::key() {
    const QString picture = keyPicture();
    return QFile::exists(picture) && setWallpaper(picture, modes.front());
}

bool PcmanfmQtBackdrop::restore(const QVariantMap& saved) {
    const QString mode = saved.value(modeKey).toString();
    return setWallpaper(saved.value(wallpaperKey).toString(), modes.contains(mode) ? mode : modes.front());
}

bool PcmanfmQtBackdrop::setWallpaper(const QString& file, const QString& mode) {
    QDBusMessage call = QDBusMessage::createMethodCall(service, QStringLiteral("/Application"),
                                                       QStringLiteral("org.pcmanfm.Application"),
                                                       QStringLiteral("setWallpaper"));
    call.setArguments({file, mode});
    return bus_.call(call, QDBus::Block, 5000).type() == QDBusMessage::ReplyMessage;
}

}  // namespace quellton
