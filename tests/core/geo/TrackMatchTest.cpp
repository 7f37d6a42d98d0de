// Photos put on GPS tracks: reading GPX, matching by time in the camera's zone, and agreeing
// with ExifTool's geotagging on a generated corpus.
#include "geo/TrackMatch.h"
#include "TestSupport.h"
#include "geo/GpxTrack.h"
#include "geo/TimeZoneMap.h"
#include "metadata/MetadataLibrary.h"

#include <QDir>
#include <QFileInfo>
#include <QHash>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>

#include <exiv2/exiv2.hpp>

#include <cmath>

using namespace tagmoor;
using namespace tagmoor::test;

namespace {

QByteArray gpx(const QByteArray& body, const QByteArray& ns = "http://www.topografix.com/GPX/1/1") {
    return "<?xml version=\"1.0\"?>\n<gpx version=\"1.1\" creator=\"test\" xmlns=\"" + ns +
           "\">\n" + body + "</gpx>\n";
}

QByteArray point(double lat, double lon, const QDateTime& utc, std::optional<double> ele = {},
                 const char* tag = "trkpt") {
    QByteArray p = QByteArray("<") + tag + " lat=\"" + QByteArray::number(lat, 'f', 7) +
                   "\" lon=\"" + QByteArray::number(lon, 'f', 7) + "\">";
    if (ele)
        p += "<ele>" + QByteArray::number(*ele, 'f', 2) + "</ele>";
    p += "<time>" + utc.toString(Qt::ISODate).toLatin1() + "</time></" + tag + ">\n";
    return p;
}

QDateTime utcAt(const char* text) {
    QDateTime t = QDateTime::fromString(QString::fromLatin1(text), Qt::ISODate);
    t.setTimeZone(QTimeZone::utc());
    return t;
}

QDateTime wallClock(const char* text) {
    return QDateTime::fromString(QString::fromLatin1(text), QStringLiteral("yyyy-MM-dd HH:mm:ss"));
}

} // namespace

TEST(Geotag, ReadsGpxTracksRoutesAndWaypointsAndNamesTheLineOfADamagedFile) {
    const QByteArray oneOne =
        gpx("<trk><trkseg>" + point(10, 20, utcAt("2024-05-01T10:04:00"), 200) +
            point(10.1, 20.1, utcAt("2024-05-01T10:00:00")) +
            "<trkpt lat=\"1\" lon=\"2\"><ele>5</ele></trkpt>\n" // no time: not matchable
            "<trkpt lat=\"95\" lon=\"2\"><time>2024-05-01T10:05:00Z</time></trkpt>\n" +
            "</trkseg></trk><rte>" + point(11, 21, utcAt("2024-05-01T11:00:00"), {}, "rtept") +
            "</rte>" + point(12, 22, utcAt("2024-05-01T12:00:00"), {}, "wpt"));
    const GpxTracks read = readGpx(oneOne, QStringLiteral("a.gpx"));
    ASSERT_EQ(read.points.size(), 4);
    EXPECT_EQ(read.points[0].time, utcAt("2024-05-01T10:00:00")) << "in time order";
    EXPECT_EQ(read.points[1].elevation, 200.0);
    EXPECT_EQ(read.problems, QStringList{"a.gpx:6: a point without a valid position"});

    // GPX 1.0, and a time with an offset.
    const GpxTracks old = readGpx(
        gpx("<trk><trkseg><trkpt lat=\"1.5\" lon=\"-2.5\"><time>2024-05-01T12:00:00+02:00</time>"
            "</trkpt></trkseg></trk>",
            "http://www.topografix.com/GPX/1/0"),
        QStringLiteral("old.gpx"));
    ASSERT_EQ(old.points.size(), 1);
    EXPECT_EQ(old.points[0].time, utcAt("2024-05-01T10:00:00"));

    // A file that breaks off names its line; the other file loads all the same.
    QTemporaryDir dir;
    const QString broken = dir.filePath("broken.gpx");
    const QString good = dir.filePath("good.gpx");
    writeBytes(broken, gpx("<trk><trkseg>\n" + point(1, 1, utcAt("2024-05-01T09:00:00")) +
                           "<trkpt lat=\"2\" lon=\"2\"><time>2024-05")
                           .left(200));
    writeBytes(good, oneOne);
    const GpxTracks both = loadGpxFiles({broken, good, dir.filePath("missing.gpx")});
    EXPECT_EQ(both.points.size(), 5);
    ASSERT_EQ(both.problems.size(), 3);
    EXPECT_TRUE(both.problems[0].startsWith(broken + ":5: ")) << both.problems[0].toStdString();
    EXPECT_TRUE(both.problems[2].startsWith(dir.filePath("missing.gpx") + ":0: "));
    EXPECT_EQ(readGpx("<html></html>", "page.html").problems,
              QStringList{"page.html:1: not a GPX file"});
}

