// What the writer puts into a file, checked by outside readers (exiftool, the exiv2 tool).
#include "WriteSupport.h"

#include "metadata/MetadataTest.h"

#include <sys/stat.h>
#include <sys/xattr.h>

namespace tagmoor::test {
namespace {

// Changes a file with the exiv2 tool, so that fixtures don't come from the code under test.
void exiv2Modify(const QString& path, const QStringList& commands) {
    QStringList args;
    for (const QString& c : commands)
        args << QStringLiteral("-M") + c;
    args << path;
    const ToolResult r = runTool(QStringLiteral("exiv2"), args);
    ASSERT_EQ(r.exitCode, 0) << r.err.toStdString();
}

class WriteTags : public testing::Test {
protected:
    void SetUp() override {
        ASSERT_TRUE(dir.isValid());
        photo = makeJpeg(dir.filePath(QStringLiteral("photo.jpg")), 320, 240);
        exiv2Modify(photo, {QStringLiteral("set Exif.Image.Make Maker"),
                            QStringLiteral("set Exif.Image.Model M1"),
                            QStringLiteral("set Exif.Photo.ISOSpeedRatings 200"),
                            QStringLiteral("add Iptc.Application2.Keywords one"),
                            QStringLiteral("add Iptc.Application2.Keywords two"),
                            QStringLiteral("add Iptc.Application2.Keywords three"),
                            QStringLiteral("set Xmp.aux.Lens OldLens")});
    }

    void write(const WrittenProperties& props, const QStringList& eraseKeys = {}) {
        MetadataTest().setImagePropertiesAll(photo, props, ErasedRows::ofKeys(eraseKeys));
        EXPECT_TRUE(temporaryFilesIn(dir.path()).isEmpty());
    }

