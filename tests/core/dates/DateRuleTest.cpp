// The date rule computation, run in the tests' pinned time zone (UTC) and locale (en_US).
#include "dates/DateRule.h"
#include "dates/DateRuleStore.h"
#include "dates/DateTexts.h"
#include "dates/RuleDates.h"
#include "model/KeyTable.h"

#include <gtest/gtest.h>

#include <climits>

namespace tagmoor {
namespace {

using test::at;

DateTimeConfiguration idod(int days, int months, int years, bool keepDays = false,
                           bool keepMonths = false, bool keepYears = false) {
    return IDOD{days, months, years, keepDays, keepMonths, keepYears};
}

DateTimeConfiguration idot(int hours, int minutes, int seconds, bool keepHours = false,
                           bool keepMinutes = false, bool keepSeconds = false) {
    return IDOT{hours, minutes, seconds, keepHours, keepMinutes, keepSeconds};
}

DateTimeConfiguration update(bool keepDays, bool keepMonths, bool keepYears, bool keepTime) {
    UpdateDate rule;
    rule.isKeepOriginalDays = keepDays;
    rule.isKeepOriginalMonths = keepMonths;
    rule.isKeepOriginalYears = keepYears;
    rule.isKeepOriginalTime = keepTime;
    return rule;
}

struct Case {
    const char* what;
    DateTimeConfiguration rule;
    const char* slot;
    const char* own;
    DateRuleOutcome expected;
};

const DateRuleOutcome kNothing = DateRuleOutcome::nothing();
DateRuleOutcome writes(const char* text) {
    return DateRuleOutcome::write(QString::fromLatin1(text));
}

TEST(DateRule, ModesAndWrapArithmetic) {
    const Case cases[] = {
        // The modes.
        {"empty without own date", DateTimeConfiguration(EmptyValue{}), nullptr, nullptr,
         DateRuleOutcome::deleteKey()},
        {"keep", DateTimeConfiguration{}, "2020-01-01 00:00:00", "2021-05-06 10:22:33", kNothing},
        {"select date", DateTimeConfiguration(SelectDate{}), "2020-02-29 23:59:58",
         "2021-05-06 10:22:33", writes("2020-02-29 23:59:58")},
        {"select date, photo without date", DateTimeConfiguration(SelectDate{}),
         "2020-02-29 23:59:58", nullptr, writes("2020-02-29 23:59:58")},
        {"select date, empty slot", DateTimeConfiguration(SelectDate{}), nullptr,
         "2021-05-06 10:22:33", kNothing},
        {"update, photo without date", update(true, false, false, false), "2020-01-01 00:00:00",
         nullptr, kNothing},
        {"increment, photo without date", idod(1, 0, 0), nullptr, nullptr, kNothing},

        // Update Date: the slot holds the wanted date, keep flags bring back the photo's parts.
        {"update, no keep: the slot", update(false, false, false, false), "2020-07-09 08:07:06",
         "2021-03-15 10:22:33", writes("2020-07-09 08:07:06")},
        {"update, no slot: the photo's date", update(false, false, false, false), nullptr,
         "2021-03-15 10:22:33", writes("2021-03-15 10:22:33")},
        {"update, keep month and year", update(false, true, true, false), "2020-07-09 08:07:06",
         "2021-03-15 10:22:33", writes("2021-03-09 08:07:06")},
        {"update, keep day and time", update(true, false, false, true), "2020-07-09 08:07:06",
         "2021-03-15 10:22:33", writes("2020-07-15 10:22:33")},
        {"update, keep day into a short month: refused, the photo's date",
         update(true, false, false, false), "2021-02-10 08:00:00", "2021-03-31 10:22:33",
         writes("2021-03-31 10:22:33")},
        {"update, keep day refused, keep time from the slot", update(true, false, false, true),
         "2021-02-10 08:00:00", "2021-03-31 10:22:33", writes("2021-02-10 10:22:33")},

        // Increment/decrement date: day, month, year of the photo plus the deltas, each
        // wrapped once inside its own range, with no carry.
        {"31 Jan, day +1: day 1 of January", idod(1, 0, 0, false, true, true), nullptr,
         "2021-01-31 10:22:33", writes("2021-01-01 10:22:33")},
        {"3 Mar, day -5: 29 March", idod(-5, 0, 0), nullptr, "2021-03-03 10:22:33",
         writes("2021-03-29 10:22:33")},
        {"5 Mar, day -5: sum 0 is day 31", idod(-5, 0, 0), nullptr, "2021-03-05 10:22:33",
         writes("2021-03-31 10:22:33")},
        {"28 Feb 2021, day +3: day 3 of February", idod(3, 0, 0), nullptr, "2021-02-28 10:22:33",
         writes("2021-02-03 10:22:33")},
        {"29 Feb 2024, day +1: leap month of 29 days", idod(1, 0, 0), nullptr,
         "2024-02-29 10:22:33", writes("2024-02-01 10:22:33")},
        {"November, month +3: February of the same year", idod(0, 3, 0), nullptr,
         "2021-11-15 10:22:33", writes("2021-02-15 10:22:33")},
        {"March, month -3: sum 0 is December of the same year", idod(0, -3, 0), nullptr,
         "2021-03-15 10:22:33", writes("2021-12-15 10:22:33")},
        {"31 Jan, month +2: 31 March", idod(0, 2, 0), nullptr, "2021-01-31 10:22:33",
         writes("2021-03-31 10:22:33")},
        {"31 Jan, month +1: 31 February refused, date unchanged", idod(0, 1, 0), nullptr,
         "2021-01-31 10:22:33", writes("2021-01-31 10:22:33")},
        {"a refused month drops back to the base, the year step still counts", idod(0, 1, 1),
         nullptr, "2021-01-31 10:22:33", writes("2022-01-31 10:22:33")},
        {"year -100, no bound", idod(0, 0, -100), nullptr, "2021-06-15 10:22:33",
         writes("1921-06-15 10:22:33")},
        {"keep flags keep the photo's parts, the slot gives the time",
         idod(9, 9, 9, true, true, true), "2000-01-01 08:30:00", "2021-06-15 10:22:33",
         writes("2021-06-15 08:30:00")},
        {"deltas apply to the photo's date, not the slot's", idod(1, 1, 1), "2000-03-20 08:30:00",
         "2021-01-10 10:22:33", writes("2022-02-11 08:30:00")},
        {"month length comes from the slot's month", idod(1, 0, 0), "2021-02-10 08:30:00",
         "2021-03-28 10:22:33", writes("2021-03-01 08:30:00")},
        {"a sum wraps once only: day 61 in January is 30", idod(30, 0, 0), nullptr,
         "2021-01-31 10:22:33", writes("2021-01-30 10:22:33")},
        {"a sum still out of range is refused", idod(40, 0, 0), nullptr, "2021-01-31 10:22:33",
         writes("2021-01-31 10:22:33")},

        // Increment/decrement time: 1...24 and 1...60, the top stays, 0 wraps up.
        {"hour 23 +2: 1 o'clock of the same day", idot(2, 0, 0), nullptr, "2021-05-06 23:10:20",
         writes("2021-05-06 01:10:20")},
        {"hour 22 +2: 24 is refused", idot(2, 0, 0), nullptr, "2021-05-06 22:10:20",
         writes("2021-05-06 22:10:20")},
        {"minute 59 +1: 60 refused drops the hour step too", idot(1, 1, 0), nullptr,
         "2021-05-06 10:59:30", writes("2021-05-06 10:59:30")},
        {"second 0, delta 0: 60 refused in the last step, the photo's date", idot(1, 0, 0), nullptr,
         "2021-05-06 10:15:00", writes("2021-05-06 10:15:00")},
        {"second 0 kept: the hour step holds", idot(1, 0, 0, false, false, true), nullptr,
         "2021-05-06 10:15:00", writes("2021-05-06 11:15:00")},
        {"hour 0, delta 0: 24 refused", idot(0, 5, 0), nullptr, "2021-05-06 00:15:30",
         writes("2021-05-06 00:20:30")},
        {"minus deltas wrap up, no carry", idot(-23, -20, -40), nullptr, "2021-05-06 10:15:30",
         writes("2021-05-06 11:55:50")},
        {"keep all: the slot's date with the photo's time", idot(5, 5, 5, true, true, true),
         "2020-01-02 03:04:05", "2021-05-06 10:15:30", writes("2020-01-02 10:15:30")},
        {"huge stored deltas do not overflow", idot(INT_MAX, INT_MIN, 0, false, false, true),
         nullptr, "2021-05-06 10:15:30", writes("2021-05-06 10:15:30")},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        EXPECT_EQ(applyDateRule(c.rule, at(c.slot), at(c.own)), c.expected);
    }
}

TEST(DateRule, RecordFieldsAndStoreSlots) {
    CGImageProperties record = makeEmptyRecord(std::nullopt);
    record.exifProperties->dateTimeOriginal = PropertyValue(*at("2021-01-31 10:00:00"));
    record.createDate = PropertyValue(*at("2021-02-28 11:00:00"));
    record.modifyDate = PropertyValue(QStringLiteral("2021-03-01 12:00:00")); // text, no date
    record.xmpDataProperties->createDate = PropertyValue(*at("2021-04-30 13:00:00"));
    record.xmpDataProperties->modifyDate = PropertyValue(QDateTime());
    record.xmpDataProperties->photoshopCreateDate = PropertyValue(*at("2021-06-30 15:00:00"));

    OriginalFinalDate rules;
    for (DateField field : allDateFields)
        rules.rule(field) = idod(1, 0, 0);
    rules.slot(DateField::createDateXMPPhotoshop) = at("1999-11-30 08:09:10");

    EXPECT_EQ(applyDateRule(DateField::dateTimeOriginal, record, rules),
              writes("2021-01-01 10:00:00"));
    EXPECT_EQ(applyDateRule(DateField::creationDate, record, rules), writes("2021-02-01 11:00:00"));
    // A value that is not a date, or an invalid date, counts as no date.
    EXPECT_EQ(applyDateRule(DateField::modifyDate, record, rules), kNothing);
    EXPECT_EQ(applyDateRule(DateField::modifyDateXMP, record, rules), kNothing);
    EXPECT_EQ(applyDateRule(DateField::createDateXMP, record, rules),
              writes("2021-04-01 13:00:00"));
    EXPECT_EQ(applyDateRule(DateField::createDateXMPPhotoshop, record, rules),
              writes("2021-06-01 08:09:10"));

    // Every field's key is a date row of the key table, so the photo's date is read from it.
    for (DateField field : allDateFields) {
        const KeyRow* row = findKeyRow(QLatin1String(dateFieldKey(field)));
        ASSERT_NE(row, nullptr) << dateFieldKey(field);
        EXPECT_EQ(row->read, ReadKind::DateText) << dateFieldKey(field);
    }

    CGImageProperties bare;
    EXPECT_EQ(applyDateRule(DateField::dateTimeOriginal, bare, rules), kNothing);
    rules.rule(DateField::dateTimeOriginal) = DateTimeConfiguration(EmptyValue{});
    EXPECT_EQ(applyDateRule(DateField::dateTimeOriginal, bare, rules),
              DateRuleOutcome::deleteKey());
}

TEST(DateRuleStore, PanelCommitsRaiseTheTouchedFlagOnce) {
    DateStores stores;
    DateRuleStore& editor = stores.forPanel(true);
    EXPECT_EQ(&editor, &stores.editorDates);
    EXPECT_EQ(&stores.forPanel(false), &stores.presetDates);

    editor.commitPanel(DateField::modifyDate, DateTimeConfiguration{}, std::nullopt);
    EXPECT_FALSE(editor.rules().modifyDateAlive) << "nothing changed";

    editor.commitPanel(DateField::modifyDate, idod(1, 0, 0), at("2021-01-01 00:00:00"));
    EXPECT_TRUE(editor.rules().modifyDateAlive);
    EXPECT_EQ(editor.rules().configurationModifyDate, idod(1, 0, 0));
    EXPECT_EQ(editor.rules().modifyDate, at("2021-01-01 00:00:00"));

    editor.commitPanel(DateField::modifyDate, DateTimeConfiguration{}, std::nullopt);
    EXPECT_TRUE(editor.rules().modifyDateAlive) << "the flag never goes back by a commit";
    EXPECT_EQ(editor.rules().modifyDate, std::nullopt);

    editor.commitPanel(DateField::creationDate, DateTimeConfiguration{}, at("2021-01-01 00:00:00"));
    EXPECT_TRUE(editor.rules().creationDateAlive) << "a changed slot alone counts";
    EXPECT_FALSE(editor.rules().dateTimeOriginalAlive);
    EXPECT_EQ(stores.presetDates.rules(), OriginalFinalDate{});

    OriginalFinalDate preset;
    preset.configurationCreateDateXMP = idot(1, 2, 3);
    editor.replace(preset);
    EXPECT_EQ(editor.rules(), preset);
    editor.reset();
    EXPECT_EQ(editor.rules(), OriginalFinalDate{});
}

} // namespace
} // namespace tagmoor
