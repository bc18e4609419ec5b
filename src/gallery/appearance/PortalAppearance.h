#pragma once

#include <QDBusMessage>

#include <optional>

#include "AppearanceSource.h"

namespace quellton {

// The XDG desktop portal's org.freedesktop.appearance color-scheme on the session bus. Asked without
// waiting: until a portal answers it says nothing, and where none runs it never does.
class PortalAppearance : public AppearanceSource {
    Q_OBJECT
public:
    explicit PortalAppearance(QObject* parent = nullptr);
    AppearanceHints hints() const override { return {scheme_, std::nullopt}; }

private slots:
    void settingChanged(const QDBusMessage& message);

private:
    void take(const QVariant& value);
    std::optional<bool> scheme_;
};

}  // namespace quellton
