#pragma once

#include <atomic>
#include <condition_variable>
#include <mutex>

namespace tagmoor {

// The Stop button's two flags, for every worker that asks the stop question: a batch run and
// a scan. A pause request makes the worker finish the photos in work and then wait, without
// spinning, until the question is answered; "YES" ends the work there, "NO" lets it go on as
// if nothing happened.
class StopControl {
public:
    // The start of a run: both flags clear.
    void reset();

    // Stop pressed: no new photo starts until answer() is called.
    void requestPause();

    // The answer to the stop question. Either answer clears the pause.
    void answer(bool stop);

    // Ends the run at the next photo without a question. Only stores a lock-free flag, so a
    // signal handler may call it (an interrupted command line run ends as a stopped one).
    void stopNow() { m_stop.store(true); }

    bool pauseRequested() const { return m_pause.load(); }
    bool stopRequested() const { return m_stop.load(); }
    // The stop flag itself, for a loop that tests it on its own (a folder walk).
    const std::atomic<bool>* stopFlag() const { return &m_stop; }

    // Called by the run between photos: blocks while a pause stands and gives true when the
    // run is to end.
    bool waitBetweenPhotos();

    // Called by the run once it is waiting in waitBetweenPhotos; for observers and tests.
    bool isWaiting() const { return m_waiting.load(); }

private:
    std::atomic<bool> m_pause{false};
    std::atomic<bool> m_stop{false};
    static_assert(std::atomic<bool>::is_always_lock_free);
    std::atomic<bool> m_waiting{false};
    std::mutex m_mutex;
    std::condition_variable m_answered;
};

} // namespace tagmoor
