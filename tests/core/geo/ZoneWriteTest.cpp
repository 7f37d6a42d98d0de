// A run's dates written with their zone: `apply --zone` and `apply --local-time-from-gps`,
// read back with ExifTool.
#include "TestSupport.h"
#include "dates/ZoneClock.h"
#include "exchange/LocalTimeValues.h"
#include "foundation/ValueForm.h"
#include "geo/TimeZoneMap.h"
#include "metadata/MetadataLibrary.h"
#include "metadata/PropertyLoading.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <exiv2/exiv2.hpp>

using namespace tagmoor;
using namespace tagmoor::test;

namespace {

struct Position {
    double latitude;
    double longitude;
};

// A JPEG whose four dates read `when` ("2024:05:01 12:00:00"), placed at `at` when given.
QString photoAt(const QString& path, const QString& when, std::optional<Position> at = {}) {
    makeJpeg(path, 16, 16);
    // Exiv2 writes XMP through a toolkit that the program shares between threads.
    const auto xmpLock = lockXmpToolkit();
    auto image = Exiv2::ImageFactory::open(path.toStdString());
    image->readMetadata();
    const std::string exif = when.toStdString();
    image->exifData()["Exif.Photo.DateTimeOriginal"] = exif;
    image->exifData()["Exif.Photo.DateTimeDigitized"] = exif;
    image->exifData()["Exif.Image.DateTime"] = exif;
    QString xmp = when;
    xmp.replace(4, 1, '-').replace(7, 1, '-').replace(10, 1, 'T');
    image->xmpData()["Xmp.xmp.CreateDate"] = xmp.toStdString();
    if (at) {
        const auto dms = [](double degrees) {
            return std::to_string(qRound64(std::fabs(degrees) * 1e6)) + "/1000000 0/1 0/1";
        };
        Exiv2::ExifData& gps = image->exifData();
        gps["Exif.GPSInfo.GPSLatitudeRef"] = at->latitude < 0 ? "S" : "N";
        gps["Exif.GPSInfo.GPSLatitude"] = Exiv2::URationalValue();
        gps["Exif.GPSInfo.GPSLatitude"].setValue(dms(at->latitude));
        gps["Exif.GPSInfo.GPSLongitudeRef"] = at->longitude < 0 ? "W" : "E";
        gps["Exif.GPSInfo.GPSLongitude"] = Exiv2::URationalValue();
        gps["Exif.GPSInfo.GPSLongitude"].setValue(dms(at->longitude));
    }
    image->writeMetadata();
    return path;
}

// ExifTool's reading of the dates and their offsets, by file name.
QHash<QString, QJsonObject> readDates(const QStringList& paths) {
    const ToolResult r =
        runTool("exiftool", QStringList{"-j", "-a", "-G1", "-s", "-ExifIFD:DateTimeOriginal",
                                        "-ExifIFD:CreateDate", "-IFD0:ModifyDate",
                                        "-ExifIFD:OffsetTime", "-ExifIFD:OffsetTimeOriginal",
                                        "-ExifIFD:OffsetTimeDigitized", "-XMP-xmp:CreateDate"} +
                                paths);
    QHash<QString, QJsonObject> rows;
    for (const QJsonValue& v : QJsonDocument::fromJson(r.out).array())
        rows.insert(QFileInfo(v["SourceFile"].toString()).fileName(), v.toObject());
    return rows;
}

// The photo's dates all read `exif` (XMP: with the offset) and its three offsets `offset`.
void expectDates(const QJsonObject& row, const char* exif, const char* offset,
                 const std::string& name) {
    EXPECT_EQ(row["ExifIFD:DateTimeOriginal"].toString(), exif) << name;
    EXPECT_EQ(row["ExifIFD:CreateDate"].toString(), exif) << name;
    EXPECT_EQ(row["IFD0:ModifyDate"].toString(), exif) << name;
    for (const char* tag :
         {"ExifIFD:OffsetTime", "ExifIFD:OffsetTimeOriginal", "ExifIFD:OffsetTimeDigitized"})
        EXPECT_EQ(row[tag].toString(), offset) << name << " " << tag;
    EXPECT_EQ(row["XMP-xmp:CreateDate"].toString(), QString(exif) + offset) << name;
}

} // namespace

