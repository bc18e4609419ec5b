#pragma once

namespace quellton {

// Wall-clock time in seconds; the model's timing rules read it so tests can move time by hand.
class Clock {
public:
    virtual ~Clock() = default;
    virtual double now() = 0;
};

// Seconds since the Unix epoch, the same clock the spectrum analyser stamps `lastSignal` with.
class SystemClock final : public Clock {
public:
    double now() override;
};

}  // namespace quellton
