#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QImageReader>
#include <QTemporaryDir>
#include <QThread>

#include <gtest/gtest.h>

#include <array>
#include <atomic>
#include <cstdlib>
#include <map>
#include <mutex>

#include "Catalog.h"
#include "GSettingsClient.h"
#include "GSettingsPicture.h"
#include "ModelTestSupport.h"
#include "SystemWallpaper.h"

namespace quellton {
namespace {

using test::FakeClock;
using test::FakeCompilation;
using test::FakeLoginItem;

// The main queue with a hand-moved clock: delayed work runs when the test moves time past it,
// work posted by the background thread when the test lets it. The same clock names the files.
class ManualQueue final : public MainQueue, public Clock {
public:
    std::unique_ptr<DelayedWork> after(double seconds, std::function<void()> work) override {
        auto handle = std::make_unique<Handle>();
        delayed_.emplace(time_ + seconds, Item{std::move(work), handle->cancelled});
        return handle;
    }
    void post(std::function<void()> work) override {
        std::lock_guard guard(lock_);
        posted_.push_back(std::move(work));
    }
    double now() override { return time_; }

    void advance(double seconds) {
        const double end = time_ + seconds;
        while (!delayed_.empty() && delayed_.begin()->first <= end) {
            auto next = delayed_.extract(delayed_.begin());
            time_ = next.key();
            if (!*next.mapped().cancelled) next.mapped().work();
        }
        time_ = end;
    }
    // Waits for the background thread's hand-over to the main thread.
    bool waitForPosted() {
        for (int tenMs = 0; tenMs < 18000; ++tenMs) {  // three minutes
            if (std::lock_guard guard(lock_); !posted_.empty()) return true;
            QThread::msleep(10);
        }
        return false;
    }
    void runPosted() {
        std::vector<std::function<void()>> work;
        {
            std::lock_guard guard(lock_);
            work.swap(posted_);
        }
        for (auto& w : work) w();
    }

private:
    struct Handle : DelayedWork {
        std::shared_ptr<bool> cancelled = std::make_shared<bool>(false);
        ~Handle() override { *cancelled = true; }
    };
    struct Item {
        std::function<void()> work;
        std::shared_ptr<bool> cancelled;
    };
    std::atomic<double> time_{1'700'000'000.25};
    std::multimap<double, Item> delayed_;  // in order of time, then of asking
    std::mutex lock_;
    std::vector<std::function<void()>> posted_;
};

// The shared shader library's stills, counted.
class CountedStills final : public StillRenderer {
public:
    std::optional<QImage> render(const Visualizer& v, PixelSize size, const Palette& palette) override {
        ++renders;
        return ShaderLibrary::shared().snapshot(v, size, SystemWallpaper::stillTime, palette);
    }
    void finished() override { ShaderLibrary::shared().releaseThreadContext(); }
    std::atomic<int> renders{0};
};

const QString userPicture = QStringLiteral("file:///usr/share/backgrounds/mein%20Bild.jpg");
const QString userDarkPicture = QStringLiteral("file:///usr/share/backgrounds/mein%20Bild-dunkel.jpg");

// The sync on a real model with a private settings file, real stills from the shader library,
// and GNOME's real picture settings in a GSettings key file.
class SystemWallpaperTest : public ::testing::Test {
protected:
    void SetUp() override {
        static const bool compiled = [] {
            ShaderLibrary::shared().compileBlocking(std::vector{*Catalog::byID("pegel"), *Catalog::byID("oszi")});
            return true;
        }();
        ASSERT_TRUE(compiled);
        gnome = GSettingsClient::open(QStringLiteral("org.gnome.desktop.background"));
        ASSERT_TRUE(gnome);
        gnome->setString(QStringLiteral("picture-uri"), userPicture);
        gnome->setString(QStringLiteral("picture-uri-dark"), userDarkPicture);
        gnome->setString(QStringLiteral("picture-options"), QStringLiteral("centered"));
        build(std::make_unique<GSettingsPicture>(GSettingsPicture::gnome));
    }

