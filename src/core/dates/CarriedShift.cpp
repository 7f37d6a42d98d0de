#include "dates/CarriedShift.h"

#include "dates/DateArithmetic.h"
#include "dates/DateTexts.h"
#include "dates/OriginalDate.h"
#include "dates/PhotoDateRule.h"

namespace tagmoor {

namespace {

QDate dayOf(const DateParts& p) {
    return QDate(p.year, p.month, p.day);
}

QTime timeOf(const DateParts& p) {
    return QTime(p.hour, p.minute, p.second);
}

} // namespace

bool isShiftRule(const DateTimeConfiguration& rule) {
    return rule.is<IDOD>() || rule.is<IDOT>();
}

// As with wrapping, the parts a shift leaves alone come from the base: the time of a date
// shift, the day of a time shift. A date that does not exist in the user's zone is nothing.
std::optional<QDateTime> carriedDate(const IDOD& d, const QDateTime& base, const QDateTime& own) {
    QDate day = dayOf(datePartsOf(own));
    if (!d.isKeepOriginalYears)
        day = day.addYears(d.changeYears);
    if (!d.isKeepOriginalMonths)
        day = day.addMonths(d.changeMonths);
    if (!d.isKeepOriginalDays)
        day = day.addDays(d.changeDays);
    return ruleDateOf(day, timeOf(datePartsOf(base)));
}

std::optional<QDateTime> carriedDate(const IDOT& t, const QDateTime& base, const QDateTime& own) {
    const qint64 span = (t.isKeepOriginalHours ? 0 : qint64(t.changeHours) * 3600) +
                        (t.isKeepOriginalMinutes ? 0 : qint64(t.changeMinutes) * 60) +
                        (t.isKeepOriginalSeconds ? 0 : qint64(t.changeSeconds));
    // Counted on the clock face, not in elapsed time: a shift across a change of summer
    // time still moves the written time by exactly the span.
    const QDateTime face =
        QDateTime(dayOf(datePartsOf(base)), timeOf(datePartsOf(own)), Qt::UTC).addSecs(span);
    return ruleDateOf(face.date(), face.time());
}

DateRuleOutcome applyCarriedDateRule(const DateTimeConfiguration& rule,
                                     const std::optional<QDateTime>& slot,
                                     const std::optional<QDateTime>& own) {
    return PhotoDateRule(DateRuleKind::carried).apply(rule, slot, own);
}

DateRuleOutcome applyCarriedDateRule(DateField field, const CGImageProperties& record,
                                     const OriginalFinalDate& rules) {
    return applyCarriedDateRule(rules.rule(field), rules.slot(field),
                                OriginalDate::of(record).get(field));
}

} // namespace tagmoor
