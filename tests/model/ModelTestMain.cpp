#include <QCoreApplication>

#include <gtest/gtest.h>

// The model's timer needs a Qt application object on the main thread.
int main(int argc, char** argv) {
    QCoreApplication app(argc, argv);
    ::testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
