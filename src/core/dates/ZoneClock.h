#pragma once

#include <QDateTime>
#include <QString>

#include <optional>

namespace tagmoor {

// Wall clocks of time zones, by ICU's zone rules, so that summer time is that of each date.
// A wall-clock time is a QDateTime in UTC whose date and time are read as the clock shows
// them. Thread-safe.
namespace ZoneClock {

// The ICU ID of a zone typed as an IANA name ("Europe/Lisbon"), "UTC" or "Z", or an offset
// ("+05:45", "-0530", "+02"); none for a text that names no zone.
std::optional<QString> zoneIdOf(const QString& text);

// The ID of the system's zone (the camera's zone when none is given).
QString systemZoneId();

// For a short-lived process, at its start: names the system's zone in TZ, when TZ is unset and
// /etc/localtime is the zone database's file of that name. Without TZ the C library looks at
// /etc/localtime again on each conversion to local time, several times a photo; with it, once.
// The zone, and so every local time, stays the same. True when TZ was set.
bool nameSystemZoneInEnvironment();

// The offset east of UTC, in seconds, of the zone's clock when it shows `wallClock`. A time
// that the change to summer time skips (02:30 where the clock jumps from 02:00 to 03:00) takes
// the offset in force before the change, as ICU reads it: the clock had not been moved yet,
// so "02:30" is 02:30 standard time, i.e. 03:30 summer time. A time shown twice when summer
// time ends takes the later, standard offset.
int offsetAtWallClock(const QString& zoneId, const QDateTime& wallClock);

// The offset of the zone at a moment.
int offsetAtMoment(const QString& zoneId, const QDateTime& moment);

// What the clock of `to` shows when the clock of `from` shows `wallClock`.
QDateTime moveWallClock(const QString& from, const QString& to, const QDateTime& wallClock);

// "+05:45", "-03:00", "+00:00".
QString offsetText(int offsetSeconds);

} // namespace ZoneClock

} // namespace tagmoor
