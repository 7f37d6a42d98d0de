#include "foundation/PageCopy.h"

#include <algorithm>
#include <cstdint>
#include <cstring>

namespace tagmoor {

namespace {

constexpr auto kPage = qsizetype(kPageSize);

qsizetype pageOffset(const QByteArray& bytes) {
    return qsizetype(reinterpret_cast<std::uintptr_t>(bytes.constData()) % kPage);
}

} // namespace

void resizeForRead(QByteArray& bytes, qsizetype size) {
    const bool growsInPlace = bytes.isDetached() && pageOffset(bytes) == 0 &&
                              bytes.data_ptr().freeSpaceAtEnd() >= size - bytes.size();
    // A read of less than a page costs too little to be worth a page more of memory.
    if (size <= bytes.size() || size < kPage || growsInPlace) {
        bytes.resize(size);
        return;
    }
    QByteArray fresh(size + kPage, Qt::Uninitialized);
    // Taking bytes off the front of an array of its own moves where its data starts: nothing is
    // copied, and what follows keeps its place in memory.
    fresh.remove(0, (kPage - pageOffset(fresh)) % kPage);
    fresh.truncate(size);
    std::memcpy(fresh.data(), bytes.constData(), std::size_t(std::min(bytes.size(), size)));
    bytes = std::move(fresh);
}

} // namespace tagmoor