    QTemporaryDir dir;
    QString photo;
    LogCapture log;
};

TEST_F(WriteTags, EachKindReadsBackAsWritten) {
    const QByteArray pixels = pictureFingerprint(photo);
    write(properties(
        {
            {QStringLiteral("Exif.Image.Artist"), QStringLiteral("Zoë Ångström")},
            {QStringLiteral("Exif.Image.Copyright"), QString()},
            {QStringLiteral("Exif.Photo.UserComment"), QStringLiteral("a comment")},
            {QStringLiteral("Exif.Photo.ISOSpeedRatings"), qint64(400)},
            {QStringLiteral("Exif.Image.Orientation"), qint64(6)},
            {QStringLiteral("Exif.GPSInfo.GPSAltitudeRef"), QVariant::fromValue<quint8>(1)},
            {QStringLiteral("Exif.Photo.FNumber"), 2.8f},
            {QStringLiteral("Exif.Photo.ExposureTime"), 0.004f},
            {QStringLiteral("Exif.Photo.FocalLength"), 50.0f},
            {QStringLiteral("Exif.Photo.DateTimeOriginal"), QStringLiteral("2019:05:01 10:20:30")},
        },
        {{QStringLiteral("Iptc.Application2.City"), QStringLiteral("Lyon")}},
        {{QStringLiteral("Xmp.aux.SerialNumber"), QStringLiteral("SN-9")}}));

    const QJsonObject tags = exiftoolTags(photo);
    EXPECT_EQ(tags["IFD0:Artist"].toString(), QStringLiteral("Zoë Ångström"));
    // The empty text is a tag with an empty value, not a missing tag.
    ASSERT_TRUE(tags.contains("IFD0:Copyright"));
    EXPECT_EQ(tags["IFD0:Copyright"].toVariant().toString(), QString());
    EXPECT_EQ(tags["ExifIFD:UserComment"].toString(), QStringLiteral("a comment"));
    EXPECT_EQ(tags["ExifIFD:ISO"].toInt(), 400);
    EXPECT_EQ(tags["IFD0:Orientation"].toInt(), 6);
    EXPECT_EQ(tags["GPS:GPSAltitudeRef"].toInt(), 1);
    EXPECT_DOUBLE_EQ(tags["ExifIFD:FNumber"].toDouble(), 2.8);
    EXPECT_DOUBLE_EQ(tags["ExifIFD:ExposureTime"].toDouble(), 0.004);
    EXPECT_DOUBLE_EQ(tags["ExifIFD:FocalLength"].toDouble(), 50.0);
    EXPECT_EQ(tags["ExifIFD:DateTimeOriginal"].toString(), QStringLiteral("2019:05:01 10:20:30"));
    EXPECT_EQ(tags["IPTC:City"].toString(), QStringLiteral("Lyon"));
    EXPECT_EQ(tags["XMP-aux:SerialNumber"].toString(), QStringLiteral("SN-9"));
    // Rationals are written as Exiv2's nearest fraction, integers as 32-bit integers.
    EXPECT_EQ(exiv2Value(photo, QStringLiteral("Exif.Photo.FNumber")), QStringLiteral("14/5"));
    EXPECT_EQ(exiv2Value(photo, QStringLiteral("Exif.Photo.ExposureTime")),
              QStringLiteral("1/250"));
    // Text rows that the dictionary leaves out keep their tags; other blocks' tags stay.
    EXPECT_EQ(tags["IFD0:Make"].toString(), QStringLiteral("Maker"));
    EXPECT_EQ(tags["XMP-aux:Lens"].toString(), QStringLiteral("OldLens"));
    EXPECT_EQ(pictureFingerprint(photo), pixels);
    EXPECT_TRUE(log.lines().isEmpty()) << log.lines().join('\n').toStdString();
}

TEST_F(WriteTags, GpsIsWholeSecondsWithHemisphereFromSign) {
    struct Case {
        double latitude, longitude;
        const char *latText, *latRef, *lonText, *lonRef;
    };
    const Case cases[] = {
        {48.5, 2.25, "48/1 30/1 0/1", "N", "2/1 15/1 0/1", "E"},
        {-48.5, -2.25, "48/1 30/1 0/1", "S", "2/1 15/1 0/1", "W"},
        // Fractions of a second are cut, not rounded.
        {48.12345, -122.4194, "48/1 7/1 24/1", "N", "122/1 25/1 9/1", "W"},
        {-33.999999, 151.0, "33/1 59/1 59/1", "S", "151/1 0/1 0/1", "E"},
        // Less than a degree south or west is still south or west; only a value less than one
        // second from zero comes out north and east.
        {-0.18, -0.5, "0/1 10/1 48/1", "S", "0/1 30/1 0/1", "W"},
        {-0.0002, -0.0002, "0/1 0/1 0/1", "N", "0/1 0/1 0/1", "E"},
        {-33.999999, 151.0, "33/1 59/1 59/1", "S", "151/1 0/1 0/1", "E"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.latText);
        // References in the dictionary are ignored: the sign decides.
        write(properties({{QStringLiteral("Exif.GPSInfo.GPSLatitude"), c.latitude},
                          {QStringLiteral("Exif.GPSInfo.GPSLatitudeRef"), QStringLiteral("X")},
                          {QStringLiteral("Exif.GPSInfo.GPSLongitude"), float(c.longitude)}}));
        EXPECT_EQ(exiv2Value(photo, QStringLiteral("Exif.GPSInfo.GPSLatitude")),
                  QString::fromLatin1(c.latText));
        EXPECT_EQ(exiv2Value(photo, QStringLiteral("Exif.GPSInfo.GPSLatitudeRef")),
                  QString::fromLatin1(c.latRef));
        EXPECT_EQ(exiv2Value(photo, QStringLiteral("Exif.GPSInfo.GPSLongitude")),
                  QString::fromLatin1(c.lonText));
        EXPECT_EQ(exiv2Value(photo, QStringLiteral("Exif.GPSInfo.GPSLongitudeRef")),
                  QString::fromLatin1(c.lonRef));
    }
    const QJsonObject tags = exiftoolTags(photo);
    EXPECT_EQ(tags["GPS:GPSLatitudeRef"].toString(), QStringLiteral("S"));
    EXPECT_NEAR(tags["Composite:GPSLatitude"].toDouble(), -(33 + 59 / 60.0 + 59 / 3600.0), 1e-9);
}

TEST_F(WriteTags, GpsOfAnotherTypeIsReplacedByTheStandardOne) {
    // A latitude stored as signed rationals with a fractional second.
    exiv2Modify(photo, {QStringLiteral("set Exif.GPSInfo.GPSLatitude SRational 10/1 20/1 3050/100"),
                        QStringLiteral("set Exif.GPSInfo.GPSLatitudeRef N")});
    const auto latitudeEntry = [this] {
        return QString::fromUtf8(
                   runTool(QStringLiteral("exiv2"),
                           {QStringLiteral("-q"), QStringLiteral("-pv"), QStringLiteral("-K"),
                            QStringLiteral("Exif.GPSInfo.GPSLatitude"), photo})
                       .out)
            .simplified();
    };
    ASSERT_TRUE(latitudeEntry().contains(QStringLiteral("SRational 3 10/1 20/1 3050/100")));
    write(properties({{QStringLiteral("Exif.GPSInfo.GPSLatitude"), 10.5}}));
    EXPECT_TRUE(latitudeEntry().endsWith(QStringLiteral(" Rational 3 10/1 30/1 0/1")))
        << latitudeEntry().toStdString();
}

TEST_F(WriteTags, MissingNumbersAreZeroUntilErased) {
    // Nothing for the numeric rows: each is written as zero (GPS as the equator, north-east).
    write(properties({}));
    QJsonObject tags = exiftoolTags(photo);
    EXPECT_EQ(tags["ExifIFD:ISO"].toInt(-1), 0);
    EXPECT_EQ(exiv2Value(photo, QStringLiteral("Exif.Photo.FNumber")), QStringLiteral("0/1"));
    EXPECT_EQ(exiv2Value(photo, QStringLiteral("Exif.GPSInfo.GPSLatitude")),
              QStringLiteral("0/1 0/1 0/1"));
    EXPECT_EQ(tags["GPS:GPSLatitudeRef"].toString(), QStringLiteral("N"));
    EXPECT_EQ(tags["GPS:GPSLongitudeRef"].toString(), QStringLiteral("E"));
    EXPECT_EQ(tags["IFD0:Make"].toString(), QStringLiteral("Maker"));

    // Erasing comes after writing, so a key both given and listed ends up absent; a listed key
    // that the file lacks changes nothing.
    write(properties({{QStringLiteral("Exif.Photo.ISOSpeedRatings"), qint64(800)},
                      {QStringLiteral("Exif.Image.Artist"), QStringLiteral("Ann")}}),
          {QStringLiteral("Exif.Photo.ISOSpeedRatings"), QStringLiteral("Exif.Photo.FNumber"),
           QStringLiteral("Exif.GPSInfo.GPSLatitude"), QStringLiteral("Exif.Image.Model"),
           QStringLiteral("Exif.Photo.LensModel"), QStringLiteral("Xmp.aux.Lens")});
    tags = exiftoolTags(photo);
    EXPECT_FALSE(tags.contains("ExifIFD:ISO"));
    EXPECT_FALSE(tags.contains("ExifIFD:FNumber"));
    EXPECT_FALSE(tags.contains("GPS:GPSLatitude"));
    EXPECT_FALSE(tags.contains("IFD0:Model"));
    EXPECT_FALSE(tags.contains("XMP-aux:Lens"));
    EXPECT_EQ(tags["IFD0:Artist"].toString(), QStringLiteral("Ann"));
    EXPECT_EQ(tags["IFD0:Make"].toString(), QStringLiteral("Maker"));
    EXPECT_TRUE(log.lines().isEmpty()) << log.lines().join('\n').toStdString();
}

TEST_F(WriteTags, RepeatedKeywordsOnlyTheFirstChangesOrGoes) {
    write(properties({}, {{QStringLiteral("Iptc.Application2.Keywords"), QStringLiteral("new")}}));
    EXPECT_EQ(exiftoolTags(photo)["IPTC:Keywords"].toArray(), QJsonArray({"new", "two", "three"}));

    write(properties({}), {QStringLiteral("Iptc.Application2.Keywords")});
    EXPECT_EQ(exiftoolTags(photo)["IPTC:Keywords"].toArray(), QJsonArray({"two", "three"}));
}

TEST_F(WriteTags, AFailingBlockStopsTheWriteAndIsLogged) {
    // Text outside ASCII for a photo that declares another IPTC character set fails the write
    // after every block was laid over the image: nothing of any block is written.
    exiv2Modify(photo, {QStringLiteral("set Iptc.Envelope.CharacterSet \x1b.A")});
    const QByteArray before = readBytes(photo);
    write(properties({{QStringLiteral("Exif.Image.Artist"), QStringLiteral("Ann")}},
                     {{QStringLiteral("Iptc.Application2.City"), QStringLiteral("Zürich")}}));
    EXPECT_EQ(readBytes(photo), before);
    ASSERT_EQ(log.lines().size(), 1);
    EXPECT_TRUE(log.lines().first().startsWith(kExiv2ErrorStart));
    EXPECT_TRUE(log.lines().first().endsWith(QStringLiteral("' ***")));

    // A file Exiv2 can't open at all ends the same way.
    const QString text = dir.filePath(QStringLiteral("notes.jpg"));
    ASSERT_TRUE(writeBytes(text, "not a picture"));
    MetadataTest().setImagePropertiesAll(text, properties({}), {});
    EXPECT_EQ(readBytes(text), QByteArray("not a picture"));
    EXPECT_EQ(log.lines().size(), 2);
    EXPECT_TRUE(temporaryFilesIn(dir.path()).isEmpty());

    // A path the file system's encoding can't hold is left alone without a word.
    MetadataTest().setImagePropertiesAll(dir.filePath(QStringLiteral("bad")) + QChar(0xD800),
                                         properties({}), {});
    EXPECT_EQ(log.lines().size(), 2);
}

TEST_F(WriteTags, OwnerPermissionsAttributesAndSymbolicLinksAreKept) {
    QFile::setPermissions(photo, QFile::ReadOwner | QFile::WriteOwner | QFile::ReadGroup);
    const bool attributes =
        setxattr(QFile::encodeName(photo).constData(), "user.rating", "5", 1, 0) == 0;
    ASSERT_EQ(chown(QFile::encodeName(photo).constData(), 1234, 5678), 0);
    const QString link = dir.filePath(QStringLiteral("link.jpg"));
    ASSERT_TRUE(QFile::link(photo, link));

    MetadataTest().setImagePropertiesAll(
        link, properties({{QStringLiteral("Exif.Image.Artist"), QStringLiteral("Ann")}}), {});

    EXPECT_TRUE(QFileInfo(link).isSymLink());
    EXPECT_EQ(exiftoolTags(photo)["IFD0:Artist"].toString(), QStringLiteral("Ann"));
    struct stat st {};
    ASSERT_EQ(stat(QFile::encodeName(photo).constData(), &st), 0);
    EXPECT_EQ(st.st_mode & 07777, 0640u);
    EXPECT_EQ(st.st_uid, 1234u);
    EXPECT_EQ(st.st_gid, 5678u);
    if (attributes) {
        char value[8] = {};
        EXPECT_EQ(
            getxattr(QFile::encodeName(photo).constData(), "user.rating", value, sizeof value), 1);
        EXPECT_STREQ(value, "5");
    }
    EXPECT_TRUE(temporaryFilesIn(dir.path()).isEmpty());
}

} // namespace
} // namespace tagmoor::test
