#pragma once

#include "dates/DateRule.h"

namespace tagmoor {

// Whether the rule shifts the date or the time it finds (an increment mode that is in force).
bool isShiftRule(const DateTimeConfiguration& rule);

// The new value of one date field with the shifts of the increment modes carried the way a
// calendar counts: an hour past midnight is the next day, a day past the month's end the next
// month, a month past December the next year, and leap days fall where they fall. Years are
// added first, then months (a day that the new month lacks becomes its last day), then days;
// hours, minutes and seconds are added as one span. Every other mode gives what
// applyDateRule gives. Pure and thread-safe.
DateRuleOutcome applyCarriedDateRule(const DateTimeConfiguration& rule,
                                     const std::optional<QDateTime>& slot,
                                     const std::optional<QDateTime>& own);

DateRuleOutcome applyCarriedDateRule(DateField field, const CGImageProperties& record,
                                     const OriginalFinalDate& rules);

} // namespace tagmoor
