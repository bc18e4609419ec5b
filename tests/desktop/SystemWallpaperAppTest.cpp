// The built program with the desktop-picture option on (its default), in a private session
// that is GNOME (GSettings in a key file) and then XFCE (xfconfd on the private bus).
#include <QDir>
#include <QGuiApplication>
#include <QImageReader>
#include <QRegularExpression>
#include <QSettings>
#include <QStandardPaths>

#include <gtest/gtest.h>

#include <cstdlib>
#include <functional>
#include <iostream>

#include "GSettingsClient.h"
#include "IconDesktop.h"
#include "PrivateSession.h"
#include "PulseTestServer.h"
#include "SessionTestSupport.h"
#include "XfconfClient.h"

namespace quellton {
namespace {

using test::output;
using test::waitUntil;

// Compiling every visualization on a software rasteriser takes minutes on a busy machine.
constexpr int readyMs = 6 * 60 * 1000;

QString folder() {
    return QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) + QStringLiteral("/Quellton/Hintergrund");
}
QString settingsPath() {
    return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) + QStringLiteral("/Quellton/Quellton.conf");
}

// The program's own settings file, as it holds it now.
QVariant setting(const QString& key) {
    QSettings settings(settingsPath(), QSettings::IniFormat);
    settings.sync();
    return settings.value(key);
}
void setSetting(const QString& key, const QVariant& value) {
    QSettings settings(settingsPath(), QSettings::IniFormat);
    if (value.isValid())
        settings.setValue(key, value);
    else
        settings.remove(key);
}

QString gsettingsGet(const char* key) {
    return QString::fromStdString(output(std::string("gsettings get org.gnome.desktop.background ") + key)).trimmed();
}

// Starts the program on a desktop with a visualization chosen; true once the desktop shows one of
// its stills. The program's output goes to a log beside its settings.
::testing::AssertionResult startUntilShown(test::Program& program, const char* desktop, const char* id,
                                           const std::function<QString()>& shown) {
    setSetting(QStringLiteral("current"), QString::fromUtf8(id));
    setenv("XDG_CURRENT_DESKTOP", desktop, 1);
    const std::string log = (QFileInfo(settingsPath()).path() + QStringLiteral("/program.log")).toStdString();
    program = test::Program({QUELLTON_BINARY}, log);
    if (waitUntil([&] { return shown().contains(QString::fromUtf8(id) + u'-'); }, readyMs))
        return ::testing::AssertionSuccess();
    return ::testing::AssertionFailure() << "no still shown; the program's log:\n" << output("tail -n 30 " + log);
}

// The only still in the folder (an earlier run's is gone), for the first screen: its name and JPEG size.
QString onlyStill(const char* id) {
    const QStringList files = QDir(folder()).entryList(QDir::Files, QDir::Name);
    if (files.size() != 1) {
        ADD_FAILURE() << "stills: " << files.join(u' ').toStdString();
        return {};
    }
    const QString file = QDir(folder()).filePath(files.front());
    const QRegularExpression name(QStringLiteral("^%1-0-(\\d+)\\.jpg$").arg(QLatin1String(id)));
    const auto match = name.match(files.front());
    EXPECT_TRUE(match.hasMatch()) << file.toStdString();
    EXPECT_NEAR(match.captured(1).toLongLong(), QDateTime::currentSecsSinceEpoch(), 600);
    QImageReader jpeg(file);
    EXPECT_EQ(jpeg.format(), "jpeg");
    EXPECT_EQ(jpeg.size(), QSize(1280, 720));
    test::keepShot(jpeg.read(), std::string(id) + "-still");
    return file;
}

TEST(SystemWallpaperProgram, GnomesPictureBecomesAStillOfTheCurrentVisualization) {
    const QString user = QStringLiteral("file:///usr/share/backgrounds/gnome/Mein%20Bild.jpg");
    {
        auto background = GSettingsClient::open(QStringLiteral("org.gnome.desktop.background"));
        ASSERT_TRUE(background);
        background->setString(QStringLiteral("picture-uri"), user);
        GSettingsClient::sync();
    }
    test::Program program;
    ASSERT_TRUE(startUntilShown(program, "GNOME", "pegel", [] { return gsettingsGet("picture-uri"); }));
    const QString uri = "'" + QUrl::fromLocalFile(onlyStill("pegel")).toString() + "'";
    EXPECT_EQ(gsettingsGet("picture-uri"), uri);
    EXPECT_EQ(gsettingsGet("picture-uri-dark"), uri);
    EXPECT_EQ(gsettingsGet("picture-options"), QStringLiteral("'zoom'"));
    EXPECT_EQ(setting(QStringLiteral("originalWallpaper")), user);
    EXPECT_EQ(program.stop(), 0);
}

TEST(SystemWallpaperProgram, XfcesPictureBecomesAStillOfTheCurrentVisualization) {
    XfconfClient desktop(QStringLiteral("xfce4-desktop"));
    const QString place = QStringLiteral("/backdrop/screen0/monitorscreen/workspace0/");
    const QString user = QStringLiteral("/usr/share/backgrounds/xfce/xfce-shapes.svg");
    ASSERT_TRUE(desktop.set(place + QStringLiteral("last-image"), user));
    setSetting(QStringLiteral("originalWallpaper"), {});
    test::Program program;
    const auto shown = [&] { return desktop.get(place + QStringLiteral("last-image")).value_or(user).toString(); };
    ASSERT_TRUE(startUntilShown(program, "XFCE", "oszi", shown));
    EXPECT_EQ(desktop.get(place + QStringLiteral("last-image")), QVariant(onlyStill("oszi")));
    EXPECT_EQ(desktop.get(place + QStringLiteral("image-style")), QVariant(5));
    EXPECT_EQ(setting(QStringLiteral("originalWallpaper")), QUrl::fromLocalFile(user).toString());
    EXPECT_EQ(program.stop(), 0);
}

}  // namespace
}  // namespace quellton

int main(int argc, char** argv) {
    ::testing::InitGoogleTest(&argc, argv);
    quellton::test::PulseTestServer pulse;  // first: it points HOME elsewhere and clears DISPLAY
    quellton::test::PrivateSession session;
    if (!pulse.ready() || !session.ready()) {
        std::cerr << "the private session did not start" << std::endl;
        return 1;
    }
    setenv("GSETTINGS_BACKEND", "keyfile", 1);
    // The two starts of the program share one private shader cache, so the second compiles fast.
    unsetenv("MESA_SHADER_CACHE_DISABLE");
    setenv("MESA_SHADER_CACHE_DIR", (session.dir() + "/cache/mesa").c_str(), 1);
    QGuiApplication app(argc, argv);
    return RUN_ALL_TESTS();
}
