#include "dates/DateRuleKind.h"

#include "dates/CarriedShift.h"
#include "dates/OwnDateRule.h"

namespace tagmoor {

DateRuleKind dateRuleKindFor(bool standardForm, bool carryShifts) {
    if (standardForm)
        return DateRuleKind::ownDate;
    return carryShifts ? DateRuleKind::carried : DateRuleKind::wrapping;
}

DateRuleOutcome applyDateRule(DateRuleKind kind, const DateTimeConfiguration& rule,
                              const std::optional<QDateTime>& slot,
                              const std::optional<QDateTime>& own) {
    switch (kind) {
    case DateRuleKind::wrapping:
        break;
    case DateRuleKind::carried:
        return applyCarriedDateRule(rule, slot, own);
    case DateRuleKind::ownDate:
        return applyOwnDateRule(rule, slot, own);
    }
    return applyDateRule(rule, slot, own);
}

bool readsOwnClock(DateRuleKind kind, const DateTimeConfiguration& rule) {
    if (isShiftRule(rule))
        return true;
    return kind == DateRuleKind::ownDate && rule.is<UpdateDate>();
}

} // namespace tagmoor
