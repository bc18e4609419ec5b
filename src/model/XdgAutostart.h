#pragma once

#include <filesystem>
#include <string>

#include "LoginItem.h"

namespace quellton {

// Launch at login through an XDG autostart entry whose Exec adds `--autostart`.
class XdgAutostart final : public LoginItem {
public:
    // `directory` holds the entry (normally $XDG_CONFIG_HOME/autostart); `program` is started by it.
    XdgAutostart(std::filesystem::path directory, std::filesystem::path program);

    // The user's autostart folder and this process's executable.
    static XdgAutostart forCurrentUser();

    std::filesystem::path entryPath() const;
    bool isRegistered() override;
    bool registerItem() override;
    bool unregisterItem() override;

    // The text of the entry; the program path is quoted by the Desktop Entry rules.
    static std::string entryText(const std::filesystem::path& program);
    // The program a link to the running executable names. An installed program is entered by
    // its absolute path, so the entry starts this very installation, whatever PATH the session has.
    static std::filesystem::path programFromLink(std::string link);

private:
    std::filesystem::path directory;
    std::filesystem::path program;
};

}  // namespace quellton
