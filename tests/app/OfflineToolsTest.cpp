#include <gtest/gtest.h>

#include <QImage>
#include <QTemporaryDir>

#include <filesystem>
#include <fstream>
#include <regex>
#include <sstream>
#include <vector>

#include "Catalog.h"
#include "OfflineTools.h"
#include "ShaderLibrary.h"

using namespace quellton;
namespace fs = std::filesystem;

namespace {

Visualizer probe(const std::string& id, const std::string& code) { return {id, id, Category::ring, 0, code, 1.0, false}; }

const std::string plainBody = "vec3 vis(vec2 p, vec2 uv) { return vec3(uv, 0.5); }";
const std::string brokenBody = "vec3 vis(vec2 p, vec2 uv) { return vec3(p, 1.0) + notDeclared; }";

std::vector<std::string> lines(const std::string& text) {
    std::vector<std::string> result;
    std::istringstream in(text);
    for (std::string line; std::getline(in, line);) result.push_back(line);
    return result;
}

QImage load(const fs::path& file) { return QImage(QString::fromStdString(file.string())); }

std::vector<std::string> filesIn(const fs::path& folder) {
    std::vector<std::string> names;
    for (const auto& entry : fs::directory_iterator(folder)) names.push_back(entry.path().filename().string());
    std::sort(names.begin(), names.end());
    return names;
}

class OfflineTools : public ::testing::Test {
protected:
    ShaderLibrary& library = ShaderLibrary::shared();
    QTemporaryDir dir;
    fs::path at(const std::string& name) const { return fs::path(dir.path().toStdString()) / name; }
};

}  // namespace

TEST_F(OfflineTools, SnapshotsReportEveryEntryInOrderAndWriteOnlyTheGoodOnes) {
    const std::vector<Visualizer> entries = {*Catalog::byID("nation"), probe("kaputt", brokenBody), *Catalog::byID("halo")};
    const fs::path folder = at("neu/tiefer");
    std::ostringstream out;
    EXPECT_EQ(quellton::OfflineTools::snapshots(library, entries, folder, 6.3, out), 1);

    const std::string message = library.failures().at("kaputt");
    ASSERT_NE(message.find("notDeclared"), std::string::npos) << message;
    const std::string text = out.str();
    const std::string block = "FEHLER kaputt:\n" + message + "\n\n";
    const auto blockAt = text.find(block);
    ASSERT_NE(blockAt, std::string::npos) << text;

    const auto before = lines(text.substr(0, blockAt));
    const auto after = lines(text.substr(blockAt + block.size()));
    ASSERT_EQ(before.size(), 2u) << text;
    EXPECT_TRUE(std::regex_match(before[0], std::regex("Übersetzt in [0-9]+\\.[0-9] s"))) << before[0];
    EXPECT_TRUE(std::regex_match(before[1], std::regex("ok nation [0-9]+ ms"))) << before[1];
    ASSERT_EQ(after.size(), 2u) << text;
    EXPECT_TRUE(std::regex_match(after[0], std::regex("ok halo [0-9]+ ms"))) << after[0];
    EXPECT_EQ(after[1], "2/3 in Ordnung");

    EXPECT_EQ(filesIn(folder), (std::vector<std::string>{"halo.png", "nation.png"}));
    for (const char* name : {"halo.png", "nation.png"}) {
        const QImage image = load(folder / name);
        EXPECT_EQ(image.width(), 960) << name;
        EXPECT_EQ(image.height(), 540) << name;
    }
}

TEST_F(OfflineTools, SnapshotsThatCannotBeSavedStillCountAsRendered) {
    const std::vector<Visualizer> entries = {*Catalog::byID("nation"), probe("schlicht", plainBody)};
    std::ofstream(at("datei")) << "kein Ordner";
    const fs::path folder = at("datei") / "bilder";
    std::ostringstream out;
    EXPECT_EQ(quellton::OfflineTools::snapshots(library, entries, folder, 2.5, out), 0);
    const auto printed = lines(out.str());
    ASSERT_EQ(printed.size(), 4u) << out.str();
    EXPECT_TRUE(std::regex_match(printed[1], std::regex("ok nation [0-9]+ ms"))) << printed[1];
    EXPECT_TRUE(std::regex_match(printed[2], std::regex("ok schlicht [0-9]+ ms"))) << printed[2];
    EXPECT_EQ(printed[3], "2/2 in Ordnung");
    EXPECT_FALSE(fs::exists(folder));
}

TEST_F(OfflineTools, StillWritesTheRequestedSizeAndIgnoresAPaletteOutOfRange) {
    const std::vector<Visualizer> entries = {*Catalog::byID("halo")};
    auto still = [&](const std::string& name, std::optional<int> palette) {
        const StillMode mode{"halo", 64, 36, 6.3, at(name), palette};
        EXPECT_EQ(quellton::OfflineTools::still(library, entries, mode), 0) << name;
        return load(at(name));
    };
    const QImage own = still("eigen.png", std::nullopt);
    EXPECT_EQ(own.size(), QSize(64, 36));
    EXPECT_EQ(still("zugross.png", 99), own);
    EXPECT_EQ(still("negativ.png", -1), own);
    ASSERT_NE(Catalog::byID("halo")->palette, 0);
    const QImage other = still("andere.png", 0);
    EXPECT_EQ(other.size(), own.size());
    EXPECT_NE(other, own);
}

