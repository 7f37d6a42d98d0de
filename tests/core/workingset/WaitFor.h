#pragma once
// Event-loop helpers for tests of objects that report through queued signals.

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QThread>

#include <functional>

namespace tagmoor::test {

// Serves the event loop until `done` holds or the time is up; the final value of `done`.
inline bool waitFor(const std::function<bool()>& done, int timeoutMs = 20000) {
    QDeadlineTimer deadline(timeoutMs);
    while (!done()) {
        if (deadline.hasExpired())
            return false;
        QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
        QThread::msleep(1);
    }
    return true;
}

// Serves the event loop for a while.
inline void serveEvents(int ms) {
    QDeadlineTimer deadline(ms);
    while (!deadline.hasExpired()) {
        QCoreApplication::processEvents(QEventLoop::AllEvents, 5);
        QThread::msleep(1);
    }
}

} // namespace tagmoor::test
