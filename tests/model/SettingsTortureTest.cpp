// Settings files as users and accidents leave them: garbage, wrong types, extreme numbers,
// huge values, duplicates, files that cannot be read and folders that cannot be written.
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

#include <unistd.h>

#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <random>

#include "Catalog.h"
#include "FrameInputs.h"
#include "ModelTestSupport.h"
#include "Palette.h"

namespace quellton::test {
namespace {

const std::vector<std::string> keys = {"current", "mix", "mixEnabled", "mixInterval", "mixOnBeat", "palette",
                                       "reactivity", "smoothing", "quality", "fps", "allScreens",
                                       "syncSystemWallpaper"};

// Values each key accepts, and values that are wrong for it in one way or another.
const std::map<std::string, std::vector<std::string>> goodValues = {
    {"current", {"halo", "echo", "gargantua"}},
    {"mix", {"halo, echo", "nation", "\"halo\", \"aurora\"", ""}},
    {"mixEnabled", {"true", "false", "1"}},
    {"mixInterval", {"30", "120.5", "1e2"}},
    {"mixOnBeat", {"false", "true"}},
    {"palette", {"0", "3", "-1"}},
    {"reactivity", {"0.35", "2.4", "1"}},
    {"smoothing", {"0", "0.5", "1"}},
    {"quality", {"Sparsam", "Maximal", "Ausgewogen"}},
    {"fps", {"30", "120", "60"}},
    {"allScreens", {"false", "true"}},
    {"syncSystemWallpaper", {"false", "true"}},
};
const std::vector<std::string> badValues = {
    "abc", "vielleicht", "42", "-5", "0", "2147483648", "-2147483649", "999", "1e300", "-1e300", "1e38",
    "3.5e38", "-0", "1e999", "nan", "NaN", "inf", "-inf", "+INF", "0x10", "1,5", "  7  ", "\"\"", "@Invalid()",
    "@ByteArray(halo)", "@Rect(1 2 3 4)", "@Variant(\\0\\0\\0\\x7f\\0)", "@Variant(\\0\\0\\0\\n\\0\\xff\\xff\\xff\\xf0)",
    "@Variant(\\0\\0\\0\\x10\\0\\x7f\\xff\\xff\\xf0)", "gibtsnicht", "halo, gibtsnicht, , echo", "\"unterminated",
    "\\x41\\u00e4\\0", "Sparsam ", "maximal", "true false", "TRUE", "[General]",
};

std::string randomBytes(std::mt19937& rng, std::size_t n) {
    std::string text(n, '\0');
    for (char& c : text) c = char(rng() & 0xff);
    return text;
}

std::string anyBadValue(std::mt19937& rng) {
    switch (rng() % 5) {
    case 0: return std::string(1 + rng() % (rng() % 40 ? 1 << 12 : 1 << 20), 'x');  // now and then a megabyte
    case 1: return "@Variant(" + randomBytes(rng, rng() % 40) + ")";
    case 2: return randomBytes(rng, rng() % 60);
    default: return badValues[rng() % badValues.size()];
    }
}

// One generated file. `kept` names a catalog id in a clean first line that must survive, if any.
struct GeneratedFile {
    std::string text;
    std::optional<std::string> kept;
};

GeneratedFile generate(std::mt19937& rng) {
    GeneratedFile file;
    if (rng() % 10 == 0) {  // nothing but noise
        file.text = randomBytes(rng, rng() % 4096);
        return file;
    }
    if (rng() % 4 == 0) file.text += "\xEF\xBB\xBF";  // a byte-order mark
    const char* newline = rng() % 5 == 0 ? "\r\n" : "\n";
    file.text += std::string("[General]") + newline;
    if (rng() % 2) {
        file.kept = goodValues.at("current")[rng() % 3];
        file.text += "current=" + *file.kept + newline;
    }
    const int lines = int(rng() % 30);
    for (int i = 0; i < lines; ++i) {
        std::string key = keys[rng() % keys.size()];
        if (file.kept && key == "current") key = "mix";  // keeps the clean first line the last word
        switch (rng() % 8) {
        case 0: file.text += randomBytes(rng, rng() % 120); break;
        case 1: file.text += std::vector<std::string>{"[General", "[Quellton]", "[]", "=", "\\", "[General]"}[rng() % 6]; break;
        case 2:
        case 3: file.text += key + "=" + goodValues.at(key)[rng() % goodValues.at(key).size()]; break;
        default: file.text += key + "=" + anyBadValue(rng); break;
        }
        file.text += newline;
    }
    return file;
}

// What the renderers must cope with: every value in range or finite, and frames that stay finite
// with these settings for loud and for silent sound.
void expectUsable(const AppModel& model, const std::string& context) {
    EXPECT_NE(Catalog::byID(model.currentID()), nullptr) << context;
    for (const std::string& id : model.mix()) EXPECT_NE(Catalog::byID(id), nullptr) << context;
    const int palette = model.paletteOverride().value_or(0);
    EXPECT_TRUE(palette >= 0 && palette < int(Palette::all().size())) << context;
    EXPECT_TRUE(std::isfinite(model.mixInterval()) && std::isfinite(model.reactivity()) &&
                std::isfinite(model.smoothing()))
        << context;

    const RenderSettings settings = RenderState::get();
    FrameState state(0);
    AudioFrame loud;
    loud.bands.fill(1.0f);
    loud.peaks.fill(1.0f);
    loud.wave.fill(1.0f);
    loud.bass = loud.mid = loud.high = loud.level = loud.beat = 1.0f;
    for (int i = 1; i <= 120; ++i) {
        const bool silent = i > 60;
        state.advanceInputs(1.0 / 60, i / 60.0, silent, silent ? AudioFrame::silent() : loud, settings, {0.5f, 0.5f});
    }
    const Uniforms u = state.uniforms(2.0, 64, 36, 1.0f, Inputs{}, layerPalette(settings, 0));
    const auto* values = reinterpret_cast<const float*>(&u);
    for (int i = 0; i < 32; ++i) ASSERT_TRUE(std::isfinite(values[i])) << context << ", uniform " << i;
    for (const float v : spectrumArray(state.smoothed)) ASSERT_TRUE(std::isfinite(v)) << context;
}

// Every save syncs the file to the disk; a thousand of them take a minute on a busy disk and
// seconds in memory. The store's own scratch copies follow TMPDIR there too.
class SettingsTorture : public ModelTest {
protected:
    void SetUp() override {
        if (QFileInfo(QStringLiteral("/dev/shm")).isWritable()) {
            memory = std::make_unique<QTemporaryDir>(QStringLiteral("/dev/shm/quellton-settings-XXXXXX"));
            if (const char* old = std::getenv("TMPDIR")) oldTmp = old;
            setenv("TMPDIR", memory->path().toLocal8Bit().constData(), 1);
        }
    }
    void TearDown() override {
        if (!memory) return;
        if (oldTmp)
            setenv("TMPDIR", oldTmp->c_str(), 1);
        else
            unsetenv("TMPDIR");
    }
    QString scratch(const QString& name) const { return memory ? memory->filePath(name) : dir.filePath(name); }

