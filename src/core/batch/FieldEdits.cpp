#include "batch/FieldEdits.h"

#include "model/FormFieldTable.h"

#include <cmath>
#include <limits>

namespace tagmoor {

namespace {

bool isTextRow(const KeyRow& row) {
    return row.read == ReadKind::Text || row.read == ReadKind::DateText;
}

// An integer of the value: integers as they are, floats cut towards zero. A float that has no
// integer gives nothing; the form never produces one.
template <typename Int> std::optional<Int> integerOf(const PropertyValue& v) {
    if (auto i = v.int64()) {
        if (*i >= qint64(std::numeric_limits<Int>::min()) &&
            (*i < 0 || quint64(*i) <= quint64(std::numeric_limits<Int>::max())))
            return Int(*i);
        return std::nullopt;
    }
    if (auto u = v.uint8())
        return Int(*u);
    if (auto u = v.uint64()) {
        if (*u <= quint64(std::numeric_limits<Int>::max()))
            return Int(*u);
        return std::nullopt;
    }
    const auto d = v.number();
    if (!d || !std::isfinite(*d))
        return std::nullopt;
    const double cut = std::trunc(*d);
    if (cut < double(std::numeric_limits<Int>::min()) ||
        cut >= std::ldexp(1.0, std::numeric_limits<Int>::digits))
        return std::nullopt;
    return Int(cut);
}

// A number field that holds zero: the form's value of an empty number field.
bool isEmptiedNumber(const FormField& field, const PropertyValue& value) {
    if (field.kind != FormKind::Integer && field.kind != FormKind::Decimal)
        return false;
    const auto d = value.number();
    return d && *d == 0.0;
}

bool isGpsRow(const KeyRow& row) {
    return row.block == KeyBlock::Exif && row.row >= exifrow::GPSLatitude &&
           row.row <= exifrow::GPSAltitudeRef;
}

} // namespace

std::optional<PropertyValue> valueOfRowType(const KeyRow& row, const PropertyValue& value) {
    if (isTextRow(row)) {
        if (auto t = value.text())
            return PropertyValue(*t);
        return std::nullopt;
    }
    switch (row.read) {
    case ReadKind::Int64:
        if (auto i = integerOf<qint64>(value))
            return PropertyValue(*i);
        return std::nullopt;
    case ReadKind::UInt8:
        if (auto i = integerOf<quint8>(value))
            return PropertyValue(*i);
        return std::nullopt;
    case ReadKind::UInt64:
        if (auto i = integerOf<quint64>(value))
            return PropertyValue(*i);
        return std::nullopt;
    case ReadKind::Float32:
        if (auto d = value.number())
            return PropertyValue(float(*d));
        return std::nullopt;
    case ReadKind::Float64:
        if (auto d = value.number())
            return PropertyValue(*d);
        return std::nullopt;
    case ReadKind::NotRead:
    case ReadKind::Text:
    case ReadKind::DateText:
        break;
    }
    return std::nullopt;
}

FieldEdits plainFieldEdits(const RunValues& values) {
    FieldEdits edits;
    CGImageProperties form = withKeyGroups(values.editedProperties);
    const bool clearUnedited = values.processingMode == ProcessingMode::clearUnedited;
    for (const FormField* field : plainFieldsInKeyOrder()) {
        const KeyRow& row = field->keyRow();
        const bool flagged = values.fieldEditedFlags.test(field->field);
        const std::optional<PropertyValue> value = valueOfRowType(row, *row.field(form));
        if (values.writeOptions.standardForm) {
            // Only edited fields are touched. A number the user emptied (the form keeps it as
            // zero, and shows a zero as no value) removes the tag rather than writing a zero;
            // a position or an altitude of zero is a place on the map.
            if (!flagged) {
                if (clearUnedited)
                    edits.erase(row);
            } else if (!value || (isEmptiedNumber(*field, *value) && !isGpsRow(row))) {
                edits.erase(row);
            } else {
                edits.values.at(row) = *value;
            }
        } else if (clearUnedited) {
            if (!flagged)
                edits.erase(row);
            else if (value)
                edits.values.at(row) = *value;
        } else {
            // Keeping unedited tags: a field the form has no value for goes, whatever its
            // flag; an edited one takes the form's value, the empty text included.
            if (!value)
                edits.erase(row);
            else if (flagged)
                edits.values.at(row) = *value;
        }
    }
    return edits;
}

} // namespace tagmoor