TEST(Geotag, MatchesInTheCameraZoneWithTheClockOffsetAndLeavesGapsAndEndsOut) {
    const GpxTracks track =
        readGpx(gpx("<trk><trkseg>" + point(10, 20, utcAt("2024-05-01T22:58:00"), 100) +
                    point(10.1, 20.2, utcAt("2024-05-01T23:02:00"), 200) +
                    point(10.2, 20.4, utcAt("2024-05-01T23:40:00")) + "</trkseg><trkseg>" +
                    point(10.3, 179.9, utcAt("2024-05-02T00:00:00")) +
                    point(10.4, -179.9, utcAt("2024-05-02T00:02:00")) + "</trkseg></trk>"),
                "t.gpx");
    GeotagOptions options;
    options.cameraZone = *parseZone(QStringLiteral("Europe/Lisbon")); // UTC+1 in May
    options.maxGapSeconds = 300;

    // Across midnight UTC: the camera said 2 May 00:00 local, the receiver 1 May 23:00 UTC.
    GeotagMatch m = matchOnTrack(track.points, wallClock("2024-05-02 00:00:00"), options);
    ASSERT_TRUE(m.matched());
    EXPECT_EQ(m.utc, utcAt("2024-05-01T23:00:00"));
    EXPECT_NEAR(m.latitude, 10.05, 1e-9);
    EXPECT_NEAR(m.longitude, 20.1, 1e-9);
    EXPECT_NEAR(*m.elevation, 150, 1e-9);
    EXPECT_EQ(m.before.line, 3);

    // A camera two minutes slow: +2 minutes puts it on the second fix.
    options.clockOffsetSeconds = *parseClockOffset(QStringLiteral("+0:02:00"));
    m = matchOnTrack(track.points, wallClock("2024-05-02 00:00:00"), options);
    EXPECT_TRUE(m.matched());
    EXPECT_EQ(m.latitude, 10.1);
    options.clockOffsetSeconds = 0;

    // In the 38-minute gap, before and after the track: no position, each with its reason.
    m = matchOnTrack(track.points, wallClock("2024-05-02 00:20:00"), options);
    EXPECT_EQ(m.outcome, GeotagMatch::Outcome::InGap);
    EXPECT_TRUE(m.reason(options).contains("gap of 2280 s")) << m.reason(options).toStdString();
    EXPECT_EQ(matchOnTrack(track.points, wallClock("2024-05-01 23:50:00"), options).outcome,
              GeotagMatch::Outcome::BeforeTrack);
    EXPECT_EQ(matchOnTrack(track.points, wallClock("2024-05-02 01:02:01"), options).outcome,
              GeotagMatch::Outcome::AfterTrack);
    EXPECT_EQ(matchOnTrack(track.points, QDateTime(), options).outcome,
              GeotagMatch::Outcome::NoCaptureTime);

    // Across the 180th meridian the short way round, and across a short segment break.
    m = matchOnTrack(track.points, wallClock("2024-05-02 01:01:00"), options);
    ASSERT_TRUE(m.matched());
    EXPECT_NEAR(std::abs(m.longitude), 180.0, 1e-9);
    EXPECT_FALSE(m.elevation) << "one fix without elevation gives none";

    EXPECT_EQ(parseClockOffset("-1:30"), -5400);
    EXPECT_EQ(parseClockOffset("90"), 90);
    EXPECT_FALSE(parseClockOffset("1:75"));
    EXPECT_FALSE(parseClockOffset("soon"));
    EXPECT_EQ(parseZone("+05:30")->offsetFromUtc(QDateTime::currentDateTimeUtc()), 19800);
    EXPECT_FALSE(parseZone("Mars/Olympus"));
    EXPECT_EQ(clockOffsetFrom(wallClock("2024-05-01 14:00:00"), wallClock("2024-05-01 14:03:10")),
              190);
}

