#include "BackdropVault.h"

#include <QDataStream>
#include <QIODevice>
#include <QSettings>

#include "SettingsStore.h"

namespace quellton {

namespace {

const QString recordsGroup = QStringLiteral("IconLayerBackdrops");
const QString flagsGroup = QStringLiteral("IconLayerFlags");

// An INI file keeps numbers as text; the values go back to stores that care for their types
// (xfconf's int against double), so each record is kept whole in Qt's binary form.
QString encode(const BackdropRecord& record) {
    QByteArray bytes;
    QDataStream out(&bytes, QIODevice::WriteOnly);
    out.setVersion(QDataStream::Qt_6_0);
    out << record.settings << record.picture << record.deferredPicture;
    return QString::fromLatin1(bytes.toBase64());
}

std::optional<BackdropRecord> decode(const QString& text) {
    const QByteArray bytes = QByteArray::fromBase64(text.toLatin1());
    QDataStream in(bytes);
    in.setVersion(QDataStream::Qt_6_0);
    BackdropRecord record;
    in >> record.settings >> record.picture >> record.deferredPicture;
    if (in.status() != QDataStream::Ok) return std::nullopt;
    return record;
}

}  // namespace

BackdropVault::BackdropVault(QString filePath) : path_(std::move(filePath)) {}

QString BackdropVault::standardPath() { return SettingsStore::standardPath(); }

QStringList BackdropVault::managers() const {
    QSettings settings(path_, QSettings::IniFormat);
    settings.beginGroup(recordsGroup);
    return settings.childKeys();
}

std::optional<BackdropRecord> BackdropVault::record(const QString& manager) const {
    QSettings settings(path_, QSettings::IniFormat);
    const QVariant value = settings.value(recordsGroup + u'/' + manager);
    if (!value.isValid()) return std::nullopt;
    return decode(value.toString());
}

void BackdropVault::store(const QString& manager, const BackdropRecord& record) {
    QSettings settings(path_, QSettings::IniFormat);
    settings.setValue(recordsGroup + u'/' + manager, encode(record));
    settings.sync();
}

void BackdropVault::forget(const QString& manager) {
    QSettings settings(path_, QSettings::IniFormat);
    settings.remove(recordsGroup + u'/' + manager);
    settings.sync();
}

bool BackdropVault::flag(const QString& name) const {
    QSettings settings(path_, QSettings::IniFormat);
    return settings.value(flagsGroup + u'/' + name).toString() == QStringLiteral("true");
}

void BackdropVault::setFlag(const QString& name, bool on) {
    QSettings settings(path_, QSettings::IniFormat);
    if (on)
        settings.setValue(flagsGroup + u'/' + name, QStringLiteral("true"));
    else
        settings.remove(flagsGroup + u'/' + name);
    settings.sync();
}

}  // namespace quellton