// One run in a zone with summer time: each photo's offset is that of its own date, also for
// the hour the spring change skips; a zone 45 minutes off the hour; in both forms.
TEST(ZoneWrite, TheRunsZoneGivesEachDateTheOffsetOfItsOwnDay) {
    if (!haveTool(QStringLiteral("exiftool")))
        GTEST_SKIP() << "exiftool is not installed";
    for (const ValueForm form : {ValueForm::standard, ValueForm::described}) {
        ValueFormScope scope(form);
        QTemporaryDir dir;
        const QStringList london{photoAt(dir.filePath("winter.jpg"), "2024:01:15 09:00:00"),
                                 photoAt(dir.filePath("skipped.jpg"), "2024:03:31 01:30:00"),
                                 photoAt(dir.filePath("spring.jpg"), "2024:03:31 02:30:00"),
                                 photoAt(dir.filePath("summer.jpg"), "2024:07:01 23:59:59")};
        const ToolResult run = runTool(
            TAGMOOR_CLI,
            QStringList{"apply", "--quiet", "--in-place", "--zone", "Europe/London"} + london);
        ASSERT_EQ(run.exitCode, 0) << run.err.toStdString();
        const auto rows = readDates(london);
        const std::string f = valueFormName(form).toStdString();
        expectDates(rows["winter.jpg"], "2024:01:15 09:00:00", "+00:00", f);
        // The clock had not been moved on yet: 01:30 is still Greenwich time.
        expectDates(rows["skipped.jpg"], "2024:03:31 01:30:00", "+00:00", f);
        expectDates(rows["spring.jpg"], "2024:03:31 02:30:00", "+01:00", f);
        expectDates(rows["summer.jpg"], "2024:07:01 23:59:59", "+01:00", f);

        const QString nepal = photoAt(dir.filePath("nepal.jpg"), "2024:05:01 12:00:00");
        ASSERT_EQ(runTool(TAGMOOR_CLI, {"apply", "--quiet", "--in-place", "--zone", "+05:45",
                                        "--date", "DateTimeOriginal=shift-time:+1:0:0", nepal})
                      .exitCode,
                  0);
        const QJsonObject shifted = readDates({nepal})["nepal.jpg"];
        // The described form writes a rule's date as the rule gives it.
        EXPECT_EQ(shifted["ExifIFD:DateTimeOriginal"].toString().replace('-', ':'),
                  "2024:05:01 13:00:00")
            << f;
        EXPECT_EQ(shifted["ExifIFD:OffsetTimeOriginal"].toString(), "+05:45") << f;
        EXPECT_EQ(shifted["ExifIFD:OffsetTimeDigitized"].toString(), "+05:45") << f;
        EXPECT_EQ(shifted["XMP-xmp:CreateDate"].toString(), "2024:05:01 12:00:00+05:45") << f;
    }
}

// The zone of each photo's place, found offline, on both sides of the border between Spain
// (UTC+2 in summer) and Portugal (UTC+1); a photo without a position keeps its dates.
TEST(ZoneWrite, LocalTimeOfThePlaceMovesEachPhotosDatesToItsZone) {
    if (!haveTool(QStringLiteral("exiftool")))
        GTEST_SKIP() << "exiftool is not installed";
    ASSERT_TRUE(TimeZoneMap::isAvailable());
    ValueFormScope scope(ValueForm::standard);
    QTemporaryDir dir;
    const QString badajoz =
        photoAt(dir.filePath("badajoz.jpg"), "2024:07:01 10:00:00", Position{38.878, -6.970});
    const QString elvas =
        photoAt(dir.filePath("elvas.jpg"), "2024:07:01 10:00:00", Position{38.881, -7.163});
    const QString nowhere = photoAt(dir.filePath("nowhere.jpg"), "2024:07:01 10:00:00");
    const QStringList photos{badajoz, elvas, nowhere};

    const QByteArray before = readBytes(badajoz);
    const ToolResult dry =
        runTool(TAGMOOR_CLI, QStringList{"apply", "--dry-run", "--in-place",
                                         "--local-time-from-gps", "--camera-zone", "UTC"} +
                                 photos);
    EXPECT_EQ(dry.exitCode, 1) << "one photo has no position";
    EXPECT_TRUE(
        dry.out.contains("local time: " + badajoz.toUtf8() +
                         ": Europe/Madrid (+02:00), dates move by +02:00 from UTC (+00:00)"))
        << dry.out.toStdString();
    EXPECT_TRUE(dry.out.contains("local time: " + elvas.toUtf8() + ": Europe/Lisbon (+01:00)"));
    EXPECT_TRUE(dry.err.contains(nowhere.toUtf8() + ": dates left as they are: no GPS position"))
        << dry.err.toStdString();
    EXPECT_EQ(readBytes(badajoz), before);

    const ToolResult run =
        runTool(TAGMOOR_CLI, QStringList{"apply", "--quiet", "--in-place", "--local-time-from-gps",
                                         "--camera-zone", "UTC"} +
                                 photos);
    EXPECT_EQ(run.exitCode, 1) << run.err.toStdString();
    const auto rows = readDates(photos);
    expectDates(rows["badajoz.jpg"], "2024:07:01 12:00:00", "+02:00", "badajoz");
    expectDates(rows["elvas.jpg"], "2024:07:01 11:00:00", "+01:00", "elvas");
    EXPECT_EQ(rows["nowhere.jpg"]["ExifIFD:DateTimeOriginal"].toString(), "2024:07:01 10:00:00");
    EXPECT_FALSE(rows["nowhere.jpg"].contains("ExifIFD:OffsetTimeOriginal"));
}

// What the command line refuses before anything is written.
TEST(ZoneWrite, TheCommandLineRefusesZonesItCannotUse) {
    QTemporaryDir dir;
    const QString photo = photoAt(dir.filePath("a.jpg"), "2024:05:01 12:00:00");
    const QByteArray before = readBytes(photo);
    for (const QStringList& bad :
         {QStringList{"--zone", "Mars/Olympus"}, QStringList{"--zone", "+25:00"},
          QStringList{"--zone", "UTC", "--local-time-from-gps"},
          QStringList{"--local-time-from-gps", "--camera-zone", "Nowhere"},
          QStringList{"--geotag-offset", "+1:00", "--local-time-from-gps"},
          QStringList{"--local-time-from-gps", "--mode", "remove", "--strip", "gps"}}) {
        const ToolResult r =
            runTool(TAGMOOR_CLI, QStringList{"apply", "--in-place"} + bad + QStringList{photo});
        EXPECT_EQ(r.exitCode, 2) << bad.join(' ').toStdString();
    }
    EXPECT_EQ(readBytes(photo), before);
}
