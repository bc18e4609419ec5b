#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <sstream>

#include "XdgAutostart.h"

namespace quellton::test {
namespace {

namespace fs = std::filesystem;

std::string readFile(const fs::path& path) {
    std::ifstream in(path);
    std::stringstream text;
    text << in.rdbuf();
    return text.str();
}

TEST(XdgAutostart, CreatesAndRemovesTheEntryAndAHiddenOneCountsAsOff) {
    QTemporaryDir dir;
    const fs::path folder = fs::path(dir.path().toStdString()) / "neu" / "autostart";
    XdgAutostart item(folder, "/opt/quellton/bin/quellton");
    EXPECT_FALSE(item.isRegistered());
    EXPECT_EQ(item.entryPath(), folder / "io.github.quellton.Quellton.desktop");

    ASSERT_TRUE(item.registerItem());  // creates the missing folders
    EXPECT_TRUE(item.isRegistered());
    const std::string text = readFile(item.entryPath());
    EXPECT_EQ(text.rfind("[Desktop Entry]\n", 0), 0u);
    EXPECT_NE(text.find("\nType=Application\n"), std::string::npos);
    EXPECT_NE(text.find("\nExec=\"/opt/quellton/bin/quellton\" --autostart\n"), std::string::npos);
    EXPECT_FALSE(fs::exists(item.entryPath().string() + ".tmp"));

    ASSERT_TRUE(item.registerItem());  // again: still one valid entry
    EXPECT_EQ(readFile(item.entryPath()), text);
    ASSERT_TRUE(item.unregisterItem());
    EXPECT_FALSE(item.isRegistered());
    EXPECT_TRUE(item.unregisterItem());  // nothing left to remove is no failure

    std::ofstream(item.entryPath()) << "[Desktop Entry]\nType=Application\nExec=quellton\nHidden=true\n";
    EXPECT_FALSE(item.isRegistered());
}

TEST(XdgAutostart, QuotesTheProgramPathAndPassesTheDesktopEntryValidator) {
    const std::string odd = "/home/a b/100%/\"q\"$x\\y";
    // Exec quoting escapes " $ \ and doubles %, then the entry escaping doubles each backslash.
    const std::string text = XdgAutostart::entryText(odd);
    EXPECT_NE(text.find("Exec=\"/home/a b/100%%/\\\\\"q\\\\\"\\\\$x\\\\\\\\y\" --autostart\n"), std::string::npos)
        << text;
    QTemporaryDir dir;
    for (const std::string& program : {std::string("/usr/bin/quellton"), odd}) {
        const std::string file = dir.filePath("io.github.quellton.Quellton.desktop").toStdString();
        std::ofstream(file) << XdgAutostart::entryText(program);
        EXPECT_EQ(std::system(("desktop-file-validate '" + file + "'").c_str()), 0) << program;
    }
}

// The link to the running executable names the installed path even after the package manager
// replaced the file.
TEST(XdgAutostart, TheUsersEntryStartsTheRunningExecutableByItsInstalledPath) {
    EXPECT_EQ(XdgAutostart::programFromLink("/usr/bin/quellton (deleted)"), "/usr/bin/quellton");
    EXPECT_EQ(XdgAutostart::programFromLink("/usr/bin/quellton"), "/usr/bin/quellton");

    QTemporaryDir dir;
    const char* saved = std::getenv("XDG_CONFIG_HOME");
    const std::string previous = saved ? saved : "";
    setenv("XDG_CONFIG_HOME", dir.path().toLocal8Bit().constData(), 1);
    XdgAutostart item = XdgAutostart::forCurrentUser();
    saved ? setenv("XDG_CONFIG_HOME", previous.c_str(), 1) : unsetenv("XDG_CONFIG_HOME");

    EXPECT_EQ(item.entryPath(), fs::path(dir.path().toStdString()) / "autostart" / "io.github.quellton.Quellton.desktop");
    ASSERT_TRUE(item.registerItem());
    const fs::path self = fs::canonical("/proc/self/exe");
    ASSERT_TRUE(self.is_absolute());
    EXPECT_NE(readFile(item.entryPath()).find("\nExec=\"" + self.string() + "\" --autostart\n"), std::string::npos);
}

TEST(XdgAutostart, ReportsAFolderItCannotCreate) {
    QTemporaryDir dir;
    const fs::path blocker = fs::path(dir.path().toStdString()) / "datei";
    std::ofstream(blocker) << "kein Ordner";
    XdgAutostart item(blocker / "autostart", "/usr/bin/quellton");
    EXPECT_FALSE(item.registerItem());
    EXPECT_FALSE(item.isRegistered());
}

}  // namespace
}  // namespace quellton::test
