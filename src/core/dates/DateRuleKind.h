#pragma once

#include "dates/DateRule.h"

namespace tagmoor {

// Which computation turns a photo's date and a rule into the field's new value. A run makes
// this one choice for all its date fields.
enum class DateRuleKind {
    // The classic rules: parts wrap within their ranges, and the slot gives the parts a rule
    // does not set (applyDateRule).
    wrapping,
    // The same base, with shifts carried as a calendar counts (applyCarriedDateRule).
    carried,
    // Everything from each photo's own date, shifts carried (applyOwnDateRule).
    ownDate,
};

// The standard form counts on each photo's own date; the described form wraps unless the
// user asked for carried shifts.
DateRuleKind dateRuleKindFor(bool standardForm, bool carryShifts);

DateRuleOutcome applyDateRule(DateRuleKind kind, const DateTimeConfiguration& rule,
                              const std::optional<QDateTime>& slot,
                              const std::optional<QDateTime>& own);

// Whether the outcome depends on the clock of the photo's own date: a shift, and under
// ownDate also "Update Date" (which keeps the parts it does not set).
bool readsOwnClock(DateRuleKind kind, const DateTimeConfiguration& rule);

} // namespace tagmoor
