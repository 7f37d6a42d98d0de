#pragma once

#include "model/CGImageProperties.h"
#include "model/Field.h"

#include <QStringList>

#include <array>
#include <span>

namespace tagmoor {

// How the reader demands a row's value from the bridge, and what kind the field set and
// the record then hold. DateText rows are text in the field set and a date in the record.
enum class ReadKind { NotRead, Text, DateText, Int64, Float32, Float64, UInt8, UInt64 };

// How the writer hands a row's value to Exiv2.
enum class WriteKind { NotWritten, Text, Integer, Rational, Gps, GpsRef };

// One row of a key list: the system's whole vocabulary of tags is these 79 rows.
struct KeyRow {
    KeyBlock block;
    int row;
    const char* key;
    ReadKind read;
    WriteKind write;
    // The record field the row fills; its group must be present. nullptr for rows 48-51.
    PropertyValue* (*field)(CGImageProperties&);
    // The same field of a record as it stands: nullptr when its group is absent, and for
    // rows 48-51.
    const PropertyValue* (*peek)(const CGImageProperties&);
};

constexpr int kExifKeyCount = 55;
constexpr int kIptcKeyCount = 19;
constexpr int kXmpKeyCount = 5;

// Row numbers that code refers to by name. A row that a form field edits takes its number
// from the field's row of TAGMOOR_FORM_FIELDS.
namespace exifrow {
constexpr int ISOSpeedRatings = keyRowNumber(Field::ISO);
constexpr int Orientation = keyRowNumber(Field::Orientation);
constexpr int GPSLatitude = keyRowNumber(Field::GPSLatitude);
constexpr int GPSLatitudeRef = keyRowNumber(Field::GPSLatitudeRef);
constexpr int GPSLongitude = keyRowNumber(Field::GPSLongitude);
constexpr int GPSLongitudeRef = keyRowNumber(Field::GPSLongitudeRef);
constexpr int GPSAltitude = keyRowNumber(Field::GPSAltitude);
constexpr int GPSAltitudeRef = keyRowNumber(Field::GPSAltitudeRef);
// Rows 48-51 have no field.
constexpr int FirstSkipped = 48;
constexpr int LastSkipped = 51;
} // namespace exifrow

namespace iptcrow {
constexpr int Keywords = keyRowNumber(Field::Keywords);
} // namespace iptcrow

namespace xmprow {
constexpr int SerialNumber = keyRowNumber(Field::SerialNumberXMP);
constexpr int Lens = keyRowNumber(Field::LensXMP);
constexpr int PhotoshopDateCreated = keyRowNumber(Field::CreateDatePhotoshop);
constexpr int CreateDate = keyRowNumber(Field::CreateDateXMP);
constexpr int ModifyDate = keyRowNumber(Field::ModifyDateXMP);
} // namespace xmprow

std::span<const KeyRow, kExifKeyCount> exifKeyRows();
std::span<const KeyRow, kIptcKeyCount> iptcKeyRows();
std::span<const KeyRow, kXmpKeyCount> xmpKeyRows();

// All 79 rows: Exif, then IPTC, then XMP.
std::span<const KeyRow> allKeyRows();

// Rows 48 to 51 of the Exif list stand in the list but no reader or writer uses them.
inline bool isSkippedExifRow(int row) {
    return row >= exifrow::FirstSkipped && row <= exifrow::LastSkipped;
}

// The key texts of each list, in row order.
const QStringList& exifKeyNames();
const QStringList& iptcKeyNames();
const QStringList& xmpKeyNames();

// The row that has this key text, or nullptr.
const KeyRow* findKeyRow(const QString& key);

// A copy of the record in which every group that a key row reads is present, so that the
// rows' `field` accessors can be used on it.
CGImageProperties withKeyGroups(CGImageProperties record);

} // namespace tagmoor
