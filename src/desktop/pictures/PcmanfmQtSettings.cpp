#include "PcmanfmQtSettings.h"

#include <QProcess>
#include <QSettings>
#include <QStandardPaths>

#include <utility>

namespace quellton {

PcmanfmQtSettings::PcmanfmQtSettings(QString profile) : profile_(std::move(profile)) {}

QString PcmanfmQtSettings::path() const {
    return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) + QStringLiteral("/pcmanfm-qt/") +
           profile_ + QStringLiteral("/settings.conf");
}

QVariant PcmanfmQtSettings::value(const QString& group, const QString& key) const {
    QSettings settings(path(), QSettings::IniFormat);
    settings.sync();  // pcmanfm-qt may have rewritten the file since this process last read it
    return settings.value(group + u'/' + key);
}

bool PcmanfmQtSettings::setValue(const QString& group, const QString& key, const QVariant& value) {
    QSettings settings(path(), QSettings::IniFormat);
    settings.setValue(group + u'/' + key, value);
    settings.sync();
    return settings.status() == QSettings::NoError;
}

bool PcmanfmQtSettings::command(const QStringList& arguments) const {
    return QProcess::startDetached(QStringLiteral("pcmanfm-qt"), QStringList{QStringLiteral("--profile"), profile_} + arguments);
}

}  // namespace quellton
