// Date texts, parts and month lengths, in the pinned time zone (UTC) unless a test moves it.
#include "dates/DateTexts.h"
#include "IcuZoneScope.h"

#include <gtest/gtest.h>

#include <QtConcurrent>

namespace tagmoor {
namespace {

QDateTime utc(int y, int mo, int d, int h, int mi, int s) {
    return QDateTime(QDate(y, mo, d), QTime(h, mi, s), Qt::UTC);
}

TEST(DateTexts, RuleTextsParseStrictlyWithColonsOrHyphens) {
    EXPECT_EQ(parseRuleDate("2021-05-06 10:22:33"), utc(2021, 5, 6, 10, 22, 33));
    EXPECT_EQ(parseRuleDate("2021-05-06 10-22-33"), utc(2021, 5, 6, 10, 22, 33));
    EXPECT_EQ(parseRuleDate("2024-02-29 00-00-00"), utc(2024, 2, 29, 0, 0, 0));
    EXPECT_EQ(parseRuleDate("12021-02-08 03-06-07")->date(), QDate(12021, 2, 8));
    // Out-of-range parts are refused rather than rolled into the next day or month.
    for (const char* refused : {
             "2021-02-31 10-00-00",
             "2021-02-29 10:00:00",
             "2021-13-01 10-00-00",
             "2021-00-10 10-00-00",
             "2021-05-00 10-00-00",
             "2021-05-06 24-00-00",
             "2021-05-06 23-60-00",
             "2021-05-06 23-59-60",
             "2021-05-06 10:22:33 extra",
             "2021-05-06 10:22-33",
             "2021-05-06",
             "",
             "-50-01-01 10-00-00",
         })
        EXPECT_EQ(parseRuleDate(QString::fromLatin1(refused)), std::nullopt) << refused;
}

// A rule date made of its parts is the date its text parses to, in zones with summer time
// (whole and half hours), a skipped day, and at the ends of the years the text covers.
TEST(DateTexts, RuleDatesOfPartsAreThoseOfTheirTexts) {
    const QList<QDate> days{
        {2021, 3, 28},  {2021, 10, 31}, {2021, 3, 14},  {2021, 11, 7},  {2021, 4, 4},
        {2021, 10, 3},  {2011, 12, 29}, {2011, 12, 30}, {2011, 12, 31}, {2024, 2, 29},
        {1582, 10, 10}, {1582, 10, 15}, {1, 1, 1},      {999, 12, 31},  {1000, 1, 1},
        {9999, 12, 31}, {10000, 1, 1},  {-5, 6, 1},
    };
    for (const char16_t* zone : {u"UTC", u"Europe/Berlin", u"America/New_York",
                                 u"Australia/Lord_Howe", u"Asia/Kathmandu", u"Pacific/Apia"}) {
        test::IcuZoneScope scope(zone);
        for (const QDate& day : days)
            for (int minutes = 0; minutes < 24 * 60; minutes += 15) {
                const QTime time(minutes / 60, minutes % 60, minutes % 7);
                const QString text =
                    QString::number(day.year()) +
                    QString::asprintf("-%02d-%02d %02d-%02d-%02d", day.month(), day.day(),
                                      time.hour(), time.minute(), time.second());
                ASSERT_EQ(ruleDateOf(day, time), parseRuleDate(text))
                    << QString::fromUtf16(zone).toStdString() << " " << text.toStdString();
            }
    }
    EXPECT_EQ(ruleDateOf(QDate(), QTime(1, 0)), std::nullopt);
    EXPECT_EQ(ruleDateOf(QDate(2021, 1, 1), QTime()), std::nullopt);
}

TEST(DateTexts, SharedFormatterAndZonedTexts) {
    const SharedDateFormatter& formatter = sharedDateFormatter();
    EXPECT_EQ(&formatter, &sharedDateFormatter());
    EXPECT_EQ(formatter.format(utc(2021, 5, 6, 7, 8, 9)), "2021-05-06 07:08:09");
    EXPECT_EQ(formatter.format(utc(2021, 5, 6, 23, 8, 9).toLocalTime()), "2021-05-06 23:08:09");
    EXPECT_EQ(formatter.format(QDateTime()), "");
    EXPECT_EQ(formatter.parse("2021-05-06 07:08:09"), utc(2021, 5, 6, 7, 8, 9));
    EXPECT_EQ(formatter.parse("2021-05-06 07-08-09"), std::nullopt);
    EXPECT_EQ(formatter.parse("2021-02-30 07:08:09"), std::nullopt);

    EXPECT_EQ(parseZonedDate("2021-05-06 10:22:33 +0200"), utc(2021, 5, 6, 8, 22, 33));
    EXPECT_EQ(parseZonedDate("2021-05-06 10:22:33 -0130"), utc(2021, 5, 6, 11, 52, 33));
    EXPECT_EQ(parseZonedDate("2021-05-06 10:22:33"), std::nullopt);
}

TEST(DateTexts, PartsAndMonthLengths) {
    EXPECT_EQ(datePartsOf(utc(2021, 5, 6, 7, 8, 9)), (DateParts{2021, 5, 6, 7, 8, 9}));
    EXPECT_EQ(datePartsOf(QDateTime()), DateParts{});
    EXPECT_EQ(daysInMonth(utc(2021, 2, 10, 0, 0, 0)), 28);
    EXPECT_EQ(daysInMonth(utc(2024, 2, 29, 23, 59, 59)), 29);
    EXPECT_EQ(daysInMonth(utc(1900, 2, 1, 0, 0, 0)), 28);
    EXPECT_EQ(daysInMonth(utc(2021, 4, 30, 0, 0, 0)), 30);
    EXPECT_EQ(daysInMonth(utc(2021, 12, 31, 0, 0, 0)), 31);
    EXPECT_EQ(daysInMonth(QDateTime()), std::nullopt);
}

TEST(DateTexts, PartsFollowTheCurrentZoneOnEveryThread) {
    const QDateTime instant = utc(2021, 1, 31, 23, 30, 0);
    EXPECT_EQ(datePartsOf(instant).day, 31); // warms this thread's cache in UTC
    {
        test::IcuZoneScope berlin(u"Europe/Berlin");
        EXPECT_EQ(datePartsOf(instant), (DateParts{2021, 2, 1, 0, 30, 0}));
        EXPECT_EQ(daysInMonth(instant), 28);
        EXPECT_EQ(parseRuleDate("2021-02-01 00-30-00"), instant);
        // Worker threads see the same zone.
        const auto parts = QtConcurrent::run([&] { return datePartsOf(instant); }).result();
        EXPECT_EQ(parts.day, 1);
    }
    EXPECT_EQ(datePartsOf(instant).day, 31);
}

} // namespace
} // namespace tagmoor
