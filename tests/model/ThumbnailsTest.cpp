#include <QImageReader>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <filesystem>
#include <set>

#include "Catalog.h"
#include "ModelTestSupport.h"
#include "SessionTestSupport.h"
#include "Thumbnails.h"

namespace quellton::test {
namespace {

namespace fs = std::filesystem;

// Draws a flat picture per visualizer and counts; ids in `failing` cannot be drawn.
// `rendered` is read only after a pass; the counters also while one runs.
struct CountingRenderer : ThumbnailRenderer {
    std::vector<std::string> rendered;
    std::set<std::string> failing;
    std::atomic<int> renders{0}, passes{0};
    QSize size{thumbnail::width, thumbnail::height};
    std::optional<QImage> render(const Visualizer& v, const Palette& palette) override {
        rendered.push_back(v.id);
        ++renders;
        if (failing.count(v.id)) return std::nullopt;
        QImage image(size, QImage::Format_RGB32);
        image.fill(QColor::fromHsv(int(rendered.size() * 37 % 360), 200, 40 + palette.id * 10));
        return image;
    }
    void finishPass() override { ++passes; }
};

std::vector<Visualizer> visualizers(int count) {
    std::vector<Visualizer> list;
    for (int i = 0; i < count; ++i) {
        Visualizer v = catalog().at(std::size_t(i));
        v.code += "\n// variant " + std::to_string(i);
        list.push_back(v);
    }
    return list;
}

class ThumbnailPass : public ::testing::Test {
protected:
    QTemporaryDir dir;
    fs::path folder = fs::path(dir.path().toStdString()) / "cache" / "Vorschau";
    CountingRenderer renderer;
    std::vector<ThumbnailMap> published;

