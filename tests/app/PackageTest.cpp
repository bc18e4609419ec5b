// The Debian package as a user gets it: built by CPack from this build, read with dpkg-deb,
// unpacked into a throw-away root, started from there and from its menu entry.
#include <signal.h>
#include <unistd.h>

#include <QCoreApplication>
#include <QDirIterator>
#include <QFile>
#include <QColor>
#include <QImage>
#include <QLibraryInfo>
#include <QQmlEngine>
#include <QRegularExpression>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <fstream>
#include <functional>
#include <regex>
#include <set>
#include <sstream>
#include <thread>

#include "PrivateSession.h"
#include "SessionWithSound.h"

namespace quellton {
namespace {

namespace fs = std::filesystem;
using test::output;
using test::run;

const std::string appId = QUELLTON_APP_ID;
const std::vector<int> iconSizes{16, 22, 24, 32, 48, 64, 128, 256, 512};

// A path or word as one shell argument; the paths here hold no quote.
std::string sh(const fs::path& text) { return "'" + text.string() + "'"; }

std::string trimmed(std::string text) {
    while (!text.empty() && (text.back() == '\n' || text.back() == ' ')) text.pop_back();
    return text;
}

std::string readFile(const fs::path& path) {
    std::ifstream in(path);
    std::stringstream text;
    text << in.rdbuf();
    return text.str();
}

// The value of a key in the main group of a desktop entry.
std::string entryValue(const std::string& entry, const std::string& key) {
    std::istringstream lines(entry);
    for (std::string line; std::getline(lines, line);)
        if (line.starts_with(key + "=")) return line.substr(key.size() + 1);
    return {};
}

// "a (>= 1), b | c" -> {"a (>= 1)", "b", "c"}: every relation one alternative names.
std::set<std::string> relations(const std::string& field) {
    std::set<std::string> result;
    std::istringstream items(std::regex_replace(field, std::regex("\\s*[,|\\n]\\s*"), "\n"));
    for (std::string item; std::getline(items, item);)
        if (!trimmed(item).empty()) result.insert(trimmed(item));
    return result;
}

std::set<std::string> packageNames(const std::string& field) {
    std::set<std::string> names;
    for (const std::string& relation : relations(field)) names.insert(relation.substr(0, relation.find(' ')));
    return names;
}

bool eventually(const std::function<bool()>& condition, std::chrono::seconds limit = std::chrono::seconds(40)) {
    const auto deadline = std::chrono::steady_clock::now() + limit;
    while (!condition()) {
        if (std::chrono::steady_clock::now() > deadline) return false;
        std::this_thread::sleep_for(std::chrono::milliseconds(50));
    }
    return true;
}

class Package : public ::testing::Test {
protected:
    // The package, built and unpacked once for every test of this program.
    static void SetUpTestSuite() {
        static QTemporaryDir dir;
        if (!root.empty()) return;
        const std::string out = dir.path().toStdString(), config = std::string(QUELLTON_BUILD_DIR) + "/CPackConfig.cmake";
        log = output("cd " + sh(out) + " && cpack -G DEB --config " + sh(config) + " -B " + sh(out + "/deb") + " 2>&1");
        std::error_code ignored;
        for (const auto& file : fs::directory_iterator(out + "/deb", ignored))
            if (file.path().extension() == ".deb") deb = file.path().string();
        root = out + "/root";
        if (!deb.empty()) run("dpkg-deb -x " + sh(deb) + " " + sh(root));
    }
    void SetUp() override { ASSERT_TRUE(fs::exists(program())) << log; }

    static std::string field(const std::string& name) { return trimmed(output("dpkg-deb -f " + sh(deb) + " " + name)); }
    static fs::path program() { return fs::path(root) / "usr/bin/quellton"; }
    static fs::path shared(const std::string& path) { return fs::path(root) / "usr/share" / path; }
    static fs::path icon(int size) {
        const std::string edge = std::to_string(size);
        return shared("icons/hicolor/" + edge + "x" + edge + "/apps/" + appId + ".png");
    }

