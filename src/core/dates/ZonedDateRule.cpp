#include "dates/ZonedDateRule.h"

#include <QRegularExpression>

namespace tagmoor {

std::optional<DateZone> zoneOfDateText(const QString& text) {
    static const QRegularExpression pattern(QStringLiteral(
        R"(\d[T ]\d{2}[:-]\d{2}(?:[:-]\d{2}(?:\.\d+)?)?\s*(Z|([+-])(\d{2}):?(\d{2}))\s*$)"));
    const auto m = pattern.match(text);
    if (!m.hasMatch())
        return std::nullopt;
    if (m.captured(1) == QLatin1String("Z"))
        return DateZone{0, QStringLiteral("Z")};
    const int hours = m.captured(3).toInt();
    const int minutes = m.captured(4).toInt();
    if (hours > 23 || minutes > 59)
        return std::nullopt;
    const int sign = m.captured(2) == QLatin1String("-") ? -1 : 1;
    return DateZone{sign * (hours * 3600 + minutes * 60),
                    m.captured(2) + m.captured(3) + QLatin1Char(':') + m.captured(4)};
}

DateRuleOutcome applyDateRuleInZone(const DateTimeConfiguration& rule,
                                    const std::optional<QDateTime>& slot,
                                    const std::optional<QDateTime>& own, const DateZone& zone,
                                    DateRuleKind kind) {
    const auto apply = [&](const std::optional<QDateTime>& date) {
        return applyDateRule(kind, rule, slot, date);
    };
    if (!readsOwnClock(kind, rule) || !own || !own->isValid())
        return apply(own);
    // The rules count on the user's clock; the photo's clock is handed in as if it were it.
    const QDateTime clock = own->toOffsetFromUtc(zone.offsetSeconds);
    const QDateTime asLocal(clock.date(), clock.time(), Qt::LocalTime);
    if (!asLocal.isValid() || asLocal.date() != clock.date() || asLocal.time() != clock.time())
        return apply(own);
    DateRuleOutcome outcome = apply(asLocal);
    if (outcome.action != DateRuleOutcome::Action::writeText)
        return outcome;
    // "yyyy-MM-dd HH:mm:ss" on the photo's clock, written in ISO 8601 with its zone.
    static const QRegularExpression ruleText(
        QStringLiteral(R"(^(\d{4,}-\d{2}-\d{2}) (\d{2}:\d{2}:\d{2})$)"));
    const auto m = ruleText.match(outcome.text);
    if (!m.hasMatch())
        return apply(own);
    outcome.text = m.captured(1) + QLatin1Char('T') + m.captured(2) + zone.text;
    return outcome;
}

DateRuleOutcome applyDateRuleInZone(const DateTimeConfiguration& rule,
                                    const std::optional<QDateTime>& slot,
                                    const std::optional<QDateTime>& own, const DateZone& zone,
                                    bool carry) {
    return applyDateRuleInZone(rule, slot, own, zone,
                               carry ? DateRuleKind::carried : DateRuleKind::wrapping);
}

} // namespace tagmoor
