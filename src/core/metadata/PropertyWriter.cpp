#include "metadata/PropertyWriter.h"

#include "metadata/PictureTags.h"
#include "metadata/WrittenProperties.h"
#include "model/ErasedRows.h"
#include "model/KeyTable.h"

#include <exiv2/exiv2.hpp>

#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <span>

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
void applyExif(Exiv2::Image& image, const WrittenProperties& written, const ErasedRows& erased) {
    Exiv2::ExifData& exifData = image.exifData();
    for (const KeyRow& row : exifKeyRows()) {
        const std::string key = row.key;
        const PropertyValue& value = written.at(row);
        switch (row.write) {
        case WriteKind::NotWritten:
        case WriteKind::GpsRef:
            break;
        case WriteKind::Text:
            if (value.isPresent())
                exifData[key] = writtenText(value).toStdString();
            break;
        case WriteKind::Integer:
            exifData[key] = int32_t(writtenInteger(value));
            break;
        case WriteKind::Rational:
            exifData[key] = Exiv2::floatToRationalCast(writtenFloat(value));
            break;
        case WriteKind::Gps:
            PropertyWriter::writeGpsField(exifData, key, row.row == exifrow::GPSLatitude,
                                          writtenDouble(value));
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

// The texts of a block's rows that have a value, each under its row's key. The subscript finds
// the first datum of a key: of repeated keys only the first changes.
template <typename Data>
void writeTextRows(Data& data, std::span<const KeyRow> rows, const WrittenProperties& written) {
    for (const KeyRow& row : rows) {
        const PropertyValue& value = written.at(row);
        if (value.isPresent())
            data[row.key] = writtenText(value).toStdString();
    }
}

void applyIptc(Exiv2::Image& image, const WrittenProperties& written, const ErasedRows& erased) {
    Exiv2::IptcData& iptcData = image.iptcData();
    writeTextRows(iptcData, iptcKeyRows(), written);
    PropertyWriter::eraseRows(iptcData, erased);
    image.setIptcData(iptcData);
}

void applyXmp(Exiv2::Image& image, const WrittenProperties& written, const ErasedRows& erased) {
    Exiv2::XmpData& xmpData = image.xmpData();
    writeTextRows(xmpData, xmpKeyRows(), written);
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

void PropertyWriter::apply(Exiv2::Image& image, const WrittenProperties& written,
                           const ErasedRows& erased) {
    applyExif(image, written, erased);
    applyIptc(image, written, erased);
    applyXmp(image, written, erased);
}

} // namespace tagmoor
