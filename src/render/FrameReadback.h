#pragma once

#include <QImage>

#include <array>
#include <cstddef>
#include <functional>
#include <memory>
#include <mutex>

#include "gl/GlObjects.h"

namespace quellton {

// The newest finished frame of an offscreen canvas, from the render thread to whoever shows it.
class FrameMailbox {
public:
    // Render thread: replaces the frame and tells the receiver.
    void post(QImage frame);
    // Any thread: the newest frame and its number (0 before the first).
    std::pair<QImage, long> latest() const;
    // Called on the render thread after each post. It runs under the mailbox's lock, so a receiver
    // that unsubscribes (an empty function) is never called afterwards; keep it to a wake-up.
    void setReceiver(std::function<void()> receiver);

private:
    mutable std::mutex lock_;
    QImage frame_;
    long serial_ = 0;
    std::function<void()> receiver_;
};

// Reads finished frames back to memory without ever waiting for the GPU: each frame is copied into
// one of a few pixel-buffer objects with a fence, and a buffer is mapped only on a later frame,
// once its fence has signalled. When every buffer is still in flight the frame is not read.
// Render thread only, with the drawing context current.
class FrameReadback {
public:
    static constexpr int ringSize = 3;

    explicit FrameReadback(std::shared_ptr<FrameMailbox> mailbox);
    ~FrameReadback();
    FrameReadback(const FrameReadback&) = delete;
    FrameReadback& operator=(const FrameReadback&) = delete;

    // Delivers the newest finished earlier frame, then starts reading `target`.
    void capture(const RenderTarget& target);

    struct Counts {
        long started = 0, delivered = 0, skipped = 0;
    };
    Counts counts() const { return counts_; }

private:
    struct Slot {
        GlName buffer;
        void* fence = nullptr;  // GLsync
        std::size_t capacity = 0;
        int width = 0, height = 0;
        long order = 0;  // when it was started; fences signal in that order
    };
    void collect();
    void deliver(Slot& slot);
    void release(Slot& slot);

    std::shared_ptr<FrameMailbox> mailbox_;
    std::array<Slot, ringSize> slots_;
    Counts counts_;
};

}  // namespace quellton
