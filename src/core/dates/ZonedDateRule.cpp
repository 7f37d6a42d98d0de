#include "dates/ZonedDateRule.h"

#include "dates/PhotoDateRule.h"

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
    return PhotoDateRule(kind).apply(rule, slot, own, zone);
}

DateRuleOutcome applyDateRuleInZone(const DateTimeConfiguration& rule,
                                    const std::optional<QDateTime>& slot,
                                    const std::optional<QDateTime>& own, const DateZone& zone,
                                    bool carry) {
    return applyDateRuleInZone(rule, slot, own, zone,
                               carry ? DateRuleKind::carried : DateRuleKind::wrapping);
}

} // namespace tagmoor
