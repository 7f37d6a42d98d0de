#pragma once
// A bound on the time of a call that could hang inside a library.

#include <chrono>
#include <condition_variable>
#include <cstdio>
#include <cstdlib>
#include <mutex>
#include <thread>

namespace tagmoor::test {

// Runs `work` on this thread. A call stuck inside a library can't be stopped, so when it has
// not returned after `seconds` the whole test binary ends with a failure instead of hanging.
template <typename Work> void finishWithin(int seconds, const char* what, Work&& work) {
    std::mutex mutex;
    std::condition_variable finished;
    bool done = false;
    std::thread watchdog([&] {
        std::unique_lock lock(mutex);
        if (!finished.wait_for(lock, std::chrono::seconds(seconds), [&] { return done; })) {
            std::fprintf(stderr, "FAILED: %s did not finish within %d s\n", what, seconds);
            std::fflush(stderr);
            std::_Exit(1);
        }
    });
    work();
    {
        std::lock_guard lock(mutex);
        done = true;
    }
    finished.notify_one();
    watchdog.join();
}

} // namespace tagmoor::test
