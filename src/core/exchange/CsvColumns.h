#pragma once

#include "model/Field.h"

#include <QString>

#include <optional>
#include <span>

namespace tagmoor {

// The columns of a metadata table: one per form field, named as the common metadata tools
// name the field's tag (without its group), so that a table goes from one tool to the other.
// The five XMP tags carry their group, as "XMP-xmp:CreateDate": three of them share their names
// with EXIF tags, and such a name without a group is the EXIF tag.
namespace CsvColumns {

// The first column: the photo's path.
inline constexpr const char* sourceFile = "SourceFile";

// The column name of a field: "Artist", "Caption-Abstract", "GPSLatitude".
QString nameOf(Field field);

// The field a column heading names, if any: the name alone or with a group before a ":"
// (a group that names the other block of a shared name picks that block's field), case
// aside, with or without the "#" that marks a column of plain numbers.
std::optional<Field> fieldOf(const QString& heading);

// The fields in the order their columns stand in a table: the form's order.
std::span<const Field> fieldsInOrder();

} // namespace CsvColumns

} // namespace tagmoor
