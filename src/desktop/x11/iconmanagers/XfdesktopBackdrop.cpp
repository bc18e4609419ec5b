#include "XfdesktopBackdrop.h"

#include <QRegularExpression>

#include "IconManagerSettings.h"

namespace quellton {

namespace {

const QString base = QStringLiteral("/backdrop/screen0");
const QStringList keyed{QStringLiteral("rgba1"), QStringLiteral("color-style"), QStringLiteral("image-style")};

QVariantList rgba(std::uint32_t color) {
    const auto channel = [&](int shift) { return double((color >> shift) & 0xff) / 255.0; };
    return {channel(16), channel(8), channel(0), 1.0};
}

}  // namespace

XfdesktopBackdrop::XfdesktopBackdrop(QStringList monitors, XfconfClient client)
    : monitors_(std::move(monitors)), client_(std::move(client)) {}

std::set<QString> XfdesktopBackdrop::places() {
    static const QRegularExpression place(QStringLiteral("^(/backdrop/screen0/monitor[^/]+/workspace[0-9]+)/"));
    std::set<QString> found;
    const QVariantMap all = client_.properties(base);
    for (auto it = all.begin(); it != all.end(); ++it)
        if (const QRegularExpressionMatch match = place.match(it.key()); match.hasMatch()) found.insert(match.captured(1));
    // A fresh user has no properties yet: xfdesktop then reads its defaults for these.
    for (const QString& monitor : monitors_) found.insert(base + QStringLiteral("/monitor") + monitor + QStringLiteral("/workspace0"));
    return found;
}

std::optional<QVariantMap> XfdesktopBackdrop::read() {
    const QVariantMap all = client_.properties(base);
    QVariantMap values;
    for (const QString& place : places())
        for (const QString& name : keyed) {
            const QString property = place + u'/' + name;
            values.insert(property, all.value(property));
        }
    if (values.isEmpty()) return std::nullopt;
    return values;
}

QVariantMap XfdesktopBackdrop::keyedValues() {
    QVariantMap values;
    for (const QString& place : places()) {
        values.insert(place + QStringLiteral("/rgba1"), rgba(backdropKeyColor));
        values.insert(place + QStringLiteral("/color-style"), 0);
        values.insert(place + QStringLiteral("/image-style"), 0);
    }
    return values;
}

bool XfdesktopBackdrop::key() {
    bool ok = true;
    const QVariantMap values = keyedValues();
    // The colour first, so the backdrop never shows the user's colour without the picture.
    for (const QString& name : keyed)
        for (auto it = values.begin(); it != values.end(); ++it)
            if (it.key().endsWith(u'/' + name)) ok = client_.set(it.key(), it.value()) && ok;
    return ok;
}

bool XfdesktopBackdrop::restore(const QVariantMap& saved) {
    bool ok = true;
    // The picture's style last, when its colours are the user's again.
    for (const QString& name : keyed)
        for (auto it = saved.begin(); it != saved.end(); ++it) {
            if (!it.key().endsWith(u'/' + name)) continue;
            ok = (it.value().isValid() ? client_.set(it.key(), it.value()) : client_.reset(it.key())) && ok;
        }
    return ok;
}

}  // namespace quellton
