#include "metadata/PropertyWriter.h"

#include "metadata/PictureTags.h"
#include "model/ErasedRows.h"
#include "model/KeyTable.h"

#include <exiv2/exiv2.hpp>

#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>

namespace tagmoor {

namespace {

// Decimal degrees to the tag's "d/1 m/1 s/1" text and the hemisphere letter. Seconds lose their
// fraction: that is the form of this tag in files we write.
struct GpsText {
    std::string value;
    bool negative;
};

GpsText gpsText(double v) {
    // The parts are taken from the signed remainder and printed as absolute values. The
    // hemisphere is read from the signed parts, so a negative value is south or west unless
    // it lies less than one second from the equator or the meridian.
    const double t = v * 3600.0;
    const double rest = std::fmod(t, 3600.0);
    const int degrees = int(t / 3600.0);
    const int minutes = int(rest / 60.0);
    const int seconds = int(std::fmod(rest, 60.0));
    char text[64];
    std::snprintf(text, sizeof text, "%d/1 %d/1 %d/1", std::abs(degrees), std::abs(minutes),
                  std::abs(seconds));
    return {text, (degrees | minutes | seconds) < 0};
}

void writeGps(Exiv2::ExifData& exifData, const std::string& key, const std::string& refKey,
              double value, const char* negativeRef, const char* positiveRef) {
    const GpsText gps = gpsText(value);
    // Create the datum afresh so it gets the tag's standard type whatever the file held.
    const auto existing = exifData.findKey(Exiv2::ExifKey(key));
    if (existing != exifData.end())
        exifData.erase(existing);
    exifData[key] = gps.value;
    exifData[refKey] = std::string(gps.negative ? negativeRef : positiveRef);
}

template <typename Key, typename Data>
void eraseRowsOf(Data& data, const ErasedRows& erased, KeyBlock block) {
    for (const KeyRow* row : erased.rows(block)) {
        const auto found = data.findKey(Key(row->key));
        if (found != data.end())
            data.erase(found);
    }
}

// Integer and rational rows are written even without a value: a missing one becomes zero, and
// the caller lists its key for erasure, which runs after writing.
void applyExif(Exiv2::Image& image, const QVariantMap& exif, const ErasedRows& erased) {
    const QStringList& keyNames = exifKeyNames();
    Exiv2::ExifData& exifData = image.exifData();
    for (const KeyRow& row : exifKeyRows()) {
        const QString keyText = keyNames.at(row.row);
        const std::string key = keyText.toStdString();
        const QVariant value = exif.value(keyText);
        switch (row.write) {
        case WriteKind::NotWritten:
        case WriteKind::GpsRef:
            break;
        case WriteKind::Text:
            if (value.isValid())
                exifData[key] = value.toString().toStdString();
            break;
        case WriteKind::Integer:
            exifData[key] = int32_t(value.toLongLong());
            break;
        case WriteKind::Rational:
            exifData[key] = Exiv2::floatToRationalCast(value.toFloat());
            break;
        case WriteKind::Gps:
            PropertyWriter::writeGpsField(exifData, key, row.row == exifrow::GPSLatitude,
                                          value.toDouble());
            break;
        }
    }
    PropertyWriter::eraseRows(exifData, erased);
    // A TIFF-built photo with an orientation outside 1-8 no longer opens in libtiff's readers:
    // the zero that stands for a missing value is erased there instead.
    if (isTiffContainer(image)) {
        const auto orientation = exifData.findKey(Exiv2::ExifKey("Exif.Image.Orientation"));
        if (orientation != exifData.end() &&
            (orientation->count() == 0 || orientation->toLong(0) < 1 || orientation->toLong(0) > 8))
            exifData.erase(orientation);
    }
    image.setExifData(exifData);
}

// The subscript finds the first datum of a key: of repeated keys only the first changes.
void applyIptc(Exiv2::Image& image, const QVariantMap& iptc, const ErasedRows& erased) {
    const QStringList& keyNames = iptcKeyNames();
    Exiv2::IptcData& iptcData = image.iptcData();
    for (const KeyRow& row : iptcKeyRows()) {
        const QVariant value = iptc.value(keyNames.at(row.row));
        if (value.isValid())
            iptcData[keyNames.at(row.row).toStdString()] = value.toString().toStdString();
    }
    PropertyWriter::eraseRows(iptcData, erased);
    image.setIptcData(iptcData);
}

void applyXmp(Exiv2::Image& image, const QVariantMap& xmp, const ErasedRows& erased) {
    const QStringList& keyNames = xmpKeyNames();
    Exiv2::XmpData& xmpData = image.xmpData();
    for (const KeyRow& row : xmpKeyRows()) {
        const QVariant value = xmp.value(keyNames.at(row.row));
        if (value.isValid())
            xmpData[keyNames.at(row.row).toStdString()] = value.toString().toStdString();
    }
    PropertyWriter::eraseRows(xmpData, erased);
    image.setXmpData(xmpData);
}

} // namespace

void PropertyWriter::writeGpsCoordinate(Exiv2::ExifData& exifData, const std::string& key,
                                        const std::string& refKey, double value, bool latitude) {
    if (latitude)
        writeGps(exifData, key, refKey, value, "S", "N");
    else
        writeGps(exifData, key, refKey, value, "W", "E");
}

void PropertyWriter::writeGpsField(Exiv2::ExifData& exifData, const std::string& key, bool latitude,
                                   double value) {
    const auto refRow = latitude ? exifrow::GPSLatitudeRef : exifrow::GPSLongitudeRef;
    writeGpsCoordinate(exifData, key, exifKeyRows()[refRow].key, value, latitude);
}

void PropertyWriter::eraseRows(Exiv2::ExifData& data, const ErasedRows& erased) {
    eraseRowsOf<Exiv2::ExifKey>(data, erased, KeyBlock::Exif);
}
void PropertyWriter::eraseRows(Exiv2::IptcData& data, const ErasedRows& erased) {
    eraseRowsOf<Exiv2::IptcKey>(data, erased, KeyBlock::Iptc);
}
void PropertyWriter::eraseRows(Exiv2::XmpData& data, const ErasedRows& erased) {
    eraseRowsOf<Exiv2::XmpKey>(data, erased, KeyBlock::Xmp);
}

void PropertyWriter::apply(Exiv2::Image& image, const QVariantMap& properties,
                           const ErasedRows& erased) {
    const auto exif = properties.find(QStringLiteral("exif"));
    if (exif != properties.end())
        applyExif(image, exif->toMap(), erased);
    const auto iptc = properties.find(QStringLiteral("iptc"));
    if (iptc != properties.end())
        applyIptc(image, iptc->toMap(), erased);
    const auto xmp = properties.find(QStringLiteral("xmp"));
    if (xmp != properties.end())
        applyXmp(image, xmp->toMap(), erased);
}

} // namespace tagmoor
