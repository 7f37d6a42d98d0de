#include "metadata/PropertyLoading.h"

#include <gtest/gtest.h>

#include <atomic>
#include <thread>
#include <vector>

namespace tagmoor {
namespace {

// Tests run in UTC with the en_US locale (see main.cpp).
QString iso(const std::optional<QDateTime>& d) {
    return d ? d->toUTC().toString(Qt::ISODateWithMs) : QStringLiteral("none");
}

TEST(MetadataDate, EachPatternParsesItsOwnForm) {
    struct Case {
        const char* text;
        const char* expected;
    };
    const Case cases[] = {
        {"2019-05-01 10:20:30", "2019-05-01T10:20:30.000Z"},   // 12-hour form first
        {"2019-05-01 22:20:30", "2019-05-01T22:20:30.000Z"},   // then the 24-hour one
        {"2019-05-01T10:20:30+0200", "2019-05-01T08:20:30.000Z"},
        {"Wednesday, May 1, 2019", "2019-05-01T00:00:00.000Z"},
        {"05/01/2019", "2019-05-01T00:00:00.000Z"},
        {"05-01-2019 10:20", "2019-05-01T10:20:00.000Z"},
        {"May 2019", "2019-05-01T00:00:00.000Z"},
        {"May 1, 2019", "2019-05-01T00:00:00.000Z"},
        {"Wed, 1 May 2019 10:20:30 +0000", "2019-05-01T10:20:30.000Z"},
        {"01.05.19", "2019-05-01T00:00:00.000Z"},
        {"10:20:30.250", "1970-01-01T10:20:30.250Z"},
    };
    for (const Case& c : cases)
        EXPECT_EQ(iso(parseMetadataDate(QString::fromLatin1(c.text))), QLatin1String(c.expected))
            << c.text;
    // No year: the pattern "MMM d, h:mm a" lands in 1970.
    EXPECT_EQ(iso(parseMetadataDate("May 1, 3:04 PM")), QStringLiteral("1970-05-01T15:04:00.000Z"));
}

TEST(MetadataDate, ExifFormParsesThroughTheWeekYearPattern) {
    const auto d = parseMetadataDate(QStringLiteral("2019:05:01 10:20:30"));
    ASSERT_TRUE(d);
    EXPECT_EQ(iso(d), QStringLiteral("2019-05-01T10:20:30.000Z"));
}

TEST(MetadataDate, IncompleteOrLooseTextGivesNothing) {
    for (const char* text : {"", "2019:05:01 10:20", "2019:05:01 10:20:30 trailing",
                             "2019-13-01 10:20:30", "2019-02-30 10:20:30", "yesterday",
                             "2019-05-01"})
        EXPECT_FALSE(parseMetadataDate(QString::fromLatin1(text))) << text;
}

TEST(MetadataDate, WorksOnManyThreadsAtOnce) {
    std::vector<std::thread> threads;
    std::atomic<int> good{0};
    for (int t = 0; t < 4; ++t)
        threads.emplace_back([&] {
            for (int i = 0; i < 50; ++i)
                if (parseMetadataDate(QStringLiteral("2021-07-08 19:00:01")))
                    ++good;
        });
    for (auto& t : threads)
        t.join();
    EXPECT_EQ(good.load(), 200);
}

} // namespace
} // namespace tagmoor
