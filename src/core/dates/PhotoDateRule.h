#pragma once

#include "dates/DateRule.h"
#include "dates/DateRuleKind.h"
#include "dates/ZonedDateRule.h"

#include <QDateTime>

#include <optional>

namespace tagmoor {

// The computation of a run's date fields, chosen once for the run by its form and its carry
// option. For one field it settles the modes that need no arithmetic, reads the photo's own
// date once (on the photo's own clock when its text carries a zone and the rule reads that
// clock), computes the new date by the run's arithmetic and formats it once. Pure and
// thread-safe.
class PhotoDateRule {
public:
    explicit PhotoDateRule(DateRuleKind kind) : m_kind(kind) {}
    static PhotoDateRule forRun(bool standardForm, bool carryShifts) {
        return PhotoDateRule(dateRuleKindFor(standardForm, carryShifts));
    }

    DateRuleKind kind() const { return m_kind; }

    // Whether the outcome depends on the clock of the photo's own date (see readsOwnClock).
    bool readsOwnClock(const DateTimeConfiguration& rule) const;

    // The new value of one field. `slot` is the field's date slot, `own` the photo's own date
    // in the field, `zone` the zone its text was written with, if any.
    DateRuleOutcome apply(const DateTimeConfiguration& rule, const std::optional<QDateTime>& slot,
                          const std::optional<QDateTime>& own,
                          const std::optional<DateZone>& zone = std::nullopt) const;

private:
    // The new date of an update or a shift from valid dates; nothing keeps the own date.
    std::optional<QDateTime> computed(const DateTimeConfiguration& rule,
                                      const std::optional<QDateTime>& slot,
                                      const QDateTime& own) const;
    DateRuleOutcome onOwnClock(const DateTimeConfiguration& rule,
                               const std::optional<QDateTime>& slot, const QDateTime& own,
                               const DateZone& zone) const;

    DateRuleKind m_kind;
};

} // namespace tagmoor
