#include "editor/DatePanelState.h"
#include "editor/EditorState.h"
#include "editor/MetadataForm.h"
#include "foundation/ScriptedPrompt.h"
#include "model/FormFieldTable.h"
#include "workingset/WorkingSet.h"

#include <gtest/gtest.h>

namespace tagmoor {
namespace {

const QDateTime kMay6 = QDateTime(QDate(2021, 5, 6), QTime(10, 22, 33));
const QDateTime kApril10 = QDateTime(QDate(2021, 4, 10), QTime(8, 0, 0));
const QDateTime kNow = QDateTime(QDate(2024, 6, 1), QTime(12, 0, 0));

DatePanelState::Opening opening(std::optional<QDateTime> date, bool multiple = false,
                                bool allEmpty = false) {
    DatePanelState::Opening o;
    o.date = date;
    o.isMultipleSelected = multiple;
    o.isAllEmpty = allEmpty;
    o.now = kNow;
    return o;
}

constexpr DateMode kNeedADate[] = {DateMode::updateDate, DateMode::incrementDate,
                                   DateMode::incrementTime};

TEST(DatePanelState, ModesThatNeedADateAreOffWithoutOne) {
    struct Case {
        std::optional<QDateTime> date;
        bool multiple;
        bool allEmpty;
        bool available;
    };
    const Case cases[] = {
        {std::nullopt, false, true, false}, // one photo without the date
        {std::nullopt, true, true, false},  // several, none has it
        {std::nullopt, true, false, true},  // several, some have it
        {kMay6, false, false, true},
    };
    for (const Case& c : cases) {
        DatePanelState s(opening(c.date, c.multiple, c.allEmpty));
        EXPECT_EQ(s.mode(), DateMode::keepOriginal);
        for (DateMode mode : kNeedADate) {
            EXPECT_EQ(s.isModeAvailable(mode), c.available);
            EXPECT_EQ(s.chooseMode(mode), c.available);
        }
        EXPECT_TRUE(s.chooseMode(DateMode::selectDate));
        EXPECT_TRUE(s.chooseMode(DateMode::emptyValue));
        EXPECT_EQ(s.summary(), "Empty Value");
    }
}

TEST(DatePanelState, OneModeAtATimeAndOnlyItsRowTakesInput) {
    DatePanelState s(opening(kMay6));
    ASSERT_TRUE(s.chooseMode(DateMode::incrementTime));
    EXPECT_TRUE(s.isPartEnabled(DatePart::incrementHour));
    EXPECT_FALSE(s.isPartEnabled(DatePart::incrementDay));
    EXPECT_FALSE(s.isPartEnabled(DatePart::updateDay));
    s.setKept(DatePart::incrementHour, true);
    EXPECT_FALSE(s.isPartEnabled(DatePart::incrementHour));
    EXPECT_TRUE(s.isRowEnabled(DateMode::incrementTime));

    const DateTimeConfiguration rule = s.rule();
    EXPECT_TRUE(rule.is<IDOT>());
    EXPECT_TRUE(rule.as<IDOT>()->isKeepOriginalHours);
    EXPECT_FALSE(rule.inputs().selectDate);
}

TEST(DatePanelState, TypedNumbersAreFilteredAndPutIntoTheirRange) {
    EXPECT_EQ(DatePanelState::filterTyped(DatePart::updateDay, "-1a2"), "12");
    EXPECT_EQ(DatePanelState::filterTyped(DatePart::incrementDay, "-1a-2"), "-12");
    EXPECT_EQ(DatePanelState::filterTyped(DatePart::incrementHour, "1-"), "1");

    DatePanelState april(opening(kApril10)); // a 30-day month
    ASSERT_TRUE(april.chooseMode(DateMode::updateDate));
    EXPECT_EQ(april.endEditing(DatePart::updateDay, "0"), 1);
    EXPECT_EQ(april.endEditing(DatePart::updateDay, "40"), 30);
    EXPECT_EQ(april.endEditing(DatePart::updateMonth, "0"), 1);
    EXPECT_EQ(april.endEditing(DatePart::updateMonth, "13"), 12);
    EXPECT_EQ(april.endEditing(DatePart::updateYear, "2999"), 2024) << "the current year";
    EXPECT_EQ(april.endEditing(DatePart::updateYear, "99999999999999"), 2024);

    DatePanelState may(opening(kMay6)); // a 31-day month
    ASSERT_TRUE(may.chooseMode(DateMode::incrementDate));
    EXPECT_EQ(may.endEditing(DatePart::incrementDay, "-40"), -30);
    EXPECT_EQ(may.endEditing(DatePart::incrementDay, "31"), 30);
    EXPECT_EQ(may.endEditing(DatePart::incrementMonth, "12"), 11);
    EXPECT_EQ(may.endEditing(DatePart::incrementYear, "-101"), -100);
    EXPECT_EQ(may.endEditing(DatePart::incrementHour, "-24"), -23);
    EXPECT_EQ(may.endEditing(DatePart::incrementMinute, "60"), 59);
    EXPECT_EQ(may.endEditing(DatePart::incrementSecond, ""), 0);
    // Steppers stop at the same bounds.
    EXPECT_EQ(may.step(DatePart::incrementMonth, 1), 11);
    EXPECT_EQ(may.step(DatePart::incrementYear, -1), -100);
    EXPECT_EQ(may.step(DatePart::incrementSecond, -1), -1);
}

TEST(DatePanelState, UpdateRowBuildsTheDateAndItsSummary) {
    DatePanelState s(opening(kMay6));
    EXPECT_EQ(s.number(DatePart::updateDay), 6) << "the row starts on the photo's date";
    EXPECT_EQ(s.number(DatePart::updateYear), 2021);
    ASSERT_TRUE(s.chooseMode(DateMode::updateDate));
    s.setKept(DatePart::updateMonth, true);
    s.setKept(DatePart::updateYear, true);
    s.endEditing(DatePart::updateDay, "15");
    s.setUpdateTime(QTime(14, 5, 0));
    ASSERT_TRUE(s.resultDate());
    EXPECT_EQ(*s.resultDate(), QDateTime(QDate(2021, 5, 15), QTime(14, 5, 0)));
    EXPECT_EQ(s.summary(), "Update:  Day: 15  Time: 2:05:00 PM ");

    const UpdateDate u = *s.rule().as<UpdateDate>();
    EXPECT_EQ(u.changeDays, 15);
    EXPECT_EQ(u.changeHours, 14);
    EXPECT_EQ(u.timeMode, TimeMode::pm);
    EXPECT_TRUE(u.isKeepOriginalMonths && u.isKeepOriginalYears);
    EXPECT_FALSE(u.isKeepOriginalDays || u.isKeepOriginalTime);

    // The kept time is the photo's.
    s.setKept(DatePart::updateTime, true);
    EXPECT_EQ(*s.resultDate(), QDateTime(QDate(2021, 5, 15), QTime(10, 22, 33)));
    EXPECT_EQ(s.summary(), "Update:  Day: 15  Time: Keep Original");
    s.setKept(DatePart::updateDay, true);
    EXPECT_EQ(s.summary(), "Keep Original") << "every keep box of the row on";
}

TEST(DatePanelState, IncrementRowsShowNonZeroDeltas) {
    DatePanelState s(opening(kMay6));
    ASSERT_TRUE(s.chooseMode(DateMode::incrementTime));
    EXPECT_EQ(s.summary(), "Keep Original") << "no delta yet";
    s.endEditing(DatePart::incrementHour, "2");
    s.endEditing(DatePart::incrementSecond, "-5");
    EXPECT_EQ(s.summary(), "Inc/Dec:  Hour: 2  Second: -5 ");
    const IDOT idot = *s.rule().as<IDOT>();
    EXPECT_EQ(idot.changeHours, 2);
    EXPECT_EQ(idot.changeMinutes, 0);
    EXPECT_EQ(idot.changeSeconds, -5);

    DatePanelState d(opening(kMay6));
    ASSERT_TRUE(d.chooseMode(DateMode::incrementDate));
    d.endEditing(DatePart::incrementDay, "3");
    ASSERT_TRUE(d.resultDate());
    EXPECT_EQ(d.resultDate()->date(), QDate(2021, 5, 3)) << "the delta stands in the date";
    d.endEditing(DatePart::incrementYear, "-1");
    EXPECT_EQ(d.summary(), "Inc/Dec:  Day: 3  Year: -1 ");
    EXPECT_FALSE(d.resultDate()) << "a text the parser refuses leaves no date";
    for (DatePart part :
         {DatePart::incrementDay, DatePart::incrementMonth, DatePart::incrementYear})
        d.setKept(part, true);
    EXPECT_EQ(d.summary(), "Keep Original");
}

TEST(DatePanelState, SelectDateAndATouchedRuleComeBack) {
    DatePanelState s(opening(std::nullopt));
    ASSERT_TRUE(s.chooseMode(DateMode::selectDate));
    EXPECT_EQ(s.selectDate(), kNow) << "a photo without the date starts on today";
    s.setSelectDate(kMay6);
    EXPECT_EQ(s.resultDate(), kMay6);
    EXPECT_EQ(s.rule().as<SelectDate>()->selectDate, kMay6);
    EXPECT_FALSE(s.summary().isEmpty());

    DatePanelState t(opening(kMay6));
    ASSERT_TRUE(t.chooseMode(DateMode::incrementTime));
    t.endEditing(DatePart::incrementMinute, "-7");
    t.setKept(DatePart::incrementSecond, true);
    DatePanelState::Opening again = opening(kMay6);
    again.rule = t.rule();
    again.slot = kApril10;
    again.isTouched = true;
    const DatePanelState back(again);
    EXPECT_EQ(back.mode(), DateMode::incrementTime);
    EXPECT_EQ(back.number(DatePart::incrementMinute), -7);
    EXPECT_TRUE(back.isKept(DatePart::incrementSecond));
    EXPECT_EQ(back.rule(), t.rule());
    EXPECT_EQ(back.resultDate(), kApril10) << "closing unchanged keeps the stored slot";
    EXPECT_FALSE(back.isChanged());
    EXPECT_TRUE(t.isChanged());

    again.isTouched = false;
    EXPECT_EQ(DatePanelState(again).mode(), DateMode::keepOriginal);
}

TEST(MetadataForm, LiveDateSummaryIsUndoneWhenTheRuleStaysUntouched) {
    WorkingSet set;
    EditorState state;
    ScriptedPrompt prompt;
    MetadataForm form{set, state, prompt, true};
    set.appendImages({withKeyGroups(makeEmptyRecord(QUrl::fromLocalFile("/p/a.jpg")))});
    form.updateMetadataInfo(0, false, {0});
    const Field position = Field::ModifyDate;
    const QString before = form.text(position);

    form.showDateSummary(DateField::modifyDate, "Empty Value");
    form.showDateSummary(DateField::modifyDate, "Keep Original");
    EXPECT_EQ(form.text(position), "Keep Original");
    EXPECT_FALSE(form.isEdited(position)) << "showing is no commit";
    form.commitDateRule(DateField::modifyDate, DateTimeConfiguration{}, std::nullopt);
    EXPECT_EQ(form.text(position), before);
    EXPECT_FALSE(form.isDateRuleTouched(DateField::modifyDate));

    const DateTimeConfiguration empty = EmptyValue{};
    form.showDateSummary(DateField::modifyDate, "Empty Value");
    form.commitDateRule(DateField::modifyDate, empty, kMay6);
    EXPECT_EQ(form.text(position), "Empty Value");
    EXPECT_TRUE(form.isEdited(position));
    EXPECT_EQ(form.dateSlot(DateField::modifyDate), kMay6);
}

} // namespace
} // namespace tagmoor
