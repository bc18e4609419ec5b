#include "AppModel.h"

#include <QTimer>

#include <algorithm>
#include <limits>

#include "Catalog.h"
#include "Palette.h"

namespace quellton {

namespace {

namespace key {
const QString current = QStringLiteral("current");
const QString mix = QStringLiteral("mix");
const QString mixEnabled = QStringLiteral("mixEnabled");
const QString mixInterval = QStringLiteral("mixInterval");
const QString mixOnBeat = QStringLiteral("mixOnBeat");
const QString palette = QStringLiteral("palette");
const QString reactivity = QStringLiteral("reactivity");
const QString smoothing = QStringLiteral("smoothing");
const QString quality = QStringLiteral("quality");
const QString fps = QStringLiteral("fps");
const QString allScreens = QStringLiteral("allScreens");
const QString syncSystemWallpaper = QStringLiteral("syncSystemWallpaper");
// Diagnostics: frame timings into the frame log, read once at start.
const SettingKey<bool> frameLog{QStringLiteral("frameLog"), false};
}  // namespace key

// "mixEnabled" has no registered default on purpose: it reads as false.
QVariantMap registeredDefaults() {
    return {
        {key::current, QStringLiteral("nation")},
        {key::mixInterval, 60.0},
        {key::mixOnBeat, true},
        {key::palette, -1},
        {key::reactivity, 1.0},
        {key::smoothing, 0.15},
        {key::quality, QStringLiteral("Ausgewogen")},
        {key::fps, 60},
        {key::allScreens, true},
        {key::syncSystemWallpaper, true},
        {key::mix, QStringList{"nation", "halo", "nachtfahrt", "gargantua", "plasmakugel", "funkenwirbel",
                               "echo", "tesserakt", "aurora", "prisma", "wasserlicht", "stachelkugel"}},
    };
}

bool inCatalog(const std::string& id) { return Catalog::byID(id) != nullptr; }

// Any stored number is accepted, but a double beyond the float range has no float value:
// converting it is undefined, so it saturates.
float narrow(double value) {
    constexpr double limit = std::numeric_limits<float>::max();
    return float(std::clamp(value, -limit, limit));
}

}  // namespace

AppModel::AppModel(ModelServices services, QObject* parent) : QObject(parent), services(std::move(services)) {
    mixStarted_ = this->services.clock->now();
    this->services.settings->registerDefaults(registeredDefaults());
    load();
    publish();
}

AppModel::~AppModel() = default;

void AppModel::load() {
    const SettingsStore& store = *services.settings;
    currentID_ = store.string(key::current).toStdString();
    if (!inCatalog(currentID_)) currentID_ = "nation";
    for (const QString& id : store.stringArray(key::mix))
        if (inCatalog(id.toStdString())) mix_.insert(id.toStdString());
    mixEnabled_ = store.boolean(key::mixEnabled);
    mixInterval_ = store.real(key::mixInterval);
    mixOnBeat_ = store.boolean(key::mixOnBeat);
    const int palette = store.integer(key::palette);
    if (palette >= 0 && palette < int(Palette::all().size())) paletteOverride_ = palette;
    reactivity_ = store.real(key::reactivity);
    smoothing_ = store.real(key::smoothing);
    const auto quality = qualityFromLabel(store.string(key::quality).toStdString());
    quality_ = quality.value_or(Quality::balanced);
    fps_ = store.integer(key::fps);
    allScreens_ = store.boolean(key::allScreens);
    launchAtLogin_ = services.loginItem->isRegistered();
    syncSystemWallpaper_ = store.boolean(key::syncSystemWallpaper);
    frameLog_ = store.get(key::frameLog);
}

void AppModel::publish() {
    RenderState::set({
        .currentID = currentID_,
        .hoverID = hoverID_,
        .paletteOverride = paletteOverride_,
        .reactivity = narrow(reactivity_),
        .smoothing = narrow(smoothing_),
        .quality = quality_,
        .fps = fps_,
        .paused = paused_,
        .frameLog = frameLog_,
    });
}

template <typename T, typename Effects>
void AppModel::assign(T& field, T value, void (AppModel::*changed)(), Effects effects) {
    const bool differs = !(field == value);
    field = std::move(value);
    effects();
    if (differs) emit(this->*changed)();
}

void AppModel::setHearing(bool on) { assign(hearing_, on, &AppModel::hearingChanged, [] {}); }
void AppModel::setReady(bool on) { assign(ready_, on, &AppModel::readyChanged, [] {}); }

// Publications carry freshly loaded or rendered images, so identity (the cache key) tells a change.
void AppModel::setThumbnails(std::map<std::string, QImage> images) {
    const bool same = std::ranges::equal(thumbnails_, images, [](const auto& a, const auto& b) {
        return a.first == b.first && a.second.cacheKey() == b.second.cacheKey();
    });
    thumbnails_ = std::move(images);
    if (!same) emit thumbnailsChanged();
}

void AppModel::schedule() {
    if (services.hooks.scheduleWallpaper) services.hooks.scheduleWallpaper();
}

void AppModel::setCurrentID(const std::string& id) {
    assign(currentID_, id, &AppModel::currentIDChanged, [this] {
        services.settings->set(key::current, QString::fromStdString(currentID_));
        mixStarted_ = services.clock->now();
        publish();
        schedule();
    });
}

void AppModel::setHoverID(std::optional<std::string> id) {
    assign(hoverID_, std::move(id), &AppModel::hoverIDChanged, [this] { publish(); });
}

void AppModel::setMix(std::set<std::string> ids) {
    assign(mix_, std::move(ids), &AppModel::mixChanged, [this] { writeMix(); });
}

void AppModel::writeMix() { services.settings->set(key::mix, mixList()); }

void AppModel::setMixEnabled(bool on) {
    assign(mixEnabled_, on, &AppModel::mixEnabledChanged, [this] {
        services.settings->set(key::mixEnabled, mixEnabled_);
        mixStarted_ = services.clock->now();
    });
}

void AppModel::setMixInterval(double seconds) {
    assign(mixInterval_, seconds, &AppModel::mixIntervalChanged,
           [this] { services.settings->set(key::mixInterval, mixInterval_); });
}

void AppModel::setMixOnBeat(bool on) {
    assign(mixOnBeat_, on, &AppModel::mixOnBeatChanged, [this] { services.settings->set(key::mixOnBeat, mixOnBeat_); });
}

void AppModel::setPaletteOverride(std::optional<int> index) {
    assign(paletteOverride_, index, &AppModel::paletteOverrideChanged, [this] {
        services.settings->set(key::palette, paletteOverride_.value_or(-1));
        if (services.hooks.renderThumbnails) services.hooks.renderThumbnails();
        publish();
        schedule();
    });
}

void AppModel::setReactivity(double strength) {
    assign(reactivity_, strength, &AppModel::reactivityChanged, [this] {
        services.settings->set(key::reactivity, reactivity_);
        publish();
    });
}

void AppModel::setSmoothing(double amount) {
    assign(smoothing_, amount, &AppModel::smoothingChanged, [this] {
        services.settings->set(key::smoothing, smoothing_);
        publish();
    });
}

void AppModel::setQuality(Quality quality) {
    assign(quality_, quality, &AppModel::qualityChanged, [this] {
        services.settings->set(key::quality, qualityText());
        publish();
    });
}

void AppModel::setFps(int fps) {
    assign(fps_, fps, &AppModel::fpsChanged, [this] {
        services.settings->set(key::fps, fps_);
        publish();
    });
}

void AppModel::setAllScreens(bool on) {
    assign(allScreens_, on, &AppModel::allScreensChanged, [this] {
        services.settings->set(key::allScreens, allScreens_);
        if (onScreensChanged) onScreensChanged();
    });
}

void AppModel::setPaused(bool on) {
    assign(paused_, on, &AppModel::pausedChanged, [this] { publish(); });
}

void AppModel::setSyncSystemWallpaper(bool on) {
    assign(syncSystemWallpaper_, on, &AppModel::syncSystemWallpaperChanged, [this] {
        services.settings->set(key::syncSystemWallpaper, syncSystemWallpaper_);
        if (syncSystemWallpaper_)
            schedule();
        else if (services.hooks.restoreWallpaper)
            services.hooks.restoreWallpaper();
    });
}

// A failed (un)registration is ignored: the property keeps what the user chose.
void AppModel::setLaunchAtLogin(bool on) {
    assign(launchAtLogin_, on, &AppModel::launchAtLoginChanged, [this] {
        LoginItem& item = *services.loginItem;
        if (launchAtLogin_ == item.isRegistered()) return;
        if (launchAtLogin_)
            item.registerItem();
        else
            item.unregisterItem();
    });
}

void AppModel::setHoverIDText(const QString& id) {
    setHoverID(id.isEmpty() ? std::nullopt : std::optional(id.toStdString()));
}

QStringList AppModel::mixList() const {
    QStringList ids;
    for (const std::string& id : mix_) ids.append(QString::fromStdString(id));
    return ids;
}

void AppModel::setMixList(const QStringList& ids) {
    std::set<std::string> set;
    for (const QString& id : ids) set.insert(id.toStdString());
    setMix(std::move(set));
}

QString AppModel::qualityText() const {
    const std::string_view label = qualityLabel(quality_);
    return QString::fromUtf8(label.data(), qsizetype(label.size()));
}

void AppModel::setQualityText(const QString& label) {
    if (const auto quality = qualityFromLabel(label.toStdString())) setQuality(*quality);
}

}  // namespace quellton
