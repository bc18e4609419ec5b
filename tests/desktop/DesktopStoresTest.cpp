#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSettings>

#include <gtest/gtest.h>

#include <cstdlib>

#include "GSettingsClient.h"
#include "PcmanfmQtSettings.h"
#include "PrivateSession.h"
#include "XfconfClient.h"

namespace quellton {
namespace {

using test::output;

// GSettings keeps its values in a key file under the session's private configuration folder, so
// the tests use the real schemas without a dconf service; the desktop-picture tests choose
// their desktop themselves.
class KeyFileSettings : public ::testing::Environment {
    void SetUp() override {
        setenv("GSETTINGS_BACKEND", "keyfile", 1);
        unsetenv("XDG_CURRENT_DESKTOP");
    }
};
[[maybe_unused]] auto* const keyFileSettings = ::testing::AddGlobalTestEnvironment(new KeyFileSettings);

std::string trimmed(const std::string& text) { return QString::fromStdString(text).trimmed().toStdString(); }

// What another process reads from the same store.
std::string gsettingsGet(const std::string& schema, const std::string& key) {
    GSettingsClient::sync();
    return trimmed(output("gsettings get " + schema + " " + key + " 2>&1"));
}

std::string xfconfGet(const std::string& channel, const std::string& property) {
    return trimmed(output("gdbus call --session -d org.xfce.Xfconf -o /org/xfce/Xfconf -m org.xfce.Xfconf.GetProperty " +
                          channel + " " + property + " 2>&1"));
}

TEST(GSettingsClient, AnUnknownSchemaOrKeyOrTypeIsAnAnswerNotAnAbort) {
    EXPECT_FALSE(GSettingsClient::schemaExists(QStringLiteral("org.example.nothing")));
    EXPECT_FALSE(GSettingsClient::open(QStringLiteral("org.example.nothing")).has_value());

    auto background = GSettingsClient::open(QStringLiteral("org.gnome.desktop.background"));
    ASSERT_TRUE(background.has_value());
    EXPECT_FALSE(background->hasKey(QStringLiteral("no-such-key")));
    EXPECT_FALSE(background->getString(QStringLiteral("no-such-key")));
    EXPECT_FALSE(background->setString(QStringLiteral("no-such-key"), QStringLiteral("x")));
    EXPECT_FALSE(background->getInt(QStringLiteral("picture-uri"))) << "a string key read as a number";
    EXPECT_FALSE(background->setBool(QStringLiteral("picture-uri"), true));
    EXPECT_EQ(background->getString(QStringLiteral("picture-uri")),
              QStringLiteral("file:///usr/share/backgrounds/gnome/adwaita-l.webp"));
}

TEST(GSettingsClient, WritesReachTheStoreThatOtherProgramsRead) {
    auto background = GSettingsClient::open(QStringLiteral("org.gnome.desktop.background"));
    ASSERT_TRUE(background.has_value());
    EXPECT_TRUE(background->setString(QStringLiteral("picture-uri"), QStringLiteral("file:///tmp/ä b.jpg")));
    EXPECT_EQ(gsettingsGet("org.gnome.desktop.background", "picture-uri"), "'file:///tmp/ä b.jpg'");

    // Enumerations take their nicks and nothing else.
    EXPECT_TRUE(background->setString(QStringLiteral("picture-options"), QStringLiteral("stretched")));
    EXPECT_FALSE(background->setString(QStringLiteral("picture-options"), QStringLiteral("sideways")));
    EXPECT_EQ(background->getString(QStringLiteral("picture-options")), QStringLiteral("stretched"));
    EXPECT_EQ(gsettingsGet("org.gnome.desktop.background", "picture-options"), "'stretched'");
    EXPECT_TRUE(background->reset(QStringLiteral("picture-options")));
    EXPECT_EQ(background->getString(QStringLiteral("picture-options")), QStringLiteral("zoom"));

    auto interface = GSettingsClient::open(QStringLiteral("org.gnome.desktop.interface"));
    ASSERT_TRUE(interface.has_value());
    EXPECT_TRUE(interface->setInt(QStringLiteral("cursor-size"), 48));
    EXPECT_EQ(interface->getInt(QStringLiteral("cursor-size")), 48);
    auto keys = GSettingsClient::open(QStringLiteral("org.gnome.desktop.wm.keybindings"));
    ASSERT_TRUE(keys.has_value());
    const QStringList close{QStringLiteral("<Super>q"), QStringLiteral("<Alt>F4")};
    EXPECT_TRUE(keys->setStrv(QStringLiteral("close"), close));
    EXPECT_EQ(keys->getStrv(QStringLiteral("close")), close);
    EXPECT_EQ(gsettingsGet("org.gnome.desktop.wm.keybindings", "close"), "['<Super>q', '<Alt>F4']");
    // A number outside the key's range is refused.
    auto mouse = GSettingsClient::open(QStringLiteral("org.gnome.desktop.peripherals.mouse"));
    ASSERT_TRUE(mouse.has_value());
    EXPECT_TRUE(mouse->setDouble(QStringLiteral("speed"), -0.5));
    EXPECT_FALSE(mouse->setDouble(QStringLiteral("speed"), 2.0));
    EXPECT_EQ(mouse->getDouble(QStringLiteral("speed")), -0.5);

    auto mate = GSettingsClient::open(QStringLiteral("org.mate.background"));
    ASSERT_TRUE(mate.has_value());
    EXPECT_TRUE(mate->setBool(QStringLiteral("draw-background"), false));
    EXPECT_EQ(mate->getBool(QStringLiteral("draw-background")), false);
    EXPECT_EQ(gsettingsGet("org.mate.background", "draw-background"), "false");
}

TEST(XfconfClient, TypedValuesTravelToXfconfdAndBack) {
    XfconfClient channel(QStringLiteral("quellton-test"));
    EXPECT_FALSE(channel.get(QStringLiteral("/missing")).has_value());
    EXPECT_FALSE(channel.exists(QStringLiteral("/missing")));

    ASSERT_TRUE(channel.set(QStringLiteral("/a/style"), 5));
    ASSERT_TRUE(channel.set(QStringLiteral("/a/count"), 7u));
    ASSERT_TRUE(channel.set(QStringLiteral("/a/on"), true));
    ASSERT_TRUE(channel.set(QStringLiteral("/a/ratio"), 0.25));
    ASSERT_TRUE(channel.set(QStringLiteral("/a/image"), QStringLiteral("/tmp/ä b.jpg")));
    const QVariantList rgba{0.0, 0.5, 1.0, 1.0};
    ASSERT_TRUE(channel.set(QStringLiteral("/b/rgba1"), rgba));

    // The types xfdesktop reads with: int32, uint32, boolean, double, string, array of doubles.
    EXPECT_EQ(xfconfGet("quellton-test", "/a/style"), "(<5>,)");
    EXPECT_EQ(xfconfGet("quellton-test", "/a/count"), "(<uint32 7>,)");
    EXPECT_EQ(xfconfGet("quellton-test", "/a/on"), "(<true>,)");
    EXPECT_EQ(xfconfGet("quellton-test", "/a/ratio"), "(<0.25>,)");
    EXPECT_EQ(xfconfGet("quellton-test", "/b/rgba1"), "(<[<0.0>, <0.5>, <1.0>, <1.0>]>,)");

    EXPECT_EQ(channel.get(QStringLiteral("/a/style")), QVariant(5));
    EXPECT_EQ(channel.get(QStringLiteral("/a/count")), QVariant(7u));
    EXPECT_EQ(channel.get(QStringLiteral("/a/on")), QVariant(true));
    EXPECT_EQ(channel.get(QStringLiteral("/a/image")), QVariant(QStringLiteral("/tmp/ä b.jpg")));
    EXPECT_EQ(channel.get(QStringLiteral("/b/rgba1")), QVariant(rgba));

    const QVariantMap below = channel.properties(QStringLiteral("/a"));
    EXPECT_EQ(below.keys(), (QStringList{"/a/count", "/a/image", "/a/on", "/a/ratio", "/a/style"}));
    EXPECT_EQ(channel.properties().size(), 6);
    EXPECT_EQ(channel.properties().value(QStringLiteral("/b/rgba1")), QVariant(rgba));

    EXPECT_TRUE(channel.reset(QStringLiteral("/a"), true));
    EXPECT_TRUE(channel.properties(QStringLiteral("/a")).isEmpty());
    EXPECT_TRUE(channel.exists(QStringLiteral("/b/rgba1")));
}

TEST(PcmanfmQtSettings, ReadsAndWritesTheProfileFilePcmanfmQtKeeps) {
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

    EXPECT_TRUE(settings.setValue(PcmanfmQtSettings::desktopGroup, QStringLiteral("BgColor"), QStringLiteral("#010203")));
    EXPECT_EQ(QSettings(settings.path(), QSettings::IniFormat).value(QStringLiteral("Desktop/BgColor")),
              QStringLiteral("#010203"));
    EXPECT_EQ(settings.wallpaper(), QStringLiteral("/usr/share/lxqt/wallpapers/waves-logo.png"));
    QFile::remove(settings.path());
}

}  // namespace
}  // namespace quellton
