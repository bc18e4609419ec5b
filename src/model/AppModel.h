#pragma once

#include <QImage>
#include <QObject>
#include <QString>
#include <QStringList>

#include <functional>
#include <map>
#include <optional>
#include <random>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "ModelServices.h"
#include "RenderSettings.h"
#include "Visualizer.h"

class QTimer;

namespace quellton {

// The one observable application state: settings and their persistence, the selection and
// the Mix rotation. Main thread only; renderers see it through the RenderSettings snapshot.
//
// The C++ accessors use the model's own types; the Qt properties show the same values in
// types QML understands (an empty hover id and palette -1 stand for "none").
class AppModel : public QObject {
    Q_OBJECT
    Q_PROPERTY(QString currentID READ currentIDText WRITE setCurrentIDText NOTIFY currentIDChanged)
    Q_PROPERTY(QString hoverID READ hoverIDText WRITE setHoverIDText NOTIFY hoverIDChanged)
    Q_PROPERTY(QStringList mix READ mixList WRITE setMixList NOTIFY mixChanged)
    Q_PROPERTY(bool mixEnabled READ mixEnabled WRITE setMixEnabled NOTIFY mixEnabledChanged)
    Q_PROPERTY(double mixInterval READ mixInterval WRITE setMixInterval NOTIFY mixIntervalChanged)
    Q_PROPERTY(bool mixOnBeat READ mixOnBeat WRITE setMixOnBeat NOTIFY mixOnBeatChanged)
    Q_PROPERTY(int paletteOverride READ paletteIndex WRITE setPaletteIndex NOTIFY paletteOverrideChanged)
    Q_PROPERTY(double reactivity READ reactivity WRITE setReactivity NOTIFY reactivityChanged)
    Q_PROPERTY(double smoothing READ smoothing WRITE setSmoothing NOTIFY smoothingChanged)
    Q_PROPERTY(QString quality READ qualityText WRITE setQualityText NOTIFY qualityChanged)
    Q_PROPERTY(int fps READ fps WRITE setFps NOTIFY fpsChanged)
    Q_PROPERTY(bool allScreens READ allScreens WRITE setAllScreens NOTIFY allScreensChanged)
    Q_PROPERTY(bool paused READ paused WRITE setPaused NOTIFY pausedChanged)
    Q_PROPERTY(bool syncSystemWallpaper READ syncSystemWallpaper WRITE setSyncSystemWallpaper
                   NOTIFY syncSystemWallpaperChanged)
    Q_PROPERTY(bool launchAtLogin READ launchAtLogin WRITE setLaunchAtLogin NOTIFY launchAtLoginChanged)
    Q_PROPERTY(bool hearing READ hearing NOTIFY hearingChanged)
    Q_PROPERTY(bool ready READ ready NOTIFY readyChanged)

public:
    // Loads every setting from `services.settings` and publishes the snapshot; writes nothing.
    explicit AppModel(ModelServices services, QObject* parent = nullptr);
    ~AppModel() override;

    // The user's settings file, the one store every part reads and writes it through.
    const std::shared_ptr<SettingsStore>& settingsStore() const { return services.settings; }
    // The process-wide instance with the user's settings file and the platform services.
    static AppModel& shared();

    // 64-bit FNV-1a of the UTF-8 bytes, in lower-case base 36.
    static std::string stableHash(std::string_view text);

    const std::string& currentID() const { return currentID_; }
    void setCurrentID(const std::string& id);
    const std::optional<std::string>& hoverID() const { return hoverID_; }
    void setHoverID(std::optional<std::string> id);
    const std::set<std::string>& mix() const { return mix_; }
    void setMix(std::set<std::string> ids);
    bool mixEnabled() const { return mixEnabled_; }
    void setMixEnabled(bool on);
    double mixInterval() const { return mixInterval_; }
    void setMixInterval(double seconds);
    bool mixOnBeat() const { return mixOnBeat_; }
    void setMixOnBeat(bool on);
    std::optional<int> paletteOverride() const { return paletteOverride_; }
    void setPaletteOverride(std::optional<int> index);
    double reactivity() const { return reactivity_; }
    void setReactivity(double strength);
    double smoothing() const { return smoothing_; }
    void setSmoothing(double amount);
    Quality quality() const { return quality_; }
    void setQuality(Quality quality);
    int fps() const { return fps_; }
    void setFps(int fps);
    bool allScreens() const { return allScreens_; }
    void setAllScreens(bool on);
    bool paused() const { return paused_; }
    void setPaused(bool on);
    bool syncSystemWallpaper() const { return syncSystemWallpaper_; }
    void setSyncSystemWallpaper(bool on);
    bool launchAtLogin() const { return launchAtLogin_; }
    void setLaunchAtLogin(bool on);
    bool hearing() const { return hearing_; }
    bool ready() const { return ready_; }
    // The gallery's stills by visualizer id, replaced whole by every publication of a thumbnail pass.
    const std::map<std::string, QImage>& thumbnails() const { return thumbnails_; }
    void setThumbnails(std::map<std::string, QImage> images);

