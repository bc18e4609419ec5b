#include <gtest/gtest.h>

#include <QImage>
#include <QTemporaryDir>

#include <sys/wait.h>

#include <cstdlib>
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

// As many lines as patterns, each matching its own.
void expectLines(const std::string& text, const std::vector<std::string>& patterns) {
    std::vector<std::string> lines;
    std::istringstream in(text);
    for (std::string line; std::getline(in, line);) lines.push_back(line);
    ASSERT_EQ(lines.size(), patterns.size()) << text;
    for (std::size_t i = 0; i < lines.size(); ++i)
        EXPECT_TRUE(std::regex_match(lines[i], std::regex(patterns[i]))) << lines[i] << " against " << patterns[i];
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

    expectLines(text.substr(0, blockAt), {"Übersetzt in [0-9]+\\.[0-9] s", "ok nation [0-9]+ ms"});
    expectLines(text.substr(blockAt + block.size()), {"ok halo [0-9]+ ms", "2/3 in Ordnung"});
    EXPECT_EQ(filesIn(folder), (std::vector<std::string>{"halo.png", "nation.png"}));
    for (const char* name : {"halo.png", "nation.png"}) EXPECT_EQ(load(folder / name).size(), QSize(960, 540)) << name;
}

TEST_F(OfflineTools, SnapshotsThatCannotBeSavedStillCountAsRendered) {
    const std::vector<Visualizer> entries = {*Catalog::byID("nation"), probe("schlicht", plainBody)};
    std::ofstream(at("datei")) << "kein Ordner";
    const fs::path folder = at("datei") / "bilder";
    std::ostringstream out;
    EXPECT_EQ(quellton::OfflineTools::snapshots(library, entries, folder, 2.5, out), 0);
    expectLines(out.str(), {"Übersetzt in .*", "ok nation [0-9]+ ms", "ok schlicht [0-9]+ ms", "2/2 in Ordnung"});
    EXPECT_FALSE(fs::exists(folder));
}

TEST_F(OfflineTools, StillWritesTheRequestedSizeOrNoFileAndIgnoresAPaletteOutOfRange) {
    const std::span<const Visualizer> entries(Catalog::byID("halo"), 1);
    auto still = [&](const std::string& name, std::optional<int> palette) {
        EXPECT_EQ(quellton::OfflineTools::still(library, entries, {"halo", 64, 36, 6.3, at(name), palette}), 0) << name;
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

    // An unknown id or an impossible size.
    for (const StillMode& mode : {StillMode{"nichtda", 64, 36, 6.3, at("a.png"), std::nullopt},
                                  StillMode{"halo", 0, 36, 6.3, at("b.png"), std::nullopt},
                                  StillMode{"halo", 1e6, 36, 6.3, at("c.png"), std::nullopt}}) {
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

TEST_F(OfflineTools, IconIsDrawnAroundHaloAndNeedsIt) {
    ASSERT_EQ(quellton::OfflineTools::icon(library, {Catalog::byID("halo"), 1}, at("icon.png")), 0);
    const QImage icon = load(at("icon.png"));
    EXPECT_EQ(icon.size(), QSize(1024, 1024));
    EXPECT_EQ(qAlpha(icon.pixel(0, 0)), 0) << "the PNG keeps the transparent corners";
    EXPECT_EQ(quellton::OfflineTools::icon(library, {Catalog::byID("nation"), 1}, at("ohne.png")), 1);
    EXPECT_FALSE(fs::exists(at("ohne.png")));
}

TEST_F(OfflineTools, BenchPrintsOnePaddedLinePerEntryAndMinusOneWithoutPipeline) {
    const std::vector<Visualizer> entries = {probe("kurz", plainBody), probe("einsehrlangername", plainBody),
                                             probe("kaputt2", brokenBody)};
    std::ostringstream out;
    EXPECT_EQ(quellton::OfflineTools::bench(library, entries, out), 0);
    expectLines(out.str(), {"kurz {11} [ 0-9]{3}\\.[0-9]{2} ms", "einsehrlangername [ 0-9]{3}\\.[0-9]{2} ms",
                            "kaputt2 {10}-1\\.00 ms"});
}

// Through the program, which must also end cleanly after Qt's image plugins were loaded.
TEST_F(OfflineTools, TheProgramWritesStillAndIcon) {
    const auto quellton = [](const std::string& arguments) {
        const int raw = std::system((std::string("'") + QUELLTON_BINARY + "' " + arguments + " >/dev/null").c_str());
        return WIFEXITED(raw) ? WEXITSTATUS(raw) : -1;
    };
    ASSERT_EQ(quellton("--still halo 64 36 6.3 '" + at("out.png").string() + "'"), 0);
    EXPECT_EQ(load(at("out.png")).size(), QSize(64, 36));
    ASSERT_EQ(quellton("--icon '" + at("icon.png").string() + "'"), 0);
    const QImage icon = load(at("icon.png"));
    EXPECT_EQ(icon.size(), QSize(1024, 1024));
    EXPECT_EQ(qAlpha(icon.pixel(0, 0)), 0);
}
