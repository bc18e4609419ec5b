#pragma once

#include <QImage>

#include <atomic>
#include <filesystem>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "Palette.h"
#include "Visualizer.h"

namespace quellton {

class AppModel;
class SerialExecutor;

// Visualizer id -> its still in the gallery.
using ThumbnailMap = std::map<std::string, QImage>;

namespace thumbnail {
constexpr int width = 480, height = 270;
constexpr double time = 6.3;  // seconds into the animation
constexpr int batch = 12;     // new pictures per publication
}  // namespace thumbnail

// Draws one still: the offline renderer in the application, a counting stand-in in tests.
class ThumbnailRenderer {
public:
    virtual ~ThumbnailRenderer() = default;
    // Nothing when the visualization cannot be drawn (e.g. its shader failed to compile).
    virtual std::optional<QImage> render(const Visualizer& v, const Palette& palette) = 0;
    // After a pass, on the same thread: frees what the renders held.
    virtual void finishPass() {}
};

// ShaderLibrary::snapshot at the thumbnail size and time, without sound.
class SnapshotThumbnailRenderer : public ThumbnailRenderer {
public:
    std::optional<QImage> render(const Visualizer& v, const Palette& palette) override;
    void finishPass() override;
};

struct ThumbnailEntry {
    Visualizer visualizer;
    Palette palette;
};

// Every visualizer with the palette it is drawn in: the override when one is set, else its own.
std::vector<ThumbnailEntry> thumbnailEntries(std::span<const Visualizer> visualizers, std::optional<int> paletteOverride);
// "<id>-<palette id>-<stableHash(code)>.png": a changed shader or palette never reads a stale file.
std::string thumbnailFileName(const Visualizer& v, const Palette& palette);
// $XDG_CACHE_HOME/io.github.quellton.Quellton/Vorschau
std::filesystem::path thumbnailFolder();

// One pass on the calling thread: publishes what the cache holds, then renders the missing stills one
// by one, writing each to the cache and publishing after every twelfth and after the last.
// `cancelled` ends the pass between two renders.
void runThumbnailPass(std::span<const ThumbnailEntry> entries, const std::filesystem::path& folder,
                      ThumbnailRenderer& renderer, const std::function<void(const ThumbnailMap&)>& publish,
                      const std::atomic<bool>* cancelled = nullptr);

// The serial thumbnail queue: passes run one after another on a low-priority thread of their own.
class ThumbnailWorker {
public:
    ThumbnailWorker(std::shared_ptr<ThumbnailRenderer> renderer, std::filesystem::path folder);
    ~ThumbnailWorker();
    ThumbnailWorker(const ThumbnailWorker&) = delete;
    ThumbnailWorker& operator=(const ThumbnailWorker&) = delete;

    // Main thread: takes the catalog and the palette choice now and queues a pass whose
    // publications replace `model.thumbnails` on the model's thread.
    void renderAll(AppModel& model);
    // Finishes the render in hand and drops the rest; the driver must be idle before the process ends.
    void stop();

private:
    std::shared_ptr<ThumbnailRenderer> renderer_;
    std::filesystem::path folder_;
    std::atomic<bool> stopping_{false};
    std::unique_ptr<SerialExecutor> queue_;
};

// The model's renderThumbnails hook in the application: one worker with the offline renderer,
// stopped when the application quits.
std::function<void()> applicationThumbnailHook();

}  // namespace quellton
