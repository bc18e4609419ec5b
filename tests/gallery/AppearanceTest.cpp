// The desktop's light/dark choice and animation switch: the rules, and the real sources followed live
// on a private bus and in private settings (GSettings keyfile back end, a portal played by the test).
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVariant>
#include <QFile>
#include <QSaveFile>
#include <QStandardPaths>

#include <gtest/gtest.h>

#include "AppearanceRules.h"
#include "DesktopAppearance.h"
#include "GnomeAppearance.h"
#include "KdeAppearance.h"
#include "PortalAppearance.h"
#include "PrivateSession.h"
#include "SessionTestSupport.h"

namespace quellton::test {
namespace {

// The portal's known values are followed live below.
TEST(AppearanceRules, GnomeColorSchemeWinsOverTheThemeNameAndOtherPortalValuesSayNothing) {
    EXPECT_EQ(darkFromPortalScheme(7), std::nullopt);
    EXPECT_EQ(darkFromGnome("prefer-dark", "Adwaita"), true);
    EXPECT_EQ(darkFromGnome("prefer-light", "Adwaita-dark"), false);
    EXPECT_EQ(darkFromGnome("default", "Adwaita-dark"), true);  // older desktops say it with the theme
    EXPECT_EQ(darkFromGnome("", "Yaru:dark"), true);
    EXPECT_EQ(darkFromGnome("default", "Adwaita"), false);
    EXPECT_EQ(darkFromGnome("", "Darkly"), false);  // only the suffix counts
    EXPECT_EQ(darkFromGnome("", ""), std::nullopt);
}

TEST(AppearanceRules, KdeGlobalsJudgeTheWindowColourAndTheAnimationFactorAndTheFirstAnswerCounts) {
    using Said = std::pair<std::optional<bool>, std::optional<bool>>;  // dark, reduce motion
    const auto kde = [](std::string_view text) {
        const AppearanceHints h = hintsFromKdeGlobals(text);
        return Said(h.dark, h.reduceMotion);
    };
    EXPECT_EQ(kde("[General]\nColorScheme=BreezeClassic\n\n[Colors:Window]\nBackgroundNormal=32,35,38\n[KDE]\n"
                  "AnimationDurationFactor=0\n"),
              Said(true, true));  // the colours, not the name
    EXPECT_EQ(kde("[Colors:Window]\nBackgroundNormal = 239,240,241\n[KDE]\nAnimationDurationFactor=0.5\n"),
              Said(false, false));
    EXPECT_EQ(kde("[General]\nColorScheme=BreezeDark\n").first, true);
    EXPECT_EQ(kde("[Colors:Window]\nBackgroundNormal=hell\n[KDE\nAnimationDurationFactor=\n"), Said());

    // Each question takes the first source that answers it.
    const auto first = firstAnswers({{std::nullopt, true}, {false, false}, {true, std::nullopt}});
    EXPECT_EQ(Said(first.dark, first.reduceMotion), Said(false, true));
}

// The desktop portal's Settings interface, as a portal on the session bus offers it, on a connection
// of its own like a separate process.
class FakePortal : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.portal.Settings")
public:
    QDBusConnection bus = QDBusConnection::connectToBus(QDBusConnection::SessionBus, "portal");
    uint scheme = 0;
    ~FakePortal() override { QDBusConnection::disconnectFromBus("portal"); }
    bool publish() {
        return bus.registerService("org.freedesktop.portal.Desktop") &&
               bus.registerObject("/org/freedesktop/portal/desktop", this, QDBusConnection::ExportAllSlots);
    }
    void announce(uint value) {
        scheme = value;
        QDBusMessage signal = QDBusMessage::createSignal("/org/freedesktop/portal/desktop",
                                                         "org.freedesktop.portal.Settings", "SettingChanged");
        signal << QString("org.freedesktop.appearance") << QString("color-scheme")
               << QVariant::fromValue(QDBusVariant(value));
        bus.send(signal);
    }
public slots:
    QDBusVariant Read(const QString& group, const QString& key) {
        if (group != "org.freedesktop.appearance" || key != "color-scheme") return QDBusVariant(QString());
        return QDBusVariant(QVariant::fromValue(QDBusVariant(scheme)));
    }
};

class LiveAppearance : public ::testing::Test {
protected:
    static void SetUpTestSuite() {
        qputenv("GSETTINGS_BACKEND", "keyfile");
        session = std::make_unique<PrivateSession>();
    }
    static void TearDownTestSuite() { session.reset(); }
    void SetUp() override { ASSERT_TRUE(session->ready()); }
    static int gsettings(const std::string& key, const std::string& value) {
        return run("gsettings set org.gnome.desktop.interface " + key + " " + value);
    }
    static inline std::unique_ptr<PrivateSession> session;
};

// GNOME alone is followed through the gallery window in gallery_ui_test.py.
TEST_F(LiveAppearance, ARunningPortalOverridesGnomeAndIsFollowed) {
    ASSERT_EQ(gsettings("color-scheme", "default"), 0);
    FakePortal portal;
    portal.scheme = 1;
    ASSERT_TRUE(portal.publish());
    DesktopAppearance appearance({new PortalAppearance, new GnomeAppearance});
    EXPECT_FALSE(appearance.dark());  // GNOME's answer until the portal's arrives
    EXPECT_TRUE(waitUntil([&] { return appearance.dark(); }));
    portal.announce(2);
    EXPECT_TRUE(waitUntil([&] { return !appearance.dark(); }));
    portal.announce(0);  // no preference: GNOME decides again
    ASSERT_EQ(gsettings("color-scheme", "prefer-dark"), 0);
    EXPECT_TRUE(waitUntil([&] { return appearance.dark(); }));
    ASSERT_EQ(gsettings("color-scheme", "default"), 0);
}

TEST_F(LiveAppearance, KdeGlobalsAreReadAgainWhenKdeReplacesThem) {
    const QString path = QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) + "/kdeglobals";
    auto write = [&](const QByteArray& text) {
        QSaveFile file(path);  // written aside and renamed over, as KDE does
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(text);
        ASSERT_TRUE(file.commit());
    };
    DesktopAppearance appearance({new KdeAppearance});
    EXPECT_FALSE(appearance.dark());
    write("[Colors:Window]\nBackgroundNormal=20,22,24\n");
    EXPECT_TRUE(waitUntil([&] { return appearance.dark(); }));
    write("[Colors:Window]\nBackgroundNormal=250,250,250\n[KDE]\nAnimationDurationFactor=0\n");
    EXPECT_TRUE(waitUntil([&] { return !appearance.dark() && appearance.reduceMotion(); }));
    QFile::remove(path);
    EXPECT_TRUE(waitUntil([&] { return !appearance.reduceMotion(); }));
}

}  // namespace
}  // namespace quellton::test

#include "AppearanceTest.moc"
