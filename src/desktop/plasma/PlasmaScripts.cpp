#include "PlasmaScripts.h"

#include <QJsonDocument>
#include <QJsonObject>

namespace quellton::plasma {

QString savedWallpapersScript() {
    return QStringLiteral(R"(var saved = [];
var all = desktops();
for (var i = 0; i < all.length; ++i) {
    var d = all[i];
    d.currentConfigGroup = ['Wallpaper', d.wallpaperPlugin, 'General'];
    var keys = d.configKeys;
    var config = {};
    for (var k = 0; k < keys.length; ++k) config[keys[k]] = d.readConfig(keys[k]);
    saved.push({id: d.id, plugin: d.wallpaperPlugin, config: config});
}
print(JSON.stringify(saved));)");
}

QString selectScript(const QString& pluginId, const StreamPlacement& p) {
    const QJsonObject data{{"plugin", pluginId},     {"x", p.screen.x()},         {"y", p.screen.y()},
                           {"index", p.index},       {"node", qint64(p.node)},    {"generation", p.generation},
                           {"still", p.stillUrl}};
    const QString json = QString::fromUtf8(QJsonDocument(data).toJson(QJsonDocument::Compact));
    return QStringLiteral(R"(var want = %1;
var all = desktops();
var mine = [];
for (var i = 0; i < all.length; ++i) {
    var d = all[i];
    if (d.screen < 0) continue;
    var g = screenGeometry(d.screen);
    if (g && g.x == want.x && g.y == want.y) mine.push(d);
}
for (var i = 0; mine.length == 0 && i < all.length; ++i)
    if (all[i].screen == want.index) mine.push(all[i]);
for (var i = 0; i < mine.length; ++i) {
    var d = mine[i];
    d.wallpaperPlugin = want.plugin;
    d.currentConfigGroup = ['Wallpaper', want.plugin, 'General'];
    d.writeConfig('Still', want.still);
    d.writeConfig('NodeId', want.node);
    d.writeConfig('Generation', want.generation);
}
print(mine.length);)")
        .arg(json);
}

QString restoreScript(const QByteArray& saved) {
    return QStringLiteral(R"(var saved = %1;
var all = desktops();
for (var i = 0; i < saved.length; ++i) {
    for (var j = 0; j < all.length; ++j) {
        var d = all[j];
        if (d.id != saved[i].id) continue;
        d.wallpaperPlugin = saved[i].plugin;
        d.currentConfigGroup = ['Wallpaper', saved[i].plugin, 'General'];
        for (var key in saved[i].config) d.writeConfig(key, saved[i].config[key]);
    }
})")
        .arg(QString::fromUtf8(saved));
}

}  // namespace quellton::plasma
