#include <QGuiApplication>

#include <gtest/gtest.h>

#include <cstdlib>
#include <iostream>

#include "PrivateSession.h"

// The desktop-picture tests share one private X server and session bus. GSettings keeps its
// values in a key file under the session's private configuration folder, so the tests use the
// real schemas without a dconf service.
int main(int argc, char** argv) {
    ::testing::InitGoogleTest(&argc, argv);
    quellton::test::PrivateSession session;
    if (!session.ready()) {
        std::cerr << "Xvfb or dbus-daemon did not start" << std::endl;
        return 1;
    }
    setenv("GSETTINGS_BACKEND", "keyfile", 1);
    unsetenv("XDG_CURRENT_DESKTOP");
    QGuiApplication app(argc, argv);
    return RUN_ALL_TESTS();
}
