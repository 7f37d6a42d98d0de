#include "ExivFixture.h"
#include "metadata/MetadataTest.h"
#include "metadata/PropertyLoading.h"

#include <QLoggingCategory>

#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace tagmoor {
namespace {

using namespace tagmoor::test;

QVariant valueAt(const QVariantMap& all, const char* block, const char* key) {
    return all.value(QLatin1String(block)).toMap().value(QLatin1String(key));
}

class BridgeRead : public ::testing::Test {
protected:
    QTemporaryDir dir;
    QString path(const char* name) const { return dir.filePath(QLatin1String(name)); }
};

TEST_F(BridgeRead, NumbersKeepTheirFirstValueAsWholeFloats) {
    const QString file = jpegWithTags(path("numbers.jpg"), [](Exiv2::Image& img) {
        Exiv2::ExifData& exif = img.exifData();
        addExif(exif, "Exif.GPSInfo.GPSAltitudeRef", Exiv2::unsignedByte, "255");
        addExif(exif, "Exif.Image.ImageNumber", Exiv2::unsignedByte, "200");
        addExif(exif, "Exif.Photo.ExposureIndex", Exiv2::tiffFloat, "2.5");
        addExif(exif, "Exif.Photo.Gamma", Exiv2::tiffDouble, "-7.75");
        addExif(exif, "Exif.Photo.ISOSpeedRatings", Exiv2::unsignedShort, "400 800");
        addExif(exif, "Exif.Image.ImageWidth", Exiv2::unsignedLong, "4000");
        addExif(exif, "Exif.Photo.ExposureBiasValue", Exiv2::signedRational, "-1/3");
        addExif(exif, "Exif.Photo.FNumber", Exiv2::unsignedRational, "28/10");
        addExif(exif, "Exif.Photo.ComponentsConfiguration", Exiv2::undefined, "1 2 3 0");
    });
    const auto all = MetadataTest().readAllPropertiesFrom(file);
    ASSERT_TRUE(all);
    auto f = [&](const char* key) { return valueAt(*all, "exif", key); };

    EXPECT_EQ(f("Exif.GPSInfo.GPSAltitudeRef").metaType().id(), QMetaType::Float);
    EXPECT_EQ(f("Exif.GPSInfo.GPSAltitudeRef").value<float>(), -1.0f);
    EXPECT_EQ(f("Exif.Image.ImageNumber").value<float>(), -56.0f);
    EXPECT_EQ(f("Exif.Photo.ExposureIndex").value<float>(), 2.0f);
    EXPECT_EQ(f("Exif.Photo.Gamma").value<float>(), -7.0f);
    EXPECT_EQ(f("Exif.Photo.ISOSpeedRatings").value<float>(), 400.0f);
    EXPECT_EQ(f("Exif.Image.ImageWidth").value<float>(), 4000.0f);
    EXPECT_FLOAT_EQ(f("Exif.Photo.ExposureBiasValue").value<float>(), -1.0f / 3.0f);
    EXPECT_EQ(f("Exif.Photo.FNumber").metaType().id(), QMetaType::Float);
    EXPECT_FLOAT_EQ(f("Exif.Photo.FNumber").value<float>(), 2.8f);
    // Undefined bytes are text, even when they are numbers.
    EXPECT_EQ(f("Exif.Photo.ComponentsConfiguration").toString(), QStringLiteral("1 2 3 0"));
}

TEST_F(BridgeRead, GpsCoordinatesFollowTheDegreeRule) {
    const QString file = jpegWithTags(path("gps.jpg"), [](Exiv2::Image& img) {
        Exiv2::ExifData& exif = img.exifData();
        addExif(exif, "Exif.GPSInfo.GPSLatitude", Exiv2::unsignedRational, "48/1 30/1 0/1");
        addExif(exif, "Exif.GPSInfo.GPSLongitude", Exiv2::signedRational, "10/1 -1/1 36/1");
        addExif(exif, "Exif.GPSInfo.GPSDestLatitude", Exiv2::unsignedRational, "5/1 30/1 0/1");
    });
    auto all = MetadataTest().readAllPropertiesFrom(file);
    ASSERT_TRUE(all);
    const QVariant lat = valueAt(*all, "exif", "Exif.GPSInfo.GPSLatitude");
    EXPECT_EQ(lat.metaType().id(), QMetaType::Double);
    EXPECT_DOUBLE_EQ(lat.toDouble(), 48.5);
    // A minutes value of exactly -1 adds nothing.
    EXPECT_DOUBLE_EQ(valueAt(*all, "exif", "Exif.GPSInfo.GPSLongitude").toDouble(), 10.01);
    // Other rationals, even GPS ones, keep only their first value.
    EXPECT_EQ(valueAt(*all, "exif", "Exif.GPSInfo.GPSDestLatitude").value<float>(), 5.0f);

    jpegWithTags(path("gps2.jpg"), [](Exiv2::Image& img) {
        Exiv2::ExifData& exif = img.exifData();
        addExif(exif, "Exif.GPSInfo.GPSLatitude", Exiv2::unsignedRational, "48/1 30/1");
        // The seconds' denominator is not applied: 2534/100 counts as 2534 seconds.
        addExif(exif, "Exif.GPSInfo.GPSLongitude", Exiv2::unsignedRational, "1/1 0/0 9/1");
        addExif(exif, "Exif.GPSInfo.GPSDestLongitude", Exiv2::unsignedRational, "0/1 0/1 0/1");
    });
    all = MetadataTest().readAllPropertiesFrom(path("gps2.jpg"));
    ASSERT_TRUE(all);
    EXPECT_DOUBLE_EQ(valueAt(*all, "exif", "Exif.GPSInfo.GPSLatitude").toDouble(), 0.0);
    EXPECT_DOUBLE_EQ(valueAt(*all, "exif", "Exif.GPSInfo.GPSLongitude").toDouble(), 1.0);

    jpegWithTags(path("gps3.jpg"), [](Exiv2::Image& img) {
        Exiv2::ExifData& exif = img.exifData();
        addExif(exif, "Exif.GPSInfo.GPSLatitude", Exiv2::unsignedRational, "0/0 30/1 0/1");
        addExif(exif, "Exif.GPSInfo.GPSLongitude", Exiv2::unsignedRational, "2/1 30/1 2534/100");
    });
    all = MetadataTest().readAllPropertiesFrom(path("gps3.jpg"));
    ASSERT_TRUE(all);
    EXPECT_DOUBLE_EQ(valueAt(*all, "exif", "Exif.GPSInfo.GPSLatitude").toDouble(), 0.0);
    EXPECT_DOUBLE_EQ(valueAt(*all, "exif", "Exif.GPSInfo.GPSLongitude").toDouble(),
                     2.5 + 2534.0 / 3600.0);
}

TEST_F(BridgeRead, TextsRepeatsAndSkippedTypes) {
    const QString file = jpegWithTags(path("text.jpg"), [](Exiv2::Image& img) {
        addExif(img.exifData(), "Exif.Image.Artist", Exiv2::asciiString, "Zoë Ångström");
        addExif(img.exifData(), "Exif.Photo.UserComment", Exiv2::comment, "charset=Ascii hello");
        addIptc(img.iptcData(), "Iptc.Application2.Keywords", "first");
        addIptc(img.iptcData(), "Iptc.Application2.Keywords", "second");
        addIptc(img.iptcData(), "Iptc.Application2.City", "Lyon");
        Exiv2::Value::AutoPtr date = Exiv2::Value::create(Exiv2::date);
        date->read("2020-02-03");
        img.iptcData().add(Exiv2::IptcKey("Iptc.Application2.DateCreated"), date.get());
        img.xmpData()["Xmp.aux.SerialNumber"] = "SN-77";
        Exiv2::Value::AutoPtr bag = Exiv2::Value::create(Exiv2::xmpBag);
        bag->read("one");
        img.xmpData().add(Exiv2::XmpKey("Xmp.dc.subject"), bag.get());
    });
    const auto all = MetadataTest().readAllPropertiesFrom(file);
    ASSERT_TRUE(all);
    EXPECT_EQ(all->size(), 3);
    EXPECT_EQ(valueAt(*all, "exif", "Exif.Image.Artist").toString(),
              QStringLiteral("Zoë Ångström"));
    EXPECT_EQ(valueAt(*all, "exif", "Exif.Photo.UserComment").toString(),
              QStringLiteral("charset=Ascii hello"));
    EXPECT_EQ(valueAt(*all, "iptc", "Iptc.Application2.Keywords").toString(),
              QStringLiteral("second"));
    EXPECT_EQ(valueAt(*all, "iptc", "Iptc.Application2.City").toString(), QStringLiteral("Lyon"));
    EXPECT_FALSE(all->value("iptc").toMap().contains("Iptc.Application2.DateCreated"));
    EXPECT_EQ(valueAt(*all, "xmp", "Xmp.aux.SerialNumber").toString(), QStringLiteral("SN-77"));
    EXPECT_FALSE(all->value("xmp").toMap().contains("Xmp.dc.subject"));

    const QVariantMap json = MetadataTest().readJSONStringFrom(file);
    EXPECT_TRUE(json.value("iptc").toString().startsWith("{\n  \"Iptc."));
    EXPECT_TRUE(json.value("iptc").toString().contains("\"Iptc.Application2.City\": \"Lyon\""));
    EXPECT_TRUE(json.value("xmp").toString().endsWith("\n}"));
}

QStringList gLogged;
void keepMessage(QtMsgType, const QMessageLogContext& context, const QString& text) {
    if (QLatin1String(context.category) == QLatin1String("tagmoor.metadata.read"))
        gLogged << text;
}

TEST_F(BridgeRead, ExifDataAreLoggedAsKeyValueLines) {
    const QString file = jpegWithTags(path("log.jpg"), [](Exiv2::Image& img) {
        addExif(img.exifData(), "Exif.Image.Artist", Exiv2::asciiString, "Ann");
        addIptc(img.iptcData(), "Iptc.Application2.City", "Lyon");
    });
    gLogged.clear();
    QLoggingCategory::setFilterRules(QStringLiteral("tagmoor.metadata.read.debug=true"));
    const QtMessageHandler previous = qInstallMessageHandler(keepMessage);
    MetadataTest().readAllPropertiesFrom(file);
    readMetadataFieldSet(file);
    qInstallMessageHandler(previous);
    QLoggingCategory::setFilterRules(QString());
    EXPECT_EQ(gLogged.count(QStringLiteral("key: Exif.Image.Artist value: Ann ")), 2);
    EXPECT_FALSE(gLogged.join('\n').contains(QStringLiteral("Iptc.")));
}

TEST_F(BridgeRead, EmptyFailedAndUnencodablePaths) {
    const auto bare = MetadataTest().readAllPropertiesFrom(makeJpeg(path("bare.jpg")));
    ASSERT_TRUE(bare);
    EXPECT_EQ(bare->keys(), (QStringList{"exif", "iptc", "xmp"}));
    for (const QVariant& block : *bare)
        EXPECT_TRUE(block.toMap().isEmpty());

    EXPECT_FALSE(MetadataTest().readAllPropertiesFrom(path("missing.jpg")));
    writeBytes(path("text.jpg"), "just some words, not a photo\n");
    EXPECT_FALSE(MetadataTest().readAllPropertiesFrom(path("text.jpg")));
    writeBytes(path("cut.jpg"), QByteArray("\xFF\xD8\xFF\xE1\x10\x00Exif\0\0MM\0*", 16));
    EXPECT_FALSE(MetadataTest().readAllPropertiesFrom(path("cut.jpg")));
    EXPECT_TRUE(MetadataTest().readJSONStringFrom(path("cut.jpg")).isEmpty());

    // A lone surrogate has no file-system form: an empty dictionary, not nothing.
    const QString unencodable = path("x") + QChar(0xD800) + QStringLiteral(".jpg");
    const auto none = MetadataTest().readAllPropertiesFrom(unencodable);
    ASSERT_TRUE(none);
    EXPECT_TRUE(none->isEmpty());
}

} // namespace
} // namespace tagmoor