    void build(std::unique_ptr<DesktopPicture> picture) {
        sync.reset();
        model.reset();
        ModelServices m;
        m.settings = std::make_unique<SettingsStore>(settingsPath());
        m.clock = std::make_shared<FakeClock>();
        m.shaders = shaders;
        m.loginItem = std::make_shared<FakeLoginItem>();
        m.hooks.scheduleWallpaper = [this] {
            if (sync) sync->schedule();
        };
        m.hooks.restoreWallpaper = [this] {
            if (sync) sync->restoreOriginal();
        };
        m.log = [](const std::string&) {};
        model = std::make_unique<AppModel>(std::move(m));
        model->setCurrentID("pegel");

        SystemWallpaperServices s;
        s.mainQueue = queue;
        s.screens = [this] { return screens; };
        s.renderer = stills;
        s.picture = std::move(picture);
        s.desktop = QStringLiteral("Niemand");
        s.settings = std::make_unique<SettingsStore>(settingsPath());
        s.clock = queue;
        s.folder = folder();
        s.log = [this](const std::string& line) { logLines.push_back(line); };
        sync = std::make_unique<SystemWallpaper>(*model, std::move(s));
    }

    void makeReady() {
        model->start();
        ASSERT_TRUE(shaders->completion);
        shaders->completion();
        ASSERT_TRUE(model->ready());
    }

    // Lets the waiting sync run and its stills reach the main thread.
    void finishSync() {
        queue->advance(SystemWallpaper::quietSeconds);
        ASSERT_TRUE(queue->waitForPosted());
        queue->runPosted();
    }

    QString settingsPath() const { return dir.filePath(QStringLiteral("Quellton.conf")); }
    QString folder() const { return dir.filePath(QStringLiteral("data/Quellton/Hintergrund")); }
    QStringList files() const { return QDir(folder()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot, QDir::Name); }
    QString shown() const { return gnome->getString(QStringLiteral("picture-uri")).value_or(QString()); }
    QString remembered() const { return QSettings(settingsPath(), QSettings::IniFormat).value("originalWallpaper").toString(); }
    QString still(const std::string& id, int screen) const {
        return SystemWallpaper::fileName(id, std::size_t(screen), std::int64_t(queue->now()));
    }
    QString url(const QString& file) const { return QUrl::fromLocalFile(QDir(folder()).filePath(file)).toString(); }

