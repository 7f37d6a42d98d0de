// Dates on the clocks of time zones: the offsets of each date by ICU's rules, the move of a
// camera's clock to another zone, and the texts a run writes with them.
#include "dates/ZoneClock.h"
#include "dates/ZonedDate.h"

#include <gtest/gtest.h>

#include <ctime>

using namespace tagmoor;

namespace {

QDateTime wall(const char* text) {
    return *wallClockOf(QString::fromLatin1(text));
}

} // namespace

TEST(ZoneClock, NamesZonesByNameOrOffsetAndRefusesTheRest) {
    const struct {
        const char* typed;
        const char* id;
    } known[] = {{"Europe/Lisbon", "Europe/Lisbon"},
                 {" Asia/Kathmandu ", "Asia/Kathmandu"},
                 {"utc", "UTC"},
                 {"Z", "UTC"},
                 {"+05:45", "GMT+05:45"},
                 {"-0530", "GMT-05:30"},
                 {"+02", "GMT+02:00"},
                 {"-00:00", "GMT-00:00"}};
    for (const auto& zone : known)
        EXPECT_EQ(ZoneClock::zoneIdOf(QString::fromLatin1(zone.typed)),
                  QString::fromLatin1(zone.id))
            << zone.typed;
    for (const char* bad : {"Mars/Olympus", "", "+15:00", "+05:60", "5:45", "GMT+", "+1"})
        EXPECT_FALSE(ZoneClock::zoneIdOf(QString::fromLatin1(bad))) << bad;
    EXPECT_FALSE(ZoneClock::systemZoneId().isEmpty());
}

// Summer time is that of each date: the offset of the hour that the spring change skips, of the
// hour shown twice in autumn, of a zone 45 minutes off the hour, and of an hour across the date
// line.
TEST(ZoneClock, OffsetsFollowEachDatesRulesAtTheChangesOfSummerTime) {
    const QString london = QStringLiteral("Europe/London");
    EXPECT_EQ(ZoneClock::offsetAtWallClock(london, wall("2024-03-31 00:59:59")), 0);
    // 01:30 never showed on a London clock that day: it is read as the clock not yet moved on.
    EXPECT_EQ(ZoneClock::offsetAtWallClock(london, wall("2024-03-31 01:30:00")), 0);
    EXPECT_EQ(ZoneClock::offsetAtWallClock(london, wall("2024-03-31 02:00:00")), 3600);
    // 01:30 showed twice on 27 October: the later, standard reading.
    EXPECT_EQ(ZoneClock::offsetAtWallClock(london, wall("2024-10-27 01:30:00")), 0);
    EXPECT_EQ(ZoneClock::offsetAtWallClock(london, wall("2024-10-27 00:30:00")), 3600);
    const QString kathmandu = QStringLiteral("Asia/Kathmandu");
    EXPECT_EQ(ZoneClock::offsetAtWallClock(kathmandu, wall("2024-06-01 12:00:00")), 20700);
    EXPECT_EQ(ZoneClock::offsetText(20700), QStringLiteral("+05:45"));
    EXPECT_EQ(ZoneClock::offsetText(-12600), QStringLiteral("-03:30"));
    EXPECT_EQ(ZoneClock::offsetText(0), QStringLiteral("+00:00"));
    // A camera on UTC at 01:30 on the spring day: London's clock already said 02:30.
    EXPECT_EQ(ZoneClock::moveWallClock(QStringLiteral("UTC"), london, wall("2024-03-31 01:30:00")),
              wall("2024-03-31 02:30:00"));
    EXPECT_EQ(ZoneClock::moveWallClock(QStringLiteral("UTC"), QStringLiteral("Pacific/Kiritimati"),
                                       wall("2024-12-31 11:00:00")),
              wall("2025-01-01 01:00:00"));
}

