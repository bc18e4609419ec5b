#pragma once

#include <mutex>

#include "AudioFrame.h"
#include "SpectrumAnalyzer.h"

namespace quellton {

// The record that crosses threads: the latest frame and the time of the last sound.
struct PublishedAudio {
    AudioFrame frame;
    double lastSignal = 0;
};

// PublishedAudio behind its lock; the lock is held only for the copy in or out.
class PublishedRecord {
public:
    void publish(const Analysis& a) {
        std::lock_guard guard(lock_);
        record_.frame = a.frame;
        if (!a.silent) record_.lastSignal = a.time;
    }
    void reset() {
        std::lock_guard guard(lock_);
        record_ = PublishedAudio{};
    }
    PublishedAudio get() const {
        std::lock_guard guard(lock_);
        return record_;
    }

private:
    mutable std::mutex lock_;
    PublishedAudio record_;
};

}  // namespace quellton