    QTemporaryDir dir;
    std::optional<GSettingsClient> gnome;
    std::shared_ptr<ManualQueue> queue = std::make_shared<ManualQueue>();
    std::shared_ptr<CountedStills> stills = std::make_shared<CountedStills>();
    std::shared_ptr<FakeCompilation> shaders = std::make_shared<FakeCompilation>();
    std::vector<ScreenInfo> screens{{QStringLiteral("DP-1"), QRect(0, 0, 320, 200), 1.0}};
    std::vector<std::string> logLines;
    std::unique_ptr<AppModel> model;
    std::unique_ptr<SystemWallpaper> sync;
};

TEST_F(SystemWallpaperTest, ABurstOfChangesGivesOneSyncOfTheLastAfterTheQuietPeriod) {
    makeReady();
    for (const char* id : {"nation", "halo", "aurora", "moire", "pegel"}) {
        model->setCurrentID(id);
        queue->advance(0.2);
    }
    queue->advance(SystemWallpaper::quietSeconds - 0.2 - 0.02);
    EXPECT_TRUE(sync->pending());
    EXPECT_EQ(stills->renders, 0);
    EXPECT_FALSE(QDir(folder()).exists());

    queue->advance(0.04);
    EXPECT_FALSE(sync->pending());
    ASSERT_TRUE(queue->waitForPosted());
    EXPECT_EQ(shown(), userPicture) << "the picture changes on the main thread only";
    queue->runPosted();
    EXPECT_EQ(stills->renders, 1);
    ASSERT_EQ(files(), QStringList{still("pegel", 0)});
    // The keys written and the file's format: the adapter's tests and the program's check them.
    EXPECT_EQ(shown(), url(still("pegel", 0)));
}

TEST_F(SystemWallpaperTest, NothingHappensUntilTheShadersAreReadyAndThenOneSyncInTheChosenColourWorld) {
    model->setCurrentID("oszi");
    model->setCurrentID("pegel");
    model->setPaletteOverride(5);
    model->setSyncSystemWallpaper(true);
    queue->advance(10);
    EXPECT_FALSE(sync->pending());
    EXPECT_EQ(stills->renders, 0);

    makeReady();
    EXPECT_TRUE(sync->pending());
    finishSync();
    EXPECT_EQ(stills->renders, 1);
    ASSERT_EQ(shown(), url(still("pegel", 0)));
    const QImage written(QDir(folder()).filePath(files().front()));
    const Visualizer& pegel = *Catalog::byID("pegel");
    ASSERT_NE(pegel.palette, 5);
    const auto chosen = ShaderLibrary::shared().snapshot(pegel, {320, 200}, SystemWallpaper::stillTime, Palette::all()[5]);
    const auto own = ShaderLibrary::shared().snapshot(pegel, {320, 200}, SystemWallpaper::stillTime);
    ASSERT_TRUE(chosen && own);
    // JPEG blurs the edges but keeps the colours: compare the mean colour.
    auto mean = [](const QImage& image) {
        std::array<double, 3> sum{};
        for (int y = 0; y < image.height(); ++y)
            for (int x = 0; x < image.width(); ++x) {
                const QColor c = image.pixelColor(x, y);
                sum[0] += c.red(), sum[1] += c.green(), sum[2] += c.blue();
            }
        for (double& s : sum) s /= image.width() * image.height();
        return sum;
    };
    auto distance = [&](const QImage& a, const QImage& b) {
        const auto ma = mean(a), mb = mean(b);
        return std::abs(ma[0] - mb[0]) + std::abs(ma[1] - mb[1]) + std::abs(ma[2] - mb[2]);
    };
    EXPECT_LT(distance(written, *chosen) * 3, distance(written, *own));

    // With the option off, changes ask for nothing.
    model->setSyncSystemWallpaper(false);
    model->setCurrentID("oszi");
    EXPECT_FALSE(sync->pending());
    queue->advance(10);
    EXPECT_EQ(stills->renders, 1);
}

TEST_F(SystemWallpaperTest, TurningTheOptionOffPutsTheUsersPictureBackAndStopsWhatIsUnderWay) {
    makeReady();
    finishSync();
    ASSERT_EQ(shown(), url(still("pegel", 0)));

    // While the sync waits: the wait ends and nothing is made.
    model->setCurrentID("oszi");
    queue->advance(1.0);
    model->setSyncSystemWallpaper(false);
    EXPECT_FALSE(sync->pending());
    EXPECT_EQ(shown(), userPicture);
    EXPECT_EQ(gnome->getString(QStringLiteral("picture-uri-dark")), userDarkPicture) << "shown as before, too";
    EXPECT_EQ(gnome->getString(QStringLiteral("picture-options")), QStringLiteral("centered"));
    queue->advance(10);
    EXPECT_EQ(stills->renders, 1);
    EXPECT_EQ(shown(), userPicture);

    // While the stills are made: the files stay, but nothing is set.
    model->setSyncSystemWallpaper(true);
    queue->advance(SystemWallpaper::quietSeconds);  // the background run has started
    model->setSyncSystemWallpaper(false);
    ASSERT_TRUE(queue->waitForPosted());
    queue->runPosted();
    EXPECT_EQ(files(), QStringList{still("oszi", 0)});
    EXPECT_EQ(shown(), userPicture);
}

TEST_F(SystemWallpaperTest, EveryScreenGetsAStillOfItsPixelSizeCappedPerAxis) {
    screens = {{QStringLiteral("DP-1"), QRect(0, 0, 1440, 900), 2.0},
               {QStringLiteral("DP-2"), QRect(1440, 0, 3008, 1692), 2.0}};
    model->setAllScreens(false);  // the live pictures only: the desktop's own picture is on every screen
    makeReady();
    finishSync();
    ASSERT_EQ(files(), (QStringList{still("pegel", 0), still("pegel", 1)}));
    EXPECT_EQ(QImageReader(QDir(folder()).filePath(still("pegel", 0))).size(), QSize(2880, 1800));
    EXPECT_EQ(QImageReader(QDir(folder()).filePath(still("pegel", 1))).size(), QSize(3840, 2400));
    EXPECT_EQ(shown(), url(still("pegel", 0))) << "GNOME has one picture: the main screen's";
}

TEST_F(SystemWallpaperTest, TheUsersPictureIsRememberedOnceAndNeverOneOfOurOwn) {
    // A still left from an earlier run is on the desktop: it is not the user's picture.
    const QString leftover = url(QStringLiteral("nation-0-1600000000.jpg"));
    gnome->setString(QStringLiteral("picture-uri"), leftover);
    makeReady();
    finishSync();
    EXPECT_TRUE(remembered().isEmpty());
    // Nothing remembered: turning the option off changes nothing.
    model->setSyncSystemWallpaper(false);
    EXPECT_EQ(shown(), url(still("pegel", 0)));
    EXPECT_EQ(gnome->getString(QStringLiteral("picture-options")), QStringLiteral("zoom"));

    // The user picks a picture, turns the option on: that one is remembered, and only that one.
    gnome->setString(QStringLiteral("picture-uri"), userPicture);
    model->setSyncSystemWallpaper(true);
    finishSync();
    EXPECT_EQ(remembered(), userPicture);
    model->setSyncSystemWallpaper(false);
    gnome->setString(QStringLiteral("picture-uri"), QStringLiteral("file:///tmp/later.png"));
    model->setSyncSystemWallpaper(true);
    finishSync();
    EXPECT_EQ(remembered(), userPicture);
    model->setSyncSystemWallpaper(false);
    EXPECT_EQ(shown(), userPicture);
}

TEST_F(SystemWallpaperTest, EachRunEmptiesTheFolderFirstAndAStillThatCannotBeMadeLeavesThePicture) {
    ASSERT_TRUE(QDir().mkpath(folder() + "/inner"));
    QFile foreign(folder() + "/fremd.txt");
    ASSERT_TRUE(foreign.open(QIODevice::WriteOnly));
    foreign.close();
    makeReady();
    finishSync();
    EXPECT_EQ(files(), QStringList{still("pegel", 0)});
    const QString first = url(still("pegel", 0));
    ASSERT_EQ(shown(), first);

    model->setCurrentID("nation");  // never compiled in this test: no still
    finishSync();
    EXPECT_EQ(stills->renders, 2);
    EXPECT_TRUE(files().isEmpty());
    EXPECT_EQ(shown(), first);

    // A folder that cannot be made: nothing is written, nothing changes.
    ASSERT_TRUE(QDir(dir.filePath(QStringLiteral("data"))).removeRecursively());
    QFile blocker(dir.filePath(QStringLiteral("data")));
    ASSERT_TRUE(blocker.open(QIODevice::WriteOnly));
    blocker.close();
    model->setCurrentID("oszi");
    finishSync();
    EXPECT_EQ(stills->renders, 3);
    EXPECT_EQ(shown(), first);
}

TEST_F(SystemWallpaperTest, ADesktopWithoutAdapterKeepsItsPictureAndTheLogSaysSoOnce) {
    build(nullptr);
    makeReady();
    queue->advance(SystemWallpaper::quietSeconds);
    model->setCurrentID("oszi");
    queue->advance(SystemWallpaper::quietSeconds);
    model->setSyncSystemWallpaper(false);
    EXPECT_EQ(stills->renders, 0);
    EXPECT_FALSE(QDir(folder()).exists());
    ASSERT_EQ(logLines.size(), 1u);
    EXPECT_EQ(logLines.front(),
              "Quellton: Das Schreibtischbild dieser Arbeitsumgebung (XDG_CURRENT_DESKTOP=Niemand) kann Quellton "
              "nicht setzen; es bleibt, wie es ist.");
}

}  // namespace
}  // namespace quellton

// GSettings keeps its values in a private key file; the model's timer needs an application object.
int main(int argc, char** argv) {
    QTemporaryDir home;
    setenv("GSETTINGS_BACKEND", "keyfile", 1);
    setenv("XDG_CONFIG_HOME", home.path().toUtf8().constData(), 1);
    QCoreApplication app(argc, argv);
    ::testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
