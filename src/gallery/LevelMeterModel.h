#pragma once

#include <QList>
#include <QObject>
#include <QStringList>
#include <QTimer>
#include <QtQml/qqmlregistration.h>

#include <array>
#include <functional>

#include "AudioFrame.h"

namespace quellton {

// The reaction popover's level meter: while running, it takes the analyser's newest frame at most
// 30 times a second, shapes it with the meter's strength and offers bass, mids, highs and beat as
// `levels` (0…1). A new strength shows at once, without waiting for the next frame.
class LevelMeterModel : public QObject {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(double strength READ strength WRITE setStrength NOTIFY strengthChanged)
    Q_PROPERTY(bool running READ running WRITE setRunning NOTIFY runningChanged)
    Q_PROPERTY(QList<qreal> levels READ levels NOTIFY levelsChanged)
    Q_PROPERTY(QStringList names READ names CONSTANT)

public:
    using FrameSource = std::function<AudioFrame()>;
    static constexpr int maxRedrawsPerSecond = 30;

    // Reads the program's analyser.
    explicit LevelMeterModel(QObject* parent = nullptr);
    explicit LevelMeterModel(FrameSource source, QObject* parent = nullptr);

    double strength() const { return strength_; }
    void setStrength(double strength);
    bool running() const { return timer_.isActive(); }
    void setRunning(bool on);
    QList<qreal> levels() const;
    // "Bass", "Mitten", "Höhen", "Schlag": the bars in the order of `levels`.
    static QStringList names();

    // The four shown values of a frame shaped with `strength`; the frame's level is not shown.
    static std::array<float, 4> levelsOf(const AudioFrame& frame, float strength);

signals:
    void strengthChanged();
    void runningChanged();
    void levelsChanged();

private:
    void redraw();

    FrameSource source_;
    QTimer timer_;
    double strength_ = 1.0;
    std::array<float, 4> levels_{};
};

}  // namespace quellton