    void pass(const std::vector<Visualizer>& list, std::optional<int> palette = std::nullopt) {
        const auto entries = thumbnailEntries(list, palette);
        runThumbnailPass(entries, folder, renderer, [this](const ThumbnailMap& m) { published.push_back(m); });
    }
    std::vector<std::size_t> publishedSizes() const {
        std::vector<std::size_t> sizes;
        for (const auto& m : published) sizes.push_back(m.size());
        return sizes;
    }
    fs::path fileOf(const Visualizer& v) const {
        return folder / thumbnailFileName(v, Palette::all().at(std::size_t(v.palette)));
    }
};

// An empty cache publishes at the start, after every twelve and at the end; a warm one once.
TEST_F(ThumbnailPass, EmptyCachePublishesInBatchesAndAWarmOneOnceWithoutRendering) {
    const auto list = visualizers(30);
    pass(list);
    EXPECT_EQ(publishedSizes(), (std::vector<std::size_t>{0, 12, 24, 30}));
    EXPECT_EQ(renderer.rendered.size(), 30u);
    EXPECT_EQ(renderer.passes, 1);
    for (const Visualizer& v : list) {
        const QImage image(QString::fromStdString(fileOf(v).string()));
        EXPECT_EQ(image.size(), QSize(480, 270)) << v.id;
        EXPECT_EQ(image.pixel(5, 5), published.back().at(v.id).pixel(5, 5)) << v.id;
    }

    renderer.rendered.clear();
    published.clear();
    pass(list);
    EXPECT_TRUE(renderer.rendered.empty());
    ASSERT_EQ(publishedSizes(), std::vector<std::size_t>{30});
    EXPECT_EQ(published[0].at(list[7].id).size(), QSize(480, 270));
}

// A failed render leaves no file but is published at the end; the next pass tries it again and
// renders a changed shader text under a new name, leaving the old file.
TEST_F(ThumbnailPass, ASecondPassRendersWhatFailedOrChangedOnly) {
    auto list = visualizers(14);
    renderer.failing = {list[13].id};
    pass(list);
    EXPECT_EQ(publishedSizes(), (std::vector<std::size_t>{0, 12, 13}));
    EXPECT_FALSE(fs::exists(fileOf(list[13])));
    EXPECT_FALSE(published.back().count(list[13].id));

    const fs::path old = fileOf(list[4]);
    list[4].code += "\n// tweaked";
    renderer.failing.clear();
    renderer.rendered.clear();
    published.clear();
    pass(list);
    EXPECT_EQ(renderer.rendered, (std::vector<std::string>{list[4].id, list[13].id}));
    EXPECT_NE(fileOf(list[4]), old);
    EXPECT_TRUE(fs::exists(fileOf(list[4])));
    EXPECT_TRUE(fs::exists(old));
    EXPECT_EQ(publishedSizes(), (std::vector<std::size_t>{12, 14}));
}

TEST_F(ThumbnailPass, PaletteOverrideChoosesTheFilesAndThePicture) {
    const auto list = visualizers(3);
    int other = 0;  // a palette none of them has of its own
    while (std::ranges::any_of(list, [&](const Visualizer& v) { return v.palette == other; })) ++other;
    pass(list, other);
    for (const Visualizer& v : list) {
        const std::string name = thumbnailFileName(v, Palette::all()[std::size_t(other)]);
        EXPECT_EQ(name, v.id + "-" + std::to_string(other) + "-" + AppModel::stableHash(v.code) + ".png");
        EXPECT_TRUE(fs::exists(folder / name)) << name;
    }
    renderer.rendered.clear();
    pass(list);  // back to each visualizer's own palette: other files
    EXPECT_EQ(renderer.rendered.size(), 3u);
}

TEST_F(ThumbnailPass, AnUnreadableCacheFileCountsAsMissingAndIsOverwritten) {
    const auto list = visualizers(2);
    fs::create_directories(folder);
    writeFile(QString::fromStdString(fileOf(list[1]).string()), "kein Bild");
    pass(list);
    EXPECT_EQ(renderer.rendered.size(), 2u);
    EXPECT_EQ(QImageReader(QString::fromStdString(fileOf(list[1]).string())).size(), QSize(480, 270));
}

TEST_F(ThumbnailPass, AFolderThatCannotBeMadeStillPublishesEveryPicture) {
    folder = fs::path(dir.path().toStdString()) / "datei" / "Vorschau";
    writeFile(dir.filePath("datei"), "");  // a file where the cache's parent folder should be
    const auto list = visualizers(3);
    pass(list);
    EXPECT_EQ(publishedSizes(), (std::vector<std::size_t>{0, 3}));
    pass(list);  // nothing was cached
    EXPECT_EQ(renderer.rendered.size(), 6u);
}

TEST(ThumbnailFolder, LiesInTheCacheFolderUnderTheApplicationId) {
    QTemporaryDir cache;
    qputenv("XDG_CACHE_HOME", cache.path().toUtf8());
    EXPECT_EQ(thumbnailFolder(), fs::path(cache.path().toStdString()) / "io.github.quellton.Quellton" / "Vorschau");
}

// The worker as the application wires it: a palette change on the model starts a pass whose
// publications come back to the model on its own thread.
class ThumbnailWorkerTest : public ModelTest {
protected:
    QTemporaryDir cache;
    std::shared_ptr<CountingRenderer> counting = makeRenderer();
    static std::shared_ptr<CountingRenderer> makeRenderer() {
        auto renderer = std::make_shared<CountingRenderer>();
        renderer->size = {48, 27};  // the whole catalog twice: small files keep it quick
        return renderer;
    }
};

TEST_F(ThumbnailWorkerTest, PassesPublishToTheModelOnItsThreadInBatches) {
    ThumbnailWorker worker(counting, fs::path(cache.path().toStdString()));
    auto model = makeModel();
    std::vector<std::size_t> seen;
    QObject::connect(model.get(), &AppModel::thumbnailsChanged, [&] { seen.push_back(model->thumbnails().size()); });
    // The start publication with what the cache held, then one per twelve renders and the end.
    auto batches = [](std::size_t cached) {
        std::vector<std::size_t> sizes{cached};
        for (std::size_t n = cached + thumbnail::batch; n < catalog().size(); n += thumbnail::batch) sizes.push_back(n);
        sizes.push_back(catalog().size());
        return sizes;
    };

    worker.renderAll(*model);
    ASSERT_TRUE(waitUntil([&] { return counting->passes == 1; }, 60000));
    ASSERT_TRUE(waitUntil([&] { return model->thumbnails().size() == catalog().size(); }));
    auto expected = batches(0);
    expected.erase(expected.begin());  // the empty start publication changes nothing
    EXPECT_EQ(seen, expected);

    seen.clear();
    model->setPaletteOverride(2);  // the test model's hook only counts; the worker is driven by hand
    worker.renderAll(*model);
    ASSERT_TRUE(waitUntil([&] { return counting->passes == 2; }, 60000));
    // Pictures of visualizers whose own palette is 2 come from the cache; the others disappear and come back.
    const auto own = std::size_t(std::ranges::count_if(catalog(), [](const Visualizer& v) { return v.palette == 2; }));
    waitUntil([&] { return seen.size() == batches(own).size(); });
    EXPECT_EQ(seen, batches(own));
    EXPECT_TRUE(fs::exists(fs::path(cache.path().toStdString()) / thumbnailFileName(catalog()[0], Palette::all()[2])));
}

TEST_F(ThumbnailWorkerTest, StoppingEndsThePassBetweenTwoRenders) {
    struct Slow : CountingRenderer {
        std::optional<QImage> render(const Visualizer& v, const Palette& p) override {
            QThread::msleep(20);
            return CountingRenderer::render(v, p);
        }
    };
    auto slow = std::make_shared<Slow>();
    auto model = makeModel();
    {
        ThumbnailWorker worker(slow, fs::path(cache.path().toStdString()));
        worker.renderAll(*model);
        ASSERT_TRUE(waitUntil([&] { return slow->renders > 0; }));
        worker.stop();
        worker.renderAll(*model);  // ignored once stopped
    }
    EXPECT_LT(std::size_t(slow->renders), catalog().size());
    EXPECT_EQ(slow->passes, 1);
}

}  // namespace
}  // namespace quellton::test
