// Which tags each clean choice removes and which it keeps, seen by exiftool.
#include "WriteSupport.h"

#include "metadata/MetadataTest.h"

namespace tagmoor::test {
namespace {

struct Choice {
    const char* name;
    CleanOptions groups;
    QStringList gone;
};

const QStringList kAllTags{
    "IFD0:Artist",        "IFD0:ImageDescription", "ExifIFD:UserComment", "GPS:GPSLatitude",
    "GPS:GPSLatitudeRef", "GPS:GPSLongitude",      "GPS:GPSLongitudeRef", "GPS:GPSAltitude",
    "GPS:GPSAltitudeRef", "GPS:GPSTimeStamp",      "IPTC:City",           "XMP-aux:Lens",
    "File:Comment",
};

const QStringList kGpsPosition{"GPS:GPSLatitude",     "GPS:GPSLatitudeRef", "GPS:GPSLongitude",
                               "GPS:GPSLongitudeRef", "GPS:GPSAltitude",    "GPS:GPSAltitudeRef"};

TEST(CleanGroups, EachChoiceAloneAndAllTogether) {
    QTemporaryDir dir;
    const QString original = makeJpeg(dir.filePath(QStringLiteral("original.jpg")), 200, 100);
    const ToolResult made = runTool(
        QStringLiteral("exiv2"),
        {QStringLiteral("-Mset Exif.Image.Artist Ann"),
         QStringLiteral("-Mset Exif.Image.ImageDescription Lake"),
         QStringLiteral("-Mset Exif.Photo.UserComment charset=Ascii evening"),
         QStringLiteral("-Mset Exif.GPSInfo.GPSLatitude 45/1 10/1 0/1"),
         QStringLiteral("-Mset Exif.GPSInfo.GPSLatitudeRef N"),
         QStringLiteral("-Mset Exif.GPSInfo.GPSLongitude 6/1 5/1 0/1"),
         QStringLiteral("-Mset Exif.GPSInfo.GPSLongitudeRef E"),
         QStringLiteral("-Mset Exif.GPSInfo.GPSAltitude 372/1"),
         QStringLiteral("-Mset Exif.GPSInfo.GPSAltitudeRef 0"),
         QStringLiteral("-Mset Exif.GPSInfo.GPSTimeStamp 10/1 20/1 30/1"),
         QStringLiteral("-Mset Iptc.Application2.City Annecy"),
         QStringLiteral("-Mset Xmp.aux.Lens Zoom"), QStringLiteral("-cA comment"), original});
    ASSERT_EQ(made.exitCode, 0) << made.err.toStdString();
    const QJsonObject before = exiftoolTags(original);
    for (const QString& tag : kAllTags)
        ASSERT_TRUE(before.contains(tag)) << tag.toStdString();
    const QByteArray pixels = pictureFingerprint(original);

    const QStringList exifTags = QStringList{"IFD0:Artist", "IFD0:ImageDescription",
                                             "ExifIFD:UserComment", "GPS:GPSTimeStamp"} +
                                 kGpsPosition;
    const Choice choices[] = {
        {"nothing", {}, {}},
        {"iptc", {.cleanIPTC = true}, {"IPTC:City"}},
        {"exif", {.cleanExif = true}, exifTags},
        {"xmp", {.cleanXMP = true}, {"XMP-aux:Lens"}},
        // Only the six position tags: the time stamp stays.
        {"gps", {.cleanGPS = true}, kGpsPosition},
        // Only the user comment: the description and the JPEG comment stay.
        {"comment", {.cleanComment = true}, {"ExifIFD:UserComment"}},
        // The JPEG comment is no metadata group and survives everything.
        {"all", kEveryGroup, exifTags + QStringList{"IPTC:City", "XMP-aux:Lens"}},
    };

    LogCapture log;
    for (const Choice& c : choices) {
        SCOPED_TRACE(c.name);
        const QString photo = copySample(original, dir.path(), QStringLiteral("photo.jpg"));
        MetadataTest().cleanMetadata(photo, c.groups);
        const QJsonObject after = exiftoolTags(photo);
        for (const QString& tag : kAllTags) {
            EXPECT_EQ(after.contains(tag), !c.gone.contains(tag)) << tag.toStdString();
            if (after.contains(tag)) {
                EXPECT_EQ(after[tag], before[tag]) << tag.toStdString();
            }
        }
        EXPECT_EQ(pictureFingerprint(photo), pixels);
        EXPECT_TRUE(temporaryFilesIn(dir.path()).isEmpty());
    }
    EXPECT_TRUE(log.lines().isEmpty());
}

TEST(CleanGroups, FailuresAreSilentAndLeaveTheFile) {
    QTemporaryDir dir;
    const QString text = dir.filePath(QStringLiteral("text.jpg"));
    ASSERT_TRUE(writeBytes(text, "plain words"));
    const QString raf = copySample(formatsDir() + QStringLiteral("/et-FujiFilm.raf"), dir.path());
    const QByteArray rafBytes = readBytes(raf);

    LogCapture log;
    MetadataTest().cleanMetadata(text, kEveryGroup);
    MetadataTest().cleanMetadata(raf, kEveryGroup);
    MetadataTest().cleanMetadata(dir.filePath(QStringLiteral("missing.jpg")), kEveryGroup);
    EXPECT_EQ(readBytes(text), QByteArray("plain words"));
    EXPECT_EQ(readBytes(raf), rafBytes);
    EXPECT_TRUE(log.lines().isEmpty()) << log.lines().join('\n').toStdString();
    EXPECT_TRUE(temporaryFilesIn(dir.path()).isEmpty());
}

TEST(CleanGroups, TiffBuiltFilesKeepWhatDescribesTheirPictures) {
    QTemporaryDir dir;
    const QString dng = copySample(formatsDir() + QStringLiteral("/et-DNG.dng"), dir.path());
    MetadataTest().cleanMetadata(dng, {.cleanExif = true});
    const QJsonObject tags = exiftoolTags(dng);
    for (const char* kept : {"IFD0:StripOffsets", "IFD0:ImageWidth", "IFD0:DNGVersion",
                             "IFD0:ColorMatrix1", "SubIFD:TileOffsets", "SubIFD:CFAPattern2"})
        EXPECT_TRUE(tags.contains(QLatin1String(kept))) << kept;
    for (const char* gone : {"IFD0:Make", "IFD0:Model", "IFD0:Artist", "IFD0:ModifyDate",
                             "ExifIFD:ExposureTime", "ExifIFD:ISO"})
        EXPECT_FALSE(tags.contains(QLatin1String(gone))) << gone;
}

} // namespace
} // namespace tagmoor::test
