#include "dates/OwnDateRule.h"

#include "dates/CarriedShift.h"
#include "dates/DateTexts.h"

#include <algorithm>

namespace tagmoor {

namespace {

std::optional<QDateTime> updatedDate(const UpdateDate& rule, const QDateTime& own) {
    const DateParts parts = datePartsOf(own);
    const int year =
        !rule.isKeepOriginalYears && rule.changeYears > 0 ? rule.changeYears : parts.year;
    const int month =
        !rule.isKeepOriginalMonths && rule.changeMonths > 0 ? rule.changeMonths : parts.month;
    const QDate first(year, month, 1);
    if (!first.isValid())
        return std::nullopt;
    const int day = !rule.isKeepOriginalDays && rule.changeDays > 0 ? rule.changeDays : parts.day;
    const QTime time = rule.isKeepOriginalTime
                           ? QTime(parts.hour, parts.minute, parts.second)
                           : QTime(rule.changeHours, rule.changeMinutes, rule.changeSeconds);
    return ruleDateOf(QDate(year, month, std::min(day, first.daysInMonth())), time);
}

} // namespace

DateRuleOutcome applyOwnDateRule(const DateTimeConfiguration& rule,
                                 const std::optional<QDateTime>& slot,
                                 const std::optional<QDateTime>& own) {
    const bool hasOwn = own && own->isValid();
    if (!hasOwn || !(rule.is<UpdateDate>() || isShiftRule(rule)))
        return applyDateRule(rule, slot, own);
    if (const auto* update = rule.as<UpdateDate>()) {
        // Numbers that make no date (a month of 13 from a hand-made preset) change nothing.
        const auto date = updatedDate(*update, *own);
        return DateRuleOutcome::write(sharedDateFormatter().format(date ? *date : *own));
    }
    return applyCarriedDateRule(rule, std::nullopt, own);
}

} // namespace tagmoor
