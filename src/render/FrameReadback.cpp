#include "FrameReadback.h"

#include <epoxy/gl.h>

#include <algorithm>

namespace quellton {

void FrameMailbox::post(QImage frame) {
    std::lock_guard guard(lock_);
    frame_ = std::move(frame);
    ++serial_;
    if (receiver_) receiver_();
}

std::pair<QImage, long> FrameMailbox::latest() const {
    std::lock_guard guard(lock_);
    return {frame_, serial_};
}

void FrameMailbox::setReceiver(std::function<void()> receiver) {
    std::lock_guard guard(lock_);
    receiver_ = std::move(receiver);
}

FrameReadback::FrameReadback(std::shared_ptr<FrameMailbox> mailbox) : mailbox_(std::move(mailbox)) {}

FrameReadback::~FrameReadback() {
    for (Slot& slot : slots_) release(slot);
}

void FrameReadback::release(Slot& slot) {
    if (slot.fence && GlName::hasCurrentContext()) glDeleteSync(GLsync(slot.fence));
    slot.fence = nullptr;
}

void FrameReadback::capture(const RenderTarget& target) {
    collect();
    const auto free = std::ranges::find_if(slots_, [](const Slot& s) { return s.fence == nullptr; });
    if (free == slots_.end()) {
        ++counts_.skipped;
        return;
    }
    Slot& slot = *free;
    const std::size_t bytes = std::size_t(target.width) * std::size_t(target.height) * 4;
    if (!slot.buffer) slot.buffer = makeBuffer();
    glBindBuffer(GL_PIXEL_PACK_BUFFER, slot.buffer.id());
    if (slot.capacity != bytes) {
        glBufferData(GL_PIXEL_PACK_BUFFER, GLsizeiptr(bytes), nullptr, GL_STREAM_READ);
        slot.capacity = bytes;
    }
    glBindFramebuffer(GL_READ_FRAMEBUFFER, target.framebuffer.id());
    glPixelStorei(GL_PACK_ALIGNMENT, 4);
    glReadPixels(0, 0, target.width, target.height, GL_BGRA, GL_UNSIGNED_BYTE, nullptr);
    glBindBuffer(GL_PIXEL_PACK_BUFFER, 0);
    glBindFramebuffer(GL_READ_FRAMEBUFFER, 0);
    slot.fence = glFenceSync(GL_SYNC_GPU_COMMANDS_COMPLETE, 0);
    glFlush();  // so the fence is on its way and signals without a wait
    slot.width = target.width;
    slot.height = target.height;
    slot.order = ++counts_.started;
}

// Polls the fences oldest first with a zero timeout; only the newest finished frame is worth showing.
void FrameReadback::collect() {
    Slot* newest = nullptr;
    for (;;) {
        Slot* oldest = nullptr;
        for (Slot& slot : slots_)
            if (slot.fence && (!oldest || slot.order < oldest->order)) oldest = &slot;
        if (!oldest) break;
        const GLenum state = glClientWaitSync(GLsync(oldest->fence), 0, 0);
        if (state != GL_ALREADY_SIGNALED && state != GL_CONDITION_SATISFIED) break;
        release(*oldest);
        newest = oldest;
    }
    if (newest) deliver(*newest);
}

// Rows come bottom first; the copy turns them upright and makes every pixel opaque.
void FrameReadback::deliver(Slot& slot) {
    glBindBuffer(GL_PIXEL_PACK_BUFFER, slot.buffer.id());
    const auto* pixels = static_cast<const std::uint32_t*>(
        glMapBufferRange(GL_PIXEL_PACK_BUFFER, 0, GLsizeiptr(slot.capacity), GL_MAP_READ_BIT));
    if (pixels) {
        QImage image(slot.width, slot.height, QImage::Format_RGB32);
        for (int y = 0; y < slot.height; ++y) {
            const std::uint32_t* from = pixels + std::size_t(slot.height - 1 - y) * std::size_t(slot.width);
            auto* to = reinterpret_cast<std::uint32_t*>(image.scanLine(y));
            for (int x = 0; x < slot.width; ++x) to[x] = from[x] | 0xff000000u;
        }
        glUnmapBuffer(GL_PIXEL_PACK_BUFFER);
        ++counts_.delivered;
        mailbox_->post(std::move(image));
    }
    glBindBuffer(GL_PIXEL_PACK_BUFFER, 0);
}

}  // namespace quellton
