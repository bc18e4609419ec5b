#include "SoundSettings.h"

#include <QProcess>
#include <QStandardPaths>

#include <utility>
#include <vector>

namespace quellton {

namespace {

using Candidates = std::vector<QStringList>;

// Desktop names as XDG_CURRENT_DESKTOP spells them, with their sound settings, best first.
const std::vector<std::pair<QStringList, Candidates>>& desktopSettings() {
    static const std::vector<std::pair<QStringList, Candidates>> table = {
        {{"GNOME", "Unity"}, {{"gnome-control-center", "sound"}}},
        {{"Budgie"}, {{"budgie-control-center", "sound"}, {"gnome-control-center", "sound"}}},
        {{"KDE"},
         {{"kcmshell6", "kcm_pulseaudio"}, {"kcmshell5", "kcm_pulseaudio"}, {"systemsettings", "kcm_pulseaudio"}}},
        {{"X-Cinnamon", "Cinnamon"}, {{"cinnamon-settings", "sound"}}},
        {{"MATE"}, {{"mate-volume-control"}}},
        // The XFCE panel's sound plugin opens pavucontrol as its mixer.
        {{"XFCE"}, {{"pavucontrol"}}},
        {{"LXQt"}, {{"pavucontrol-qt"}, {"pavucontrol"}}},
    };
    return table;
}

// Mixers that work on any desktop, for desktops we do not know or whose own settings are missing.
const Candidates& neutralMixers() {
    static const Candidates mixers = {{"pavucontrol"}, {"pavucontrol-qt"}};
    return mixers;
}

}  // namespace

std::optional<QStringList> soundSettingsCommand(const QString& currentDesktops,
                                                const std::function<bool(const QString&)>& installed) {
    const auto firstInstalled = [&](const Candidates& candidates) -> std::optional<QStringList> {
        for (const QStringList& command : candidates)
            if (installed(command.first())) return command;
        return std::nullopt;
    };
    for (const QString& desktop : currentDesktops.split(u':', Qt::SkipEmptyParts)) {
        for (const auto& [names, candidates] : desktopSettings()) {
            if (!names.contains(desktop, Qt::CaseInsensitive)) continue;
            if (auto command = firstInstalled(candidates)) return command;
        }
    }
    return firstInstalled(neutralMixers());
}

std::optional<QStringList> soundSettingsCommand() {
    return soundSettingsCommand(qEnvironmentVariable("XDG_CURRENT_DESKTOP"), [](const QString& program) {
        return !QStandardPaths::findExecutable(program).isEmpty();
    });
}

bool openSoundSettings() {
    const std::optional<QStringList> command = soundSettingsCommand();
    if (!command) return false;
    const bool started = QProcess::startDetached(command->first(), command->mid(1));
    if (!started) qWarning("Quellton: %s startet nicht", qPrintable(command->first()));
    return started;
}

}  // namespace quellton
