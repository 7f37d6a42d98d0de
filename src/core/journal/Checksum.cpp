#include "journal/Checksum.h"

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
__attribute__((target("sse4.2"))) std::uint32_t hardware(const unsigned char* p, std::size_t size,
                                                         std::uint32_t c) {
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
