#include "ControlsModel.h"

#include <QColor>

#include <array>

#include "AppModel.h"
#include "Catalog.h"
#include "Palette.h"
#include "QtText.h"
#include "ReactionPreset.h"
#include "SoundSettings.h"

namespace quellton {

namespace {

struct Choice {
    const char* text;
    int value;
};

constexpr std::array<Choice, 5> intervalChoices = {{
    {"15 Sekunden", 15}, {"30 Sekunden", 30}, {"1 Minute", 60}, {"2 Minuten", 120}, {"5 Minuten", 300}}};
constexpr std::array<Choice, 3> frameRateChoices = {{{"30 fps", 30}, {"60 fps", 60}, {"120 fps", 120}}};

template <std::size_t N>
QVariantList choiceList(const std::array<Choice, N>& choices, const char* valueName) {
    QVariantList list;
    for (const Choice& choice : choices)
        list.append(QVariantMap{{QStringLiteral("text"), QString::fromUtf8(choice.text)}, {valueName, choice.value}});
    return list;
}

template <std::size_t N>
int rowOf(const std::array<Choice, N>& choices, double value) {
    for (std::size_t row = 0; row < N; ++row)
        if (choices[row].value == value) return int(row);
    return -1;
}

}  // namespace

ControlsModel::ControlsModel(AppModel& model, QObject* parent)
    : QObject(parent), model_(model), canOpenSoundSettings_(soundSettingsCommand().has_value()) {
    connect(&model_, &AppModel::reactivityChanged, this, &ControlsModel::presetChanged);
    connect(&model_, &AppModel::mixIntervalChanged, this, &ControlsModel::intervalChanged);
    connect(&model_, &AppModel::mixChanged, this, &ControlsModel::selectedCountChanged);
    connect(&model_, &AppModel::fpsChanged, this, &ControlsModel::frameRateChanged);
}

QStringList ControlsModel::presets() {
    QStringList labels;
    for (ReactionPreset preset : allReactionPresets) labels.append(qtText(presetLabel(preset)));
    return labels;
}

int ControlsModel::preset() const { return int(nearestPreset(model_.reactivity())); }

void ControlsModel::choosePreset(int row) {
    if (row < 0 || row >= int(allReactionPresets.size())) return;
    model_.setReactivity(presetStrength(allReactionPresets[std::size_t(row)]));
}

QVariantList ControlsModel::intervals() { return choiceList(intervalChoices, "seconds"); }
int ControlsModel::interval() const { return rowOf(intervalChoices, model_.mixInterval()); }

void ControlsModel::chooseInterval(int row) {
    if (row >= 0 && row < int(intervalChoices.size())) model_.setMixInterval(intervalChoices[std::size_t(row)].value);
}

QString ControlsModel::selectedCount() const {
    return QStringLiteral("%1 von %2").arg(model_.mix().size()).arg(catalog().size());
}

void ControlsModel::selectAll() {
    std::set<std::string> all;
    for (const Visualizer& v : catalog()) all.insert(v.id);
    model_.setMix(std::move(all));
}

void ControlsModel::selectNone() { model_.setMix({}); }

QVariantList ControlsModel::palettes() {
    QVariantList list;
    for (const Palette& palette : Palette::all()) {
        QVariantList colors;
        for (const Color3& stop : palette.stops) colors.append(QColor::fromRgbF(stop.r, stop.g, stop.b));
        list.append(QVariantMap{{QStringLiteral("id"), palette.id},
                                {QStringLiteral("name"), qtText(palette.name)},
                                {QStringLiteral("colors"), colors}});
    }
    return list;
}

QStringList ControlsModel::qualities() {
    QStringList labels;
    for (Quality quality : {Quality::saver, Quality::balanced, Quality::max}) labels.append(qtText(qualityLabel(quality)));
    return labels;
}

QVariantList ControlsModel::frameRates() { return choiceList(frameRateChoices, "fps"); }
int ControlsModel::frameRate() const { return rowOf(frameRateChoices, model_.fps()); }

void ControlsModel::chooseFrameRate(int row) {
    if (row >= 0 && row < int(frameRateChoices.size())) model_.setFps(frameRateChoices[std::size_t(row)].value);
}

void ControlsModel::openSoundSettings() { quellton::openSoundSettings(); }

}  // namespace quellton
