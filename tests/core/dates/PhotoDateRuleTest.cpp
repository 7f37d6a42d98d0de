// The run's one date rule object, in the tests' pinned time zone (UTC).
#include "dates/PhotoDateRule.h"
#include "dates/RuleDates.h"

#include <gtest/gtest.h>

namespace tagmoor {
namespace {

using test::at;

TEST(PhotoDateRule, ChosenOncePerRunAndReadingTheClockOnlyWhenItCounts) {
    EXPECT_EQ(PhotoDateRule::forRun(false, false).kind(), DateRuleKind::wrapping);
    EXPECT_EQ(PhotoDateRule::forRun(false, true).kind(), DateRuleKind::carried);
    EXPECT_EQ(PhotoDateRule::forRun(true, false).kind(), DateRuleKind::ownDate);
    EXPECT_EQ(PhotoDateRule::forRun(true, true).kind(), DateRuleKind::ownDate);

    for (const DateRuleKind kind :
         {DateRuleKind::wrapping, DateRuleKind::carried, DateRuleKind::ownDate}) {
        const PhotoDateRule rule(kind);
        EXPECT_TRUE(rule.readsOwnClock(IDOD{}));
        EXPECT_TRUE(rule.readsOwnClock(IDOT{}));
        EXPECT_EQ(rule.readsOwnClock(UpdateDate{}), kind == DateRuleKind::ownDate);
        for (const DateTimeConfiguration& other :
             {DateTimeConfiguration{}, DateTimeConfiguration(EmptyValue{}),
              DateTimeConfiguration(SelectDate{})})
            EXPECT_FALSE(rule.readsOwnClock(other));
    }
}

TEST(PhotoDateRule, AZoneCountsOnlyForARuleThatReadsThePhotosClock) {
    // 22:30:15 at -05:00 is 03:30:15 of the next day in UTC.
    const auto own = QDateTime::fromString("2020-12-31T22:30:15-05:00", Qt::ISODate);
    const std::optional<DateZone> west = DateZone{-18000, "-05:00"};
    const auto slot = at("2001-02-03 04:05:06");
    IDOT hour;
    hour.changeHours = 1;
    hour.isKeepOriginalMinutes = hour.isKeepOriginalSeconds = true;
    UpdateDate update; // sets every part: the slot, or the rule's numbers on the own date
    update.changeDays = 9;
    update.changeMonths = 8;
    update.changeYears = 2007;

    const PhotoDateRule wrapping(DateRuleKind::wrapping);
    EXPECT_EQ(wrapping.apply(hour, std::nullopt, own, west).text, "2020-12-31T23:30:15-05:00");
    EXPECT_EQ(wrapping.apply(update, slot, own, west).text, "2001-02-03 04:05:06");
    EXPECT_EQ(wrapping.apply(update, slot, own, west),
              wrapping.apply(update, slot, own, std::nullopt));

    const PhotoDateRule ownDate(DateRuleKind::ownDate);
    EXPECT_EQ(ownDate.apply(update, slot, own, west).text, "2007-08-09T00:00:00-05:00");
    EXPECT_EQ(ownDate.apply(update, slot, own, std::nullopt).text, "2007-08-09 00:00:00");
    // Without the photo's own date only Select Date and Empty Value do something.
    EXPECT_EQ(ownDate.apply(hour, slot, std::nullopt, west), DateRuleOutcome::nothing());
    EXPECT_EQ(ownDate.apply(SelectDate{}, slot, std::nullopt, west).text, "2001-02-03 04:05:06");
}

} // namespace
} // namespace tagmoor
