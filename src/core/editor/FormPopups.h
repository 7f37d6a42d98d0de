#pragma once

#include "model/PropertyValue.h"

#include <QStringList>

#include <optional>

namespace tagmoor {

// The popups of the editor form: which code table stands behind each popup position, the
// texts of its rows, and how a row and a record's value turn into each other.
namespace FormPopups {

// The rows of the two GPS reference popups, N or S and E or W: blank, the positive sign, the
// negative sign.
enum class ReferenceRow { blank, northOrEast, southOrWest };

// The sign a reference popup's row stands for; a row past the last is blank.
inline ReferenceRow referenceOfRow(int row) {
    return row == 1   ? ReferenceRow::northOrEast
           : row == 2 ? ReferenceRow::southOrWest
                      : ReferenceRow::blank;
}
inline int rowOfReference(ReferenceRow reference) {
    return int(reference);
}

// Whether the position is a popup of the form.
bool isPopup(int position);

// The texts of the popup's rows, row 0 (the blank row) first.
QStringList rowTexts(int position);

// The row that a record's value selects; 0 when the value stands in no row.
int rowOf(int position, const PropertyValue& value);

// The value a row stands for, of the kind the record holds; nothing for the blank row.
std::optional<PropertyValue> valueOfRow(int position, int row);

} // namespace FormPopups

} // namespace tagmoor
