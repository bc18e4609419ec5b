#include "ShaderLibrary.h"

#include <QCoreApplication>
#include <QMetaObject>

#include <epoxy/gl.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <unordered_map>

#include "Catalog.h"
#include "ProcessWide.h"
#include "ShaderSource.h"
#include "ThreadPriority.h"
#include "gl/EglProvider.h"

namespace quellton {

namespace {

std::atomic<unsigned> nextGeneration{1};

// One context per thread and library, with the vertex array every draw of that context uses.
struct ThreadContext {
    std::unique_ptr<GlContext> context;
    GlName vertexArray;

    ThreadContext(std::unique_ptr<GlContext> c) : context(std::move(c)) {}
    ThreadContext(ThreadContext&&) = default;
    ~ThreadContext() {
        // The vertex array belongs to this context alone.
        if (context && vertexArray && context->makeCurrent()) vertexArray.reset();
    }
};
using ThreadContexts = std::unordered_map<unsigned, ThreadContext>;
// The shared library outlives the main thread's thread-locals at exit: it finds the map through a
// plain pointer, which its owner clears when the thread's locals go.
thread_local ThreadContexts* threadContexts = nullptr;
thread_local unsigned currentGeneration = 0;

struct ThreadContextsOwner {
    ThreadContexts contexts;
    ThreadContextsOwner() { threadContexts = &contexts; }
    ~ThreadContextsOwner() {
        threadContexts = nullptr;
        currentGeneration = 0;
    }
};

ThreadContexts& ownThreadContexts() {
    thread_local ThreadContextsOwner owner;
    return owner.contexts;
}

std::function<std::unique_ptr<GlContextProvider>()>& providerFactory() {
    static std::function<std::unique_ptr<GlContextProvider>()> factory = [] {
        std::string error;
        auto egl = EglProvider::headless(&error);
        if (!egl) std::fprintf(stderr, "Quellton: Keine GPU verfügbar (%s).\n", error.c_str());
        return std::unique_ptr<GlContextProvider>(std::move(egl));
    };
    return factory;
}

[[noreturn]] void fatal(const char* what) {
    std::fprintf(stderr, "Quellton: %s\n", what);
    std::abort();
}

// The info log of a shader or a program, through the matching pair of query functions.
template <class GetLength, class GetLog>
std::string infoLog(GLuint object, GetLength getLength, GetLog getLog) {
    GLint length = 0;
    getLength(object, GL_INFO_LOG_LENGTH, &length);
    std::string log(std::size_t(std::max(length, 1)), '\0');
    getLog(object, length, nullptr, log.data());
    log.resize(log.find('\0') == std::string::npos ? log.size() : log.find('\0'));
    return log;
}

GLuint compileShader(GLenum stage, std::string_view source, std::string& log) {
    GLuint shader = glCreateShader(stage);
    const char* text = source.data();
    const GLint length = GLint(source.size());
    glShaderSource(shader, 1, &text, &length);
    glCompileShader(shader);
    GLint ok = GL_FALSE;
    glGetShaderiv(shader, GL_COMPILE_STATUS, &ok);
    if (ok) return shader;
    log = infoLog(shader, glGetShaderiv, glGetShaderInfoLog);
    glDeleteShader(shader);
    return 0;
}

void postToMainThread(std::function<void()> work) {
    if (QCoreApplication* app = QCoreApplication::instance())
        QMetaObject::invokeMethod(app, std::move(work), Qt::QueuedConnection);
    else
        work();
}

}  // namespace

void ShaderLibrary::useProvider(std::function<std::unique_ptr<GlContextProvider>()> factory) {
    providerFactory() = std::move(factory);
}

ShaderLibrary& ShaderLibrary::shared() {
    return ProcessWide<ShaderLibrary>::instance([] { return std::make_unique<ShaderLibrary>(providerFactory()()); });
}

ShaderLibrary::ShaderLibrary(std::unique_ptr<GlContextProvider> provider)
    : provider_(std::move(provider)), generation_(nextGeneration++) {
    if (!provider_) fatal("Ohne OpenGL-3.3-Gerät kann Quellton nicht zeichnen.");
    root_ = provider_->createShared();
    if (!root_ || !root_->makeCurrent()) fatal("Ohne OpenGL-3.3-Gerät kann Quellton nicht zeichnen.");
    std::string log;
    vertexShader_ = compileShader(GL_VERTEX_SHADER, ShaderSource::vertex, log);
    if (!vertexShader_) fatal(log.c_str());
    auto present = link(ShaderSource::presentSource(), false, log);
    if (!present) fatal(log.c_str());
    present_ = *present;
    glFinish();
    root_->doneCurrent();
}

ShaderLibrary::~ShaderLibrary() {
    stopBackgroundWork();
    releaseThreadContext();
}

void ShaderLibrary::stopBackgroundWork() {
    stopping_ = true;
    std::lock_guard guard(backgroundLock_);
    for (auto& t : background_)
        if (t.joinable()) t.join();
    background_.clear();
}

void ShaderLibrary::releaseThreadContext() {
    if (threadContexts) threadContexts->erase(generation_);
    if (currentGeneration == generation_) currentGeneration = 0;
}

bool ShaderLibrary::bindThreadContext() {
    if (currentGeneration == generation_) return true;
    ThreadContexts& contexts = ownThreadContexts();
    auto it = contexts.find(generation_);
    if (it == contexts.end()) {
        ThreadContext fresh(provider_->createShared());
        if (!fresh.context || !fresh.context->makeCurrent()) return false;
        fresh.vertexArray = makeVertexArray();
        glBindVertexArray(fresh.vertexArray.id());
        it = contexts.emplace(generation_, std::move(fresh)).first;
    } else if (!it->second.context->makeCurrent()) {
        return false;
    }
    currentGeneration = generation_;
    return true;
}

std::optional<Pipeline> ShaderLibrary::link(const std::string& fragmentSource, bool feedback, std::string& log) {
    GLuint fragment = compileShader(GL_FRAGMENT_SHADER, fragmentSource, log);
    if (!fragment) return std::nullopt;
    GLuint program = glCreateProgram();
    glAttachShader(program, vertexShader_);
    glAttachShader(program, fragment);
    glLinkProgram(program);
    glDetachShader(program, fragment);
    glDeleteShader(fragment);
    GLint ok = GL_FALSE;
    glGetProgramiv(program, GL_LINK_STATUS, &ok);
    if (!ok) {
        log = infoLog(program, glGetProgramiv, glGetProgramInfoLog);
        glDeleteProgram(program);
        return std::nullopt;
    }
    // GLSL 3.30 has no binding qualifiers: bind the blocks by name (absent blocks were optimised away).
    if (GLuint block = glGetUniformBlockIndex(program, "U"); block != GL_INVALID_INDEX) glUniformBlockBinding(program, block, 0);
    if (GLuint block = glGetUniformBlockIndex(program, "Spectrum"); block != GL_INVALID_INDEX)
        glUniformBlockBinding(program, block, 1);
    return Pipeline{program, feedback};
}

void ShaderLibrary::compile(const Visualizer& v, bool warm) {
    if (!bindThreadContext()) {
        std::lock_guard guard(failuresLock_);
        failures_[v.id] = "kein OpenGL-Kontext";
        return;
    }
    std::string log;
    const auto pipeline = link(ShaderSource::assemble(v), v.feedback, log);
    if (pipeline) {
        if (warm)
            warmUp(*pipeline);
        else
            glFlush();  // other contexts of the share group may use the program right away
        std::lock_guard guard(statesLock_);
        states_[v.id] = *pipeline;
    } else {
        std::lock_guard guard(failuresLock_);
        failures_[v.id] = log.empty() ? "unbekannter Fehler" : log;
    }
}

void ShaderLibrary::warmUp(const Pipeline& pipeline) {
    // llvmpipe translates a program to machine code at its first draw: one pixel here spares the
    // first live frame most of that stall. The finish also publishes the program to other contexts.
    thread_local std::optional<RenderTarget> plain, floating;
    std::optional<RenderTarget>& target = pipeline.feedback ? floating : plain;
    if (!target) target = RenderTarget::create(1, 1, pipeline.feedback ? GL_RGBA16F : GL_RGBA8);
    if (target) {
        target->bindForDrawing();
        pipeline.bind();
        drawFullScreenTriangle();
        glBindFramebuffer(GL_FRAMEBUFFER, 0);
    }
    glFinish();
}

void ShaderLibrary::compileInParallel(std::span<const Visualizer> entries, bool warm, bool behindLiveWork) {
    const unsigned workers = std::max(1u, std::min(std::thread::hardware_concurrency(), unsigned(entries.size())));
    std::atomic<std::size_t> next{0};
    std::vector<std::thread> threads;
    for (unsigned w = 0; w < workers; ++w)
        threads.emplace_back([&] {
            if (behindLiveWork) lowerThisThreadsPriority();
            for (std::size_t i; !stopping_ && (i = next++) < entries.size();) compile(entries[i], warm);
            releaseThreadContext();
        });
    for (auto& t : threads) t.join();
}

void ShaderLibrary::compileBlocking(std::span<const Visualizer> entries) { compileInParallel(entries, false); }

void ShaderLibrary::compileAllBlocking() { compileBlocking(catalog()); }

std::vector<std::string> ShaderLibrary::compileOrder(std::span<const Visualizer> entries,
                                                     const std::optional<std::string>& first) {
    std::vector<std::string> order;
    for (const Visualizer& v : entries) order.push_back(v.id);
    std::stable_partition(order.begin(), order.end(), [&](const std::string& id) { return first && id == *first; });
    return order;
}

void ShaderLibrary::compileAll(std::optional<std::string> first, std::function<void()> completion) {
    compileAll(catalog(), std::move(first), std::move(completion));
}

void ShaderLibrary::compileAll(std::vector<Visualizer> list, std::optional<std::string> first,
                               std::function<void()> completion) {
    std::lock_guard guard(backgroundLock_);
    background_.emplace_back([this, list = std::move(list), first = std::move(first), completion = std::move(completion)] {
        std::vector<Visualizer> entries;
        for (const std::string& id : compileOrder(list, first))
            entries.push_back(*std::find_if(list.begin(), list.end(), [&](const Visualizer& v) { return v.id == id; }));
        if (!entries.empty()) {
            compile(entries.front(), true);
            releaseThreadContext();
        }
        // The others wait behind the live picture and the gallery, which already can be drawn.
        compileInParallel(std::span(entries).subspan(entries.empty() ? 0 : 1), true, true);
        if (!stopping_ && completion) postToMainThread(completion);
    });
}

std::optional<Pipeline> ShaderLibrary::pipeline(std::string_view id) const {
    std::lock_guard guard(statesLock_);
    const auto it = states_.find(id);
    return it == states_.end() ? std::nullopt : std::optional(it->second);
}

std::map<std::string, std::string> ShaderLibrary::failures() const {
    std::lock_guard guard(failuresLock_);
    return failures_;
}

}  // namespace quellton
