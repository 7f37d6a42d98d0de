#include "foundation/StopControl.h"

namespace tagmoor {

void StopControl::reset() {
    std::lock_guard lock(m_mutex);
    m_pause = false;
    m_stop = false;
}

void StopControl::requestPause() {
    std::lock_guard lock(m_mutex);
    m_pause = true;
}

void StopControl::answer(bool stop) {
    {
        std::lock_guard lock(m_mutex);
        if (stop)
            m_stop = true;
        m_pause = false;
    }
    m_answered.notify_all();
}

bool StopControl::waitBetweenPhotos() {
    std::unique_lock lock(m_mutex);
    if (m_pause) {
        m_waiting = true;
        m_answered.wait(lock, [this] { return !m_pause.load(); });
        m_waiting = false;
    }
    return m_stop.load();
}

} // namespace tagmoor
