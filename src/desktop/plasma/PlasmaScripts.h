#pragma once

#include <QByteArray>
#include <QRect>
#include <QString>

#include <cstdint>

namespace quellton::plasma {

// Desktop scripts for org.kde.PlasmaShell.evaluateScript. Data go in as JSON, so no path or value
// can break a script's syntax; what a script print()s is the call's answer.

// Every desktop's wallpaper plugin and that plugin's whole "General" group, as a JSON array of
// {id, plugin, config}.
QString savedWallpapersScript();

// Our plugin on the desktops of one screen (found by its position, else by Plasma's number for it),
// told its stream and its still. `generation` changes on every call, so the view connects anew.
struct StreamPlacement {
    QRect screen;  // Qt's global coordinates
    int index = 0;
    std::uint32_t node = 0;
    qint64 generation = 0;
    QString stillUrl;
};
QString selectScript(const QString& pluginId, const StreamPlacement& placement);

// Each saved desktop gets its plugin and every saved value back; `saved` is the answer of
// savedWallpapersScript. Desktops that no longer exist are left out.
QString restoreScript(const QByteArray& saved);

}  // namespace quellton::plasma
