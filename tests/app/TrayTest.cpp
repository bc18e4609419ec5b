#include <unistd.h>

#include <QCoreApplication>
#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDirIterator>

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <map>
#include <string>

#include "Catalog.h"
#include "ManagedWindows.h"
#include "PrivateSession.h"
#include "PulseTestServer.h"
#include "QuelltonProcess.h"
#include "SessionTestSupport.h"
#include "TrayPanel.h"

namespace quellton {
namespace {

using test::MenuEntry;
using test::QuelltonProcess;
using test::waitUntil;

const std::string wmClass = "Quellton";
// Generous: the program compiles every shader in the background while the tests drive it.
constexpr int patience = 60000;

std::filesystem::path settingsFile() {
    return std::filesystem::path(std::getenv("XDG_CONFIG_HOME")) / "Quellton" / "Quellton.conf";
}

// The settings file as the user's earlier runs left it. A low frame rate and quality keep the
// wallpaper's software rendering from starving the other processes of the test.
void writeSettings(const std::map<std::string, std::string>& extra = {}) {
    std::map<std::string, std::string> values{{"fps", "10"}, {"quality", "Sparsam"}, {"syncSystemWallpaper", "false"}};
    for (const auto& [key, value] : extra) values[key] = value;
    std::filesystem::create_directories(settingsFile().parent_path());
    std::ofstream file(settingsFile());
    file << "[General]\n";
    for (const auto& [key, value] : values) file << key << "=" << value << "\n";
}

// A value the program wrote to its settings file, as text.
std::string storedSetting(const std::string& key) {
    std::ifstream file(settingsFile());
    for (std::string line; std::getline(file, line);)
        if (line.starts_with(key + "=")) return line.substr(key.size() + 1);
    return {};
}

QString nameOf(const std::string& id) { return QString::fromStdString(Catalog::byID(id)->name); }

QStringList labels(const MenuEntry& menu) {
    QStringList texts;
    for (const MenuEntry& entry : menu.children) texts << (entry.separator() ? QStringLiteral("—") : entry.label());
    return texts;
}

QStringList checkedReactions(const MenuEntry& menu) {
    QStringList marked;
    if (const MenuEntry* reaction = menu.find(QStringLiteral("Reaktion")))
        for (const MenuEntry& option : reaction->children)
            if (option.checked()) marked << option.label();
    return marked;
}

// What a menu must show after a choice.
using MenuCondition = std::function<bool(const MenuEntry&)>;
MenuCondition firstLineIs(const QString& name) {
    return [=](const MenuEntry& m) { return m.children.front().label() == name; };
}
MenuCondition onlyMarked(const QString& reaction) {
    return [=](const MenuEntry& m) { return checkedReactions(m) == QStringList{reaction}; };
}
MenuCondition toggled(const QString& label, bool on) {
    return [=](const MenuEntry& m) { return m.find(label)->checked() == on; };
}

bool capturing() { return test::shell("pactl list short source-outputs | grep -q ."); }

bool instanceRunning() {
    return QDBusConnection::sessionBus().interface()->isServiceRegistered(QStringLiteral(QUELLTON_APP_ID));
}

// Reads pictures, a(iiay) of ARGB32; the widths of those whose pixel data is complete.
std::vector<int> readPictures(const QDBusArgument& argument) {
    std::vector<int> widths;
    argument.beginArray();
    while (!argument.atEnd()) {
        int width = 0, height = 0;
        QByteArray pixels;
        argument.beginStructure();
        argument >> width >> height >> pixels;
        argument.endStructure();
        if (width > 0 && pixels.size() == width * height * 4) widths.push_back(width);
    }
    argument.endArray();
    return widths;
}

// The title of a StatusNotifierItem tooltip, (sa(iiay)ss).
QString tooltipTitle(const QVariant& tooltip) {
    const QDBusArgument argument = tooltip.value<QDBusArgument>();
    QString iconName, title, text;
    argument.beginStructure();
    argument >> iconName;
    readPictures(argument);
    argument >> title >> text;
    argument.endStructure();
    return title;
}

class Tray : public ::testing::Test {
protected:
    void SetUp() override {
        ASSERT_TRUE(windows.connected());
        std::filesystem::remove_all(settingsFile().parent_path());
    }

    // Waits for the program's item to register with the panel and returns it.
    std::optional<test::TrayItemClient> registeredItem() {
        if (!waitUntil([this] { return !watcher.registeredItems().isEmpty(); }, patience)) return std::nullopt;
        return test::TrayItemClient(QDBusConnection::sessionBus(), watcher.registeredItems().first());
    }

