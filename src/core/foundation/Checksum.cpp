#include "foundation/Checksum.h"

#include <array>
#include <cstring>

#if defined(__x86_64__) || defined(__i386__)
#include <nmmintrin.h>
#define TAGMOOR_CRC32C_SSE42 1
#endif

namespace tagmoor {

namespace {

constexpr std::uint32_t kPolynomial = 0x82F63B78; // reflected 0x1EDC6F41

// Eight tables of 256 entries: table k advances a byte k steps further, so that the portable
// loop takes eight bytes per round.
using Tables = std::array<std::array<std::uint32_t, 256>, 8>;

constexpr Tables makeTables() {
    Tables t{};
    for (std::uint32_t i = 0; i < 256; ++i) {
        std::uint32_t c = i;
        for (int bit = 0; bit < 8; ++bit)
            c = (c & 1) ? (c >> 1) ^ kPolynomial : c >> 1;
        t[0][i] = c;
    }
    for (std::size_t k = 1; k < 8; ++k)
        for (std::size_t i = 0; i < 256; ++i)
            t[k][i] = (t[k - 1][i] >> 8) ^ t[0][t[k - 1][i] & 0xFF];
    return t;
}

constexpr Tables kTables = makeTables();

std::uint32_t portable(const unsigned char* p, std::size_t size, std::uint32_t c) {
    while (size >= 8) {
        std::uint64_t word;
        std::memcpy(&word, p, 8);
        word ^= c; // little-endian: the running value meets the first four bytes
        c = kTables[7][word & 0xFF] ^ kTables[6][(word >> 8) & 0xFF] ^
            kTables[5][(word >> 16) & 0xFF] ^ kTables[4][(word >> 24) & 0xFF] ^
            kTables[3][(word >> 32) & 0xFF] ^ kTables[2][(word >> 40) & 0xFF] ^
            kTables[1][(word >> 48) & 0xFF] ^ kTables[0][word >> 56];
        p += 8;
        size -= 8;
    }
    while (size-- > 0)
        c = (c >> 8) ^ kTables[0][(c ^ *p++) & 0xFF];
    return c;
}

#ifdef TAGMOOR_CRC32C_SSE42
// One stream of the instruction waits for the last result (three cycles a word), while the
// processor could start one a cycle. So long runs go as three streams over three neighbouring
// blocks, whose sums are then joined: the sum of a block B after a running value c is the sum
// of B from zero, plus c carried over |B| zero bytes. That carry is linear in c, so it is
// looked up byte by byte in four tables of 256 entries per block length.
using ShiftTables = std::array<std::array<std::uint32_t, 256>, 4>;

__attribute__((target("sse4.2"))) std::uint32_t overZeros(std::uint32_t c, std::size_t words) {
    std::uint64_t c64 = c;
    for (std::size_t i = 0; i < words; ++i)
        c64 = _mm_crc32_u64(c64, 0);
    return std::uint32_t(c64);
}

ShiftTables makeShiftTables(std::size_t bytes) {
    // The carry of each of the 32 bits, then every byte value as the sum of its bits' carries.
    std::array<std::uint32_t, 32> bit{};
    for (std::size_t b = 0; b < 32; ++b)
        bit[b] = overZeros(std::uint32_t(1) << b, bytes / 8);
    ShiftTables t{};
    for (std::size_t k = 0; k < 4; ++k)
        for (std::size_t v = 0; v < 256; ++v)
            for (std::size_t b = 0; b < 8; ++b)
                if (v & (std::size_t(1) << b))
                    t[k][v] ^= bit[8 * k + b];
    return t;
}

std::uint32_t shifted(const ShiftTables& t, std::uint32_t c) {
    return t[0][c & 0xFF] ^ t[1][(c >> 8) & 0xFF] ^ t[2][(c >> 16) & 0xFF] ^ t[3][c >> 24];
}

constexpr std::size_t kLongBlock = 8192;
constexpr std::size_t kShortBlock = 256;

// Three streams over 3 * `block` bytes at `p`, joined into the running value `c`.
__attribute__((target("sse4.2"))) std::uint32_t
threeBlocks(const unsigned char* p, std::size_t block, std::uint32_t c, const ShiftTables& shift) {
    std::uint64_t c0 = c;
    std::uint64_t c1 = 0;
    std::uint64_t c2 = 0;
    for (std::size_t at = 0; at < block; at += 8) {
        std::uint64_t w0;
        std::uint64_t w1;
        std::uint64_t w2;
        std::memcpy(&w0, p + at, 8);
        std::memcpy(&w1, p + block + at, 8);
        std::memcpy(&w2, p + 2 * block + at, 8);
        c0 = _mm_crc32_u64(c0, w0);
        c1 = _mm_crc32_u64(c1, w1);
        c2 = _mm_crc32_u64(c2, w2);
    }
    c = shifted(shift, std::uint32_t(c0)) ^ std::uint32_t(c1);
    return shifted(shift, c) ^ std::uint32_t(c2);
}

__attribute__((target("sse4.2"))) std::uint32_t hardware(const unsigned char* p, std::size_t size,
                                                         std::uint32_t c) {
    if (size >= 3 * kShortBlock) {
        static const ShiftTables longShift = makeShiftTables(kLongBlock);
        static const ShiftTables shortShift = makeShiftTables(kShortBlock);
        for (; size >= 3 * kLongBlock; p += 3 * kLongBlock, size -= 3 * kLongBlock)
            c = threeBlocks(p, kLongBlock, c, longShift);
        for (; size >= 3 * kShortBlock; p += 3 * kShortBlock, size -= 3 * kShortBlock)
            c = threeBlocks(p, kShortBlock, c, shortShift);
    }
    std::uint64_t c64 = c;
    while (size >= 8) {
        std::uint64_t word;
        std::memcpy(&word, p, 8);
        c64 = _mm_crc32_u64(c64, word);
        p += 8;
        size -= 8;
    }
    c = std::uint32_t(c64);
    while (size-- > 0)
        c = _mm_crc32_u8(c, *p++);
    return c;
}

bool hasSse42() {
    static const bool has = __builtin_cpu_supports("sse4.2");
    return has;
}
#endif

} // namespace

std::uint32_t crc32cPortable(const void* data, std::size_t size, std::uint32_t crc) {
    return ~portable(static_cast<const unsigned char*>(data), size, ~crc);
}

std::uint32_t crc32c(const void* data, std::size_t size, std::uint32_t crc) {
#ifdef TAGMOOR_CRC32C_SSE42
    if (hasSse42())
        return ~hardware(static_cast<const unsigned char*>(data), size, ~crc);
#endif
    return crc32cPortable(data, size, crc);
}

} // namespace tagmoor