// The same corpus tagged by ExifTool and by `tagmoor-cli apply --geotag`: the same photos
// placed, within a metre and with the same altitude, and the same ones left out, each named
// with its reason.
TEST(Geotag, AgreesWithExifToolOnTwoHundredPhotos) {
    if (!haveTool(QStringLiteral("exiftool")))
        GTEST_SKIP() << "exiftool is not installed";
    QTemporaryDir dir;
    // A track from 23:00 to 01:00 UTC with a fix every 20 s to 4 min, a 10-minute gap, and a
    // segment break, wandering over the land and sea.
    QByteArray body = "<trk><trkseg>";
    QDateTime t = utcAt("2024-08-31T23:00:00");
    double lat = 38.70, lon = -9.14;
    int i = 0;
    while (t < utcAt("2024-09-01T01:00:00")) {
        body += point(lat, lon, t, 40 + (i % 17));
        ++i;
        lat += 0.00037 * ((i * 7) % 5 - 2);
        lon += 0.00053 * ((i * 3) % 7 - 3);
        t = t.addSecs(20 + (i * 37) % 220);
        if (i == 30)
            t = t.addSecs(600); // the gap
        if (i == 60)
            body += "</trkseg><trkseg>";
    }
    body += "</trkseg></trk>";
    const QString track = dir.filePath("track.gpx");
    writeBytes(track, gpx(body));

    // 200 photos from 22:50 to 01:10 UTC, their clocks on Lisbon summer time (UTC+1), one
    // copy for each tool.
    const QString theirs = dir.filePath("exiftool");
    const QString ours = dir.filePath("tagmoor");
    QDir().mkpath(theirs);
    QDir().mkpath(ours);
    QDateTime shot = utcAt("2024-08-31T22:50:00").toOffsetFromUtc(3600);
    for (int n = 0; n < 200; ++n, shot = shot.addSecs(43)) {
        const QString name = QStringLiteral("p%1.jpg").arg(n, 3, 10, QLatin1Char('0'));
        const QString path = theirs + "/" + name;
        makeJpeg(path, 16, 16);
        // Exiv2 writes XMP through a toolkit that the program shares between threads.
        const auto xmpLock = lockXmpToolkit();
        auto image = Exiv2::ImageFactory::open(path.toStdString());
        image->readMetadata();
        image->exifData()["Exif.Photo.DateTimeOriginal"] =
            shot.toString("yyyy:MM:dd HH:mm:ss").toStdString();
        image->writeMetadata();
        QFile::copy(path, ours + "/" + name);
    }
    const ToolResult tagged =
        runTool("exiftool",
                {"-q", "-q", "-overwrite_original", "-geotag", track, "-api", "GeoMaxIntSecs=300",
                 "-api", "GeoMaxExtSecs=0", "-geotime<${DateTimeOriginal}+01:00", theirs},
                120000);
    ASSERT_NE(tagged.exitCode, -1);
    ValueFormScope form(ValueForm::standard);
    const ToolResult run = runTool(TAGMOOR_CLI,
                                   {"apply", "--quiet", "--in-place", "--geotag", track,
                                    "--camera-zone", "+01:00", "--geotag-max-gap", "300", ours},
                                   120000);
    EXPECT_EQ(run.exitCode, 1) << "some photos lie outside the track";
    const auto read = [](const QString& folder) {
        QHash<QString, QJsonObject> rows;
        const ToolResult r = runTool("exiftool",
                                     {"-j", "-n", "-GPSLatitude", "-GPSLongitude", "-GPSAltitude",
                                      "-GPSDateStamp", "-GPSTimeStamp", folder},
                                     120000);
        for (const QJsonValue& v : QJsonDocument::fromJson(r.out).array())
            rows.insert(QFileInfo(v["SourceFile"].toString()).fileName(), v.toObject());
        return rows;
    };
    const QHash<QString, QJsonObject> expected = read(theirs);
    const QHash<QString, QJsonObject> got = read(ours);
    ASSERT_EQ(expected.size(), 200);
    ASSERT_EQ(got.size(), 200);
    int placed = 0;
    for (auto it = expected.cbegin(); it != expected.cend(); ++it) {
        const QJsonObject& e = it.value();
        const QJsonObject& g = got[it.key()];
        const std::string name = it.key().toStdString();
        ASSERT_EQ(g.contains("GPSLatitude"), e.contains("GPSLatitude")) << name;
        if (!e.contains("GPSLatitude")) {
            EXPECT_TRUE(run.err.contains(it.key().toUtf8() + ": no position: taken at")) << name;
            continue;
        }
        ++placed;
        const double latitude = g["GPSLatitude"].toDouble();
        const double north = (latitude - e["GPSLatitude"].toDouble()) * 111320.0;
        const double east = (g["GPSLongitude"].toDouble() - e["GPSLongitude"].toDouble()) *
                            111320.0 * std::cos(latitude * M_PI / 180.0);
        EXPECT_LT(std::hypot(north, east), 1.0) << name;
        EXPECT_NEAR(g["GPSAltitude"].toDouble(), e["GPSAltitude"].toDouble(), 0.1) << name;
        // The moment of the place, in UTC.
        EXPECT_EQ(g["GPSDateStamp"], e["GPSDateStamp"]) << name;
        EXPECT_EQ(g["GPSTimeStamp"], e["GPSTimeStamp"]) << name;
    }
    EXPECT_GT(placed, 100);
    EXPECT_LT(placed, 200);
}

