#pragma once

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QThread>

#include <functional>

namespace quellton::test {

// Runs the event loop until the condition holds or the time is up; the condition's last value.
inline bool waitUntil(const std::function<bool()>& condition, int milliseconds = 15000) {
    QDeadlineTimer deadline(milliseconds);
    while (!condition()) {
        if (deadline.hasExpired()) return false;
        QCoreApplication::processEvents(QEventLoop::AllEvents, 20);
        QThread::msleep(5);
    }
    return true;
}

// Runs the event loop for a while, for checks that something does not happen.
inline void settle(int milliseconds = 400) {
    waitUntil([] { return false; }, milliseconds);
}

}  // namespace quellton::test
