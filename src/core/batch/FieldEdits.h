#pragma once

#include "batch/RunValues.h"
#include "metadata/MetadataFieldSet.h"
#include "model/ErasedRows.h"

#include <optional>

namespace tagmoor {

// What one photo of an edit run gets: a new value for some fields of the field table, and
// the keys to erase. Fields without a new value keep what the file holds.
struct FieldEdits {
    MetadataFieldSet values;
    ErasedRows erased;

    void erase(const KeyRow& row) { erased.add(row); }
    bool isErased(const KeyRow& row) const { return erased.contains(row); }
    bool operator==(const FieldEdits&) const = default;
};

// The value in the kind that the row's field set holds, when `value` is "of its type": a text
// for a text row; for a number row an integer, or failing that a float cut to an integer for
// the integer rows, and any number for the float rows. Nothing otherwise, and nothing for a
// number that has no integer (not finite or out of range).
std::optional<PropertyValue> valueOfRowType(const KeyRow& row, const PropertyValue& value);

// The plain (non-date) fields of an edit run, in key-list order. They depend only on the run's
// values, not on the photo, so a run computes them once.
FieldEdits plainFieldEdits(const RunValues& values);

} // namespace tagmoor
