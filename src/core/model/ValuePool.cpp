#include "model/ValuePool.h"

#include <QtGlobal>

#include <limits>
#include <mutex>

namespace tagmoor {

std::atomic<ValuePool::Slot*> ValuePool::s_blocks[ValuePool::kMaxBlocks];

namespace {

// The free numbers form a stack threaded through the free slots. Its head holds the top number
// in its low half and, in its high half, a count that every change moves on: a thread whose
// view of the top is stale (the number was taken and given back meanwhile) fails its exchange
// rather than linking in a number that is in use.
std::atomic<quint64> s_freeHead{0};
// The next number never given out; 0 is kept for "no value".
std::atomic<quint32> s_nextNew{1};
// Only for adding a block.
std::mutex s_growLock;

quint64 headOf(quint32 index, quint64 previous) {
    return (((previous >> 32) + 1) << 32) | index;
}

} // namespace

quint32 ValuePool::take() {
    quint64 head = s_freeHead.load(std::memory_order_acquire);
    while (const quint32 index = quint32(head)) {
        const quint32 next = slot(index).nextFree.load(std::memory_order_relaxed);
        if (s_freeHead.compare_exchange_weak(head, headOf(next, head), std::memory_order_acquire,
                                             std::memory_order_acquire))
            return index;
    }
    const quint32 index = s_nextNew.fetch_add(1, std::memory_order_relaxed);
    if (index == 0 || index == std::numeric_limits<quint32>::max())
        qFatal("The value store is full");
    std::atomic<Slot*>& block = s_blocks[index >> kBlockBits];
    if (!block.load(std::memory_order_acquire)) {
        const std::lock_guard lock(s_growLock);
        if (!block.load(std::memory_order_relaxed))
            block.store(new Slot[kBlockSize], std::memory_order_release);
    }
    return index;
}

quint32 ValuePool::make(const QVariant& value) {
    const quint32 index = take();
    Slot& s = slot(index);
    new (s.storage) QVariant(value);
    s.refs.store(1, std::memory_order_relaxed);
    return index;
}

void ValuePool::destroy(quint32 index) {
    Slot& s = slot(index);
    s.variant()->~QVariant();
    quint64 head = s_freeHead.load(std::memory_order_relaxed);
    do {
        s.nextFree.store(quint32(head), std::memory_order_relaxed);
    } while (!s_freeHead.compare_exchange_weak(head, headOf(index, head), std::memory_order_release,
                                               std::memory_order_relaxed));
}

std::size_t ValuePool::liveCount() {
    std::size_t free = 0;
    for (quint32 i = quint32(s_freeHead.load()); i != 0; i = slot(i).nextFree.load())
        ++free;
    return std::size_t(s_nextNew.load() - 1) - free;
}

} // namespace tagmoor
