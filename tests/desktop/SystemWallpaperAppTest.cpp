// The built program with the desktop-picture option on (its default), in a private session
// that is GNOME (GSettings in a key file) and then XFCE (xfconfd on the private bus).
#include <signal.h>
#include <sys/wait.h>

#include <QDir>
#include <QFile>
#include <QGuiApplication>
#include <QImageReader>
#include <QRegularExpression>
#include <QSettings>
#include <QStandardPaths>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <cstdlib>
#include <iostream>

#include "GSettingsClient.h"
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
QStringList stills() { return QDir(folder()).entryList(QDir::Files, QDir::Name); }

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

// The still the program wrote for the first screen: its name and its JPEG size.
void expectStill(const QString& file, const char* id) {
    const QRegularExpression name(QStringLiteral("^%1-0-(\\d+)\\.jpg$").arg(QLatin1String(id)));
    const auto match = name.match(QFileInfo(file).fileName());
    ASSERT_TRUE(match.hasMatch()) << file.toStdString();
    EXPECT_NEAR(match.captured(1).toLongLong(), QDateTime::currentSecsSinceEpoch(), 600);
    QImageReader jpeg(file);
    EXPECT_EQ(jpeg.format(), "jpeg");
    EXPECT_EQ(jpeg.size(), QSize(1280, 720));
    if (const QString dir = qEnvironmentVariable("QUELLTON_SHOTS"); !dir.isEmpty())
        QFile::copy(file, dir + u'/' + QFileInfo(file).fileName());
}

class Program {
public:
    explicit Program(const char* desktop) {
        setenv("XDG_CURRENT_DESKTOP", desktop, 1);
        pid_ = test::spawn({QUELLTON_BINARY});
    }
    ~Program() {
        if (pid_ > 0) stop();
    }
    int stop() {
        kill(pid_, SIGTERM);
        int status = 0;
        waitpid(pid_, &status, 0);
        pid_ = -1;
        return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
    }

private:
    pid_t pid_ = -1;
};

TEST(SystemWallpaperProgram, GnomesPictureBecomesAStillOfTheCurrentVisualization) {
    const QString user = QStringLiteral("file:///usr/share/backgrounds/gnome/Mein%20Bild.jpg");
    {
        auto background = GSettingsClient::open(QStringLiteral("org.gnome.desktop.background"));
        ASSERT_TRUE(background);
        background->setString(QStringLiteral("picture-uri"), user);
        GSettingsClient::sync();
    }
    setSetting(QStringLiteral("current"), QStringLiteral("pegel"));
    Program program("GNOME");
    ASSERT_TRUE(waitUntil([] { return gsettingsGet("picture-uri").contains(QStringLiteral("/Hintergrund/")); }, readyMs));
    ASSERT_EQ(stills().size(), 1);
    const QString still = QDir(folder()).filePath(stills().front());
    expectStill(still, "pegel");
    const QString uri = "'" + QUrl::fromLocalFile(still).toString() + "'";
    EXPECT_EQ(gsettingsGet("picture-uri"), uri);
    EXPECT_EQ(gsettingsGet("picture-uri-dark"), uri);
    EXPECT_EQ(gsettingsGet("picture-options"), QStringLiteral("'zoom'"));
    EXPECT_EQ(setting(QStringLiteral("originalWallpaper")), user);
    EXPECT_EQ(program.stop(), 0);
}

TEST(SystemWallpaperProgram, XfcesPictureBecomesAStillOfTheCurrentVisualization) {
    XfconfClient desktop(QStringLiteral("xfce4-desktop"));
    const QString image = QStringLiteral("/backdrop/screen0/monitorscreen/workspace0/last-image");
    const QString user = QStringLiteral("/usr/share/backgrounds/xfce/xfce-shapes.svg");
    ASSERT_TRUE(desktop.set(image, user));
    setSetting(QStringLiteral("current"), QStringLiteral("oszi"));
    setSetting(QStringLiteral("originalWallpaper"), {});
    Program program("XFCE");
    ASSERT_TRUE(waitUntil([&] { return desktop.get(image).value_or(user).toString().contains(QStringLiteral("oszi-")); },
                          readyMs));
    ASSERT_EQ(stills().size(), 1) << "the earlier run's still is gone";
    const QString still = QDir(folder()).filePath(stills().front());
    expectStill(still, "oszi");
    EXPECT_EQ(desktop.get(image), QVariant(still));
    EXPECT_EQ(desktop.get(QStringLiteral("/backdrop/screen0/monitorscreen/workspace0/image-style")), QVariant(5));
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
