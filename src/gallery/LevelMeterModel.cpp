#include "LevelMeterModel.h"

#include "AudioSpectrum.h"

namespace quellton {

LevelMeterModel::LevelMeterModel(QObject* parent)
    : LevelMeterModel([] { return AudioSpectrum::shared().frame(); }, parent) {}

LevelMeterModel::LevelMeterModel(FrameSource source, QObject* parent) : QObject(parent), source_(std::move(source)) {
    // Rounded up, so the rate stays at or below the limit.
    timer_.setInterval((1000 + maxRedrawsPerSecond - 1) / maxRedrawsPerSecond);
    timer_.setTimerType(Qt::PreciseTimer);
    connect(&timer_, &QTimer::timeout, this, &LevelMeterModel::redraw);
}

void LevelMeterModel::setStrength(double strength) {
    if (strength == strength_) return;
    strength_ = strength;
    emit strengthChanged();
    if (running()) redraw();
}

void LevelMeterModel::setRunning(bool on) {
    if (on == running()) return;
    if (on) {
        redraw();
        timer_.start();
    } else {
        timer_.stop();
    }
    emit runningChanged();
}

QList<qreal> LevelMeterModel::levels() const { return {levels_[0], levels_[1], levels_[2], levels_[3]}; }

QStringList LevelMeterModel::names() {
    return {QStringLiteral("Bass"), QStringLiteral("Mitten"), QStringLiteral("Höhen"), QStringLiteral("Schlag")};
}

std::array<float, 4> LevelMeterModel::levelsOf(const AudioFrame& frame, float strength) {
    const AudioFrame shaped = frame.shaped(strength);
    return {shaped.bass, shaped.mid, shaped.high, shaped.beat};
}

void LevelMeterModel::redraw() {
    const std::array<float, 4> now = levelsOf(source_(), float(strength_));
    if (now == levels_) return;
    levels_ = now;
    emit levelsChanged();
}

}  // namespace quellton
