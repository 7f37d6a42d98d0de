#pragma once

#include <cstddef>
#include <cstdint>

namespace tagmoor {

// CRC-32C (the Castagnoli polynomial, as iSCSI and ext4 use it) of `size` bytes at `data`,
// continuing from `crc` (0 to start). On processors with SSE 4.2 the processor's own
// instruction does the work, some ten times faster than a cryptographic hash: the journal
// tells by it whether a file is still what a run left, which needs no defence against an
// attacker, only against accidental change.
std::uint32_t crc32c(const void* data, std::size_t size, std::uint32_t crc = 0);

// The same, always computed table by table (what other processors get); for tests.
std::uint32_t crc32cPortable(const void* data, std::size_t size, std::uint32_t crc = 0);

} // namespace tagmoor