    static inline std::string deb, root, log;
};

TEST_F(Package, HoldsTheProgramMenuEntryMetadataIconsAndManualUnderUsr) {
    std::set<std::string> files;
    std::istringstream listing(output("dpkg-deb -c " + sh(deb)));
    for (std::string line; std::getline(listing, line);) {
        std::istringstream words(line);
        std::string mode, owner, size, date, time, path;
        words >> mode >> owner >> size >> date >> time >> path;
        EXPECT_EQ(owner, "root/root") << line;
        EXPECT_TRUE(path.starts_with("./usr/")) << line;
        if (mode.starts_with('-')) files.insert(path.substr(2));
        if (path == "./usr/bin/quellton") {
            EXPECT_EQ(mode, "-rwxr-xr-x");
        }
    }
    std::set<std::string> expected{"usr/bin/quellton", "usr/share/applications/" + appId + ".desktop",
                                   "usr/share/metainfo/" + appId + ".metainfo.xml", "usr/share/man/man1/quellton.1.gz"};
    for (int size : iconSizes) expected.insert(fs::relative(icon(size), root).string());
    const std::string symbol = "icons/hicolor/scalable/apps/" + appId + "-symbolic.svg";
    if (fs::exists(std::string(QUELLTON_SOURCE_DIR) + "/data/" + symbol)) expected.insert("usr/share/" + symbol);
    // The KDE Plasma wallpaper plugin, a KPackage where plasmashell looks for wallpapers.
    const std::string wallpaper = "usr/share/plasma/wallpapers/io.github.quellton.wallpaper/";
    for (const char* part : {"metadata.json", "contents/config/main.xml", "contents/ui/main.qml"})
        expected.insert(wallpaper + part);
    // The GNOME Shell extension, which starts the packaged program.
    const std::string extension = "usr/share/gnome-shell/extensions/quellton@quellton.github.io/";
    expected.insert({extension + "extension.js", extension + "metadata.json"});
    EXPECT_EQ(files, expected);
    EXPECT_NE(readFile(root + "/" + extension + "extension.js").find("'/usr/bin/quellton'"), std::string::npos);
    // The debugging information of the build stays out of the package.
    EXPECT_NE(output("file -b " + sh(program())).find(", stripped"), std::string::npos);
}

TEST_F(Package, DescribesItselfAndDependsOnItsLibrariesAndTheRuntimePieces) {
    EXPECT_EQ(field("Package"), "quellton");
    EXPECT_EQ(field("Version"), QUELLTON_VERSION);
    EXPECT_EQ(field("Architecture"), trimmed(output("dpkg --print-architecture")));
    const QString maintainer = QString::fromStdString(field("Maintainer"));
    EXPECT_TRUE(QRegularExpression(QStringLiteral("^[^<>]+ <[^@ ]+@[^@ ]+>$")).match(maintainer).hasMatch());
    const std::string description = field("Description");
    EXPECT_GT(description.find('\n'), 10u) << "a synopsis line, then the long description";
    EXPECT_GT(description.size(), 200u);

    const std::string depends = field("Depends");
    const std::set<std::string> names = packageNames(depends);
    // Loaded at run time, so no linker records them: Mesa's EGL and drivers, Qt on Wayland.
    for (const char* piece : {"libegl-mesa0", "libgl1-mesa-dri", "qt6-wayland"})
        EXPECT_TRUE(names.contains(piece)) << piece;
    // The Plasma wallpaper plugin shows its stream through kpipewire's QML module.
    EXPECT_TRUE(packageNames(field("Recommends")).contains("qml-module-org-kde-pipewire")) << field("Recommends");

    // What dpkg-shlibdeps finds for the unpacked binary, worked out here on its own.
    QTemporaryDir work;
    fs::create_directories(work.path().toStdString() + "/debian");
    std::ofstream(work.path().toStdString() + "/debian/control")
        << "Source: quellton\n\nPackage: quellton\nArchitecture: any\n";
    const std::string found =
        output("cd " + sh(work.path().toStdString()) + " && dpkg-shlibdeps -O " + sh(program()) + " 2>/dev/null");
    ASSERT_TRUE(found.starts_with("shlibs:Depends=")) << found;
    const std::string linked = trimmed(found.substr(found.find('=') + 1));
    // Debian 13 renamed libraries for 64-bit time: libqt6core6 became libqt6core6t64.
    const std::set<std::string> linkedNames = packageNames(linked);
    for (const std::string library : {"libqt6core6", "libpulse0", "libepoxy0"})
        EXPECT_TRUE(linkedNames.contains(library) || linkedNames.contains(library + "t64")) << found;
    const std::set<std::string> declared = relations(depends);
    for (const std::string& relation : relations(linked))
        EXPECT_TRUE(declared.contains(relation)) << relation << " in " << depends;
}

// The QML modules of the gallery and what their qmldir files import, each mapped to the Debian
// package that ships it; every such package must be a dependency.
TEST_F(Package, DependsOnEveryQmlModuleTheProgramLoads) {
    int argc = 1;
    char name[] = "package_tests";
    char* argv[] = {name, nullptr};
    QCoreApplication app(argc, argv);
    QQmlEngine engine;  // registers Qt's built-in modules, whose qmldir files live in resources
    const QString installed = QLibraryInfo::path(QLibraryInfo::QmlImportsPath);

    const QRegularExpression importLine(QStringLiteral("^\\s*import\\s+([A-Za-z][\\w.]*)"),
                                        QRegularExpression::MultilineOption);
    std::vector<QString> pending;
    QDirIterator qml(QStringLiteral(QUELLTON_SOURCE_DIR "/src"), {QStringLiteral("*.qml")}, QDir::Files,
                     QDirIterator::Subdirectories);
    while (qml.hasNext()) {
        const QString path = qml.next();
        // The Plasma wallpaper plugin runs inside plasmashell, on the modules Plasma brings.
        if (path.contains(u"/desktop/plasma/wallpaper/")) continue;
        QFile file(path);
        file.open(QIODevice::ReadOnly);
        for (auto it = importLine.globalMatch(QString::fromUtf8(file.readAll())); it.hasNext();)
            pending.push_back(it.next().captured(1));
    }
    pending.push_back(QStringLiteral("QtQuick"));  // the gallery's scene graph needs it in any case

    const QRegularExpression dependency(QStringLiteral("^(?:import|depends)\\s+([A-Za-z][\\w.]*)"),
                                        QRegularExpression::MultilineOption);
    const std::set<std::string> depends = packageNames(field("Depends"));
    std::set<QString> seen;
    while (!pending.empty()) {
        const QString module = pending.back();
        pending.pop_back();
        if (!seen.insert(module).second) continue;
        if (module == u"Quellton" || module.startsWith(u"Quellton.")) continue;  // the program's own, built in
        const QString relative = QString(module).replace(QLatin1Char('.'), QLatin1Char('/')) + "/qmldir";
        QFile qmldir(installed + QLatin1Char('/') + relative);
        if (qmldir.exists()) {
            const std::string owner = output("dpkg-query -S " + sh(qmldir.fileName().toStdString()) + " 2>/dev/null");
            const std::string package = owner.substr(0, owner.find_first_of(":,"));
            EXPECT_TRUE(depends.contains(package)) << module.toStdString() << " comes with " << package;
        } else {
            qmldir.setFileName(QStringLiteral(":/qt-project.org/imports/") + relative);
            EXPECT_TRUE(qmldir.exists()) << module.toStdString() << " is not installed";
        }
        if (!qmldir.open(QIODevice::ReadOnly)) continue;
        for (auto it = dependency.globalMatch(QString::fromUtf8(qmldir.readAll())); it.hasNext();)
            pending.push_back(it.next().captured(1));
    }
    EXPECT_TRUE(seen.contains(QStringLiteral("QtQml.WorkerScript"))) << "QtQuick brings QtQml and what it imports";
}

TEST_F(Package, MenuEntryMetadataAndManualAreValidAndAgree) {
    const fs::path desktop = shared("applications/" + appId + ".desktop");
    EXPECT_EQ(run("desktop-file-validate " + sh(desktop) + " >&2"), 0);
    // Checks the metadata together with the menu entry it launches.
    EXPECT_EQ(run("appstreamcli validate-tree --no-net " + sh(root) + " >&2"), 0);

    const std::string entry = readFile(desktop);
    EXPECT_TRUE(fs::exists(program().parent_path() / entryValue(entry, "Exec"))) << "Exec names the installed program";
    EXPECT_EQ(entryValue(entry, "Icon"), appId);

    const std::string manual = output("zcat " + sh(shared("man/man1/quellton.1.gz")));
    const auto release = QRegularExpression(QStringLiteral("<release version=\"([^\"]+)\" date=\"([^\"]+)\""))
                             .match(QString::fromStdString(readFile(shared("metainfo/" + appId + ".metainfo.xml"))));
    ASSERT_TRUE(release.hasMatch());
    EXPECT_EQ(release.captured(1).toStdString(), QUELLTON_VERSION) << "the newest release comes first";
    EXPECT_TRUE(manual.starts_with(".TH QUELLTON 1 \"" + release.captured(2).toStdString() + "\" \"Quellton " +
                                   QUELLTON_VERSION "\""))
        << manual.substr(0, 80);
    EXPECT_EQ(output("LC_ALL=C.UTF-8 MANROFFSEQ='' MANWIDTH=80 man --warnings -E UTF-8 -l -Tutf8 -Z " +
                     sh(shared("man/man1/quellton.1.gz")) + " 2>&1 >/dev/null"),
              "");
    for (const char* mode :
         {"--snapshots", "--selftest", "--still", "--bench", "--icon", "--autostart", "--help", "--version"})
        EXPECT_NE(manual.find(std::string(mode).replace(0, 2, "\\-\\-")), std::string::npos) << mode;
}

TEST_F(Package, IconsFillEveryThemeSizeWithTheProgramsDrawing) {
    const std::string theme = readFile("/usr/share/icons/hicolor/index.theme");
    for (int size : iconSizes) {
        const std::string folder = std::to_string(size) + "x" + std::to_string(size) + "/apps";
        EXPECT_NE(theme.find("," + folder + ","), std::string::npos) << "the hicolor theme looks into " << folder;
        const QImage image = QImage(QString::fromStdString(icon(size).string())).convertToFormat(QImage::Format_ARGB32);
        ASSERT_EQ(image.size(), QSize(size, size)) << size;
        // Rounded plate: transparent in the corner, opaque in the middle, where the figure glows in colour.
        EXPECT_LT(qAlpha(image.pixel(0, 0)), 64) << size;
        EXPECT_EQ(qAlpha(image.pixel(size / 2, size / 2)), 255) << size;
        int coloured = 0;
        for (int y = 0; y < size; ++y)
            for (int x = 0; x < size; ++x)
                if (const QColor c(image.pixel(x, y)); c.hsvSaturation() > 120 && c.value() > 120) ++coloured;
        EXPECT_GT(coloured, size * size / 40) << size << " px: the figure must stay visible";
    }
}

TEST_F(Package, InstallsIntoARootAndRemovesWithoutATrace) {
    if (geteuid() != 0) GTEST_SKIP() << "dpkg unpacks as root only";
    QTemporaryDir target;
    const std::string base = target.path().toStdString();
    for (const char* folder : {"info", "updates", "triggers"}) fs::create_directories(base + "/var/lib/dpkg/" + folder);
    for (const char* file : {"status", "available"}) std::ofstream(base + "/var/lib/dpkg/" + file);
    // The throw-away root has none of the dependencies.
    const std::string dpkg = "dpkg --root=" + sh(base) + " --force-script-chrootless --log=/dev/null ";
    ASSERT_EQ(run(dpkg + "--force-depends -i " + sh(deb) + " >/dev/null 2>&1"), 0);
    EXPECT_EQ(output("dpkg-query --admindir=" + sh(base + "/var/lib/dpkg") + " -W -f='${Status}' quellton"),
              "install ok installed");
    EXPECT_TRUE(fs::exists(base + "/usr/share/applications/" + appId + ".desktop"));

    ASSERT_EQ(run(dpkg + "-r quellton >/dev/null 2>&1"), 0);
    std::vector<std::string> left;
    for (const auto& item : fs::recursive_directory_iterator(base)) {
        const std::string path = fs::relative(item.path(), base).string();
        if (path != "var" && path != "var/lib" && !path.starts_with("var/lib/dpkg")) left.push_back(path);
    }
    EXPECT_TRUE(left.empty()) << left.front();
}

// The unpacked program in a private graphical session with its own sound server.
class UnpackedProgramSession : public Package {
protected:
    static void SetUpTestSuite() {
        Package::SetUpTestSuite();
        world = new test::SessionWithSound;
    }
    static void TearDownTestSuite() { delete world; }
    void SetUp() override {
        Package::SetUp();
        ASSERT_TRUE(world->ready());
    }

