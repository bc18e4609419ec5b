#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDir>
#include <QGuiApplication>
#include <QImage>
#include <QPixmap>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QScreen>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include "DesktopPicture.h"
#include "GSettingsClient.h"
#include "GSettingsPicture.h"
#include "LxqtPicture.h"
#include "PlasmaPicture.h"
#include "PrivateSession.h"
#include "PulseTestServer.h"
#include "SessionTestSupport.h"
#include "XfcePicture.h"
#include "XfconfClient.h"

namespace quellton {
namespace {

using test::output;
using test::waitUntil;

std::string trimmed(const std::string& text) { return QString::fromStdString(text).trimmed().toStdString(); }

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

// With QUELLTON_SHOTS set, the X screen is saved there for a person to look at.
void keepShot(const char* name) {
    if (const QString dir = qEnvironmentVariable("QUELLTON_SHOTS"); !dir.isEmpty())
        QGuiApplication::primaryScreen()->grabWindow(0).save(dir + u'/' + QString::fromUtf8(name));
}

bool near(QColor a, QColor b) {
    return std::abs(a.red() - b.red()) + std::abs(a.green() - b.green()) + std::abs(a.blue() - b.blue()) < 24;
}

bool busNameOwned(const QString& name) {
    return QDBusConnection::sessionBus().interface()->isServiceRegistered(name).value();
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
    auto get = [](const char* schema, const char* key) {
        GSettingsClient::sync();
        return trimmed(output(std::string("gsettings get ") + schema + " " + key));
    };
    const std::string firstUri = "'" + QUrl::fromLocalFile(first).toString().toStdString() + "'";

    for (const auto& [keys, schema] : {std::pair{GSettingsPicture::gnome, "org.gnome.desktop.background"},
                                       std::pair{GSettingsPicture::cinnamon, "org.cinnamon.desktop.background"},
                                       std::pair{GSettingsPicture::mate, "org.mate.background"}}) {
        SCOPED_TRACE(schema);
        GSettingsPicture picture(keys);
        picture.restore(user, screens);
        EXPECT_EQ(picture.current(a), user);

        picture.show(stills);
        EXPECT_EQ(picture.current(a), QUrl::fromLocalFile(first));
        EXPECT_EQ(get(schema, "picture-options"), "'zoom'");
        if (keys.uriKeys.isEmpty()) {
            EXPECT_EQ(get(schema, "picture-filename"), "'" + first.toStdString() + "'");
        } else {
            for (const QString& key : keys.uriKeys) EXPECT_EQ(get(schema, key.toUtf8().constData()), firstUri) << key.toStdString();
        }

        picture.restore(user, screens);
        EXPECT_EQ(picture.current(a), user);
        EXPECT_EQ(get(schema, keys.uriKeys.isEmpty() ? "picture-filename" : "picture-uri"),
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
    picture.restore(user, std::vector{qtScreen()});
    const pid_t caja = test::spawn({"caja", "--no-default-window", "--force-desktop"});
    EXPECT_TRUE(waitUntil([&] { return near(centre(), orange); }, 30000)) << centre().name().toStdString();

    picture.show(std::vector<ScreenPicture>{{qtScreen(), pictures.make(QStringLiteral("still.jpg"), violet)}});
    EXPECT_TRUE(waitUntil([&] { return near(centre(), violet); }, 20000)) << centre().name().toStdString();
    keepShot("caja.png");
    picture.restore(user, std::vector{qtScreen()});
    EXPECT_TRUE(waitUntil([&] { return near(centre(), orange); }, 20000)) << centre().name().toStdString();
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
    desktop.set(QStringLiteral("/backdrop/screen0/monitorVGA-0/workspace0/last-image"), user);  // unplugged
    desktop.set(QStringLiteral("/backdrop/single-workspace-mode"), false);
    windowManager.set(QStringLiteral("/general/workspace_count"), 2);
    const ScreenInfo main{QStringLiteral("HDMI-1"), QRect(0, 0, 1920, 1080), 1};
    const ScreenInfo side{QStringLiteral("DP-2"), QRect(1920, 0, 1280, 1024), 1};
    XfcePicture picture;
    EXPECT_EQ(picture.current(main), QUrl::fromLocalFile(user));

    const QString a = pictures.make(QStringLiteral("a.jpg"), Qt::red), b = pictures.make(QStringLiteral("b.jpg"), Qt::blue);
    picture.show(std::vector<ScreenPicture>{{main, a}, {side, b}});
    for (int workspace : {0, 1, 3}) EXPECT_EQ(image(QStringLiteral("HDMI-1"), workspace), a) << workspace;
    for (int workspace : {0, 1}) EXPECT_EQ(image(QStringLiteral("DP-2"), workspace), b) << workspace;
    EXPECT_EQ(image(QStringLiteral("DP-2"), 3), QString()) << "only the workspaces in use and those that exist";
    EXPECT_EQ(image(QStringLiteral("VGA-0"), 0), a) << "a monitor of no screen gets the main screen's";
    EXPECT_EQ(query(QStringLiteral("/backdrop/screen0/monitorDP-2/workspace1/image-style")), "5");
    EXPECT_EQ(query(QStringLiteral("/backdrop/screen0/monitorHDMI-1/workspace3/last-image")), a.toStdString());
    EXPECT_EQ(picture.current(main), QUrl::fromLocalFile(a));

    picture.restore(QUrl::fromLocalFile(user), std::vector{main, side});
    for (const auto& [monitor, workspace] : {std::pair{"HDMI-1", 0}, {"HDMI-1", 3}, {"DP-2", 1}, {"VGA-0", 0}})
        EXPECT_EQ(image(QString::fromUtf8(monitor), workspace), user) << monitor << workspace;
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
    EXPECT_TRUE(waitUntil([&] { return near(centre(), green); }, 20000)) << centre().name().toStdString();
    keepShot("xfdesktop.png");

    picture.restore(*original, std::vector{qtScreen()});
    EXPECT_TRUE(waitUntil([&] { return !near(centre(), green); }, 20000));
    test::terminate(xfdesktop);
}

// pcmanfm-qt's desktop on the test's X server, driven through its command line.
TEST(LxqtPicture, PcmanfmQtsDesktopShowsTheStillAndTheUsersPictureAgain) {
    Pictures pictures;
    const QColor blue(48, 80, 208), orange(240, 140, 20);
    const QString user = pictures.make(QStringLiteral("user.jpg"), orange);
    const pid_t desktop = test::spawn({"pcmanfm-qt", "--profile", "lxqt", "--desktop"});
    ASSERT_TRUE(waitUntil([] { return busNameOwned(QStringLiteral("org.pcmanfm.PCManFM")); }, 30000));
    // The user's picture, stretched, as LXQt's own settings would set it.
    PcmanfmQtSettings().command({QStringLiteral("--set-wallpaper"), user, QStringLiteral("--wallpaper-mode"),
                                 QStringLiteral("stretch")});
    LxqtPicture picture;
    ASSERT_TRUE(waitUntil([&] { return picture.current(qtScreen()) == QUrl::fromLocalFile(user); }, 20000));
    EXPECT_TRUE(waitUntil([&] { return near(centre(), orange); }, 20000)) << centre().name().toStdString();

    const QString still = pictures.make(QStringLiteral("still.jpg"), blue);
    picture.show(std::vector<ScreenPicture>{{qtScreen(), still}});
    EXPECT_TRUE(waitUntil([&] { return picture.current(qtScreen()) == QUrl::fromLocalFile(still); }, 20000));
    EXPECT_TRUE(waitUntil([&] { return near(centre(), blue); }, 20000)) << centre().name().toStdString();
    keepShot("pcmanfm-qt.png");

    picture.restore(QUrl::fromLocalFile(user), std::vector{qtScreen()});
    EXPECT_TRUE(waitUntil([&] { return near(centre(), orange); }, 20000)) << centre().name().toStdString();
    test::terminate(desktop);
}

// Plasma's script interface played by a stand-in that runs the scripts in a JavaScript engine
// against a model of Plasma's scripting API; see PlasmaShellStandIn.cpp. Not the real Plasma.
class PlasmaPictureTest : public ::testing::Test {
protected:
    void start(const char* state) {
        standIn = test::spawn({PLASMA_STANDIN, state});
        ASSERT_TRUE(waitUntil([] { return busNameOwned(QStringLiteral("org.kde.plasmashell")); }));
    }
    void TearDown() override {
        test::terminate(standIn);
        waitUntil([] { return !busNameOwned(QStringLiteral("org.kde.plasmashell")); });
    }
    // The desktops' configuration as the shell holds it, once the scripts sent so far have run.
    QJsonObject state() const {
        QDBusMessage call = QDBusMessage::createMethodCall(QStringLiteral("org.kde.plasmashell"), QStringLiteral("/StandIn"),
                                                           QStringLiteral("org.quellton.PlasmaStandIn"), QStringLiteral("State"));
        const QDBusMessage reply = QDBusConnection::sessionBus().call(call);
        return QJsonDocument::fromJson(reply.arguments().value(0).toString().toUtf8()).object();
    }
    static QJsonObject desktop(const QJsonObject& state, int index) {
        return state.value(QStringLiteral("desktops")).toArray().at(index).toObject();
    }
    static QJsonObject imageConfig(const QJsonObject& desktop) {
        return desktop.value(QStringLiteral("config")).toObject().value(QStringLiteral("Wallpaper/org.kde.image/General")).toObject();
    }
    QString image(int index) const { return imageConfig(desktop(state(), index)).value(QStringLiteral("Image")).toString(); }
    pid_t standIn = -1;
};

TEST_F(PlasmaPictureTest, EachScreensDesktopGetsItsOwnStillFoundByPosition) {
    // Plasma numbers the right screen 0 here; a desktop of another activity sits on no screen.
    start(R"({"screens": [{"x": 1920, "y": 0, "width": 1280, "height": 1024}, {"x": 0, "y": 0, "width": 1920, "height": 1080}],
              "desktops": [
                {"screen": 1, "wallpaperPlugin": "org.kde.image",
                 "config": {"Wallpaper/org.kde.image/General": {"Image": "file:///usr/share/wallpapers/Next/"}}},
                {"screen": 0, "wallpaperPlugin": "org.kde.color", "config": {}},
                {"screen": -1, "wallpaperPlugin": "org.kde.image", "config": {}}]})");
    const ScreenInfo left{QStringLiteral("DP-1"), QRect(0, 0, 1920, 1080), 1};
    const ScreenInfo right{QStringLiteral("DP-2"), QRect(1920, 0, 1280, 1024), 1};
    PlasmaPicture picture;
    EXPECT_FALSE(picture.current(left).has_value()) << "Plasma's screen 0 shows a colour, no picture";

    picture.show(std::vector<ScreenPicture>{{left, QStringLiteral("/tmp/Hintergrund/a b-0-1.jpg")},
                                            {right, QStringLiteral("/tmp/Hintergrund/a b-1-1.jpg")}});
    EXPECT_EQ(image(0), QStringLiteral("file:///tmp/Hintergrund/a%20b-0-1.jpg"));
    EXPECT_EQ(image(1), QStringLiteral("file:///tmp/Hintergrund/a%20b-1-1.jpg"));
    EXPECT_EQ(image(2), QStringLiteral("file:///tmp/Hintergrund/a%20b-0-1.jpg")) << "no screen: the first still";
    const QJsonObject shown = state();
    for (int i = 0; i < 3; ++i) {
        EXPECT_EQ(desktop(shown, i).value(QStringLiteral("wallpaperPlugin")).toString(), QStringLiteral("org.kde.image"));
        EXPECT_EQ(imageConfig(desktop(shown, i)).value(QStringLiteral("FillMode")).toInt(), 2);
    }
    EXPECT_EQ(picture.current(left), QUrl(QStringLiteral("file:///tmp/Hintergrund/a%20b-1-1.jpg")));

    picture.restore(QUrl(QStringLiteral("file:///usr/share/wallpapers/Next/")), std::vector{left, right});
    for (int i = 0; i < 3; ++i) EXPECT_EQ(image(i), QStringLiteral("file:///usr/share/wallpapers/Next/"));
}

TEST_F(PlasmaPictureTest, APlainPathReadsBackAsAFileUrl) {
    start(R"({"screens": [{"x": 0, "y": 0, "width": 800, "height": 600}],
              "desktops": [{"screen": 0, "wallpaperPlugin": "org.kde.image",
                            "config": {"Wallpaper/org.kde.image/General": {"Image": "/home/ich/Bilder/Berg.jpg"}}}]})");
    EXPECT_EQ(PlasmaPicture().current(qtScreen()), QUrl(QStringLiteral("file:///home/ich/Bilder/Berg.jpg")));
}

}  // namespace
}  // namespace quellton
