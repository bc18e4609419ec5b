#include <unistd.h>

#include <QCoreApplication>

#include <gtest/gtest.h>

#include <iostream>

#include "PrivateSession.h"
#include "PulseTestServer.h"

// One private desktop for every tray test: a sound server, an X server with a session bus and
// openbox, the window manager whose client list and taskbar hints the tests read.
int main(int argc, char** argv) {
    ::testing::InitGoogleTest(&argc, argv);
    quellton::test::PulseTestServer pulse;  // before the X server: it clears DISPLAY
    quellton::test::PrivateSession session("1600x1000x24");
    if (!pulse.ready() || !session.ready()) {
        std::cerr << "PulseAudio, Xvfb or dbus-daemon did not start" << std::endl;
        return 1;
    }
    const pid_t openbox = quellton::test::spawn({"openbox", "--sm-disable"});
    // openbox announces itself on the root window once it manages the screen.
    for (int i = 0; i < 500 && !quellton::test::shell("xprop -root _NET_SUPPORTING_WM_CHECK | grep -q window"); ++i)
        usleep(20000);
    QCoreApplication app(argc, argv);
    const int status = RUN_ALL_TESTS();
    quellton::test::terminate(openbox);
    return status;
}
