#pragma once

#include "dates/DateRuleKind.h"

#include <QString>

#include <optional>

namespace tagmoor {

// The time zone written at the end of a date text: "+02:00", "-0500", "Z".
struct DateZone {
    int offsetSeconds = 0; // east of UTC
    QString text;          // as the date shows it: "+02:00" or "Z"

    bool operator==(const DateZone&) const = default;
};

// The zone of a date text with a time ("2008-05-08T10:54:28+02:00"); nothing for a text
// without one, which counts as the user's own time.
std::optional<DateZone> zoneOfDateText(const QString& text);

// The rule of one field for a photo whose own date was written with `zone`. A rule that
// reads the photo's clock (see readsOwnClock: a shift, of the date or of the time, and under
// ownDate an update) counts on the photo's own clock in that zone and keeps the zone:
// "2008-05-08T10:54:28+02:00" shifted by one hour is "2008-05-08T11:54:28+02:00", whatever
// the user's zone. Every other rule, and a photo time that the user's zone does not have,
// gives what the rule gives without a zone.
DateRuleOutcome applyDateRuleInZone(const DateTimeConfiguration& rule,
                                    const std::optional<QDateTime>& slot,
                                    const std::optional<QDateTime>& own, const DateZone& zone,
                                    DateRuleKind kind);

// The same with the wrapping rule, or with carried shifts.
DateRuleOutcome applyDateRuleInZone(const DateTimeConfiguration& rule,
                                    const std::optional<QDateTime>& slot,
                                    const std::optional<QDateTime>& own, const DateZone& zone,
                                    bool carry);

} // namespace tagmoor
