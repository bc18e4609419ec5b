#pragma once

#include <QFileSystemWatcher>
#include <QString>

#include "AppearanceSource.h"

namespace quellton {

// KDE's kdeglobals in the user's configuration folder, read again whenever it is rewritten.
class KdeAppearance : public AppearanceSource {
    Q_OBJECT
public:
    explicit KdeAppearance(QObject* parent = nullptr);
    AppearanceHints hints() const override { return hints_; }

private:
    void reload();

    QString path_;
    QFileSystemWatcher watcher_;
    AppearanceHints hints_;
};

}  // namespace quellton
