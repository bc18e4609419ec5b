#include "BackdropVault.h"

#include <QDataStream>
#include <QIODevice>

#include "SettingsStore.h"

namespace quellton {

namespace {

const QString recordsGroup = QStringLiteral("IconLayerBackdrops");
const QString flagsGroup = QStringLiteral("IconLayerFlags");

SettingKey<QString> recordKey(const QString& manager) { return {recordsGroup + u'/' + manager}; }
SettingKey<bool> flagKey(const QString& name) { return {flagsGroup + u'/' + name}; }

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

BackdropVault::BackdropVault(std::shared_ptr<SettingsStore> settings) : settings_(std::move(settings)) {}

QStringList BackdropVault::managers() const { return settings_->childKeys(recordsGroup); }

std::optional<BackdropRecord> BackdropVault::record(const QString& manager) const {
    const QString text = settings_->get(recordKey(manager));
    if (text.isEmpty()) return std::nullopt;
    return decode(text);
}

void BackdropVault::store(const QString& manager, const BackdropRecord& record) {
    settings_->set(recordKey(manager), encode(record));
}

void BackdropVault::forget(const QString& manager) { settings_->remove(recordKey(manager).name); }

bool BackdropVault::flag(const QString& name) const { return settings_->get(flagKey(name)); }

void BackdropVault::setFlag(const QString& name, bool on) {
    if (on)
        settings_->set(flagKey(name), true);
    else
        settings_->remove(flagKey(name).name);
}

}  // namespace quellton
