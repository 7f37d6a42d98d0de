#include "dates/CarriedShift.h"

#include "dates/DateTexts.h"
#include "dates/OriginalDate.h"

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

DateRuleOutcome applyCarriedDateRule(const DateTimeConfiguration& rule,
                                     const std::optional<QDateTime>& slotDate,
                                     const std::optional<QDateTime>& ownDate) {
    if (!isShiftRule(rule) || !ownDate || !ownDate->isValid())
        return applyDateRule(rule, slotDate, ownDate);
    const bool hasSlot = slotDate && slotDate->isValid();
    // As with wrapping, the parts a shift leaves alone come from the slot date when there is
    // one: the time of a date shift, the day of a time shift.
    const DateParts own = datePartsOf(*ownDate);
    const DateParts base = datePartsOf(hasSlot ? *slotDate : *ownDate);

    std::optional<QDateTime> result;
    if (const auto* idod = rule.as<IDOD>()) {
        const IDOD& d = *idod;
        QDate day = dayOf(own);
        if (!d.isKeepOriginalYears)
            day = day.addYears(d.changeYears);
        if (!d.isKeepOriginalMonths)
            day = day.addMonths(d.changeMonths);
        if (!d.isKeepOriginalDays)
            day = day.addDays(d.changeDays);
        result = ruleDateOf(day, timeOf(base));
    } else {
        const IDOT& t = *rule.as<IDOT>();
        const qint64 span = (t.isKeepOriginalHours ? 0 : qint64(t.changeHours) * 3600) +
                            (t.isKeepOriginalMinutes ? 0 : qint64(t.changeMinutes) * 60) +
                            (t.isKeepOriginalSeconds ? 0 : qint64(t.changeSeconds));
        // Counted on the clock face, not in elapsed time: a shift across a change of summer
        // time still moves the written time by exactly the span.
        const QDateTime face = QDateTime(dayOf(base), timeOf(own), Qt::UTC).addSecs(span);
        result = ruleDateOf(face.date(), face.time());
    }
    // A date that does not exist in the user's zone keeps the photo's own.
    return DateRuleOutcome::write(sharedDateFormatter().format(result ? *result : *ownDate));
}

DateRuleOutcome applyCarriedDateRule(DateField field, const CGImageProperties& record,
                                     const OriginalFinalDate& rules) {
    return applyCarriedDateRule(rules.rule(field), rules.slot(field),
                                OriginalDate::of(record).get(field));
}

} // namespace tagmoor
