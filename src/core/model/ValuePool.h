#pragma once

#include <QVariant>

#include <atomic>
#include <cstddef>
#include <new>

namespace tagmoor {

// The store of a record's present values. A value is named by a 32-bit number rather than by
// a pointer, so that a record's many absent values cost four bytes each instead of eight, and
// values live side by side in large blocks instead of one heap block each.
//
// Numbers are counted: `retain` and `release` move a value's count, and the last release
// destroys the value and frees its number for reuse. Number 0 is never given out and stands
// for "no value". Blocks are never freed or moved, so a reference to a live value stays good,
// and any thread may read, retain or release a value it was handed. Taking and freeing
// numbers is lock-free.
class ValuePool {
public:
    // A new value with a count of one.
    static quint32 make(const QVariant& value);
    static void retain(quint32 index) {
        if (index)
            slot(index).refs.fetch_add(1, std::memory_order_relaxed);
    }
    static void release(quint32 index) {
        if (index && slot(index).refs.fetch_sub(1, std::memory_order_acq_rel) == 1)
            destroy(index);
    }
    static const QVariant& value(quint32 index) { return *slot(index).variant(); }

    // How many numbers are taken now (for tests and measurements).
    static std::size_t liveCount();

private:
    struct Slot {
        std::atomic<int> refs{0};
        // The next free number while the slot is free.
        std::atomic<quint32> nextFree{0};
        alignas(QVariant) unsigned char storage[sizeof(QVariant)];
        QVariant* variant() { return std::launder(reinterpret_cast<QVariant*>(storage)); }
    };
    static constexpr int kBlockBits = 12;
    static constexpr quint32 kBlockSize = 1u << kBlockBits;
    static constexpr std::size_t kMaxBlocks = std::size_t(1) << (32 - kBlockBits);

    static Slot& slot(quint32 index) {
        return s_blocks[index >> kBlockBits].load(
            std::memory_order_acquire)[index & (kBlockSize - 1)];
    }
    static void destroy(quint32 index);
    static quint32 take();

    static std::atomic<Slot*> s_blocks[kMaxBlocks];
};

} // namespace tagmoor
