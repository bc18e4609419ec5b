#include "SelfTest.h"

#include <cmath>
#include <set>
#include <string>

#include "AudioFrame.h"
#include "Catalog.h"
#include "Palette.h"
#include "ReactionPreset.h"

namespace quellton {

namespace {

bool near(float a, float b) { return std::abs(a - b) < 1e-5f; }

AudioFrame testFrame() {
    AudioFrame frame = AudioFrame::idle(1.3, 1.0f);
    frame.bands[3] = 0.05f;
    frame.wave[10] = 0.8f;
    frame.bass = 0.9f;
    frame.beat = 0.6f;
    return frame;
}

bool calmIsFlat(const AudioFrame& calm) {
    if (calm.bass != 0.25f || calm.beat != 0.0f) return false;
    for (float b : calm.bands)
        if (b != 0.25f) return false;
    return true;
}

bool normalIsUnchanged(const AudioFrame& normal, const AudioFrame& frame) {
    if (!near(normal.bass, 0.9f)) return false;
    for (std::size_t i = 0; i < normal.bands.size(); ++i)
        if (!near(normal.bands[i], frame.bands[i])) return false;
    return near(normal.beat, 0.6f);
}

bool extremeStaysInRange(const AudioFrame& extreme) {
    for (float b : extreme.bands)
        if (!(b >= 0.0f && b <= 1.0f)) return false;
    for (float w : extreme.wave)
        if (!(std::abs(w) <= 1.0f)) return false;
    return true;
}

bool idsUnique(std::span<const Visualizer> entries) {
    std::set<std::string> ids;
    for (const Visualizer& v : entries) ids.insert(v.id);
    return ids.size() == entries.size();
}

bool palettesValid(std::span<const Visualizer> entries, int paletteCount) {
    for (const Visualizer& v : entries)
        if (v.palette < 0 || v.palette > paletteCount - 1) return false;
    return true;
}

}  // namespace

int selftest(std::ostream& out) { return selftest(out, catalog(), int(Palette::all().size())); }

int selftest(std::ostream& out, std::span<const Visualizer> entries, int paletteCount) {
    const AudioFrame frame = testFrame();
    const AudioFrame calm = frame.shaped(0.0f);
    const AudioFrame normal = frame.shaped(1.0f);
    const AudioFrame extreme = frame.shaped(2.5f);
    AudioFrame halfway = calm;
    halfway.approach(extreme, 0.5f);

    const std::pair<bool, const char*> checks[] = {
        {calmIsFlat(calm), "FEHLER: Ruhig = gleichmäßige Grundbewegung"},
        {normalIsUnchanged(normal, frame), "FEHLER: Normal = unverändert"},
        {extreme.bass == 1.0f && extreme.bands[3] == 0.0f && extreme.beat == 1.0f,
         "FEHLER: Extrem verstärkt und begrenzt"},
        {extremeStaysInRange(extreme), "FEHLER: Extrem bleibt im Wertebereich"},
        {near(halfway.bass, 0.625f), "FEHLER: Glätten zieht halb nach"},
        {idsUnique(entries), "FEHLER: Kennungen eindeutig"},
        {palettesValid(entries, paletteCount), "FEHLER: Farbwelten gültig"},
        {nearestPreset(1.05) == ReactionPreset::normal && nearestPreset(2.5) == ReactionPreset::extreme,
         "FEHLER: Schnellwahl"},
    };
    bool passed = true;
    for (const auto& [ok, message] : checks) {
        if (!ok) out << message << '\n';
        passed = passed && ok;
    }
    if (passed)
        out << "Selbsttest bestanden (" << entries.size() << " Darstellungen)\n";
    else
        out << "Selbsttest fehlgeschlagen\n";
    out.flush();
    return passed ? 0 : 1;
}

}  // namespace quellton
