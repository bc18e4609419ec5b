#pragma once

#include <QString>

#include <string_view>

namespace quellton {

class BackdropVault;

// nemo-desktop refuses to draw the icons when another program's desktop window exists at its
// start ("Desktop already managed by another application"), unless that program's window class
// is in org.nemo.desktop ignored-desktop-handlers. Our class goes in while the wallpaper runs
// and comes out again when it stops; an entry the user made stays.
class NemoDesktopHandlers {
public:
    NemoDesktopHandlers(BackdropVault& vault, QString windowClass);

    void claim();
    void release();

private:
    BackdropVault& vault_;
    QString windowClass_;
};

// Whether nemo-desktop draws, or may yet draw, this session's desktop: on Cinnamon (an entry of
// XDG_CURRENT_DESKTOP), or wherever it runs. Elsewhere its settings are none of our business.
bool nemoMayManageDesktop(std::string_view currentDesktop, bool nemoDesktopRunning);
// Whether this user's nemo-desktop runs now on our display (not one of another session).
bool nemoDesktopRunning();

}  // namespace quellton
