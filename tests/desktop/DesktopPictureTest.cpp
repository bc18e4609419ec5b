#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QGuiApplication>
#include <QImage>
#include <QPixmap>
#include <QScreen>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <cstdlib>

#include "DesktopPicture.h"
#include "GSettingsClient.h"
#include "GSettingsPicture.h"
#include "IconDesktop.h"
#include "LxqtPicture.h"
#include "PcmanfmQtSettings.h"
#include "PrivateSession.h"
#include "PulseTestServer.h"
#include "SessionTestSupport.h"
#include "XfcePicture.h"
#include "XfconfClient.h"

namespace quellton {
namespace {

using test::output;
using test::waitUntil;

// GSettings keeps its values in a key file under the session's private configuration folder, so
// the tests use the real schemas without a dconf service; the tests choose their desktop themselves.
class KeyFileSettings : public ::testing::Environment {
    void SetUp() override {
        setenv("GSETTINGS_BACKEND", "keyfile", 1);
        unsetenv("XDG_CURRENT_DESKTOP");
    }
};
[[maybe_unused]] auto* const keyFileSettings = ::testing::AddGlobalTestEnvironment(new KeyFileSettings);

std::string trimmed(const std::string& text) { return QString::fromStdString(text).trimmed().toStdString(); }

// What another process reads from the same stores.
std::string gsettingsGet(const std::string& schema, const std::string& key) {
    GSettingsClient::sync();
    return trimmed(output("gsettings get " + schema + " " + key + " 2>&1"));
}
std::string xfconfGet(const std::string& property) {
    return trimmed(output("gdbus call --session -d org.xfce.Xfconf -o /org/xfce/Xfconf -m org.xfce.Xfconf.GetProperty "
                          "quellton-test " + property + " 2>&1"));
}

// Solid-colour pictures in a folder of their own.
class Pictures {
public:
    QString make(const QString& name, QColor colour) {
        QImage image(64, 48, QImage::Format_RGB32);
        image.fill(colour);
        const QString path = dir.filePath(name);
        EXPECT_TRUE(image.save(path, "jpeg", 92));
        return path;
    }
    QTemporaryDir dir;
};

ScreenInfo qtScreen() {
    const QScreen* screen = QGuiApplication::primaryScreen();
    return {screen->name(), screen->geometry(), screen->devicePixelRatio()};
}

// The colour in the middle of the X screen, as the user sees it.
QColor centre() {
    const QImage shot = QGuiApplication::primaryScreen()->grabWindow(0).toImage();
    return shot.pixelColor(shot.width() / 2, shot.height() / 2);
}

bool near(QColor a, QColor b) {
    return std::abs(a.red() - b.red()) + std::abs(a.green() - b.green()) + std::abs(a.blue() - b.blue()) < 24;
}

// Waits until the middle of the screen shows the colour (or, with `shows` false, no longer does);
// the screen is kept under the name `shot`, when there is one, for people to look at.
::testing::AssertionResult screenShows(QColor colour, bool shows = true, const char* shot = nullptr, int ms = 20000) {
    QColor seen;
    const bool ok = waitUntil([&] { return near(seen = centre(), colour) == shows; }, ms);
    if (shot) test::keepShot(QGuiApplication::primaryScreen()->grabWindow(0).toImage(), shot);
    if (ok) return ::testing::AssertionSuccess();
    return ::testing::AssertionFailure() << "the screen shows " << seen.name().toStdString();
}

bool busNameOwned(const QString& name) {
    return QDBusConnection::sessionBus().interface()->isServiceRegistered(name).value();
}

// GIO aborts on an unknown schema, key or type; the client answers instead. Strings and resets are
// what the program writes (lists too, seen on nemo's schema in the icon-manager settings test).
TEST(GSettingsClient, StringsReachTheStoreOtherProgramsReadAndWrongKeysAndTypesAreRefused) {
    EXPECT_FALSE(GSettingsClient::schemaExists(QStringLiteral("org.example.nothing")));
    EXPECT_FALSE(GSettingsClient::open(QStringLiteral("org.example.nothing")).has_value());
    GSettingsClient background = GSettingsClient::open(QStringLiteral("org.gnome.desktop.background")).value();
    EXPECT_FALSE(background.hasKey(QStringLiteral("no-such-key")));
    EXPECT_FALSE(background.getString(QStringLiteral("no-such-key")));
    EXPECT_FALSE(background.setString(QStringLiteral("no-such-key"), QStringLiteral("x")));
    EXPECT_FALSE(background.getInt(QStringLiteral("picture-uri"))) << "a string key read as a number";
    EXPECT_FALSE(background.setBool(QStringLiteral("picture-uri"), true));
    // The schema's default, which each distribution chooses, as another program reads it.
    EXPECT_EQ("'" + background.getString(QStringLiteral("picture-uri")).value_or(QString()).toStdString() + "'",
              gsettingsGet("org.gnome.desktop.background", "picture-uri"));

    EXPECT_TRUE(background.setString(QStringLiteral("picture-uri"), QStringLiteral("file:///tmp/ä b.jpg")));
    EXPECT_EQ(gsettingsGet("org.gnome.desktop.background", "picture-uri"), "'file:///tmp/ä b.jpg'");
    // Enumerations take their nicks and nothing else.
    EXPECT_TRUE(background.setString(QStringLiteral("picture-options"), QStringLiteral("stretched")));
    EXPECT_FALSE(background.setString(QStringLiteral("picture-options"), QStringLiteral("sideways")));
    EXPECT_EQ(gsettingsGet("org.gnome.desktop.background", "picture-options"), "'stretched'");
    EXPECT_TRUE(background.reset(QStringLiteral("picture-options")));
    EXPECT_EQ(background.getString(QStringLiteral("picture-options")), QStringLiteral("zoom"));
}

TEST(XfconfClient, TypedValuesTravelToXfconfdAndBack) {
    XfconfClient channel(QStringLiteral("quellton-test"));
    EXPECT_FALSE(channel.get(QStringLiteral("/missing")).has_value());
    EXPECT_FALSE(channel.exists(QStringLiteral("/missing")));
    // The types xfdesktop reads with: int32, uint32, boolean, double, string, array of doubles.
    const QVariantList rgba{0.0, 0.5, 1.0, 1.0};
    const std::vector<std::tuple<const char*, QVariant, const char*>> values{
        {"/a/style", 5, "(<5>,)"},
        {"/a/count", 7u, "(<uint32 7>,)"},
        {"/a/on", true, "(<true>,)"},
        {"/a/ratio", 0.25, "(<0.25>,)"},
        {"/a/image", QStringLiteral("/tmp/ä b.jpg"), "(<'/tmp/ä b.jpg'>,)"},
        {"/b/rgba1", rgba, "(<[<0.0>, <0.5>, <1.0>, <1.0>]>,)"}};
    for (const auto& [property, value, seen] : values) {
        ASSERT_TRUE(channel.set(QString::fromUtf8(property), value)) << property;
        EXPECT_EQ(xfconfGet(property), seen);
        EXPECT_EQ(channel.get(QString::fromUtf8(property)), value) << property;
    }
    EXPECT_EQ(channel.properties(QStringLiteral("/a")).keys(),
              (QStringList{"/a/count", "/a/image", "/a/on", "/a/ratio", "/a/style"}));
    EXPECT_EQ(channel.properties().size(), 6);
    EXPECT_EQ(channel.properties().value(QStringLiteral("/b/rgba1")), QVariant(rgba));
    EXPECT_TRUE(channel.reset(QStringLiteral("/a"), true));
    EXPECT_TRUE(channel.properties(QStringLiteral("/a")).isEmpty());
    EXPECT_TRUE(channel.exists(QStringLiteral("/b/rgba1")));
}

TEST(PcmanfmQtSettings, ReadsTheProfileFilePcmanfmQtKeeps) {
    PcmanfmQtSettings settings;
    EXPECT_EQ(settings.path(), qEnvironmentVariable("XDG_CONFIG_HOME") + "/pcmanfm-qt/lxqt/settings.conf");
    EXPECT_TRUE(settings.wallpaper().isEmpty());

    ASSERT_TRUE(QDir().mkpath(QFileInfo(settings.path()).path()));
    QFile file(settings.path());
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("[Desktop]\nBgColor=#000000\nFont=\"Sans Serif,9,-1,5,50,0,0,0,0,0\"\n"
               "Wallpaper=/usr/share/lxqt/wallpapers/waves-logo.png\nWallpaperMode=stretch\n");
    file.close();
    EXPECT_EQ(settings.wallpaper(), QStringLiteral("/usr/share/lxqt/wallpapers/waves-logo.png"));
    EXPECT_EQ(settings.wallpaperMode(), QStringLiteral("stretch"));

    QFile::remove(settings.path());
}

TEST(PictureDesktop, TheFirstEntryOfXdgCurrentDesktopWithAnAdapterChooses) {
    const std::vector<std::pair<const char*, std::optional<PictureDesktop>>> cases{
        {"ubuntu:GNOME", PictureDesktop::gnome}, {"Budgie:GNOME", PictureDesktop::gnome},
        {"X-Cinnamon", PictureDesktop::cinnamon}, {"xfce", PictureDesktop::xfce},
        {"sway", std::nullopt},                 {"", std::nullopt},
    };
    for (const auto& [name, desktop] : cases) EXPECT_EQ(pictureDesktop(QString::fromUtf8(name)), desktop) << name;
}

// GNOME, Cinnamon and MATE in their real schemas; another process reads what they hold.
TEST(GSettingsPicture, TheStillReplacesThePictureAndTheUsersComesBack) {
    Pictures pictures;
    const QString first = pictures.make(QStringLiteral("nation-0-1.jpg"), Qt::red);
    const QString second = pictures.make(QStringLiteral("nation-1-1.jpg"), Qt::blue);
    const ScreenInfo a{QStringLiteral("DP-1"), QRect(0, 0, 800, 600), 1}, b{QStringLiteral("DP-2"), QRect(800, 0, 800, 600), 1};
    const std::vector<ScreenPicture> stills{{a, first}, {b, second}};
    const std::vector<ScreenInfo> screens{a, b};
    const QUrl user(QStringLiteral("file:///usr/share/backgrounds/Mein%20Bild.png"));
    const std::string firstUri = "'" + QUrl::fromLocalFile(first).toString().toStdString() + "'";

    for (const auto& [keys, schema] : {std::pair{GSettingsPicture::gnome, "org.gnome.desktop.background"},
                                       std::pair{GSettingsPicture::cinnamon, "org.cinnamon.desktop.background"},
                                       std::pair{GSettingsPicture::mate, "org.mate.background"}}) {
        SCOPED_TRACE(schema);
        GSettingsPicture picture(keys);
        GSettingsClient::open(QString::fromUtf8(schema))->setString(QStringLiteral("picture-options"), QStringLiteral("spanned"));
        picture.restore(user, {}, screens);
        EXPECT_EQ(picture.current(a), user);
        const QVariantMap shownAs = picture.presentation(screens);

        picture.show(stills);
        EXPECT_EQ(picture.current(a), QUrl::fromLocalFile(first));
        EXPECT_EQ(gsettingsGet(schema, "picture-options"), "'zoom'");
        if (keys.uriKeys.isEmpty()) {
            EXPECT_EQ(gsettingsGet(schema, "picture-filename"), "'" + first.toStdString() + "'");
        } else {
            for (const QString& key : keys.uriKeys)
                EXPECT_EQ(gsettingsGet(schema, key.toStdString()), firstUri) << key.toStdString();
        }

        picture.restore(user, shownAs, screens);
        EXPECT_EQ(picture.current(a), user);
        EXPECT_EQ(gsettingsGet(schema, "picture-options"), "'spanned'");
        EXPECT_EQ(gsettingsGet(schema, keys.uriKeys.isEmpty() ? "picture-filename" : "picture-uri"),
                  keys.uriKeys.isEmpty() ? "'/usr/share/backgrounds/Mein Bild.png'"
                                         : "'file:///usr/share/backgrounds/Mein%20Bild.png'");
    }
    // GNOME without a picture (a plain colour): nothing to remember.
    GSettingsClient::open(QStringLiteral("org.gnome.desktop.background"))->setString(QStringLiteral("picture-uri"), {});
    EXPECT_FALSE(GSettingsPicture(GSettingsPicture::gnome).current(a).has_value());
}

// caja draws MATE's desktop from org.mate.background; it reads the same key file.
TEST(GSettingsPicture, CajaShowsTheStillOnMatesDesktop) {
    Pictures pictures;
    const QColor violet(150, 60, 200), orange(240, 140, 20);
    GSettingsPicture picture(GSettingsPicture::mate);
    const QUrl user = QUrl::fromLocalFile(pictures.make(QStringLiteral("user.jpg"), orange));
    picture.restore(user, {}, std::vector{qtScreen()});
    const pid_t caja = test::spawn({"caja", "--no-default-window", "--force-desktop"});
    EXPECT_TRUE(screenShows(orange, true, nullptr, 30000));

    picture.show(std::vector<ScreenPicture>{{qtScreen(), pictures.make(QStringLiteral("still.jpg"), violet)}});
    EXPECT_TRUE(screenShows(violet, true, "caja"));
    picture.restore(user, {}, std::vector{qtScreen()});
    EXPECT_TRUE(screenShows(orange));
    test::terminate(caja);
}

class XfcePictureTest : public ::testing::Test {
protected:
    void SetUp() override {
        desktop.reset(QStringLiteral("/backdrop"), true);
        windowManager.reset(QStringLiteral("/general"), true);
    }
    QString image(const QString& monitor, int workspace) const {
        return desktop.get(QStringLiteral("/backdrop/screen0/monitor%1/workspace%2/last-image").arg(monitor).arg(workspace))
            .value_or(QString())
            .toString();
    }
    std::string query(const QString& property) const {
        return trimmed(output("xfconf-query -c xfce4-desktop -p " + property.toStdString()));
    }

