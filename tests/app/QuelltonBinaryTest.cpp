#include <gtest/gtest.h>

#include <QImage>
#include <QTemporaryDir>

#include <sys/wait.h>

#include <cstdlib>
#include <string>

namespace {

// Runs the built program with the arguments and returns its exit status.
int runQuellton(const std::string& arguments) {
    const int raw = std::system((std::string("'") + QUELLTON_BINARY + "' " + arguments + " >/dev/null").c_str());
    return WIFEXITED(raw) ? WEXITSTATUS(raw) : -1;
}

}  // namespace

TEST(QuelltonBinary, StillAndIconWriteTheirFiles) {
    QTemporaryDir dir;
    const QString still = dir.filePath("out.png"), icon = dir.filePath("icon.png");
    ASSERT_EQ(runQuellton("--still halo 64 36 6.3 '" + still.toStdString() + "'"), 0);
    EXPECT_EQ(QImage(still).size(), QSize(64, 36));
    ASSERT_EQ(runQuellton("--icon '" + icon.toStdString() + "'"), 0);
    const QImage image(icon);
    EXPECT_EQ(image.size(), QSize(1024, 1024));
    EXPECT_EQ(qAlpha(image.pixel(0, 0)), 0);
}
