// Selection and the Mix rotation of AppModel.
#include <QPointer>
#include <QTimer>

#include <algorithm>
#include <iterator>
#include <limits>

#include "AppModel.h"
#include "Catalog.h"

namespace quellton {

namespace {

constexpr int tickMilliseconds = 200;
constexpr double hearingWindow = 1.5;  // seconds since the last non-silent analysis
constexpr float beatThreshold = 0.8f;
constexpr double beatGrace = 8;  // the longest wait for a beat after the interval

std::vector<std::string> catalogIDs() {
    std::vector<std::string> ids;
    for (const Visualizer& v : catalog()) ids.push_back(v.id);
    return ids;
}

std::ptrdiff_t positionOf(const std::vector<std::string>& pool, const std::string& id) {
    const auto it = std::find(pool.begin(), pool.end(), id);
    return it == pool.end() ? -1 : it - pool.begin();
}

}  // namespace

const Visualizer& AppModel::current() const {
    if (const Visualizer* v = Catalog::byID(currentID_)) return *v;
    return catalog().front();
}

bool AppModel::mixActive() const { return mixEnabled_ && mix_.size() >= 2; }

void AppModel::next() {
    std::vector<std::string> pool = catalogIDs();
    if (!mixActive()) {
        const auto n = std::ptrdiff_t(pool.size());
        setCurrentID(pool[std::size_t((positionOf(pool, currentID_) + 1) % n)]);
        return;
    }
    std::erase_if(pool, [this](const std::string& id) { return !mix_.contains(id); });
    std::erase_if(mixOrder_, [this](const std::string& id) { return !mix_.contains(id) || id == currentID_; });
    if (mixOrder_.empty()) {
        std::ranges::copy_if(pool, std::back_inserter(mixOrder_), [this](const auto& id) { return id != currentID_; });
        std::ranges::shuffle(mixOrder_, randomness);
    }
    // Only a Mix of ids outside the catalog leaves nothing to choose; the interval still restarts.
    if (mixOrder_.empty()) {
        setCurrentID(currentID_);
        return;
    }
    const std::string chosen = mixOrder_.front();
    mixOrder_.erase(mixOrder_.begin());
    setCurrentID(chosen);
}

void AppModel::previous() {
    const std::vector<std::string> pool = catalogIDs();
    const auto n = std::ptrdiff_t(pool.size());
    const std::ptrdiff_t position = std::max<std::ptrdiff_t>(positionOf(pool, currentID_), 0);
    setCurrentID(pool[std::size_t((position - 1 + n) % n)]);
}

void AppModel::random() {
    std::vector<std::string> candidates = catalogIDs();
    std::erase(candidates, currentID_);
    if (candidates.empty()) {
        setCurrentID(currentID_);
        return;
    }
    std::uniform_int_distribution<std::size_t> pick(0, candidates.size() - 1);
    setCurrentID(candidates[pick(randomness)]);
}

void AppModel::toggleMix(const std::string& id) {
    if (!mix_.erase(id)) mix_.insert(id);
    writeMix();
    emit mixChanged();
}

void AppModel::start() {
    if (timer_) return;
    // The cached thumbnails need no compiling: they show at once; the missing ones follow the compilation.
    if (services.hooks.renderThumbnails) services.hooks.renderThumbnails();
    if (services.shaders) {
        QPointer<AppModel> self(this);
        // The completion may outlive the model: it takes its own copies of what it calls. The
        // compilation holds the completion, so the completion holds the compilation weakly.
        services.shaders->compileAll(
            currentID_, [self, weakShaders = std::weak_ptr(services.shaders),
                         schedule = services.hooks.scheduleWallpaper, log = services.log] {
                if (self) {
                    self->setReady(true);
                    if (self->services.hooks.renderThumbnails) self->services.hooks.renderThumbnails();
                }
                if (schedule) schedule();
                if (const auto shaders = weakShaders.lock())
                    for (const auto& [id, message] : shaders->failures())
                        if (log) log("Quellton: Shader " + id + " fehlerhaft: " + message);
            });
    }
    // A child of the model, so it stops with it.
    timer_ = new QTimer(this);
    timer_->setInterval(tickMilliseconds);
    connect(timer_, &QTimer::timeout, this, &AppModel::tick);
    timer_->start();
}

void AppModel::tick() {
    const double now = services.clock->now();
    const AudioSignal signal = services.audio ? services.audio->read() : AudioSignal{};
    const double since = services.audio ? now - signal.lastSignal : std::numeric_limits<double>::infinity();
    setHearing(since < hearingWindow);
    if (!mixActive() || paused_) return;
    const double elapsed = now - mixStarted_;
    if (elapsed < mixInterval_) return;
    const bool waitForBeat = mixOnBeat_ && since < hearingWindow && signal.beat <= beatThreshold &&
                             elapsed <= mixInterval_ + beatGrace;
    if (!waitForBeat) next();
}

}  // namespace quellton
