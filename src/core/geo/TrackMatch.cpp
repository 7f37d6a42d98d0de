#include "geo/TrackMatch.h"

#include <QCoreApplication>
#include <QRegularExpression>

#include <algorithm>
#include <cmath>

namespace tagmoor {

namespace {

// A longitude step that crosses the 180th meridian goes the short way round.
double interpolateLongitude(double from, double to, double fraction) {
    double step = to - from;
    if (step > 180)
        step -= 360;
    else if (step < -180)
        step += 360;
    double longitude = from + step * fraction;
    if (longitude > 180)
        longitude -= 360;
    else if (longitude < -180)
        longitude += 360;
    return longitude;
}

GeotagMatch onFix(GeotagMatch match, const TrackPoint& fix) {
    match.outcome = GeotagMatch::Outcome::Matched;
    match.latitude = fix.latitude;
    match.longitude = fix.longitude;
    match.elevation = fix.elevation;
    match.before = fix;
    match.after = fix;
    return match;
}

} // namespace

QDateTime receiverTime(const QDateTime& cameraTime, const GeotagOptions& options) {
    if (!cameraTime.isValid())
        return {};
    // The camera's wall-clock reading, placed in its zone.
    const QDateTime inZone(cameraTime.date(), cameraTime.time(), options.cameraZone);
    return inZone.addSecs(options.clockOffsetSeconds).toUTC();
}

GeotagMatch matchOnTrack(const QList<TrackPoint>& points, const QDateTime& cameraTime,
                         const GeotagOptions& options) {
    GeotagMatch match;
    match.utc = receiverTime(cameraTime, options);
    if (!match.utc.isValid())
        return match;
    if (points.isEmpty()) {
        match.outcome = GeotagMatch::Outcome::NoTrack;
        return match;
    }
    const auto later = std::upper_bound(
        points.cbegin(), points.cend(), match.utc,
        [](const QDateTime& time, const TrackPoint& point) { return time < point.time; });
    if (later != points.cbegin() && std::prev(later)->time == match.utc)
        return onFix(match, *std::prev(later));
    if (later == points.cbegin()) {
        match.outcome = GeotagMatch::Outcome::BeforeTrack;
        match.after = points.first();
        return match;
    }
    if (later == points.cend()) {
        match.outcome = GeotagMatch::Outcome::AfterTrack;
        match.before = points.last();
        return match;
    }
    match.before = *std::prev(later);
    match.after = *later;
    const qint64 gap = match.before.time.msecsTo(match.after.time);
    if (gap > options.maxGapSeconds * 1000) {
        match.outcome = GeotagMatch::Outcome::InGap;
        return match;
    }
    const double fraction = double(match.before.time.msecsTo(match.utc)) / double(gap);
    match.outcome = GeotagMatch::Outcome::Matched;
    match.latitude =
        match.before.latitude + (match.after.latitude - match.before.latitude) * fraction;
    match.longitude = interpolateLongitude(match.before.longitude, match.after.longitude, fraction);
    if (match.before.elevation && match.after.elevation)
        match.elevation =
            *match.before.elevation + (*match.after.elevation - *match.before.elevation) * fraction;
    return match;
}

QString GeotagMatch::reason(const GeotagOptions& options) const {
    const QString at = utc.toString(Qt::ISODate);
    switch (outcome) {
    case Outcome::Matched:
        return {};
    case Outcome::NoCaptureTime:
        return QCoreApplication::translate("Geotag",
                                           "no capture date (DateTimeOriginal or CreateDate)");
    case Outcome::NoTrack:
        return QCoreApplication::translate("Geotag", "no track points with a time were loaded");
    case Outcome::BeforeTrack:
        return QCoreApplication::translate("Geotag", "taken at %1, before the track starts (%2)")
            .arg(at, after.time.toString(Qt::ISODate));
    case Outcome::AfterTrack:
        return QCoreApplication::translate("Geotag", "taken at %1, after the track ends (%2)")
            .arg(at, before.time.toString(Qt::ISODate));
    case Outcome::InGap:
        return QCoreApplication::translate(
                   "Geotag",
                   "taken at %1, in a gap of %2 s between fixes (at most %3 s is bridged)")
            .arg(at)
            .arg(before.time.secsTo(after.time))
            .arg(options.maxGapSeconds);
    }
    return {};
}

std::optional<qint64> parseClockOffset(const QString& text) {
    static const QRegularExpression kOffset(
        QStringLiteral("^([+-]?)(\\d{1,6})(?::(\\d{1,2}))?(?::(\\d{1,2}))?$"));
    const QRegularExpressionMatch m = kOffset.match(text.trimmed());
    if (!m.hasMatch())
        return std::nullopt;
    const qint64 sign = m.captured(1) == QLatin1String("-") ? -1 : 1;
    const qint64 first = m.captured(2).toLongLong();
    if (!m.hasCaptured(3))
        return sign * first; // seconds alone
    const qint64 minutes = m.captured(3).toLongLong();
    const qint64 seconds = m.hasCaptured(4) ? m.captured(4).toLongLong() : 0;
    if (minutes > 59 || seconds > 59)
        return std::nullopt;
    return sign * (first * 3600 + minutes * 60 + seconds);
}

std::optional<QTimeZone> parseZone(const QString& text) {
    const QString trimmed = text.trimmed();
    static const QRegularExpression kFixed(QStringLiteral("^([+-])(\\d{2}):?(\\d{2})$"));
    if (const QRegularExpressionMatch m = kFixed.match(trimmed); m.hasMatch()) {
        const int hours = m.captured(2).toInt();
        const int minutes = m.captured(3).toInt();
        if (hours > 14 || minutes > 59)
            return std::nullopt;
        const int seconds = (hours * 3600 + minutes * 60) * (m.captured(1) == "-" ? -1 : 1);
        return QTimeZone(seconds);
    }
    if (trimmed.compare(QLatin1String("UTC"), Qt::CaseInsensitive) == 0 ||
        trimmed == QLatin1String("Z"))
        return QTimeZone::utc();
    const QTimeZone zone(trimmed.toUtf8());
    if (!zone.isValid())
        return std::nullopt;
    return zone;
}

qint64 clockOffsetFrom(const QDateTime& cameraTime, const QDateTime& trueTime) {
    const QDateTime camera(cameraTime.date(), cameraTime.time(), QTimeZone::utc());
    const QDateTime truth(trueTime.date(), trueTime.time(), QTimeZone::utc());
    return camera.secsTo(truth);
}

} // namespace tagmoor
