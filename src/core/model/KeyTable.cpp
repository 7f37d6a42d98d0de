#include "model/KeyTable.h"

#include <QHash>

namespace tagmoor {

namespace {

// Each field gives the row two accessors: one that fills the record, one that reads it.
#define GROUP_FIELD(group, f)                                                                      \
    [](CGImageProperties& r) -> PropertyValue* { return &r.group->f; },                            \
        [](const CGImageProperties& r) -> const PropertyValue* {                                   \
            return r.group ? &r.group->f : nullptr;                                                \
        }
#define TIFF(f) GROUP_FIELD(tiffProperties, f)
#define EXIF(f) GROUP_FIELD(exifProperties, f)
#define GPS(f) GROUP_FIELD(gpsProperties, f)
#define IPTC(f) GROUP_FIELD(iptcProperties, f)
#define XMP(f) GROUP_FIELD(xmpDataProperties, f)
#define TOP(f)                                                                                     \
    [](CGImageProperties& r) -> PropertyValue* { return &r.f; },                                   \
        [](const CGImageProperties& r) -> const PropertyValue* { return &r.f; }
#define NO_FIELD nullptr, nullptr

using R = ReadKind;
using W = WriteKind;
constexpr KeyBlock E = KeyBlock::Exif;

const std::array<KeyRow, kExifKeyCount> kExifRows{{
    {E, 0, "Exif.Image.Artist", R::Text, W::Text, TIFF(artist)},
    {E, 1, "Exif.Image.ImageDescription", R::Text, W::Text, TIFF(imageDescription)},
    {E, 2, "Exif.Image.Copyright", R::Text, W::Text, TIFF(copyRight)},
    {E, 3, "Exif.Image.Software", R::Text, W::Text, TIFF(software)},
    {E, 4, "Exif.Photo.UserComment", R::Text, W::Text, EXIF(userComment)},
    {E, 5, "Exif.Image.Make", R::Text, W::Text, TIFF(make)},
    {E, 6, "Exif.Image.Model", R::Text, W::Text, TIFF(model)},
    {E, 7, "Exif.Photo.CameraOwnerName", R::Text, W::Text, EXIF(cameraOwnerName)},
    {E, 8, "Exif.Photo.BodySerialNumber", R::Text, W::Text, EXIF(bodySerialNumber)},
    {E, 9, "Exif.Photo.DateTimeOriginal", R::DateText, W::Text, EXIF(dateTimeOriginal)},
    {E, 10, "Exif.Photo.ISOSpeedRatings", R::Int64, W::Integer, EXIF(isoSpeedRating)},
    {E, 11, "Exif.Photo.FNumber", R::Float32, W::Rational, EXIF(fNumber)},
    {E, 12, "Exif.Photo.FocalLength", R::Float32, W::Rational, EXIF(focalLength)},
    {E, 13, "Exif.Photo.FocalLengthIn35mmFilm", R::Int64, W::Integer, EXIF(focalLenIn35mmFilm)},
    {E, 14, "Exif.Photo.Flash", R::Int64, W::Integer, EXIF(flash)},
    {E, 15, "Exif.Image.Orientation", R::Int64, W::Integer, TIFF(orientation)},
    {E, 16, "Exif.Photo.ExposureMode", R::Int64, W::Integer, EXIF(exposureMode)},
    {E, 17, "Exif.Photo.ExposureProgram", R::Int64, W::Integer, EXIF(exposureProgram)},
    {E, 18, "Exif.Photo.ExposureTime", R::Float32, W::Rational, EXIF(exposureTime)},
    {E, 19, "Exif.Photo.MeteringMode", R::Int64, W::Integer, EXIF(meteringMode)},
    {E, 20, "Exif.Photo.SceneCaptureType", R::Int64, W::Integer, EXIF(sceneCaptureType)},
    {E, 21, "Exif.Photo.WhiteBalance", R::Int64, W::Integer, EXIF(whiteBalance)},
    {E, 22, "Exif.Photo.Saturation", R::Int64, W::Integer, EXIF(saturation)},
    {E, 23, "Exif.Photo.SensingMethod", R::Int64, W::Integer, EXIF(sensingMethod)},
    {E, 24, "Exif.Photo.Sharpness", R::Int64, W::Integer, EXIF(sharpness)},
    {E, 25, "Exif.Photo.SubjectDistanceRange", R::Int64, W::Integer, EXIF(subjectDistRange)},
    {E, 26, "Exif.Photo.LensMake", R::Text, W::Text, EXIF(lensMake)},
    {E, 27, "Exif.Photo.LensModel", R::Text, W::Text, EXIF(lensModel)},
    {E, 28, "Exif.Photo.LensSerialNumber", R::Text, W::Text, EXIF(lensSerialNumber)},
    {E, 29, "Exif.GPSInfo.GPSLatitude", R::Float64, W::Gps, GPS(latitude)},
    {E, 30, "Exif.GPSInfo.GPSLatitudeRef", R::Text, W::GpsRef, GPS(latitudeRef)},
    {E, 31, "Exif.GPSInfo.GPSLongitude", R::Float64, W::Gps, GPS(longitude)},
    {E, 32, "Exif.GPSInfo.GPSLongitudeRef", R::Text, W::GpsRef, GPS(longitudeRef)},
    {E, 33, "Exif.GPSInfo.GPSAltitude", R::Float32, W::Rational, GPS(altitude)},
    {E, 34, "Exif.GPSInfo.GPSAltitudeRef", R::UInt8, W::Integer, GPS(altitudeRef)},
    {E, 35, "Exif.Image.Compression", R::Int64, W::Integer, TIFF(compression)},
    {E, 36, "Exif.Image.DocumentName", R::Text, W::Text, TIFF(documentName)},
    {E, 37, "Exif.Image.XResolution", R::Float32, W::Rational, TIFF(fxResolution)},
    {E, 38, "Exif.Image.YResolution", R::Float32, W::Rational, TIFF(fyResolution)},
    {E, 39, "Exif.Image.HostComputer", R::Text, W::Text, TIFF(hostComputer)},
    {E, 40, "Exif.Image.PrimaryChromaticities", R::Float32, W::Rational,
     TIFF(primaryChromaticities)},
    {E, 41, "Exif.Photo.SpectralSensitivity", R::Text, W::Text, EXIF(spectralSensitivity)},
    {E, 42, "Exif.Photo.SensitivityType", R::Int64, W::Integer, EXIF(sensitivityType)},
    {E, 43, "Exif.Photo.StandardOutputSensitivity", R::UInt64, W::Integer,
     EXIF(standardOutputSensitivity)},
    {E, 44, "Exif.Photo.CompressedBitsPerPixel", R::Float32, W::Rational,
     EXIF(compressedBitsPerPixel)},
    {E, 45, "Exif.Photo.MaxApertureValue", R::Float32, W::Rational, EXIF(maxApertureValue)},
    {E, 46, "Exif.Photo.ColorSpace", R::Int64, W::Integer, EXIF(colorSpace)},
    {E, 47, "Exif.Photo.LightSource", R::Int64, W::Integer, EXIF(lightSource)},
    {E, 48, "Exif.Photo.MakerNote", R::NotRead, W::NotWritten, NO_FIELD},
    {E, 49, "Exif.Photo.FileSource", R::NotRead, W::NotWritten, NO_FIELD},
    {E, 50, "Exif.Photo.DeviceSettingDescription", R::NotRead, W::NotWritten, NO_FIELD},
    {E, 51, "Exif.Photo.FlashpixVersion", R::NotRead, W::NotWritten, NO_FIELD},
    {E, 52, "Exif.Photo.DigitalZoomRatio", R::Float32, W::Rational, EXIF(digitalZoomRatio)},
    {E, 53, "Exif.Photo.DateTimeDigitized", R::DateText, W::Text, TOP(createDate)},
    {E, 54, "Exif.Image.DateTime", R::DateText, W::Text, TOP(modifyDate)},
}};

constexpr KeyBlock I = KeyBlock::Iptc;
const std::array<KeyRow, kIptcKeyCount> kIptcRows{{
    {I, 0, "Iptc.Application2.Byline", R::Text, W::Text, IPTC(byLine)},
    {I, 1, "Iptc.Application2.BylineTitle", R::Text, W::Text, IPTC(byLineTitle)},
    {I, 2, "Iptc.Application2.Copyright", R::Text, W::Text, IPTC(copyrightNotice)},
    {I, 3, "Iptc.Application2.Headline", R::Text, W::Text, IPTC(headlines)},
    {I, 4, "Iptc.Application2.Caption", R::Text, W::Text, IPTC(captionAbstract)},
    {I, 5, "Iptc.Application2.Writer", R::Text, W::Text, IPTC(writerEditor)},
    {I, 6, "Iptc.Application2.ObjectName", R::Text, W::Text, IPTC(objectName)},
    {I, 7, "Iptc.Application2.Category", R::Text, W::Text, IPTC(category)},
    {I, 8, "Iptc.Application2.SuppCategory", R::Text, W::Text, IPTC(supplementalCategory)},
    {I, 9, "Iptc.Application2.Keywords", R::Text, W::Text, IPTC(keywords)},
    {I, 10, "Iptc.Application2.SubLocation", R::Text, W::Text, IPTC(subLocation)},
    {I, 11, "Iptc.Application2.City", R::Text, W::Text, IPTC(city)},
    {I, 12, "Iptc.Application2.ProvinceState", R::Text, W::Text, IPTC(provinceState)},
    {I, 13, "Iptc.Application2.CountryName", R::Text, W::Text, IPTC(countryPrimaryLocationName)},
    {I, 14, "Iptc.Application2.CountryCode", R::Text, W::Text, IPTC(countryPrimaryLocationCode)},
    {I, 15, "Iptc.Application2.TransmissionReference", R::Text, W::Text,
     IPTC(originalTransmissionRef)},
    {I, 16, "Iptc.Application2.SpecialInstructions", R::Text, W::Text, IPTC(specialInstruction)},
    {I, 17, "Iptc.Application2.Credit", R::Text, W::Text, IPTC(credit)},
    {I, 18, "Iptc.Application2.Source", R::Text, W::Text, IPTC(source)},
}};

constexpr KeyBlock X = KeyBlock::Xmp;
const std::array<KeyRow, kXmpKeyCount> kXmpRows{{
    {X, 0, "Xmp.aux.SerialNumber", R::Text, W::Text, XMP(serialNumber)},
    {X, 1, "Xmp.aux.Lens", R::Text, W::Text, XMP(lens)},
    {X, 2, "Xmp.photoshop.DateCreated", R::DateText, W::Text, XMP(photoshopCreateDate)},
    {X, 3, "Xmp.xmp.CreateDate", R::DateText, W::Text, XMP(createDate)},
    {X, 4, "Xmp.xmp.ModifyDate", R::DateText, W::Text, XMP(modifyDate)},
}};

template <std::size_t N> QStringList namesOf(const std::array<KeyRow, N>& rows) {
    QStringList names;
    for (const auto& r : rows)
        names << QString::fromLatin1(r.key);
    return names;
}

} // namespace

std::span<const KeyRow, kExifKeyCount> exifKeyRows() {
    return kExifRows;
}
std::span<const KeyRow, kIptcKeyCount> iptcKeyRows() {
    return kIptcRows;
}
std::span<const KeyRow, kXmpKeyCount> xmpKeyRows() {
    return kXmpRows;
}

std::span<const KeyRow> allKeyRows() {
    static const auto all = [] {
        std::array<KeyRow, kExifKeyCount + kIptcKeyCount + kXmpKeyCount> a{};
        auto it = std::copy(kExifRows.begin(), kExifRows.end(), a.begin());
        it = std::copy(kIptcRows.begin(), kIptcRows.end(), it);
        std::copy(kXmpRows.begin(), kXmpRows.end(), it);
        return a;
    }();
    return all;
}

const QStringList& exifKeyNames() {
    static const QStringList names = namesOf(kExifRows);
    return names;
}
const QStringList& iptcKeyNames() {
    static const QStringList names = namesOf(kIptcRows);
    return names;
}
const QStringList& xmpKeyNames() {
    static const QStringList names = namesOf(kXmpRows);
    return names;
}

const KeyRow* findKeyRow(const QString& key) {
    static const QHash<QString, const KeyRow*> byKey = [] {
        QHash<QString, const KeyRow*> h;
        for (const auto& r : allKeyRows())
            h.insert(QString::fromLatin1(r.key), &r);
        return h;
    }();
    return byKey.value(key, nullptr);
}

CGImageProperties withKeyGroups(CGImageProperties r) {
    if (!r.tiffProperties)
        r.tiffProperties.emplace();
    if (!r.exifProperties)
        r.exifProperties.emplace();
    if (!r.gpsProperties)
        r.gpsProperties.emplace();
    if (!r.iptcProperties)
        r.iptcProperties.emplace();
    if (!r.xmpDataProperties)
        r.xmpDataProperties.emplace();
    return r;
}

} // namespace tagmoor
