#pragma once

#include "model/Field.h"
#include "model/PropertyValue.h"

#include <QStringList>

#include <optional>

namespace tagmoor {

// The popups of the editor form: which code table stands behind each popup field, the
// texts of its rows, and how a row and a record's value turn into each other. A row is the
// index of an entry in the popup's list, the blank row first.
namespace FormPopups {

// The first row of every popup: no value.
inline constexpr int kBlankRow = 0;

// The rows of the two GPS reference popups, N or S and E or W: blank, the positive sign, the
// negative sign.
enum class ReferenceRow { blank, northOrEast, southOrWest };

// The sign a reference popup's row stands for; a row before the first or past the last is
// blank.
inline ReferenceRow referenceOfRow(int row) {
    switch (row) {
    case int(ReferenceRow::northOrEast):
        return ReferenceRow::northOrEast;
    case int(ReferenceRow::southOrWest):
        return ReferenceRow::southOrWest;
    default:
        return ReferenceRow::blank;
    }
}
inline int rowOfReference(ReferenceRow reference) {
    return int(reference);
}

// Whether the field is a popup of the form.
bool isPopup(Field field);

// The texts of the popup's rows, the blank row first.
QStringList rowTexts(Field field);

// The row that a record's value selects; the blank row when the value stands in no row.
int rowOf(Field field, const PropertyValue& value);

// The value a row stands for, of the kind the record holds; nothing for the blank row.
std::optional<PropertyValue> valueOfRow(Field field, int row);

} // namespace FormPopups

} // namespace tagmoor