// The zone of a place, offline, as the boundary data gives it, with summer time from the zone's
// own rules on the photo's date.
TEST(Geotag, FindsTheZoneOfAPlaceOffline) {
    ASSERT_TRUE(TimeZoneMap::isAvailable());
    const struct {
        double latitude, longitude;
        const char* zone;
    } places[] = {
        {38.7223, -9.1393, "Europe/Lisbon"},      {40.7128, -74.006, "America/New_York"},
        {35.6762, 139.6503, "Asia/Tokyo"},        {-33.8688, 151.2093, "Australia/Sydney"},
        {27.7172, 85.324, "Asia/Kathmandu"},      {47.3769, 8.5417, "Europe/Zurich"},
        {69.6492, 18.9553, "Europe/Oslo"},        {19.4326, -99.1332, "America/Mexico_City"},
        {-4.3, 15.3, "Africa/Kinshasa"},          {0, -30, "Etc/GMT+2"},
        {64.1466, -21.9426, "Atlantic/Reykjavik"}};
    for (const auto& place : places) {
        const std::optional<QString> zone = TimeZoneMap::zoneAt(place.latitude, place.longitude);
        ASSERT_TRUE(zone) << place.zone;
        EXPECT_EQ(*zone, QString::fromLatin1(place.zone));
        EXPECT_TRUE(QTimeZone(zone->toUtf8()).isValid()) << place.zone;
    }
    const QTimeZone lisbon(TimeZoneMap::zoneAt(38.72, -9.14)->toUtf8());
    EXPECT_EQ(lisbon.offsetFromUtc(utcAt("2024-07-01T12:00:00")), 3600);
    EXPECT_EQ(lisbon.offsetFromUtc(utcAt("2024-01-01T12:00:00")), 0);
    EXPECT_FALSE(TimeZoneMap::zoneAt(91, 0));
    EXPECT_FALSE(TimeZoneMap::zoneAt(0, std::nan("")));
    EXPECT_TRUE(TimeZoneMap::zoneAt(90, 180)) << "the grid's far corner";
}

TEST(Geotag, TheCommandLineRefusesBadOptionsAndADryRunNamesTheFixes) {
    QTemporaryDir dir;
    const QString track = dir.filePath("t.gpx");
    writeBytes(track,
               gpx("<trk><trkseg>" + point(10, 20, utcAt("2024-05-01T10:00:00"), 100) +
                   point(10.1, 20.1, utcAt("2024-05-01T10:04:00"), 200) + "</trkseg></trk>"));
    const QString photo = dir.filePath("a.jpg");
    makeJpeg(photo);
    {
        // Exiv2 writes XMP through a toolkit that the program shares between threads.
        const auto xmpLock = lockXmpToolkit();
        auto image = Exiv2::ImageFactory::open(photo.toStdString());
        image->readMetadata();
        image->exifData()["Exif.Photo.DateTimeOriginal"] = "2024:05:01 12:02:00";
        image->writeMetadata();
    }
    const QByteArray before = readBytes(photo);
    for (const QStringList& bad :
         {QStringList{"--geotag", track, "--geotag-offset", "soon"},
          QStringList{"--geotag", track, "--camera-zone", "Mars/Olympus"},
          QStringList{"--camera-zone", "UTC"},
          QStringList{"--geotag", track, "--mode", "remove", "--strip", "gps"}}) {
        const ToolResult r =
            runTool(TAGMOOR_CLI, QStringList{"apply", "--in-place"} + bad + QStringList{photo});
        EXPECT_EQ(r.exitCode, 2) << bad.join(' ').toStdString();
    }
    // The camera on Central European summer time: 12:02 there is 10:02 UTC, halfway.
    const ToolResult dry = runTool(TAGMOOR_CLI, {"apply", "--dry-run", "--in-place", "--geotag",
                                                 track, "--camera-zone", "Europe/Berlin", photo});
    EXPECT_EQ(dry.exitCode, 0) << dry.err.toStdString();
    EXPECT_TRUE(dry.out.contains(photo.toUtf8() + ": 10.050000, 20.050000, 150.0 m (between " +
                                 track.toUtf8() + ":3 2024-05-01T10:00:00Z and " + track.toUtf8() +
                                 ":4 2024-05-01T10:04:00Z)"))
        << dry.out.toStdString();
    EXPECT_EQ(readBytes(photo), before);
    // A track without a single timed fix is refused before anything is written.
    writeBytes(track, gpx("<trk><trkseg><trkpt lat=\"1\" lon=\"2\"/></trkseg></trk>"));
    EXPECT_EQ(runTool(TAGMOOR_CLI, {"apply", "--in-place", "--geotag", track, photo}).exitCode, 2);
    EXPECT_EQ(readBytes(photo), before);
}
