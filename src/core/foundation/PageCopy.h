#pragma once

#include <QByteArray>

#include <cstdint>

namespace tagmoor {

// Where bytes sit in their memory pages decides how fast the kernel copies them between a
// file's pages and memory. On the processors we measured, a copy whose stores land 1 to 31
// bytes past the place in its page of what it loads ran at a fifth of its speed (the stores
// alias the loads); 0 or 32 bytes and more ran at full speed. A new QByteArray's data starts
// 16 bytes into a page, behind its header, and a photo's bytes go through such copies on every
// read and every batch.

constexpr std::uintptr_t kPageSize = 4096;

// Whether the kernel copies at full speed from `from` to `to`: memory addresses or file
// offsets, of which only the place in a page counts.
constexpr bool kernelCopiesFast(std::uintptr_t from, std::uintptr_t to) {
    const std::uintptr_t ahead = (to - from) % kPageSize;
    return ahead == 0 || ahead >= 32;
}

// Resizes `bytes` to `size` for a read from a file into it, keeping what it holds, so that its
// data starts a page: a read at the file offset that equals the place in `bytes` then runs at
// full speed. A size of less than a page is left as a plain resize.
void resizeForRead(QByteArray& bytes, qsizetype size);

} // namespace tagmoor
