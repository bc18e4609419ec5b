#pragma once

#include <QStringList>
#include <QVariantMap>

#include <cstdint>
#include <memory>
#include <optional>

#include "IconLayerRules.h"

namespace quellton {

// One icon manager's own backdrop, in its desktop's settings store. Main thread.
class ManagerBackdrop {
public:
    virtual ~ManagerBackdrop() = default;
    // The values of every setting that key() changes, as they are now; an invalid value stands
    // for a setting that holds no value of the user's. Nothing when the store cannot be read.
    virtual std::optional<QVariantMap> read() = 0;
    // The colour the backdrop is as it stands, when it is one solid colour already: then nothing changes.
    virtual std::optional<std::uint32_t> solidColor(const QVariantMap& current) const = 0;
    // Makes the backdrop the key colour; false when the store refuses.
    virtual bool key() = 0;
    // The values key() writes, by the names read() uses.
    virtual QVariantMap keyedValues() = 0;
    // Gives the settings their values from read() back.
    virtual bool restore(const QVariantMap& saved) = 0;
};

// The backdrop of one manager on the session's real stores; null for managers without one.
// `monitors` are the screens' connector names, for desktops that keep a backdrop per monitor.
std::unique_ptr<ManagerBackdrop> makeManagerBackdrop(IconManager manager, const QStringList& monitors);

}  // namespace quellton
