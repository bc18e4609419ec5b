#include "RenderThread.h"

#include <epoxy/gl.h>
#include <pthread.h>

#include <algorithm>
#include <future>

#include "FrameReadback.h"
#include "ProcessWide.h"
#include "ShaderLibrary.h"
#include "VisualRenderer.h"
#include "WindowOverlay.h"

namespace quellton {

RenderThread& RenderThread::shared() {
    return ProcessWide<RenderThread>::instance([] { return std::make_unique<RenderThread>(); });
}

void RenderThread::stopShared() {
    if (ProcessWide<RenderThread>::made()) shared().stop();
}

RenderThread::RenderThread() {
    thread_ = std::thread([this] { run(); });
    started_.acquire();
}

RenderThread::~RenderThread() { stop(); }

void RenderThread::stop() {
    {
        std::lock_guard guard(lock_);
        stopping_ = true;
    }
    wake_.notify_all();
    if (thread_.joinable()) thread_.join();
    stopped_ = true;
}

void RenderThread::post(std::function<void()> task) {
    {
        std::lock_guard guard(lock_);
        tasks_.push_back(std::move(task));
    }
    wake_.notify_all();
}

std::shared_ptr<CanvasLink> RenderThread::add(std::shared_ptr<VisualRenderer> renderer, std::uintptr_t window,
                                              std::shared_ptr<WindowOverlay> overlay) {
    auto link = std::make_shared<CanvasLink>();
    link->renderer = renderer;
    link->window = window;
    link->overlay = std::move(overlay);
    return enlist(std::move(link));
}

std::shared_ptr<CanvasLink> RenderThread::addOffscreen(std::shared_ptr<VisualRenderer> renderer,
                                                      std::shared_ptr<FrameMailbox> frames) {
    auto link = std::make_shared<CanvasLink>();
    link->renderer = renderer;
    link->readback = std::make_unique<FrameReadback>(std::move(frames));
    return enlist(std::move(link));
}

std::shared_ptr<CanvasLink> RenderThread::enlist(std::shared_ptr<CanvasLink> link) {
    post([this, link] { links_.push_back(link); });
    return link;
}

void RenderThread::remove(const std::shared_ptr<CanvasLink>& link) {
    if (stopped_) {  // the context is gone; what is left dies with the process
        link->readback.reset();
        link->drawable.reset();
        link->surface.reset();
        return;
    }
    std::promise<void> done;
    post([this, link, &done] {
        std::erase(links_, link);
        if (context_) context_->makeCurrent();  // the drawable and the renderer's textures belong to this context
        if (const auto renderer = link->renderer.lock()) renderer->releaseGpuResources();
        if (link->overlay) link->overlay->releaseGpuResources();
        link->readback.reset();
        link->drawable.reset();
        link->surface.reset();
        done.set_value();
    });
    done.get_future().wait();
}

void RenderThread::run() {
    // Linux keeps 15 characters of a thread name: the end of the full one tells the threads apart.
    const std::string name = QUELLTON_APP_ID ".render";
    pthread_setname_np(pthread_self(), name.substr(name.size() - 15).c_str());
    context_ = ShaderLibrary::shared().provider().createShared();
    if (context_ && context_->makeCurrent()) {
        vertexArray_ = makeVertexArray();
        glBindVertexArray(vertexArray_.id());
    }
    started_.release();

    std::unique_lock lock(lock_);
    while (!stopping_) {
        if (!tasks_.empty()) {
            auto tasks = std::move(tasks_);
            tasks_.clear();
            lock.unlock();
            for (auto& task : tasks) task();
            lock.lock();
            continue;
        }
        if (links_.empty()) {
            wake_.wait(lock, [this] { return stopping_ || !tasks_.empty(); });
            continue;
        }
        const double earliest = std::min_element(links_.begin(), links_.end(), [](const auto& a, const auto& b) {
                                    return a->nextDue < b->nextDue;
                                })->get()->nextDue;
        const double wait = earliest - hostTimeNow();
        if (wait > 0) {
            wake_.wait_for(lock, std::chrono::duration<double>(wait), [this] { return stopping_ || !tasks_.empty(); });
            continue;
        }
        lock.unlock();
        const double now = hostTimeNow();
        for (const auto& link : std::vector(links_))
            if (link->nextDue <= now) draw(*link, now);
        lock.lock();
    }
    lock.unlock();
    if (context_) context_->makeCurrent();
    links_.clear();
    vertexArray_.reset();
    context_.reset();
}

void RenderThread::draw(CanvasLink& link, double now) {
    const auto renderer = link.renderer.lock();
    if (!renderer || !context_) {
        link.nextDue = now + 0.1;
        return;
    }
    if (!link.readback && !link.surface && !link.surfaceFailed) {
        link.surface = ShaderLibrary::shared().provider().createWindowSurface(link.window);
        link.surfaceFailed = !link.surface;
    }
    if (link.surface) link.surface->resize(link.pixelWidth, link.pixelHeight);
    const bool current = link.readback ? context_->makeCurrent() : link.surface && context_->makeCurrent(*link.surface);
    if (!current) {
        link.nextDue = now + 0.5;
        return;
    }
    if (!link.drawable) link.drawable = RenderTarget::create(16, 16, GL_RGBA8);
    if (!link.drawable) return;

    const VisualRenderer::Frame frame = renderer->render(now, *link.drawable);
    if (frame.drawn && link.readback) {
        link.readback->capture(*link.drawable);
        ++link.frames;
    } else if (frame.drawn) {
        link.hasFrame = true;
        present(link);
        ++link.frames;
    } else if (link.hasFrame && (link.repaint || (link.overlay && link.overlay->changed())) &&
               !renderer->inputs().copy().hidden) {
        // Paused: the last frame again, with what changed over it.
        present(link);
    }
    if (frame.wanted.width != link.drawable->width || frame.wanted.height != link.drawable->height)
        if (auto resized = RenderTarget::create(frame.wanted.width, frame.wanted.height, GL_RGBA8)) {
            link.drawable = std::move(resized);
            link.hasFrame = false;
        }

    const double period = 1.0 / std::max(renderer->fps(), 1);
    link.nextDue = std::max(link.nextDue + period, now + period * 0.5);
    if (link.nextDue > now + period) link.nextDue = now + period;
}

void RenderThread::present(CanvasLink& link) {
    link.repaint = false;
    // The drawable is stretched over the window, as a lower resolution needs.
    glBindFramebuffer(GL_READ_FRAMEBUFFER, link.drawable->framebuffer.id());
    glBindFramebuffer(GL_DRAW_FRAMEBUFFER, 0);
    glBlitFramebuffer(0, 0, link.drawable->width, link.drawable->height, 0, 0, link.pixelWidth, link.pixelHeight,
                      GL_COLOR_BUFFER_BIT, GL_LINEAR);
    glBindFramebuffer(GL_FRAMEBUFFER, 0);
    if (link.overlay) link.overlay->draw(link.pixelWidth, link.pixelHeight);
    context_->swapBuffers(*link.surface);
}

}  // namespace quellton
