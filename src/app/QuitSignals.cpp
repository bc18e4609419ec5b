#include "QuitSignals.h"

#include <fcntl.h>
#include <signal.h>
#include <sys/socket.h>
#include <unistd.h>

#include <QSocketNotifier>

namespace quellton {

namespace {

int writeEnd = -1;

void onSignal(int number) {
    const char byte = static_cast<char>(number);
    [[maybe_unused]] const ssize_t written = ::write(writeEnd, &byte, 1);
}

constexpr int quitSignals[] = {SIGTERM, SIGINT, SIGHUP};

}  // namespace

QuitSignals::QuitSignals(QObject* parent) : QObject(parent) {
    if (::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0, fds_) != 0) return;
    writeEnd = fds_[0];
    auto* notifier = new QSocketNotifier(fds_[1], QSocketNotifier::Read, this);
    connect(notifier, &QSocketNotifier::activated, this, [this] {
        char bytes[16];
        while (::read(fds_[1], bytes, sizeof bytes) > 0) {
        }
        emit quitRequested();
    });
    struct sigaction action {};
    action.sa_handler = onSignal;
    sigemptyset(&action.sa_mask);
    action.sa_flags = SA_RESTART;
    for (int number : quitSignals) sigaction(number, &action, nullptr);
}

QuitSignals::~QuitSignals() {
    struct sigaction action {};
    action.sa_handler = SIG_DFL;
    for (int number : quitSignals) sigaction(number, &action, nullptr);
    writeEnd = -1;
    for (int fd : fds_) {
        if (fd >= 0) ::close(fd);
    }
}

}  // namespace quellton
