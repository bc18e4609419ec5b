#include "CajaBackdrop.h"

#include <QColor>

#include "GSettingsClient.h"
#include "IconManagerSettings.h"

namespace quellton {

namespace {

const QString schema = QStringLiteral("org.mate.background");
const QString picture = QStringLiteral("picture-filename");
const QString shading = QStringLiteral("color-shading-type");
const QString primary = QStringLiteral("primary-color");

}  // namespace

std::optional<QVariantMap> CajaBackdrop::read() {
    const std::optional<GSettingsClient> settings = GSettingsClient::open(schema);
    if (!settings) return std::nullopt;
    QVariantMap values;
    // A key without a value of the user's is given back by a reset, not by its default value.
    const auto user = [&](const QString& key, auto value) {
        values.insert(key, settings->hasUserValue(key) && value ? QVariant(*value) : QVariant());
    };
    user(picture, settings->getString(picture));
    user(shading, settings->getString(shading));
    user(primary, settings->getString(primary));
    return values;
}

QVariantMap CajaBackdrop::keyedValues() {
    return {{primary, QColor::fromRgb(backdropKeyColor).name()}, {shading, QStringLiteral("solid")}, {picture, QString()}};
}

bool CajaBackdrop::key() {
    std::optional<GSettingsClient> settings = GSettingsClient::open(schema);
    if (!settings) return false;
    const QVariantMap values = keyedValues();
    // The colour first, so the backdrop never shows the user's colour without the picture.
    const bool ok = settings->setString(primary, values.value(primary).toString()) &&
                    settings->setString(shading, values.value(shading).toString()) &&
                    settings->setString(picture, values.value(picture).toString());
    GSettingsClient::sync();
    return ok;
}

bool CajaBackdrop::restore(const QVariantMap& saved) {
    std::optional<GSettingsClient> settings = GSettingsClient::open(schema);
    if (!settings) return false;
    bool ok = true;
    for (auto it = saved.begin(); it != saved.end(); ++it) {
        const QVariant& value = it.value();
        if (!value.isValid())
            ok = settings->reset(it.key()) && ok;
        else
            ok = settings->setString(it.key(), value.toString()) && ok;
    }
    GSettingsClient::sync();
    return ok;
}

}  // namespace quellton
