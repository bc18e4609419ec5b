#pragma once

#include <QObject>

#include "AppearanceRules.h"

namespace quellton {

// One place a desktop keeps its look, followed while the program runs.
class AppearanceSource : public QObject {
    Q_OBJECT
public:
    using QObject::QObject;
    virtual AppearanceHints hints() const = 0;

signals:
    void changed();
};

}  // namespace quellton
