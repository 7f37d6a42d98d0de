#include "foundation/PageCopy.h"

#include <gtest/gtest.h>

#include <cstdint>

namespace tagmoor {
namespace {

std::uintptr_t pageOffsetOf(const QByteArray& bytes) {
    return reinterpret_cast<std::uintptr_t>(bytes.constData()) % 4096;
}

// The buffer starts a page however it came about, keeps what it held, grows where it stands
// when it can, and never writes into an array that another one shares.
TEST(PageCopy, StartsAPageAndKeepsWhatItHeld) {
    QByteArray fresh;
    resizeForRead(fresh, 16 * 1024);
    EXPECT_EQ(fresh.size(), 16 * 1024);
    EXPECT_EQ(pageOffsetOf(fresh), 0u);

    QByteArray held("head of a photo");
    const QByteArray shared = held;
    resizeForRead(held, 64 * 1024);
    EXPECT_EQ(pageOffsetOf(held), 0u);
    EXPECT_TRUE(held.startsWith("head of a photo"));
    EXPECT_EQ(shared, QByteArray("head of a photo"));

    held.truncate(32 * 1024);
    const char* const before = held.constData();
    resizeForRead(held, 48 * 1024);
    EXPECT_EQ(held.constData(), before);
    EXPECT_TRUE(held.startsWith("head of a photo"));

    resizeForRead(held, 10);
    EXPECT_EQ(held, QByteArray("head of a "));
    EXPECT_EQ(held.constData()[held.size()], '\0');
}

} // namespace
} // namespace tagmoor
