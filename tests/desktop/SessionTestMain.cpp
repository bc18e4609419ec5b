#include <QGuiApplication>

#include <gtest/gtest.h>

#include <iostream>

#include "PrivateSession.h"

// The tests of this binary share one private X server and session bus.
int main(int argc, char** argv) {
    ::testing::InitGoogleTest(&argc, argv);
    quellton::test::PrivateSession session;
    if (!session.ready()) {
        std::cerr << "Xvfb or dbus-daemon did not start" << std::endl;
        return 1;
    }
    QGuiApplication app(argc, argv);
    return RUN_ALL_TESTS();
}
