#include "dates/PhotoDateRule.h"

#include "dates/CarriedShift.h"
#include "dates/DateArithmetic.h"
#include "dates/DateTexts.h"

#include <QRegularExpression>

namespace tagmoor {

namespace {

std::optional<QDateTime> validOnly(const std::optional<QDateTime>& date) {
    return date && date->isValid() ? date : std::nullopt;
}

} // namespace

bool PhotoDateRule::readsOwnClock(const DateTimeConfiguration& rule) const {
    return isShiftRule(rule) || (m_kind == DateRuleKind::ownDate && rule.is<UpdateDate>());
}

std::optional<QDateTime> PhotoDateRule::computed(const DateTimeConfiguration& rule,
                                                 const std::optional<QDateTime>& slot,
                                                 const QDateTime& own) const {
    const QDateTime base = slot ? *slot : own;
    if (const auto* update = rule.as<UpdateDate>()) {
        return m_kind == DateRuleKind::ownDate ? updatedOwnDate(*update, own)
                                               : wrappedDate(*update, base, own);
    }
    // Under ownDate every part comes from the photo's own date, never from the slot.
    const QDateTime shiftBase = m_kind == DateRuleKind::ownDate ? own : base;
    const bool carried = m_kind != DateRuleKind::wrapping;
    if (const auto* idod = rule.as<IDOD>())
        return carried ? carriedDate(*idod, shiftBase, own) : wrappedDate(*idod, base, own);
    if (const auto* idot = rule.as<IDOT>())
        return carried ? carriedDate(*idot, shiftBase, own) : wrappedDate(*idot, base, own);
    return std::nullopt;
}

DateRuleOutcome PhotoDateRule::apply(const DateTimeConfiguration& rule,
                                     const std::optional<QDateTime>& slotDate,
                                     const std::optional<QDateTime>& ownDate,
                                     const std::optional<DateZone>& zone) const {
    const auto slot = validOnly(slotDate);
    const auto own = validOnly(ownDate);
    if (rule.is<EmptyValue>())
        return DateRuleOutcome::deleteKey();
    if (rule.is<KeepOriginal>())
        return DateRuleOutcome::nothing();
    if (rule.is<SelectDate>()) {
        // The photo's own date plays no part, so this also dates a photo that has none.
        return slot ? DateRuleOutcome::write(sharedDateFormatter().format(*slot))
                    : DateRuleOutcome::nothing();
    }
    // The update and shift modes never invent a date for a photo that has none.
    if (!own)
        return DateRuleOutcome::nothing();
    if (zone && readsOwnClock(rule)) {
        DateRuleOutcome outcome = onOwnClock(rule, slot, *own, *zone);
        if (outcome.action == DateRuleOutcome::Action::writeText)
            return outcome;
    }
    const auto date = computed(rule, slot, *own);
    return DateRuleOutcome::write(sharedDateFormatter().format(date ? *date : *own));
}

// The rules count on the user's clock; the photo's clock is handed in as if it were it, and
// the result is written in ISO 8601 with the photo's zone. Nothing when the user's zone lacks
// the photo's time or the result has no such text: the rule then counts on the user's clock.
DateRuleOutcome PhotoDateRule::onOwnClock(const DateTimeConfiguration& rule,
                                          const std::optional<QDateTime>& slot,
                                          const QDateTime& own, const DateZone& zone) const {
    const QDateTime clock = own.toOffsetFromUtc(zone.offsetSeconds);
    const QDateTime asLocal(clock.date(), clock.time(), Qt::LocalTime);
    if (!asLocal.isValid() || asLocal.date() != clock.date() || asLocal.time() != clock.time())
        return DateRuleOutcome::nothing();
    const auto date = computed(rule, slot, asLocal);
    const QString text = sharedDateFormatter().format(date ? *date : asLocal);
    // "yyyy-MM-dd HH:mm:ss" on the photo's clock.
    static const QRegularExpression ruleText(
        QStringLiteral(R"(^(\d{4,}-\d{2}-\d{2}) (\d{2}:\d{2}:\d{2})$)"));
    const auto m = ruleText.match(text);
    if (!m.hasMatch())
        return DateRuleOutcome::nothing();
    return DateRuleOutcome::write(m.captured(1) + QLatin1Char('T') + m.captured(2) + zone.text);
}

} // namespace tagmoor
