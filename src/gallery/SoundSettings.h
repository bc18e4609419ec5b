#pragma once

#include <QString>
#include <QStringList>

#include <functional>
#include <optional>

namespace quellton {

// The desktop's sound settings, where the user sees which output is recorded and can turn it up:
// the place "Toneinstellungen öffnen" leads to (Linux asks no permission to record the output mix).
//
// The program and arguments to start for a desktop list as XDG_CURRENT_DESKTOP gives it
// (colon-separated, most specific first): the first installed candidate of the first desktop we know,
// else a desktop-neutral mixer. None when nothing of the kind is installed.
std::optional<QStringList> soundSettingsCommand(const QString& currentDesktops,
                                                const std::function<bool(const QString& program)>& installed);

// The command for this session, looked up on PATH.
std::optional<QStringList> soundSettingsCommand();

// Starts the command for this session, detached; false when there is none or it did not start.
bool openSoundSettings();

}  // namespace quellton
