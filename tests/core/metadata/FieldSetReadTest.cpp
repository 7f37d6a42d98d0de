#include "ExivFixture.h"
#include "metadata/PropertyLoading.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace tagmoor {
namespace {

using namespace tagmoor::test;

class FieldSetRead : public ::testing::Test {
protected:
    QTemporaryDir dir;
    QString path(const char* name) const { return dir.filePath(QLatin1String(name)); }
};

TEST_F(FieldSetRead, CastsKeepOnlyValuesTheRowKindHoldsExactly) {
    const QString file = jpegWithTags(path("casts.jpg"), [](Exiv2::Image& img) {
        Exiv2::ExifData& exif = img.exifData();
        addExif(exif, "Exif.Image.Artist", Exiv2::asciiString, "Ann");
        addExif(exif, "Exif.Photo.ISOSpeedRatings", Exiv2::unsignedShort, "200");
        addExif(exif, "Exif.Photo.FocalLengthIn35mmFilm", Exiv2::unsignedRational, "35/2");
        addExif(exif, "Exif.Photo.Flash", Exiv2::unsignedRational, "16/1");
        addExif(exif, "Exif.Photo.FNumber", Exiv2::unsignedRational, "18/10");
        addExif(exif, "Exif.GPSInfo.GPSAltitudeRef", Exiv2::unsignedByte, "1");
        addExif(exif, "Exif.GPSInfo.GPSAltitude", Exiv2::unsignedRational, "1234/10");
        addExif(exif, "Exif.Photo.StandardOutputSensitivity", Exiv2::unsignedLong, "3200");
        // A number where text is expected, and text where a number is expected.
        addExif(exif, "Exif.Image.Make", Exiv2::unsignedShort, "7");
        addExif(exif, "Exif.Image.Orientation", Exiv2::asciiString, "1");
        addExif(exif, "Exif.Photo.DateTimeOriginal", Exiv2::asciiString, "2019:05:01 10:20:30");
        addExif(exif, "Exif.Photo.FileSource", Exiv2::undefined, "3");
        addIptc(img.iptcData(), "Iptc.Application2.Byline", "Bea");
        img.xmpData()["Xmp.xmp.CreateDate"] = "2020-01-02T03:04:05";
    });
    const MetadataFieldSet set = readMetadataFieldSet(file);
    EXPECT_EQ(set.exif[0].text(), QStringLiteral("Ann"));
    EXPECT_EQ(set.exif[10].int64(), 200);
    EXPECT_TRUE(set.exif[13].isAbsent()); // 17.5 is no integer
    EXPECT_EQ(set.exif[14].int64(), 16);  // a whole rational is one
    EXPECT_EQ(set.exif[11].float32(), 1.8f);
    EXPECT_EQ(set.exif[34].uint8(), quint8(1));
    EXPECT_EQ(set.exif[33].float32(), 123.4f);
    EXPECT_EQ(set.exif[43].uint64(), quint64(3200));
    EXPECT_TRUE(set.exif[5].isAbsent());
    EXPECT_TRUE(set.exif[15].isAbsent());
    EXPECT_EQ(set.exif[9].text(), QStringLiteral("2019:05:01 10:20:30"));
    EXPECT_TRUE(set.exif[49].isAbsent());
    EXPECT_EQ(set.iptc[0].text(), QStringLiteral("Bea"));
    EXPECT_EQ(set.xmp[3].text(), QStringLiteral("2020-01-02T03:04:05"));
}

TEST_F(FieldSetRead, ByteOfTwoHundredNeverBecomesAnAltitudeReference) {
    const QString file = jpegWithTags(path("byte.jpg"), [](Exiv2::Image& img) {
        addExif(img.exifData(), "Exif.GPSInfo.GPSAltitudeRef", Exiv2::unsignedByte, "200");
    });
    EXPECT_TRUE(readMetadataFieldSet(file).exif[34].isAbsent());
}

TEST_F(FieldSetRead, CoordinatesTakeTheirSignFromTheReference) {
    struct Case {
        const char* latitude;
        const char* latRef; // nullptr: no reference stored
        const char* longitude;
        const char* lonRef;
        std::optional<float> lat, lon;
    };
    const Case cases[] = {
        {"10/1 30/1 0/1", "S", "20/1 15/1 0/1", "E", -10.5f, 20.25f},
        {"-21/2 0/1 0/1", "N", "-3/1 0/1 0/1", "W", 10.5f, 3.0f},
        {"10/1 30/1 0/1", "n", "20/1 15/1 0/1", "", -10.5f, -20.25f},
        {"10/1 30/1 0/1", nullptr, "20/1 15/1 0/1", "W", std::nullopt, -20.25f},
    };
    int i = 0;
    for (const Case& c : cases) {
        const QString file = jpegWithTags(
            path(("gps" + std::to_string(i++) + ".jpg").c_str()), [&](Exiv2::Image& img) {
                Exiv2::ExifData& exif = img.exifData();
                addExif(exif, "Exif.GPSInfo.GPSLatitude", Exiv2::signedRational, c.latitude);
                if (c.latRef)
                    addExif(exif, "Exif.GPSInfo.GPSLatitudeRef", Exiv2::asciiString, c.latRef);
                addExif(exif, "Exif.GPSInfo.GPSLongitude", Exiv2::signedRational, c.longitude);
                addExif(exif, "Exif.GPSInfo.GPSLongitudeRef", Exiv2::asciiString, c.lonRef);
            });
        const MetadataFieldSet set = readMetadataFieldSet(file);
        EXPECT_EQ(set.exif[29].float32(), c.lat) << c.latitude;
        EXPECT_EQ(set.exif[31].float32(), c.lon) << c.longitude;
        EXPECT_EQ(set.exif[30].isPresent(), c.lat.has_value());
        EXPECT_EQ(set.exif[32].isPresent(), c.lon.has_value());
    }
}

TEST_F(FieldSetRead, NothingWhenTheBridgeFails) {
    writeBytes(path("junk.jpg"), QByteArray(100, 'x'));
    EXPECT_EQ(readMetadataFieldSet(path("junk.jpg")), MetadataFieldSet{});
    EXPECT_EQ(readMetadataFieldSet(path("absent.jpg")), MetadataFieldSet{});
}

} // namespace
} // namespace tagmoor
