#include "dates/ZoneClock.h"

#include <QFileInfo>
#include <QRegularExpression>
#include <QTimeZone>

#include <unicode/timezone.h>

#include <cstdlib>
#include <ctime>
#include <memory>

namespace tagmoor::ZoneClock {

namespace {

std::unique_ptr<icu::TimeZone> zoneOf(const QString& id) {
    return std::unique_ptr<icu::TimeZone>(icu::TimeZone::createTimeZone(
        icu::UnicodeString(reinterpret_cast<const char16_t*>(id.utf16()), int32_t(id.size()))));
}

QString idOf(const icu::TimeZone& zone) {
    icu::UnicodeString id;
    zone.getID(id);
    return QString(reinterpret_cast<const QChar*>(id.getBuffer()), id.length());
}

// ICU's offset of `zone` at `millis`, read as a wall clock or as a moment.
int offsetOf(const QString& zoneId, double millis, bool wallClock) {
    const auto zone = zoneOf(zoneId);
    UErrorCode status = U_ZERO_ERROR;
    int32_t raw = 0;
    int32_t dst = 0;
    zone->getOffset(millis, wallClock, raw, dst, status);
    return U_SUCCESS(status) ? (raw + dst) / 1000 : 0;
}

double wallMillis(const QDateTime& wallClock) {
    // The clock's reading as if it were UTC: ICU's "local millis".
    return double(
        QDateTime(wallClock.date(), wallClock.time(), QTimeZone::utc()).toMSecsSinceEpoch());
}

} // namespace

std::optional<QString> zoneIdOf(const QString& text) {
    const QString trimmed = text.trimmed();
    if (trimmed.compare(QLatin1String("UTC"), Qt::CaseInsensitive) == 0 ||
        trimmed == QLatin1String("Z"))
        return QStringLiteral("UTC");
    static const QRegularExpression kOffset(QStringLiteral("^([+-])(\\d{2})(?::?(\\d{2}))?$"));
    if (const QRegularExpressionMatch m = kOffset.match(trimmed); m.hasMatch()) {
        const int hours = m.captured(2).toInt();
        const int minutes = m.hasCaptured(3) ? m.captured(3).toInt() : 0;
        if (hours > 14 || minutes > 59)
            return std::nullopt;
        return QStringLiteral("GMT%1%2:%3")
            .arg(m.captured(1))
            .arg(hours, 2, 10, QLatin1Char('0'))
            .arg(minutes, 2, 10, QLatin1Char('0'));
    }
    if (trimmed.isEmpty())
        return std::nullopt;
    const auto zone = zoneOf(trimmed);
    const QString id = idOf(*zone);
    if (id == QLatin1String("Etc/Unknown"))
        return std::nullopt;
    return id;
}

QString systemZoneId() {
    const std::unique_ptr<icu::TimeZone> zone(icu::TimeZone::detectHostTimeZone());
    return idOf(*zone);
}

bool nameSystemZoneInEnvironment() {
    if (qEnvironmentVariableIsSet("TZ"))
        return false;
    const QString id = systemZoneId();
    const QString database = qEnvironmentVariableIsEmpty("TZDIR")
                                 ? QStringLiteral("/usr/share/zoneinfo")
                                 : qEnvironmentVariable("TZDIR");
    const QString system = QFileInfo(QStringLiteral("/etc/localtime")).canonicalFilePath();
    if (id.isEmpty() || system.isEmpty() ||
        QFileInfo(database + QLatin1Char('/') + id).canonicalFilePath() != system)
        return false;
    qputenv("TZ", id.toUtf8());
    ::tzset();
    // ICU reads TZ too: it must find the very zone it found without it.
    if (systemZoneId() == id)
        return true;
    qunsetenv("TZ");
    ::tzset();
    return false;
}

int offsetAtWallClock(const QString& zoneId, const QDateTime& wallClock) {
    return offsetOf(zoneId, wallMillis(wallClock), true);
}

int offsetAtMoment(const QString& zoneId, const QDateTime& moment) {
    return offsetOf(zoneId, double(moment.toMSecsSinceEpoch()), false);
}

QDateTime moveWallClock(const QString& from, const QString& to, const QDateTime& wallClock) {
    const QDateTime asUtc(wallClock.date(), wallClock.time(), QTimeZone::utc());
    const QDateTime moment = asUtc.addSecs(-offsetAtWallClock(from, wallClock));
    return moment.addSecs(offsetAtMoment(to, moment));
}

QString offsetText(int offsetSeconds) {
    const int minutes = std::abs(offsetSeconds) / 60;
    return QStringLiteral("%1%2:%3")
        .arg(offsetSeconds < 0 ? QLatin1Char('-') : QLatin1Char('+'))
        .arg(minutes / 60, 2, 10, QLatin1Char('0'))
        .arg(minutes % 60, 2, 10, QLatin1Char('0'));
}

} // namespace tagmoor::ZoneClock
