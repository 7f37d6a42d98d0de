#include "dates/ZonedDate.h"

#include "dates/ZoneClock.h"

#include <QRegularExpression>
#include <QTimeZone>

namespace tagmoor {

std::optional<QDateTime> wallClockOf(const QString& text) {
    static const QRegularExpression kDate(QStringLiteral(
        R"(^\s*(\d{4})[-:](\d{2})[-:](\d{2})[ T](\d{2}):(\d{2})(?::(\d{2}))?(?:\.\d+)?)"
        R"((?:Z|[+-]\d{2}:?\d{2})?\s*$)"));
    const QRegularExpressionMatch m = kDate.match(text);
    if (!m.hasMatch())
        return std::nullopt;
    const QDate day(m.captured(1).toInt(), m.captured(2).toInt(), m.captured(3).toInt());
    const QTime time(m.captured(4).toInt(), m.captured(5).toInt(),
                     m.hasCaptured(6) ? m.captured(6).toInt() : 0);
    if (!day.isValid() || !time.isValid())
        return std::nullopt;
    return QDateTime(day, time, QTimeZone::utc());
}

bool isXmpDateField(DateField field) {
    return QByteArray(dateFieldKey(field)).startsWith("Xmp.");
}

std::optional<ZonedDate> zonedDate(const DatesZone& zone, DateField field, const QString& text) {
    std::optional<QDateTime> clock = wallClockOf(text);
    if (!clock)
        return std::nullopt;
    ZonedDate out;
    if (zone.movedFrom.isEmpty()) {
        out.offsetSeconds = ZoneClock::offsetAtWallClock(zone.zone, *clock);
    } else {
        // The moment the camera's clock showed, then the place's clock at that moment (which
        // tells an hour shown twice apart).
        const QDateTime moment =
            clock->addSecs(-ZoneClock::offsetAtWallClock(zone.movedFrom, *clock));
        out.offsetSeconds = ZoneClock::offsetAtMoment(zone.zone, moment);
        clock = moment.addSecs(out.offsetSeconds);
    }
    if (isXmpDateField(field))
        out.text = clock->toString(QStringLiteral("yyyy-MM-ddTHH:mm:ss")) +
                   ZoneClock::offsetText(out.offsetSeconds);
    else if (text.trimmed().mid(4, 1) == QLatin1String(":"))
        out.text = clock->toString(QStringLiteral("yyyy:MM:dd HH:mm:ss"));
    else
        out.text = clock->toString(QStringLiteral("yyyy-MM-dd HH:mm:ss"));
    return out;
}

} // namespace tagmoor
