#include "metadata/KeyListSnapshot.h"

#include <exiv2/exiv2.hpp>

#include <gtest/gtest.h>

using namespace tagmoor;

namespace {

Exiv2::Image::AutoPtr emptyJpeg() {
    return Exiv2::ImageFactory::create(Exiv2::ImageType::jpeg);
}

void setShort(Exiv2::Image& image, const char* key, Exiv2::TypeId type, long number) {
    Exiv2::Value::AutoPtr value = Exiv2::Value::create(type);
    value->read(std::to_string(number));
    image.exifData().add(Exiv2::ExifKey(key), value.get());
}

} // namespace

// What the check of a written file reports: a value that changed, went or came, under its key,
// and nothing for a value that reads the same, whatever type it came back as. The values are
// taken when the snapshot is made: changing the edited image afterwards changes nothing.
TEST(KeyListSnapshot, ReportsWhatReadsDifferentlyAndOnlyThat) {
    auto asked = emptyJpeg();
    asked->exifData()["Exif.Image.Artist"] = "Jane Doe";
    asked->exifData()["Exif.Image.Copyright"] = "(c) Jane";
    setShort(*asked, "Exif.Photo.ISOSpeedRatings", Exiv2::unsignedShort, 400);
    asked->iptcData()["Iptc.Application2.City"] = "Paris";
    asked->xmpData()["Xmp.aux.Lens"] = "Lens 50";
    const KeyListSnapshot snapshot(*asked);
    asked->exifData()["Exif.Image.Artist"] = "changed after the snapshot";

    auto same = emptyJpeg();
    same->xmpData()["Xmp.aux.Lens"] = "Lens 50";
    same->iptcData()["Iptc.Application2.City"] = "Paris";
    // The same number as a wider type reads the same.
    setShort(*same, "Exif.Photo.ISOSpeedRatings", Exiv2::unsignedLong, 400);
    same->exifData()["Exif.Image.Copyright"] = "(c) Jane";
    same->exifData()["Exif.Image.Artist"] = "Jane Doe";
    // A key outside the lists is not looked at.
    same->exifData()["Exif.Image.0xfe00"] = "anything";
    EXPECT_TRUE(snapshot.differencesIn(*same).isEmpty());

    auto written = emptyJpeg();
    written->exifData()["Exif.Image.Artist"] = "Jane Do";
    setShort(*written, "Exif.Photo.ISOSpeedRatings", Exiv2::unsignedShort, 401);
    written->exifData()["Exif.Image.Model"] = "came from nowhere";
    written->iptcData()["Iptc.Application2.City"] = "Paris";
    written->xmpData()["Xmp.aux.Lens"] = "Lens 55";
    const QStringList differing = snapshot.differencesIn(*written);
    for (const char* key : {"Exif.Image.Artist", "Exif.Image.Copyright", "Exif.Image.Model",
                            "Exif.Photo.ISOSpeedRatings", "Xmp.aux.Lens"})
        EXPECT_TRUE(differing.contains(QString::fromLatin1(key))) << key;
    EXPECT_FALSE(differing.contains(QStringLiteral("Iptc.Application2.City")));

    // Only the first datum under a key counts.
    auto twice = emptyJpeg();
    setShort(*twice, "Exif.Photo.ISOSpeedRatings", Exiv2::unsignedShort, 400);
    setShort(*twice, "Exif.Photo.ISOSpeedRatings", Exiv2::unsignedShort, 800);
    EXPECT_FALSE(
        snapshot.differencesIn(*twice).contains(QStringLiteral("Exif.Photo.ISOSpeedRatings")));
}