    // The menu once it meets the condition; nothing when it never does.
    std::optional<MenuEntry> menuOnceItShows(const test::TrayItemClient& item, const MenuCondition& condition) {
        std::optional<MenuEntry> menu;
        const bool met = waitUntil(
            [&] {
                menu = item.menu();
                return menu && condition(*menu);
            },
            patience);
        return met ? menu : std::nullopt;
    }

    bool click(const test::TrayItemClient& item, const QString& label) {
        const std::optional<MenuEntry> menu = item.menu();
        const MenuEntry* entry = menu ? menu->find(label) : nullptr;
        return entry && item.click(entry->id);
    }

    // Chooses a menu entry as a panel does, then waits for the menu to show the outcome.
    void choose(const test::TrayItemClient& item, const QString& label, const MenuCondition& shows) {
        ASSERT_TRUE(click(item, label)) << label.toStdString();
        EXPECT_TRUE(menuOnceItShows(item, shows)) << label.toStdString();
    }

    size_t taskbarEntries(pid_t pid) { return windows.inTaskbar(pid, wmClass).size(); }

    test::StatusNotifierWatcher watcher{QDBusConnection::sessionBus()};
    test::ManagedWindows windows;
};

TEST_F(Tray, TheMenuListsEverythingInOrderAndFollowsTheModel) {
    writeSettings({{"reactivity", "1.1"}});
    ASSERT_TRUE(watcher.claim());
    QuelltonProcess app({"--autostart"});
    const auto item = registeredItem();
    ASSERT_TRUE(item) << app.errors();

    EXPECT_EQ(item->property(QStringLiteral("Title")).toString(), QStringLiteral("Quellton"));
    EXPECT_EQ(tooltipTitle(item->property(QStringLiteral("ToolTip"))), QStringLiteral("Quellton"));
    // Pixels, or (Qt 6.8) a name and the folder where a panel finds that picture.
    const QVariant pictures = item->property(QStringLiteral("IconPixmap"));
    const QString iconName = item->property(QStringLiteral("IconName")).toString();
    QDirIterator files(item->property(QStringLiteral("IconThemePath")).toString(), {iconName + QStringLiteral(".*")},
                       QDir::Files, QDirIterator::Subdirectories);
    const bool named = !iconName.isEmpty() && files.hasNext();
    EXPECT_TRUE(named || !readPictures(pictures.value<QDBusArgument>()).empty()) << "the item shows no picture";

    const QString first = nameOf("nation");
    const auto menu = menuOnceItShows(*item, [&](const MenuEntry& m) { return !m.children.empty(); });
    ASSERT_TRUE(menu);
    EXPECT_EQ(labels(*menu), (QStringList{first, "Nächste Darstellung", "Vorherige Darstellung", "Zufällige Darstellung",
                                          "—", "Reaktion", "Mix abspielen", "Pausieren", "—", "Galerie öffnen …", "—",
                                          "Quellton beenden"}));
    EXPECT_FALSE(menu->children.front().enabled()) << "the name is a label, not a command";
    const MenuEntry* reaction = menu->find(QStringLiteral("Reaktion"));
    ASSERT_TRUE(reaction);
    EXPECT_EQ(labels(*reaction), (QStringList{"Ruhig", "Normal", "Stark", "Extrem"}));
    for (const MenuEntry& option : reaction->children) EXPECT_EQ(option.toggleType(), QStringLiteral("radio"));
    // 1.1, stored by an earlier run, is nearest to "Normal".
    EXPECT_EQ(checkedReactions(*menu), QStringList{"Normal"});
    EXPECT_EQ(menu->find(QStringLiteral("Mix abspielen"))->toggleType(), QStringLiteral("checkmark"));
    EXPECT_EQ(menu->find(QStringLiteral("Pausieren"))->toggleType(), QStringLiteral("checkmark"));
    const QVariant shortcut = menu->find(QStringLiteral("Quellton beenden"))->properties.value(QStringLiteral("shortcut"));
    EXPECT_EQ(qdbus_cast<QList<QStringList>>(shortcut), (QList<QStringList>{{"Control", "Q"}}));

    // The first line follows every change of the current visualization.
    const auto nation = std::ranges::find(catalog(), std::string("nation"), &Visualizer::id);
    choose(*item, "Nächste Darstellung", firstLineIs(QString::fromStdString((nation + 1)->name)));
    EXPECT_EQ(storedSetting("current"), (nation + 1)->id);
    choose(*item, "Vorherige Darstellung", firstLineIs(first));
    choose(*item, "Zufällige Darstellung", [&](const MenuEntry& m) { return m.children.front().label() != first; });
    const std::string random = storedSetting("current");
    ASSERT_NE(Catalog::byID(random), nullptr) << random;
    EXPECT_TRUE(menuOnceItShows(*item, firstLineIs(nameOf(random))));

    // A reaction option sets its exact strength, and the mark moves with it; the toggles switch both ways.
    choose(*item, "Stark", onlyMarked("Stark"));
    EXPECT_EQ(storedSetting("reactivity"), "1.6");
    choose(*item, "Ruhig", onlyMarked("Ruhig"));
    EXPECT_EQ(storedSetting("reactivity"), "0.35");
    choose(*item, "Mix abspielen", toggled("Mix abspielen", true));
    EXPECT_EQ(storedSetting("mixEnabled"), "true");
    choose(*item, "Mix abspielen", toggled("Mix abspielen", false));
    EXPECT_EQ(storedSetting("mixEnabled"), "false");
    choose(*item, "Pausieren", toggled("Pausieren", true));

    // A login launch opened no window all this time.
    EXPECT_EQ(taskbarEntries(app.pid()), 0u);
}

TEST_F(Tray, TheItemAndTheMenuOpenTheGalleryAndQuitEndsTheProgram) {
    writeSettings();
    ASSERT_TRUE(watcher.claim());
    QuelltonProcess app({"--autostart"});
    const auto item = registeredItem();
    ASSERT_TRUE(item) << app.errors();
    EXPECT_TRUE(waitUntil(capturing, patience));
    EXPECT_EQ(taskbarEntries(app.pid()), 0u) << "only the tray item after a login launch";

    // A left click on the item: the gallery, with a taskbar entry and the application's icon.
    ASSERT_TRUE(item->activate());
    ASSERT_TRUE(waitUntil([&] { return taskbarEntries(app.pid()) == 1; }, patience));
    const test::ManagedWindow gallery = windows.inTaskbar(app.pid(), wmClass).front();
    EXPECT_TRUE(gallery.hasIcon);
    EXPECT_TRUE(waitUntil([&] { return windows.active() == gallery.id; }, patience));

    // Closing it leaves only the tray item; the program runs on.
    ASSERT_TRUE(test::shell("wmctrl -i -c " + std::to_string(gallery.id)));
    EXPECT_TRUE(waitUntil([&] { return taskbarEntries(app.pid()) == 0; }, patience));
    test::settle(500);
    EXPECT_FALSE(app.waitExit(std::chrono::seconds(0)));

    ASSERT_TRUE(click(*item, QStringLiteral("Galerie öffnen …")));
    EXPECT_TRUE(waitUntil([&] { return taskbarEntries(app.pid()) == 1; }, patience));
    ASSERT_TRUE(item->activate());
    test::settle(500);
    EXPECT_EQ(taskbarEntries(app.pid()), 1u) << "the gallery is made once";

    ASSERT_TRUE(click(*item, QStringLiteral("Quellton beenden")));
    EXPECT_EQ(app.waitExit(), 0);
    EXPECT_FALSE(capturing());
    EXPECT_FALSE(instanceRunning());
}

TEST_F(Tray, WithoutATrayTheProgramRunsOnAndStartingItAgainShowsTheGallery) {
    const std::string noTray = "Quellton: Kein Infobereich in der Leiste gefunden. Quellton läuft weiter; "
                               "ein erneuter Start öffnet die Galerie.";
    writeSettings();
    QuelltonProcess app;
    // A normal launch opens the gallery, the only taskbar entry, with the application's icon.
    ASSERT_TRUE(waitUntil([&] { return taskbarEntries(app.pid()) == 1; }, patience)) << app.errors();
    EXPECT_TRUE(windows.inTaskbar(app.pid(), wmClass).front().hasIcon);
    EXPECT_TRUE(waitUntil([&] { return app.errors().find(noTray) != std::string::npos; }, patience));

    ASSERT_TRUE(test::shell("wmctrl -i -c " + std::to_string(windows.inTaskbar(app.pid(), wmClass).front().id)));
    EXPECT_TRUE(waitUntil([&] { return taskbarEntries(app.pid()) == 0; }, patience));
    QuelltonProcess second;
    EXPECT_EQ(second.waitExit(), 0);
    ASSERT_TRUE(waitUntil([&] { return taskbarEntries(app.pid()) == 1; }, patience));
    const xcb_window_t gallery = windows.inTaskbar(app.pid(), wmClass).front().id;

    // Another program in front; one more start brings the same gallery forward.
    const pid_t other = test::spawn({"xmessage", "-geometry", "400x300+100+100", "Ein anderes Programm"});
    ASSERT_TRUE(waitUntil([&] { return windows.active() != gallery && windows.active() != XCB_WINDOW_NONE; }, patience));
    const xcb_window_t otherWindow = windows.active();
    QuelltonProcess third;
    EXPECT_EQ(third.waitExit(), 0);
    EXPECT_TRUE(waitUntil([&] { return windows.active() == gallery; }, patience));
    EXPECT_TRUE(waitUntil([&] { return windows.above(gallery, otherWindow); }, patience));
    EXPECT_EQ(taskbarEntries(app.pid()), 1u);
    test::terminate(other);

    // A panel that starts later gets the item.
    ASSERT_TRUE(watcher.claim());
    EXPECT_TRUE(registeredItem());

    // Ctrl+Q in the gallery ends the program.
    ASSERT_TRUE(waitUntil([&] { return windows.active() == gallery; }, patience));
    ASSERT_TRUE(test::shell("xdotool key ctrl+q"));
    EXPECT_EQ(app.waitExit(), 0);
    EXPECT_FALSE(capturing());
    const std::string errors = app.errors();
    EXPECT_EQ(errors.find(noTray), errors.rfind(noTray)) << "said once: " << errors;
}

TEST_F(Tray, InAnXEmbedTrayTheIconShowsTheMenuAndOpensTheGallery) {
    const pid_t tray = test::spawn({"trayer", "--edge", "bottom", "--align", "right", "--widthtype", "request",
                                    "--height", "32", "--tint", "0x303030", "--transparent", "true", "--alpha", "0"});
    ASSERT_TRUE(waitUntil([this] { return windows.systemTrayPresent(); }, patience));
    writeSettings();
    QuelltonProcess app({"--autostart"});
    std::optional<std::pair<int, int>> icon;
    ASSERT_TRUE(waitUntil([&] { return bool(icon = windows.embeddedIconCentre(wmClass)); }, patience)) << app.errors();
    EXPECT_EQ(taskbarEntries(app.pid()), 0u) << "the tray icon is no taskbar entry";
    const std::string at = std::to_string(icon->first) + " " + std::to_string(icon->second);

    // The right button shows the menu; the left one opens the gallery.
    ASSERT_TRUE(test::shell("xdotool mousemove " + at + " click 3"));
    EXPECT_TRUE(waitUntil([&] { return windows.popups(wmClass).size() == 1; }, patience));
    if (const char* shots = std::getenv("QUELLTON_SHOTS"))
        test::shell("import -window root " + std::string(shots) + "/xembed-menu.png");
    ASSERT_TRUE(test::shell("xdotool key Escape"));
    EXPECT_TRUE(waitUntil([&] { return windows.popups(wmClass).empty(); }, patience));
    ASSERT_TRUE(test::shell("xdotool mousemove " + at + " click 1"));
    EXPECT_TRUE(waitUntil([&] { return taskbarEntries(app.pid()) == 1; }, patience));

    // "Quellton beenden" is the menu's last entry: Up from the top wraps to it.
    ASSERT_TRUE(test::shell("xdotool mousemove " + at + " click 3"));
    ASSERT_TRUE(waitUntil([&] { return windows.popups(wmClass).size() == 1; }, patience));
    ASSERT_TRUE(test::shell("xdotool key Up Return"));
    EXPECT_EQ(app.waitExit(), 0);
    test::terminate(tray);
}

}  // namespace
}  // namespace quellton

// One private desktop for every tray test: a sound server, an X server with a session bus and
// openbox, the window manager whose client list and taskbar hints the tests read.
int main(int argc, char** argv) {
    ::testing::InitGoogleTest(&argc, argv);
    quellton::test::PulseTestServer pulse;  // before the X server: it clears DISPLAY
    quellton::test::PrivateSession session("1600x1000x24");
    if (!pulse.ready() || !session.ready()) {
        std::cerr << "PulseAudio, Xvfb or dbus-daemon did not start" << std::endl;
        return 1;
    }
    const pid_t openbox = quellton::test::spawn({"openbox", "--sm-disable"});
    // openbox announces itself on the root window once it manages the screen.
    for (int i = 0; i < 500 && !quellton::test::shell("xprop -root _NET_SUPPORTING_WM_CHECK | grep -q window"); ++i)
        usleep(20000);
    QCoreApplication app(argc, argv);
    const int status = RUN_ALL_TESTS();
    quellton::test::terminate(openbox);
    return status;
}
