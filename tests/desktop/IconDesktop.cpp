#include "IconDesktop.h"

#include <fcntl.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <QDir>

#include <chrono>
#include <cstdlib>
#include <thread>

extern char** environ;

namespace quellton::test {

Program::Program(const std::vector<std::string>& argv, const std::string& log) {
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, 1, log.c_str(), O_WRONLY | O_CREAT | O_APPEND, 0644);
    posix_spawn_file_actions_adddup2(&actions, 1, 2);
    std::vector<char*> args;
    for (const std::string& a : argv) args.push_back(const_cast<char*>(a.c_str()));
    args.push_back(nullptr);
    if (posix_spawnp(&pid_, args[0], &actions, nullptr, args.data(), environ) != 0) pid_ = -1;
    posix_spawn_file_actions_destroy(&actions);
}

Program::~Program() { stop(3000); }

Program::Program(Program&& other) noexcept : pid_(std::exchange(other.pid_, -1)) {}

Program& Program::operator=(Program&& other) noexcept {
    if (this != &other) {
        stop(3000);
        pid_ = std::exchange(other.pid_, -1);
    }
    return *this;
}

std::optional<int> Program::stop(int milliseconds) {
    if (pid_ <= 0) return std::nullopt;
    ::kill(pid_, SIGTERM);
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::milliseconds(milliseconds);
    for (int status = 0; std::chrono::steady_clock::now() < deadline;) {
        if (waitpid(pid_, &status, WNOHANG) == pid_) {
            pid_ = -1;
            return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
    }
    kill();
    return std::nullopt;
}

void Program::kill() {
    if (pid_ <= 0) return;
    ::kill(pid_, SIGKILL);
    waitpid(pid_, nullptr, 0);
    pid_ = -1;
}

bool eventually(const std::function<bool()>& condition, int milliseconds) {
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::milliseconds(milliseconds);
    while (!condition()) {
        if (std::chrono::steady_clock::now() > deadline) return false;
        std::this_thread::sleep_for(std::chrono::milliseconds(100));
    }
    return true;
}

double differing(const QImage& a, const QImage& b, const QRect& area, int tolerance) {
    long count = 0, all = 0;
    for (int y = area.top(); y <= area.bottom(); ++y)
        for (int x = area.left(); x <= area.right(); ++x, ++all) {
            const QRgb p = a.pixel(x, y), q = b.pixel(x, y);
            if (std::abs(qRed(p) - qRed(q)) > tolerance || std::abs(qGreen(p) - qGreen(q)) > tolerance ||
                std::abs(qBlue(p) - qBlue(q)) > tolerance)
                ++count;
        }
    return all ? double(count) / double(all) : 0.0;
}

int agreeing(const QImage& a, const QImage& b, const QRect& area, int tolerance) {
    const double share = 1.0 - differing(a, b, area, tolerance);
    return int(share * area.width() * area.height() + 0.5);
}

int selectionBlue(const QImage& image, const QRect& area) {
    int count = 0;
    for (int y = area.top(); y <= area.bottom(); ++y)
        for (int x = area.left(); x <= area.right(); ++x) {
            const QRgb p = image.pixel(x, y);
            if (qBlue(p) > 80 && qBlue(p) > qRed(p) + 40 && qBlue(p) > qGreen(p) + 15) ++count;
        }
    return count;
}

void keepShot(const QImage& image, const std::string& name) {
    const QByteArray folder = qgetenv("QUELLTON_SHOTS");
    if (folder.isEmpty() || image.isNull()) return;
    QDir().mkpath(QString::fromLocal8Bit(folder));
    image.save(QString::fromLocal8Bit(folder) + u'/' + QString::fromStdString(name) + QStringLiteral(".png"));
}

}  // namespace quellton::test