TEST_F(OfflineTools, StillFailsWithoutFileForAnUnknownIdOrAnImpossibleSize) {
    const std::vector<Visualizer> entries = {*Catalog::byID("halo")};
    const StillMode cases[] = {
        {"nichtda", 64, 36, 6.3, at("a.png"), std::nullopt},
        {"halo", 0, 36, 6.3, at("b.png"), std::nullopt},
        {"halo", 1e6, 36, 6.3, at("c.png"), std::nullopt},
    };
    for (const StillMode& mode : cases) {
        EXPECT_EQ(quellton::OfflineTools::still(library, entries, mode), 1) << mode.output;
        EXPECT_FALSE(fs::exists(mode.output)) << mode.output;
    }
}

TEST(IconImage, PlateIsOpaqueCornersClearShadowFallsBelowAndRimIsLighter) {
    QImage picture(824, 824, QImage::Format_RGB32);
    picture.fill(QColor(20, 20, 20));
    const QImage icon = quellton::OfflineTools::iconImage(picture);
    ASSERT_EQ(icon.size(), QSize(1024, 1024));
    for (const QPoint corner : {QPoint(0, 0), QPoint(1023, 0), QPoint(0, 1023), QPoint(1023, 1023), QPoint(110, 110)})
        EXPECT_EQ(qAlpha(icon.pixel(corner)), 0) << corner.x() << "," << corner.y();
    EXPECT_EQ(qAlpha(icon.pixel(512, 512)), 255);
    EXPECT_EQ(QColor(icon.pixel(512, 512)), QColor(20, 20, 20));
    // Shadow: 26 px outside the plate it shows below, but hardly above, since it is offset downwards.
    const int below = qAlpha(icon.pixel(512, 950)), above = qAlpha(icon.pixel(512, 74));
    EXPECT_GT(below, 0);
    EXPECT_GT(below, above);
    EXPECT_LT(below, 255 * 0.35 + 1);
    // The rim lies on the plate's edge and lightens the picture under it.
    EXPECT_GT(qRed(icon.pixel(512, 100)), qRed(icon.pixel(512, 106)) + 20);
    EXPECT_GT(qRed(icon.pixel(100, 512)), qRed(icon.pixel(106, 512)) + 20);
    EXPECT_EQ(qAlpha(icon.pixel(512, 100)), 255);
}

TEST_F(OfflineTools, IconFromHaloIsSquareWithTransparentCornersAndNeedsHalo) {
    const std::vector<Visualizer> entries = {*Catalog::byID("halo")};
    ASSERT_EQ(quellton::OfflineTools::icon(library, entries, at("icon.png")), 0);
    const QImage icon = load(at("icon.png"));
    ASSERT_EQ(icon.size(), QSize(1024, 1024));
    EXPECT_TRUE(icon.hasAlphaChannel());
    for (const QPoint corner : {QPoint(0, 0), QPoint(1023, 0), QPoint(0, 1023), QPoint(1023, 1023)})
        EXPECT_EQ(qAlpha(icon.pixel(corner)), 0);
    EXPECT_EQ(qAlpha(icon.pixel(512, 512)), 255);
    EXPECT_GT(qAlpha(icon.pixel(512, 950)), 0);

    const std::vector<Visualizer> withoutHalo = {*Catalog::byID("nation")};
    EXPECT_EQ(quellton::OfflineTools::icon(library, withoutHalo, at("ohne.png")), 1);
    EXPECT_FALSE(fs::exists(at("ohne.png")));
}

TEST_F(OfflineTools, BenchPrintsOnePaddedLinePerEntryAndMinusOneWithoutPipeline) {
    const std::vector<Visualizer> entries = {probe("kurz", plainBody), probe("einsehrlangername", plainBody),
                                             probe("kaputt2", brokenBody)};
    std::ostringstream out;
    EXPECT_EQ(quellton::OfflineTools::bench(library, entries, out), 0);
    const auto printed = lines(out.str());
    ASSERT_EQ(printed.size(), 3u) << out.str();
    EXPECT_TRUE(std::regex_match(printed[0], std::regex("kurz {11} [ 0-9]{3}\\.[0-9]{2} ms"))) << printed[0];
    EXPECT_TRUE(std::regex_match(printed[1], std::regex("einsehrlangername [ 0-9]{3}\\.[0-9]{2} ms"))) << printed[1];
    EXPECT_EQ(printed[2], "kaputt2" + std::string(8, ' ') + "  -1.00 ms");
}
