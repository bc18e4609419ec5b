#include "Thumbnails.h"

#include <QCoreApplication>
#include <QImageReader>
#include <QImageWriter>
#include <QPointer>
#include <QStandardPaths>

#include <pthread.h>
#include <unistd.h>

#include "AppModel.h"
#include "Catalog.h"
#include "SerialExecutor.h"
#include "ThreadPriority.h"
#include "ShaderLibrary.h"

namespace quellton {

namespace {

QString toQString(const std::filesystem::path& path) { return QString::fromStdString(path.string()); }

std::optional<QImage> loadCached(const std::filesystem::path& file) {
    QImage image;
    if (!image.load(toQString(file), "png")) return std::nullopt;
    return image;
}

// Utility work: named like the other queues, and behind the live drawing for the CPU.
void becomeThumbnailThread() {
    const std::string name = QUELLTON_APP_ID ".thumbnails";
    pthread_setname_np(pthread_self(), name.substr(name.size() - 15).c_str());
    lowerThisThreadsPriority();
}

}  // namespace

std::optional<QImage> SnapshotThumbnailRenderer::render(const Visualizer& v, const Palette& palette) {
    return ShaderLibrary::shared().snapshot(v, {thumbnail::width, thumbnail::height}, thumbnail::time, palette);
}

void SnapshotThumbnailRenderer::finishPass() { ShaderLibrary::shared().releaseThreadContext(); }

std::vector<ThumbnailEntry> thumbnailEntries(std::span<const Visualizer> visualizers, std::optional<int> paletteOverride) {
    const auto& palettes = Palette::all();
    std::vector<ThumbnailEntry> entries;
    entries.reserve(visualizers.size());
    for (const Visualizer& v : visualizers) {
        const int index = paletteOverride.value_or(v.palette);
        entries.push_back({v, palettes.at(std::size_t(index))});
    }
    return entries;
}

std::string thumbnailFileName(const Visualizer& v, const Palette& palette) {
    return v.id + "-" + std::to_string(palette.id) + "-" + AppModel::stableHash(v.code) + ".png";
}

std::filesystem::path thumbnailFolder() {
    const QString cache = QStandardPaths::writableLocation(QStandardPaths::GenericCacheLocation);
    return std::filesystem::path(cache.toStdString()) / QUELLTON_APP_ID / "Vorschau";
}

void runThumbnailPass(std::span<const ThumbnailEntry> entries, const std::filesystem::path& folder,
                      ThumbnailRenderer& renderer, const std::function<void(const ThumbnailMap&)>& publish,
                      const std::atomic<bool>* cancelled) {
    // A folder that cannot be made fails every load and skips every write below, silently.
    std::error_code ignored;
    std::filesystem::create_directories(folder, ignored);

    ThumbnailMap images;
    std::vector<std::pair<const ThumbnailEntry*, std::filesystem::path>> missing;
    for (const ThumbnailEntry& entry : entries) {
        auto file = folder / thumbnailFileName(entry.visualizer, entry.palette);
        if (auto image = loadCached(file))
            images[entry.visualizer.id] = std::move(*image);
        else
            missing.emplace_back(&entry, std::move(file));
    }
    publish(images);

    for (std::size_t k = 0; k < missing.size(); ++k) {
        if (cancelled && *cancelled) break;
        const auto& [entry, file] = missing[k];
        if (auto image = renderer.render(entry->visualizer, entry->palette)) {
            QImageWriter(toQString(file), "png").write(*image);
            images[entry->visualizer.id] = std::move(*image);
        }
        if (k % thumbnail::batch == thumbnail::batch - 1 || k + 1 == missing.size()) publish(images);
    }
    renderer.finishPass();
}

ThumbnailWorker::ThumbnailWorker(std::shared_ptr<ThumbnailRenderer> renderer, std::filesystem::path folder)
    : renderer_(std::move(renderer)), folder_(std::move(folder)), queue_(std::make_unique<SerialExecutor>()) {
    queue_->post(becomeThumbnailThread);
}

ThumbnailWorker::~ThumbnailWorker() { stop(); }

void ThumbnailWorker::stop() {
    stopping_ = true;
    queue_.reset();  // joins after the render in hand
}

void ThumbnailWorker::renderAll(AppModel& model) {
    if (!queue_) return;
    auto entries = thumbnailEntries(catalog(), model.paletteOverride());
    QPointer<AppModel> target(&model);
    auto publish = [target](const ThumbnailMap& images) {
        QMetaObject::invokeMethod(
            target, [target, images] { if (target) target->setThumbnails(images); }, Qt::QueuedConnection);
    };
    queue_->post([this, entries = std::move(entries), publish] {
        runThumbnailPass(entries, folder_, *renderer_, publish, &stopping_);
    });
}

std::function<void()> applicationThumbnailHook() {
    auto worker = std::make_shared<ThumbnailWorker>(std::make_shared<SnapshotThumbnailRenderer>(), thumbnailFolder());
    if (QCoreApplication* app = QCoreApplication::instance())
        QObject::connect(app, &QCoreApplication::aboutToQuit, app, [weak = std::weak_ptr(worker)] {
            if (const auto w = weak.lock()) w->stop();
        });
    return [worker] { worker->renderAll(AppModel::shared()); };
}

}  // namespace quellton
