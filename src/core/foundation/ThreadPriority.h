#pragma once
// Worker threads yield to the main thread, which must keep the window responsive. Linux takes a
// niceness per thread; Qt's thread priorities do not reach it for normal threads.

#include <QLoggingCategory>

#include <sys/resource.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace tagmoor {

// Raises the calling thread's niceness by five, once per thread.
inline void lowerThisThreadsPriority() {
    thread_local bool lowered = false;
    if (lowered)
        return;
    lowered = true;
    const auto tid = id_t(::syscall(SYS_gettid));
    if (::setpriority(PRIO_PROCESS, tid, ::getpriority(PRIO_PROCESS, tid) + 5) != 0)
        qDebug("Could not lower a worker thread's priority");
}

} // namespace tagmoor
