#include <QGuiApplication>

#include <gtest/gtest.h>

// GLib's signals (GSettings) and D-Bus replies arrive through the application's event loop.
int main(int argc, char** argv) {
    QCoreApplication app(argc, argv);
    ::testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