// What a run writes into a date field under a zone: Exif dates keep their form (the offset
// goes into its own tag), XMP dates carry the offset; moved dates are on the place's clock.
TEST(ZoneClock, ZonedDatesGiveEachFieldItsTextAndOffset) {
    const DatesZone kathmandu{QStringLiteral("Asia/Kathmandu"), {}};
    EXPECT_EQ(
        zonedDate(kathmandu, DateField::dateTimeOriginal, QStringLiteral("2024-05-01 12:00:00")),
        (ZonedDate{QStringLiteral("2024-05-01 12:00:00"), 20700}));
    EXPECT_EQ(zonedDate(kathmandu, DateField::createDateXMP, QStringLiteral("2024-05-01 12:00:00")),
              (ZonedDate{QStringLiteral("2024-05-01T12:00:00+05:45"), 20700}));
    // A text that came with a zone is read by its clock; the zone given replaces its own.
    EXPECT_EQ(zonedDate(kathmandu, DateField::createDateXMPPhotoshop,
                        QStringLiteral("2024-05-01T12:00:00+02:00"))
                  ->text,
              QStringLiteral("2024-05-01T12:00:00+05:45"));
    const DatesZone fromUtc{QStringLiteral("Europe/London"), QStringLiteral("UTC")};
    EXPECT_EQ(zonedDate(fromUtc, DateField::modifyDateXMP, QStringLiteral("2024-03-31 01:30:00")),
              (ZonedDate{QStringLiteral("2024-03-31T02:30:00+01:00"), 3600}));
    // London's 01:30 came twice on 27 October: a camera on UTC tells the two apart.
    EXPECT_EQ(
        zonedDate(fromUtc, DateField::dateTimeOriginal, QStringLiteral("2024-10-27 00:30:00")),
        (ZonedDate{QStringLiteral("2024-10-27 01:30:00"), 3600}));
    EXPECT_EQ(
        zonedDate(fromUtc, DateField::dateTimeOriginal, QStringLiteral("2024-10-27 01:30:00")),
        (ZonedDate{QStringLiteral("2024-10-27 01:30:00"), 0}));
    for (const char* bad : {"", "2024-02-30 10:00:00", "2024-05-01 25:00:00", "yesterday"})
        EXPECT_FALSE(zonedDate(kathmandu, DateField::creationDate, QString::fromLatin1(bad)))
            << bad;
    // A date as Exif writes it keeps that form.
    EXPECT_EQ(zonedDate(fromUtc, DateField::modifyDate, QStringLiteral("2024:03:31 01:30:00")),
              (ZonedDate{QStringLiteral("2024:03:31 02:30:00"), 3600}));
}

// A command names the system's zone in TZ at its start: ICU, Qt and the C library still see
// the same zone, and a TZ that is set already stays as it is.
TEST(ZoneClock, NamingTheSystemZoneKeepsEveryLocalTime) {
    const bool hadZone = qEnvironmentVariableIsSet("TZ");
    const QByteArray oldZone = qgetenv("TZ");
    qunsetenv("TZ");
    ::tzset();
    const QString system = ZoneClock::systemZoneId();
    const auto localOffsets = [] {
        QList<int> offsets;
        for (int year : {1970, 1995, 2024, 2037})
            for (int month : {1, 7})
                offsets.append(QDateTime(QDate(year, month, 15), QTime(12, 0)).offsetFromUtc());
        return offsets;
    };
    const QList<int> before = localOffsets();

    if (ZoneClock::nameSystemZoneInEnvironment())
        EXPECT_EQ(qgetenv("TZ"), system.toUtf8());
    else
        EXPECT_FALSE(qEnvironmentVariableIsSet("TZ"));
    EXPECT_EQ(ZoneClock::systemZoneId(), system);
    EXPECT_EQ(localOffsets(), before);

    qputenv("TZ", "Asia/Kathmandu");
    EXPECT_FALSE(ZoneClock::nameSystemZoneInEnvironment());
    EXPECT_EQ(qgetenv("TZ"), QByteArray("Asia/Kathmandu"));

    if (hadZone)
        qputenv("TZ", oldZone);
    else
        qunsetenv("TZ");
    ::tzset();
}
