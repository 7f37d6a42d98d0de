// The rule on each photo's own date (the standard form's), in the tests' pinned time zone (UTC).
#include "dates/OwnDateRule.h"
#include "dates/DateRuleKind.h"
#include "dates/DateTexts.h"
#include "dates/RuleDates.h"
#include "dates/ZonedDateRule.h"

#include <gtest/gtest.h>

namespace tagmoor {
namespace {

using test::at;

DateRuleOutcome ownWrites(const char* text) {
    return DateRuleOutcome::write(QString::fromLatin1(text));
}

DateTimeConfiguration ownIdot(int hours, int minutes, int seconds) {
    return IDOT{hours, minutes, seconds, hours == 0, minutes == 0, seconds == 0};
}

DateTimeConfiguration ownIdod(int days, int months, int years) {
    return IDOD{days, months, years, days == 0, months == 0, years == 0};
}

// An update that sets the given parts (0: keep the photo's), the time when `time` is valid.
UpdateDate ownUpdate(int day, int month, int year, QTime time = {}) {
    UpdateDate u;
    u.changeDays = day;
    u.changeMonths = month;
    u.changeYears = year;
    u.isKeepOriginalDays = day == 0;
    u.isKeepOriginalMonths = month == 0;
    u.isKeepOriginalYears = year == 0;
    u.isKeepOriginalTime = !time.isValid();
    if (time.isValid()) {
        u.changeHours = time.hour();
        u.changeMinutes = time.minute();
        u.changeSeconds = time.second();
    }
    return u;
}

// The slot of these rules holds the date of whichever photo was on display when the panel was
// used; no part of it may reach another photo.
constexpr const char* kSlot = "2001-02-03 04:05:06";

TEST(OwnDateRule, ShiftsMoveEachPhotosOwnDateAndCarry) {
    struct Case {
        DateTimeConfiguration rule;
        const char* own;
        const char* expected;
    } cases[] = {
        {ownIdot(1, 0, 0), "2023-11-05 23:30:00", "2023-11-06 00:30:00"},
        {ownIdot(1, 0, 0), "2020-12-31 23:37:53", "2021-01-01 00:37:53"},
        {ownIdot(0, -45, 0), "2024-03-01 00:30:00", "2024-02-29 23:45:00"},
        {ownIdod(1, 0, 0), "2023-02-28 17:20:00", "2023-03-01 17:20:00"},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(applyOwnDateRule(c.rule, at(kSlot), at(c.own)), ownWrites(c.expected)) << c.own;
        // The slot plays no part: with or without it the result is the same.
        EXPECT_EQ(applyOwnDateRule(c.rule, std::nullopt, at(c.own)), ownWrites(c.expected))
            << c.own;
    }
}

TEST(OwnDateRule, UpdateSetsOnlyItsPartsOnTheOwnDate) {
    // The panel lets a year of 0 stand with its keep box off.
    UpdateDate yearZero = ownUpdate(2, 0, 0);
    yearZero.isKeepOriginalYears = false;
    struct Case {
        const char* what;
        DateTimeConfiguration rule;
        const char* own;
        const char* expected;
    } cases[] = {
        {"day only", ownUpdate(5, 0, 0), "2021-03-10 10:11:12", "2021-03-05 10:11:12"},
        {"time only", ownUpdate(0, 0, 0, QTime(7, 8, 9)), "2021-03-10 10:11:12",
         "2021-03-10 07:08:09"},
        {"month and year", ownUpdate(0, 6, 1999), "2021-03-10 10:11:12", "1999-06-10 10:11:12"},
        {"a day the month lacks becomes its last", ownUpdate(0, 2, 0), "2021-01-31 09:00:00",
         "2021-02-28 09:00:00"},
        {"year 0 is no year", yearZero, "2021-03-10 10:11:12", "2021-03-02 10:11:12"},
        {"a month that is none changes nothing", ownUpdate(0, 13, 0), "2021-03-10 10:11:12",
         "2021-03-10 10:11:12"},
    };
    for (const Case& c : cases)
        EXPECT_EQ(applyOwnDateRule(c.rule, at(kSlot), at(c.own)), ownWrites(c.expected)) << c.what;
}

// Keep, empty and select are the classic rules; a photo without the date is left alone by the
// modes that start from it.
TEST(OwnDateRule, OtherModesAndMissingDates) {
    const auto own = at("2021-03-10 10:11:12");
    EXPECT_EQ(applyOwnDateRule(DateTimeConfiguration{}, at(kSlot), own),
              DateRuleOutcome::nothing());
    EXPECT_EQ(applyOwnDateRule(DateTimeConfiguration(EmptyValue{}), at(kSlot), own),
              DateRuleOutcome::deleteKey());
    EXPECT_EQ(applyOwnDateRule(DateTimeConfiguration(SelectDate{}), at(kSlot), own),
              ownWrites(kSlot));
    EXPECT_EQ(applyOwnDateRule(DateTimeConfiguration(SelectDate{}), at(kSlot), std::nullopt),
              ownWrites(kSlot));
    for (const DateTimeConfiguration& rule :
         {ownIdot(1, 0, 0), ownIdod(1, 0, 0), DateTimeConfiguration(ownUpdate(5, 0, 0))})
        EXPECT_EQ(applyOwnDateRule(rule, at(kSlot), std::nullopt), DateRuleOutcome::nothing());
}

// The choice of a run: the standard form counts on each photo's own date, the described form
// keeps its wrapping rule and its slot-based base.
TEST(OwnDateRule, TheRunsChoiceOfRule) {
    const auto own = at("2023-11-05 23:30:00");
    const DateTimeConfiguration shift = ownIdot(1, 0, 0);
    EXPECT_EQ(applyDateRule(dateRuleKindFor(true, false), shift, at(kSlot), own),
              ownWrites("2023-11-06 00:30:00"));
    EXPECT_EQ(applyDateRule(dateRuleKindFor(true, true), shift, at(kSlot), own),
              ownWrites("2023-11-06 00:30:00"));
    // Hour 24 is refused, so the slot's date with the photo's minute and second stands.
    EXPECT_EQ(applyDateRule(dateRuleKindFor(false, false), shift, at(kSlot), own),
              ownWrites("2001-02-03 04:30:00"));
    EXPECT_EQ(applyDateRule(dateRuleKindFor(false, true), shift, at(kSlot), own),
              ownWrites("2001-02-04 00:30:00"));
}

// A zoned XMP date is shifted or updated on the photo's own clock and keeps its zone.
TEST(OwnDateRule, ZonedDatesCountOnThePhotosClock) {
    // 22:30:15 at -05:00 is 03:30:15 of the next day in UTC, the tests' zone.
    const auto own = QDateTime::fromString("2020-12-31T22:30:15-05:00", Qt::ISODate);
    const DateZone west{-18000, "-05:00"};
    const DateRuleKind kind = DateRuleKind::ownDate;
    EXPECT_EQ(applyDateRuleInZone(ownIdot(2, 0, 0), at(kSlot), own, west, kind).text,
              "2021-01-01T00:30:15-05:00");
    EXPECT_EQ(applyDateRuleInZone(ownIdod(1, 0, 0), at(kSlot), own, west, kind).text,
              "2021-01-01T22:30:15-05:00");
    EXPECT_EQ(
        applyDateRuleInZone(ownUpdate(0, 0, 0, QTime(10, 0, 0)), at(kSlot), own, west, kind).text,
        "2020-12-31T10:00:00-05:00");
    EXPECT_EQ(applyDateRuleInZone(DateTimeConfiguration(SelectDate{}), at(kSlot), own, west, kind),
              ownWrites(kSlot));
}

} // namespace
} // namespace tagmoor