    std::unique_ptr<QTemporaryDir> memory;
    std::optional<std::string> oldTmp;
};

// A thousand damaged files load to usable values; a write of one key keeps every other key as it
// loaded, and a clean first line always survives.
TEST_F(SettingsTorture, AThousandDamagedFilesLoadUsableAndKeepTheirKeys) {
    std::mt19937 rng(20240521);
    for (int n = 0; n < 1000; ++n) {
        const GeneratedFile generated = generate(rng);
        const QString file = scratch(QStringLiteral("case%1.conf").arg(n));
        ASSERT_NO_FATAL_FAILURE(writeFile(file, QByteArray::fromStdString(generated.text)));
        const std::string context = "file " + std::to_string(n);
        auto model = makeModel(file);
        ASSERT_NO_FATAL_FAILURE(expectUsable(*model, context));
        if (generated.kept) {
            EXPECT_EQ(model->currentID(), *generated.kept) << context;
        }

        const Loaded before = loaded(*model);
        model->setMixOnBeat(!before.mixOnBeat);
        model.reset();
        // A copy under a new name is read from the disk, not from the cache of the first file.
        const QString copy = scratch(QStringLiteral("copy%1.conf").arg(n));
        ASSERT_TRUE(QFile::copy(file, copy)) << context;
        auto reloaded = makeModel(copy);
        Loaded expected = before;
        expected.mixOnBeat = !before.mixOnBeat;
        EXPECT_EQ(loaded(*reloaded), expected) << context;
        EXPECT_LE(logLines.size(), 2u) << context;
        for (const std::string& line : logLines) EXPECT_NE(line.find(file.toStdString()), std::string::npos) << line;
        logLines.clear();
        QFile::remove(file);
        QFile::remove(copy);
    }
}

// Paths that cannot be files, for every user: the settings path is a folder, or its folder is a file.
TEST_F(SettingsTorture, AFolderInPlaceOfTheFileOrItsFolderLeavesDefaultsAndOneLine) {
    ASSERT_TRUE(QDir(dir.path()).mkdir(QStringLiteral("Quellton.conf")));
    auto model = makeModel(path());
    EXPECT_EQ(model->currentID(), "nation");
    model->setCurrentID("halo");
    model->setFps(30);
    EXPECT_EQ(model->currentID(), "halo");
    EXPECT_EQ(logLines.size(), 1u);

    writeFile(dir.filePath(QStringLiteral("Quellton")), "");
    logLines.clear();
    auto second = makeModel(dir.filePath(QStringLiteral("Quellton/Quellton.conf")));
    second->setReactivity(2.4);
    second->setFps(30);
    EXPECT_EQ(second->reactivity(), 2.4);
    ASSERT_EQ(logLines.size(), 1u);
    EXPECT_NE(logLines.front().find("nicht geschrieben"), std::string::npos) << logLines.front();
}

// Permissions do not bind root, so as root this test runs itself again as nobody.
TEST_F(SettingsTorture, UnreadableFilesAndReadOnlyFoldersLoseNothing) {
    if (geteuid() == 0) {
        const std::filesystem::path copy = std::filesystem::path(dir.path().toStdString()) / "model_tests";
        std::filesystem::copy_file("/proc/self/exe", copy);
        std::filesystem::permissions(dir.path().toStdString(), std::filesystem::perms(0755));
        const std::string command = "env TMPDIR=/tmp setpriv --reuid=nobody --regid=nogroup --clear-groups " + copy.string() +
                                    " --gtest_filter=SettingsTorture.UnreadableFilesAndReadOnlyFoldersLoseNothing";
        ASSERT_EQ(std::system(command.c_str()), 0);
        return;
    }
    const auto contents = [](const QString& file) {
        QFile in(file);
        return in.open(QIODevice::ReadOnly) ? in.readAll() : QByteArray();
    };
    const QByteArray saved = "[General]\ncurrent=halo\nfps=30\n";

    // A file that cannot be read (write-only is the dangerous case: it could be overwritten).
    for (const QFile::Permissions mode : {QFile::Permissions(QFile::WriteOwner), QFile::Permissions()}) {
        const QString file = dir.filePath(QStringLiteral("unreadable.conf"));
        writeFile(file, saved);
        QFile::setPermissions(file, mode);
        logLines.clear();
        auto model = makeModel(file);
        EXPECT_EQ(model->currentID(), "nation");
        model->setFps(45);
        model->setCurrentID("echo");
        EXPECT_EQ(model->fps(), 45);
        model.reset();
        QFile::setPermissions(file, QFile::ReadOwner | QFile::WriteOwner);
        EXPECT_EQ(contents(file), saved);
        ASSERT_EQ(logLines.size(), 1u);
        EXPECT_NE(logLines.front().find("nicht gelesen"), std::string::npos) << logLines.front();
        QFile::remove(file);
    }

    // A folder that cannot be written, without and with a file in it.
    const QString folder = dir.filePath(QStringLiteral("readonly"));
    ASSERT_TRUE(QDir().mkpath(folder));
    writeFile(folder + "/present.conf", saved);
    QFile::setPermissions(folder, QFile::ReadOwner | QFile::ExeOwner);
    for (const QString& name : {QStringLiteral("absent.conf"), QStringLiteral("present.conf")}) {
        logLines.clear();
        auto model = makeModel(folder + "/" + name);
        model->setMixEnabled(true);
        model->setReactivity(1.6);
        EXPECT_TRUE(model->mixEnabled());
        EXPECT_EQ(logLines.size(), 1u) << name.toStdString();
    }
    EXPECT_FALSE(QFile::exists(folder + "/absent.conf"));
    EXPECT_EQ(contents(folder + "/present.conf"), saved);
    EXPECT_EQ(makeModel(folder + "/present.conf")->currentID(), "halo");
    QFile::setPermissions(folder, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
}

}  // namespace
}  // namespace quellton::test
