#include "SystemWallpaper.h"

#include <unistd.h>

#include <QDir>
#include <QFileInfo>
#include <QImageWriter>
#include <QJsonDocument>
#include <QJsonObject>
#include <QStandardPaths>

#include <algorithm>

#include "AppModel.h"
#include "ProcessWide.h"
#include "SerialExecutor.h"
#include "ThreadPriority.h"

namespace quellton {

namespace {

// Every entry goes, whatever made it; an entry that cannot be deleted stays.
void emptyFolder(const QString& folder) {
    const QDir dir(folder);
    for (const QFileInfo& entry : dir.entryInfoList(QDir::AllEntries | QDir::NoDotAndDotDot | QDir::Hidden | QDir::System)) {
        if (entry.isDir() && !entry.isSymLink())
            QDir(entry.filePath()).removeRecursively();
        else
            QFile::remove(entry.filePath());
    }
}

}  // namespace

// One run's work for the background thread, copied whole so the run needs nothing else.
struct SystemWallpaper::Run {
    Visualizer visualizer;
    Palette palette;
    std::vector<ScreenInfo> screens;
    QString folder;
    std::shared_ptr<StillRenderer> renderer;
    std::shared_ptr<Clock> clock;

    std::vector<ScreenPicture> execute() const {
        lowerThisThreadsPriority();  // a chore: the live pictures come first
        QDir().mkpath(folder);
        emptyFolder(folder);
        std::vector<ScreenPicture> written;
        for (std::size_t i = 0; i < screens.size(); ++i) {
            const std::optional<QImage> image = renderer->render(visualizer, stillSize(screens[i]), palette);
            if (!image) continue;
            const QString file = QDir(folder).filePath(fileName(visualizer.id, i, std::int64_t(clock->now())));
            QImageWriter writer(file, "jpeg");
            writer.setQuality(jpegQuality);
            if (writer.write(*image)) written.push_back({screens[i], file});
        }
        renderer->finished();
        return written;
    }
};

SystemWallpaper& SystemWallpaper::shared() {
    return ProcessWide<SystemWallpaper>::instance(
        [] { return std::make_unique<SystemWallpaper>(AppModel::shared(), defaultSystemWallpaperServices()); });
}

void SystemWallpaper::stopShared() {
    if (ProcessWide<SystemWallpaper>::made()) shared().worker_.reset();
}

SystemWallpaper::SystemWallpaper(const AppModel& model, SystemWallpaperServices services)
    : model_(model),
      services_(std::move(services)),
      self_(std::make_shared<SystemWallpaper*>(this)),
      worker_(std::make_unique<SerialExecutor>()) {}

SystemWallpaper::~SystemWallpaper() { worker_.reset(); }  // before the services a running job uses

QString SystemWallpaper::standardFolder() {
    return QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) + QStringLiteral("/Quellton/Hintergrund");
}

PixelSize SystemWallpaper::stillSize(const ScreenInfo& screen) {
    return {std::min(screen.geometry.width() * screen.scale, maxWidth),
            std::min(screen.geometry.height() * screen.scale, maxHeight)};
}

QString SystemWallpaper::fileName(const std::string& id, std::size_t screenIndex, std::int64_t seconds) {
    return QStringLiteral("%1-%2-%3.jpg").arg(QString::fromStdString(id)).arg(screenIndex).arg(seconds);
}

void SystemWallpaper::schedule() {
    if (!model_.syncSystemWallpaper() || !model_.ready()) return;
    pending_ = services_.mainQueue->after(quietSeconds, [self = std::weak_ptr(self_)] {
        if (const auto alive = self.lock()) (*alive)->apply();
    });
}

void SystemWallpaper::apply() {
    pending_.reset();
    if (!services_.picture) {
        if (!std::exchange(toldNoAdapter_, true))
            services_.log("Quellton: Das Schreibtischbild dieser Arbeitsumgebung (XDG_CURRENT_DESKTOP=" +
                          services_.desktop.toStdString() + ") kann Quellton nicht setzen; es bleibt, wie es ist.");
        return;
    }
    if (!worker_) return;  // the process is ending
    const Visualizer& v = model_.current();
    const auto index = std::size_t(model_.paletteOverride().value_or(v.palette));
    rememberOriginal();
    Run run{v, Palette::all().at(index), services_.screens(), services_.folder, services_.renderer, services_.clock};
    worker_->post([run = std::move(run), queue = services_.mainQueue, self = std::weak_ptr(self_)] {
        queue->post([stills = run.execute(), self] {
            if (const auto alive = self.lock()) (*alive)->show(stills);
        });
    });
}

void SystemWallpaper::show(const std::vector<ScreenPicture>& stills) {
    // The user may have turned the option off while the stills were being made.
    if (!model_.syncSystemWallpaper() || stills.empty()) return;
    services_.picture->show(stills);
}

void SystemWallpaper::rememberOriginal() {
    if (!services_.settings->string(originalKey).isEmpty()) return;
    const std::vector<ScreenInfo> screens = services_.screens();
    if (screens.empty()) return;
    const std::optional<QUrl> picture = services_.picture->current(screens.front());
    if (!picture) return;
    // One of our own stills, left from an earlier run, is not the user's picture.
    if (picture->toLocalFile().startsWith(services_.folder)) return;
    services_.settings->set(originalKey, picture->toString(QUrl::FullyEncoded));
    const QJsonObject shown = QJsonObject::fromVariantMap(services_.picture->presentation(screens));
    services_.settings->set(presentationKey, QString::fromUtf8(QJsonDocument(shown).toJson(QJsonDocument::Compact)));
}

void SystemWallpaper::restoreOriginal() {
    pending_.reset();
    const QString stored = services_.settings->string(originalKey);
    if (stored.isEmpty() || !services_.picture) return;
    const QUrl picture(stored, QUrl::StrictMode);
    if (!picture.isValid()) return;
    // Remembered by an older version, or damaged: the picture alone comes back.
    const QJsonDocument shown = QJsonDocument::fromJson(services_.settings->string(presentationKey).toUtf8());
    services_.picture->restore(picture, shown.object().toVariantMap(), services_.screens());
}

}  // namespace quellton