    static std::string busCall(const std::string& method) {
        return trimmed(output("dbus-send --session --print-reply=literal --dest=org.freedesktop.DBus "
                              "/org/freedesktop/DBus org.freedesktop.DBus." + method + " string:" + appId +
                              " 2>/dev/null"));
    }
    // The process that owns the application's bus name, once it has one.
    static pid_t running() {
        std::string pid;
        eventually([&] { return !(pid = busCall("GetConnectionUnixProcessID")).empty(); });
        return pid.empty() ? -1 : pid_t(std::stol(pid.substr(pid.rfind(' ') + 1)));
    }
    static void quit(pid_t pid) {
        if (pid > 0) kill(pid, SIGTERM);
        EXPECT_TRUE(eventually([] { return busCall("GetNameOwner").empty(); }));
    }
    // WM_CLASS of the application's windows: instance and class.
    static std::string windowClass() {
        std::string value;
        eventually([&] {
            const std::string windows = output("xdotool search --class '^Quellton$' 2>/dev/null");
            if (windows.empty()) return false;
            value = trimmed(output("xprop -id " + windows.substr(0, windows.find('\n')) + " WM_CLASS"));
            return true;
        });
        return value;
    }

    static inline test::SessionWithSound* world = nullptr;
};

TEST_F(UnpackedProgramSession, StartsFromItsMenuEntryWithTheWindowClassTheEntryAnnounces) {
    const std::string path = std::getenv("PATH");
    setenv("PATH", (program().parent_path().string() + ":" + path).c_str(), 1);
    const fs::path desktop = shared("applications/" + appId + ".desktop");
    const int launched = run("gio launch " + sh(desktop));
    setenv("PATH", path.c_str(), 1);
    ASSERT_EQ(launched, 0);

    const pid_t pid = running();
    ASSERT_GT(pid, 0);
    EXPECT_EQ(fs::read_symlink("/proc/" + std::to_string(pid) + "/exe"), fs::canonical(program()));
    const std::string announced = entryValue(readFile(desktop), "StartupWMClass");
    EXPECT_EQ(windowClass(), "WM_CLASS(STRING) = \"quellton\", \"" + announced + "\"");
    quit(pid);
}

TEST_F(UnpackedProgramSession, StartsDespiteAnUnknownOptionAndNamesItOnce) {
    const std::string errors = world->session.dir() + "/errors.txt";
    ASSERT_EQ(run(sh(program()) + " --frobnicate -name nix --autostart 2>" + sh(errors) + " >/dev/null &"), 0);
    const pid_t pid = running();
    ASSERT_GT(pid, 0);
    // Qt took -name and its value: the window's instance name.
    EXPECT_EQ(windowClass(), "WM_CLASS(STRING) = \"nix\", \"Quellton\"");
    quit(pid);
    std::istringstream lines(readFile(errors));
    std::vector<std::string> notes;
    for (std::string line; std::getline(lines, line);)
        if (line.find("Option") != std::string::npos) notes.push_back(line);
    EXPECT_EQ(notes, std::vector<std::string>{"Quellton: Unbekannte Option „--frobnicate“ wird ignoriert."});
}

}  // namespace
}  // namespace quellton
