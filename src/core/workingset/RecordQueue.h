#pragma once

#include "model/CGImageProperties.h"

#include <QList>

#include <deque>
#include <mutex>

namespace tagmoor {

// The records a scan has read, on their way from the scan's thread to the list on the main
// thread, in list order. The scan puts whole batches in; the main thread takes as many as one
// turn of its event loop can afford. Records are moved through, never copied, so the main
// thread neither copies nor frees their values. Thread safe.
class RecordQueue {
public:
    // Adds records at the end. True when the queue was empty before: the taker is not
    // waiting for a word yet and must be told.
    bool put(QList<CGImageProperties>&& records);
    // Moves up to `max` records out of the front, in order.
    QList<CGImageProperties> take(qsizetype max);
    qsizetype size() const;

private:
    mutable std::mutex m_mutex;
    std::deque<QList<CGImageProperties>> m_batches;
    qsizetype m_size = 0;
};

} // namespace tagmoor