    XfconfClient desktop{QStringLiteral("xfce4-desktop")};
    XfconfClient windowManager{QStringLiteral("xfwm4")};
    Pictures pictures;
};

TEST_F(XfcePictureTest, EveryMonitorAndWorkspaceInUseGetsItsScreensStill) {
    const QString user = pictures.make(QStringLiteral("user.jpg"), Qt::gray);
    desktop.set(QStringLiteral("/backdrop/screen0/monitorHDMI-1/workspace0/last-image"), user);
    desktop.set(QStringLiteral("/backdrop/screen0/monitorHDMI-1/workspace3/last-image"), user);
    desktop.set(QStringLiteral("/backdrop/screen0/monitorHDMI-1/workspace3/image-style"), 3);
    desktop.set(QStringLiteral("/backdrop/screen0/monitorVGA-0/workspace0/last-image"), user);  // unplugged
    desktop.set(QStringLiteral("/backdrop/single-workspace-mode"), false);
    windowManager.set(QStringLiteral("/general/workspace_count"), 2);
    const ScreenInfo main{QStringLiteral("HDMI-1"), QRect(0, 0, 1920, 1080), 1};
    const ScreenInfo side{QStringLiteral("DP-2"), QRect(1920, 0, 1280, 1024), 1};
    XfcePicture picture;
    EXPECT_EQ(picture.current(main), QUrl::fromLocalFile(user));
    const QVariantMap shownAs = picture.presentation(std::vector{main, side});

    const QString a = pictures.make(QStringLiteral("a.jpg"), Qt::red), b = pictures.make(QStringLiteral("b.jpg"), Qt::blue);
    picture.show(std::vector<ScreenPicture>{{main, a}, {side, b}});
    for (int workspace : {0, 1, 3}) EXPECT_EQ(image(QStringLiteral("HDMI-1"), workspace), a) << workspace;
    for (int workspace : {0, 1}) EXPECT_EQ(image(QStringLiteral("DP-2"), workspace), b) << workspace;
    EXPECT_EQ(image(QStringLiteral("DP-2"), 3), QString()) << "only the workspaces in use and those that exist";
    EXPECT_EQ(image(QStringLiteral("VGA-0"), 0), a) << "a monitor of no screen gets the main screen's";
    EXPECT_EQ(query(QStringLiteral("/backdrop/screen0/monitorDP-2/workspace1/image-style")), "5");
    EXPECT_EQ(query(QStringLiteral("/backdrop/screen0/monitorHDMI-1/workspace3/last-image")), a.toStdString());
    EXPECT_EQ(picture.current(main), QUrl::fromLocalFile(a));

    picture.restore(QUrl::fromLocalFile(user), shownAs, std::vector{main, side});
    for (const auto& [monitor, workspace] : {std::pair{"HDMI-1", 0}, {"HDMI-1", 3}, {"DP-2", 1}, {"VGA-0", 0}})
        EXPECT_EQ(image(QString::fromUtf8(monitor), workspace), user) << monitor << workspace;
    EXPECT_EQ(query(QStringLiteral("/backdrop/screen0/monitorHDMI-1/workspace3/image-style")), "3");
}

TEST_F(XfcePictureTest, InSingleWorkspaceModeOnlyTheSharedWorkspaceIsAdded) {
    desktop.set(QStringLiteral("/backdrop/single-workspace-mode"), true);
    desktop.set(QStringLiteral("/backdrop/single-workspace-number"), 2);
    windowManager.set(QStringLiteral("/general/workspace_count"), 4);
    const ScreenInfo main{QStringLiteral("eDP-1"), QRect(0, 0, 1920, 1080), 1};
    XfcePicture picture;
    EXPECT_FALSE(picture.current(main).has_value());
    const QString a = pictures.make(QStringLiteral("a.jpg"), Qt::red);
    picture.show(std::vector<ScreenPicture>{{main, a}});
    EXPECT_EQ(image(QStringLiteral("eDP-1"), 2), a);
    const QVariantMap all = desktop.properties(QStringLiteral("/backdrop/screen0"));
    EXPECT_EQ(all.keys(), (QStringList{"/backdrop/screen0/monitoreDP-1/workspace2/image-style",
                                       "/backdrop/screen0/monitoreDP-1/workspace2/last-image"}));
    EXPECT_EQ(picture.current(main), QUrl::fromLocalFile(a));
}

// xfdesktop itself, on the test's X server: it names its monitor after the output as Qt does.
TEST_F(XfcePictureTest, XfdesktopShowsTheStill) {
    const pid_t xfdesktop = test::spawn({"xfdesktop", "--disable-wm-check"});
    ASSERT_TRUE(waitUntil([&] { return !image(qtScreen().name, 0).isEmpty(); }, 30000))
        << "xfdesktop writes its monitor's defaults";
    XfcePicture picture;
    const auto original = picture.current(qtScreen());
    ASSERT_TRUE(original.has_value());

    const QColor green(32, 192, 64);
    picture.show(std::vector<ScreenPicture>{{qtScreen(), pictures.make(QStringLiteral("green.jpg"), green)}});
    EXPECT_TRUE(screenShows(green, true, "xfdesktop"));
    picture.restore(*original, {}, std::vector{qtScreen()});
    EXPECT_TRUE(screenShows(green, false));
    test::terminate(xfdesktop);
}

// pcmanfm-qt's desktop on the test's X server, with the user's centred picture from its own file.
TEST(LxqtPicture, PcmanfmQtsDesktopShowsTheStillAndTheUsersPictureAgain) {
    Pictures pictures;
    const QColor blue(48, 80, 208), orange(240, 140, 20);
    const QString user = pictures.make(QStringLiteral("user.jpg"), orange);
    PcmanfmQtSettings settings;
    ASSERT_TRUE(settings.setValue(PcmanfmQtSettings::desktopGroup, QStringLiteral("Wallpaper"), user));
    ASSERT_TRUE(settings.setValue(PcmanfmQtSettings::desktopGroup, QStringLiteral("WallpaperMode"), QStringLiteral("center")));
    const pid_t desktop = test::spawn({"pcmanfm-qt", "--profile", "lxqt", "--desktop"});
    ASSERT_TRUE(waitUntil([] { return busNameOwned(QStringLiteral("org.pcmanfm.PCManFM")); }, 30000));
    LxqtPicture picture;
    EXPECT_EQ(picture.current(qtScreen()), QUrl::fromLocalFile(user));
    EXPECT_TRUE(screenShows(orange));
    const QVariantMap shownAs = picture.presentation(std::vector{qtScreen()});
    EXPECT_EQ(shownAs.value(QStringLiteral("WallpaperMode")), QStringLiteral("center"));

    const QString still = pictures.make(QStringLiteral("still.jpg"), blue);
    picture.show(std::vector<ScreenPicture>{{qtScreen(), still}});
    EXPECT_TRUE(waitUntil([&] { return picture.current(qtScreen()) == QUrl::fromLocalFile(still); }, 20000));
    EXPECT_TRUE(screenShows(blue, true, "pcmanfm-qt"));
    picture.restore(QUrl::fromLocalFile(user), shownAs, std::vector{qtScreen()});
    EXPECT_TRUE(screenShows(orange));
    test::terminate(desktop);
}

}  // namespace
}  // namespace quellton
