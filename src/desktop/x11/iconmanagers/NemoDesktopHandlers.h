#pragma once

#include <QString>

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

}  // namespace quellton
