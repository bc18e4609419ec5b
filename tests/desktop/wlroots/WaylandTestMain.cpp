#include <QGuiApplication>

#include <gtest/gtest.h>

#include <cstdlib>
#include <iostream>

#include "NestedSway.h"
#include "PrivateSession.h"
#include "ShaderLibrary.h"
#include "WindowSystemGl.h"

namespace quellton::test {

namespace {
NestedSway* shared = nullptr;
}

NestedSway& sway() { return *shared; }

}  // namespace quellton::test

// The tests of this binary share one nested sway, a session bus and the program's GL on Wayland.
int main(int argc, char** argv) {
    ::testing::InitGoogleTest(&argc, argv);
    quellton::test::PrivateSession session;  // the bus and private folders; its X server stays unused
    quellton::test::NestedSway sway;
    if (!session.ready() || !sway.ready()) {
        std::cerr << "the private session or sway did not start" << std::endl;
        return 1;
    }
    quellton::test::shared = &sway;
    unsetenv("DISPLAY");
    setenv("WAYLAND_DISPLAY", sway.socket().c_str(), 1);
    setenv("QT_QPA_PLATFORM", "wayland", 1);
    QGuiApplication app(argc, argv);
    std::string error;
    if (!quellton::useWindowSystemGl(&error)) {
        std::cerr << "no OpenGL on Wayland: " << error << std::endl;
        return 1;
    }
    const int status = RUN_ALL_TESTS();
    quellton::ShaderLibrary::shared().stopBackgroundWork();
    return status;
}