    // Installed by the wallpaper controller; called on every assignment of allScreens.
    void setOnScreensChanged(std::function<void()> callback) { onScreensChanged = std::move(callback); }

    // Mix bookkeeping: time of the last switch or Mix switch-on, and the queue of upcoming ids.
    double mixStarted() const { return mixStarted_; }
    const std::vector<std::string>& mixOrder() const { return mixOrder_; }
    // The repeating tick timer once start() ran.
    const QTimer* timer() const { return timer_; }

    // The visualizer of currentID, or the first of the catalog when there is none.
    const Visualizer& current() const;
    Q_INVOKABLE void next();
    Q_INVOKABLE void previous();
    Q_INVOKABLE void random();
    void toggleMix(const std::string& id);
    Q_INVOKABLE void toggleInMix(const QString& id) { toggleMix(id.toStdString()); }

    // Background compilation (current visualization first), then the 0.2 s tick.
    void start();
    // One step of the tick: `hearing` and the Mix switch.
    void tick();
    // Hands the current values to the renderers.
    void publish();

    // The Qt-typed faces of the properties.
    QString currentIDText() const { return QString::fromStdString(currentID_); }
    void setCurrentIDText(const QString& id) { setCurrentID(id.toStdString()); }
    QString hoverIDText() const { return hoverID_ ? QString::fromStdString(*hoverID_) : QString(); }
    void setHoverIDText(const QString& id);
    QStringList mixList() const;
    void setMixList(const QStringList& ids);
    int paletteIndex() const { return paletteOverride_.value_or(-1); }
    void setPaletteIndex(int index) { setPaletteOverride(index < 0 ? std::nullopt : std::optional(index)); }
    QString qualityText() const;
    void setQualityText(const QString& label);

signals:
    void currentIDChanged();
    void hoverIDChanged();
    void mixChanged();
    void mixEnabledChanged();
    void mixIntervalChanged();
    void mixOnBeatChanged();
    void paletteOverrideChanged();
    void reactivityChanged();
    void smoothingChanged();
    void qualityChanged();
    void fpsChanged();
    void allScreensChanged();
    void pausedChanged();
    void syncSystemWallpaperChanged();
    void launchAtLoginChanged();
    void hearingChanged();
    void readyChanged();
    void thumbnailsChanged();

private:
    void load();
    bool mixActive() const;
    void writeMix();
    void schedule();
    // Stores `value`, runs the side effects, and notifies only for a real change.
    template <typename T, typename Effects>
    void assign(T& field, T value, void (AppModel::*changed)(), Effects effects);
    // Run-time flags without side effects.
    void setHearing(bool on);
    void setReady(bool on);

    ModelServices services;
    std::mt19937_64 randomness{std::random_device{}()};

    std::string currentID_;
    std::optional<std::string> hoverID_;
    std::set<std::string> mix_;
    bool mixEnabled_ = false;
    double mixInterval_ = 60;
    bool mixOnBeat_ = true;
    std::optional<int> paletteOverride_;
    double reactivity_ = 1.0;
    double smoothing_ = 0.15;
    Quality quality_ = Quality::balanced;
    int fps_ = 60;
    bool allScreens_ = true;
    bool paused_ = false;
    bool syncSystemWallpaper_ = true;
    bool frameLog_ = false;
    bool launchAtLogin_ = false;
    bool hearing_ = false;
    bool ready_ = false;
    std::map<std::string, QImage> thumbnails_;
    std::function<void()> onScreensChanged;
    double mixStarted_ = 0;
    std::vector<std::string> mixOrder_;
    QTimer* timer_ = nullptr;
};

}  // namespace quellton
