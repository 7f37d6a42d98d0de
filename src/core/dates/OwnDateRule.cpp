#include "dates/OwnDateRule.h"

#include "dates/DateArithmetic.h"
#include "dates/DateTexts.h"
#include "dates/PhotoDateRule.h"

#include <algorithm>

namespace tagmoor {

std::optional<QDateTime> updatedOwnDate(const UpdateDate& rule, const QDateTime& own) {
    const DateParts parts = datePartsOf(own);
    const int year =
        !rule.isKeepOriginalYears && rule.changeYears > 0 ? rule.changeYears : parts.year;
    const int month =
        !rule.isKeepOriginalMonths && rule.changeMonths > 0 ? rule.changeMonths : parts.month;
    const QDate first(year, month, 1);
    // Numbers that make no date (a month of 13 from a hand-made preset) change nothing.
    if (!first.isValid())
        return std::nullopt;
    const int day = !rule.isKeepOriginalDays && rule.changeDays > 0 ? rule.changeDays : parts.day;
    const QTime time = rule.isKeepOriginalTime
                           ? QTime(parts.hour, parts.minute, parts.second)
                           : QTime(rule.changeHours, rule.changeMinutes, rule.changeSeconds);
    return ruleDateOf(QDate(year, month, std::min(day, first.daysInMonth())), time);
}

DateRuleOutcome applyOwnDateRule(const DateTimeConfiguration& rule,
                                 const std::optional<QDateTime>& slot,
                                 const std::optional<QDateTime>& own) {
    return PhotoDateRule(DateRuleKind::ownDate).apply(rule, slot, own);
}

} // namespace tagmoor
