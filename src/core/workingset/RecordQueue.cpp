#include "workingset/RecordQueue.h"

#include <iterator>
#include <type_traits>

namespace tagmoor {

// QList moves its elements only when their move cannot throw; otherwise it copies them.
static_assert(std::is_nothrow_move_constructible_v<CGImageProperties>);

bool RecordQueue::put(QList<CGImageProperties>&& records) {
    if (records.isEmpty())
        return false;
    std::lock_guard lock(m_mutex);
    const bool wasEmpty = m_size == 0;
    m_size += records.size();
    m_batches.push_back(std::move(records));
    return wasEmpty;
}

QList<CGImageProperties> RecordQueue::take(qsizetype max) {
    // The batches leave under the lock as whole lists; their records are moved after it, so
    // the scan's thread never waits for the main thread's moves.
    std::deque<QList<CGImageProperties>> taken;
    {
        std::lock_guard lock(m_mutex);
        qsizetype count = 0;
        while (!m_batches.empty() && count < max) {
            QList<CGImageProperties>& front = m_batches.front();
            const qsizetype room = max - count;
            if (front.size() <= room) {
                count += front.size();
                taken.push_back(std::move(front));
                m_batches.pop_front();
            } else {
                // A part of the front batch; the rest stays in front.
                taken.emplace_back(std::make_move_iterator(front.begin()),
                                   std::make_move_iterator(front.begin() + room));
                front.remove(0, room);
                count += room;
            }
        }
        m_size -= count;
    }
    if (taken.empty())
        return {};
    QList<CGImageProperties> out = std::move(taken.front());
    taken.pop_front();
    if (taken.empty())
        return out;
    qsizetype total = out.size();
    for (const QList<CGImageProperties>& batch : taken)
        total += batch.size();
    out.reserve(total);
    for (QList<CGImageProperties>& batch : taken)
        out.append(std::move(batch));
    return out;
}

qsizetype RecordQueue::size() const {
    std::lock_guard lock(m_mutex);
    return m_size;
}

} // namespace tagmoor
