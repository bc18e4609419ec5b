// The application's thumbnail renderer on the real offline renderer (headless EGL).
#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QDir>
#include <QTemporaryDir>

#include <set>
#include <thread>

#include "Catalog.h"
#include "ShaderLibrary.h"
#include "Thumbnails.h"

using namespace quellton;

TEST(SnapshotThumbnailRenderer, DrawsCompiledVisualizationsOnAWorkerAndSkipsBrokenOnes) {
    const Visualizer broken{"kaputt", "Kaputt", Category::ring, 0, "vec3 vis(vec2 p, vec2 uv) { return nope; }"};
    std::vector<Visualizer> list = {*Catalog::byID("halo"), *Catalog::byID("echo"), broken};  // echo has feedback
    ShaderLibrary::shared().compileBlocking(list);

    QTemporaryDir dir;
    std::vector<ThumbnailMap> published;
    SnapshotThumbnailRenderer renderer;
    // On a thread of its own, as the worker runs it: the renderer makes and frees its own context.
    std::thread([&] {
        runThumbnailPass(thumbnailEntries(list, std::nullopt), dir.path().toStdString(), renderer,
                         [&](const ThumbnailMap& m) { published.push_back(m); });
    }).join();

    ASSERT_EQ(published.size(), 2u);
    const ThumbnailMap& images = published.back();
    EXPECT_EQ(images.count("kaputt"), 0u);
    for (const char* id : {"halo", "echo"}) {
        ASSERT_EQ(images.count(id), 1u) << id;
        const QImage& image = images.at(id);
        EXPECT_EQ(image.size(), QSize(480, 270)) << id;
        std::set<QRgb> colours;
        for (int y = 0; y < image.height(); y += 9)
            for (int x = 0; x < image.width(); x += 16) colours.insert(image.pixel(x, y));
        EXPECT_GT(colours.size(), 20u) << id << " drew a flat picture";
    }
    EXPECT_EQ(QDir(dir.path()).entryList(QDir::Files).size(), 2);
}

// Qt's image plugins, loaded for the cache, need an application object to be unloaded cleanly at exit.
int main(int argc, char** argv) {
    QCoreApplication app(argc, argv);
    ::testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
