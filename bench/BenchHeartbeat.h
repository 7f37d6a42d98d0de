#pragma once
// What the screen benchmarks measure the main thread with: a heartbeat on its event loop, the
// time of an action with the events it leaves behind, and the peak resident memory.

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QTimer>

#include <sys/resource.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <ctime>
#include <utility>

namespace tagmoor::bench {

inline long peakRssMb() {
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return usage.ru_maxrss / 1024;
}

// The resident memory now, from /proc/self/statm (its second field, in pages).
inline long currentRssMb() {
    long pages = 0;
    if (FILE* statm = std::fopen("/proc/self/statm", "r")) {
        long size = 0;
        if (std::fscanf(statm, "%ld %ld", &size, &pages) != 2)
            pages = 0;
        std::fclose(statm);
    }
    return pages * (sysconf(_SC_PAGESIZE) / 1024) / 1024;
}

// CPU time of the calling thread.
inline qint64 threadCpuNs() {
    timespec now{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
    return qint64(now.tv_sec) * 1'000'000'000 + now.tv_nsec;
}

// A 5 ms heartbeat on the main thread: the largest gap between two beats is the longest time
// the event loop could not serve the window. On a machine shared with other work a gap also
// holds the time the thread waited for a core, so the main thread's own CPU time between two
// beats is kept beside it: the work one turn of the loop did.
class Heartbeat {
public:
    Heartbeat() {
        m_timer.setInterval(5);
        m_timer.setTimerType(Qt::PreciseTimer);
        QObject::connect(&m_timer, &QTimer::timeout, [this] {
            m_maxGap = std::max(m_maxGap, m_beat.restart());
            const qint64 cpu = threadCpuNs();
            m_maxBusyNs = std::max(m_maxBusyNs, cpu - m_cpuAtBeat);
            m_cpuAtBeat = cpu;
        });
        m_beat.start();
        m_cpuAtBeat = threadCpuNs();
        m_timer.start();
    }
    // The largest gap since the last call, and the largest CPU time between two beats.
    std::pair<qint64, double> takeMaxGap() {
        const auto largest = peekMaxGap();
        m_maxGap = 0;
        m_maxBusyNs = 0;
        return largest;
    }
    std::pair<qint64, double> peekMaxGap() const {
        return {std::max(m_maxGap, m_beat.elapsed()),
                std::max(m_maxBusyNs, threadCpuNs() - m_cpuAtBeat) / 1e6};
    }

private:
    QTimer m_timer;
    QElapsedTimer m_beat;
    qint64 m_maxGap = 0;
    qint64 m_cpuAtBeat = 0;
    qint64 m_maxBusyNs = 0;
};

// Runs the event loop for `ms` so that what an action queued (repaints, relayouts) is done.
inline void spin(int ms) {
    QElapsedTimer clock;
    clock.start();
    while (clock.elapsed() < ms)
        QCoreApplication::processEvents(QEventLoop::AllEvents, 5);
}

// The time of `action` and of the event processing it leaves behind.
template <typename Action> double timed(Action&& action) {
    QElapsedTimer clock;
    clock.start();
    action();
    QCoreApplication::processEvents();
    return clock.nsecsElapsed() / 1e6;
}

} // namespace tagmoor::bench
