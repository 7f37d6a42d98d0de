// Shifts that carry like a calendar, in the tests' pinned time zone (UTC).
#include "dates/CarriedShift.h"
#include "dates/DateTexts.h"
#include "dates/RuleDates.h"
#include "dates/ZonedDateRule.h"

#include <gtest/gtest.h>

namespace tagmoor {
namespace {

using test::at;

DateTimeConfiguration carriedIdod(int days, int months, int years, bool keepDays = false) {
    return IDOD{days, months, years, keepDays, false, false};
}

DateTimeConfiguration carriedIdot(int hours, int minutes, int seconds, bool keepHours = false) {
    return IDOT{hours, minutes, seconds, keepHours, false, false};
}

TEST(CarriedShift, CarriesAcrossMidnightMonthEndsLeapDaysAndYearEnds) {
    struct Case {
        DateTimeConfiguration rule;
        const char* own;
        const char* expected;
    } cases[] = {
        {carriedIdot(1, 0, 0), "2020-12-31 23:37:53", "2021-01-01 00:37:53"},
        {carriedIdot(2, 0, 0), "2008-05-08 23:37:53", "2008-05-09 01:37:53"},
        {carriedIdot(0, 0, -1), "2021-01-01 00:00:00", "2020-12-31 23:59:59"},
        {carriedIdot(-25, 0, 0), "2024-03-01 00:30:00", "2024-02-28 23:30:00"},
        {carriedIdot(0, 90, 0), "2023-06-30 23:00:00", "2023-07-01 00:30:00"},
        {carriedIdot(5, 0, 30, /*keepHours=*/true), "2023-06-30 23:59:40", "2023-07-01 00:00:10"},
        {carriedIdod(11, 0, 0), "2019-06-21 10:00:00", "2019-07-02 10:00:00"},
        {carriedIdod(1, 0, 0), "2024-02-28 08:00:00", "2024-02-29 08:00:00"},
        {carriedIdod(1, 0, 0), "2023-02-28 08:00:00", "2023-03-01 08:00:00"},
        {carriedIdod(0, 1, 0), "2024-01-31 08:00:00", "2024-02-29 08:00:00"},
        {carriedIdod(0, 0, 1), "2024-02-29 08:00:00", "2025-02-28 08:00:00"},
        {carriedIdod(-1, -1, 0), "2021-03-01 08:00:00", "2021-01-31 08:00:00"},
        {carriedIdod(40, 0, 0, /*keepDays=*/true), "2021-03-01 08:00:00", "2021-03-01 08:00:00"},
        {carriedIdod(0, 13, 0), "2021-12-15 08:00:00", "2023-01-15 08:00:00"},
    };
    for (const Case& c : cases) {
        const DateRuleOutcome got = applyCarriedDateRule(c.rule, std::nullopt, at(c.own));
        EXPECT_EQ(got, DateRuleOutcome::write(QString::fromLatin1(c.expected))) << c.own;
    }
}

// Every other mode, and a photo without a date, is left to the wrapping rule; a slot date
// gives the parts that a shift leaves alone, as it does there.
TEST(CarriedShift, OtherModesAndSlotsAreThoseOfTheWrappingRule) {
    for (const DateTimeConfiguration& rule :
         {DateTimeConfiguration{}, DateTimeConfiguration(SelectDate{}),
          DateTimeConfiguration(EmptyValue{})}) {
        EXPECT_EQ(applyCarriedDateRule(rule, at("2001-01-01 01:01:01"), at("2020-12-31 23:37:53")),
                  applyDateRule(rule, at("2001-01-01 01:01:01"), at("2020-12-31 23:37:53")));
    }
    EXPECT_EQ(applyCarriedDateRule(carriedIdot(1, 0, 0), std::nullopt, std::nullopt),
              DateRuleOutcome::nothing());
    EXPECT_EQ(applyCarriedDateRule(carriedIdot(1, 0, 0), at("2001-02-03 04:05:06"),
                                   at("2020-12-31 23:37:53")),
              DateRuleOutcome::write(QStringLiteral("2001-02-04 00:37:53")));
    EXPECT_EQ(applyCarriedDateRule(carriedIdod(1, 0, 0), at("2001-02-03 04:05:06"),
                                   at("2020-12-31 23:37:53")),
              DateRuleOutcome::write(QStringLiteral("2021-01-01 04:05:06")));
    // Without carrying, the same shift makes hour 24, which is refused: nothing changes.
    EXPECT_EQ(applyDateRule(carriedIdot(1, 0, 0), std::nullopt, at("2020-12-31 23:37:53")),
              DateRuleOutcome::write(QStringLiteral("2020-12-31 23:37:53")));
}

// A zone is told from the end of a date with a time; a shift counts on the photo's clock in
// that zone, wrapping or carried, and keeps it; other rules ignore it.
TEST(ZonedDateRule, ShiftsCountOnThePhotosClockAndKeepItsZone) {
    EXPECT_EQ(zoneOfDateText("2008-05-08T10:54:28+02:00"), (DateZone{7200, "+02:00"}));
    EXPECT_EQ(zoneOfDateText("2008-05-08T10:54:28.25-0530"), (DateZone{-19800, "-05:30"}));
    EXPECT_EQ(zoneOfDateText("2008-05-08T10:54:28Z"), (DateZone{0, "Z"}));
    EXPECT_EQ(zoneOfDateText("2008-05-08T10:54:28"), std::nullopt);
    EXPECT_EQ(zoneOfDateText("2008:05:08 10:54:28"), std::nullopt);
    EXPECT_EQ(zoneOfDateText("2008-05-08"), std::nullopt);

    // 22:30:15 at -05:00 is 03:30:15 on the next day in UTC, the tests' zone.
    const auto own = QDateTime::fromString("2020-12-31T22:30:15-05:00", Qt::ISODate);
    const DateZone west{-18000, "-05:00"};
    EXPECT_EQ(applyDateRuleInZone(carriedIdot(1, 0, 0), std::nullopt, own, west, false).text,
              "2020-12-31T23:30:15-05:00");
    EXPECT_EQ(applyDateRuleInZone(carriedIdot(2, 0, 0), std::nullopt, own, west, true).text,
              "2021-01-01T00:30:15-05:00");
    EXPECT_EQ(applyDateRuleInZone(carriedIdod(1, 0, 0), std::nullopt, own, west, false).text,
              "2020-12-01T22:30:15-05:00");
    EXPECT_EQ(applyDateRuleInZone(carriedIdod(1, 0, 0), std::nullopt, own, west, true).text,
              "2021-01-01T22:30:15-05:00");
    const DateTimeConfiguration select = SelectDate{};
    EXPECT_EQ(applyDateRuleInZone(select, at("2001-02-03 04:05:06"), own, west, true),
              DateRuleOutcome::write(QStringLiteral("2001-02-03 04:05:06")));
}

} // namespace
} // namespace tagmoor
