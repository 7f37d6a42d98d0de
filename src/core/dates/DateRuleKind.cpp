#include "dates/DateRuleKind.h"

#include "dates/PhotoDateRule.h"

namespace tagmoor {

DateRuleKind dateRuleKindFor(bool standardForm, bool carryShifts) {
    if (standardForm)
        return DateRuleKind::ownDate;
    return carryShifts ? DateRuleKind::carried : DateRuleKind::wrapping;
}

DateRuleOutcome applyDateRule(DateRuleKind kind, const DateTimeConfiguration& rule,
                              const std::optional<QDateTime>& slot,
                              const std::optional<QDateTime>& own) {
    return PhotoDateRule(kind).apply(rule, slot, own);
}

bool readsOwnClock(DateRuleKind kind, const DateTimeConfiguration& rule) {
    return PhotoDateRule(kind).readsOwnClock(rule);
}

} // namespace tagmoor
