#include "KdeAppearance.h"

#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>

namespace quellton {

KdeAppearance::KdeAppearance(QObject* parent)
    : AppearanceSource(parent),
      path_(QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) + QStringLiteral("/kdeglobals")) {
    // KDE replaces the file rather than writing into it, so the folder is watched as well.
    watcher_.addPath(QFileInfo(path_).absolutePath());
    connect(&watcher_, &QFileSystemWatcher::directoryChanged, this, &KdeAppearance::reload);
    connect(&watcher_, &QFileSystemWatcher::fileChanged, this, &KdeAppearance::reload);
    reload();
}

void KdeAppearance::reload() {
    if (QFileInfo::exists(path_) && !watcher_.files().contains(path_)) watcher_.addPath(path_);
    QFile file(path_);
    AppearanceHints hints;
    if (file.open(QIODevice::ReadOnly)) hints = hintsFromKdeGlobals(file.readAll().toStdString());
    if (hints.dark == hints_.dark && hints.reduceMotion == hints_.reduceMotion) return;
    hints_ = hints;
    emit changed();
}

}  // namespace quellton
