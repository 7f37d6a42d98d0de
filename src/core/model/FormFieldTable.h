#pragma once

#include "model/KeyTable.h"

#include <QString>

#include <optional>
#include <span>

namespace tagmoor {

constexpr int kFormPositionCount = 90;

// One field of the editor form, its position and the key row behind it (a row of
// TAGMOOR_FORM_FIELDS). Positions 67-76 and 84-88 have no control and no key.
struct FormField {
    Field field;
    int position;
    const char* control;
    FormKind kind;
    KeyBlock block;
    int row;

    const KeyRow& keyRow() const;
    // The control's name without its kind prefix: "Artist", "CameraModalName", "City".
    QString name() const;
    bool isDate() const { return kind == FormKind::Date; }
};

// The 75 fields in ascending position order, which is the order of `Field`.
std::span<const FormField> formFields();

// The row of a field.
const FormField& formField(Field field);

// The field at a position, or nullptr for a position without a key.
const FormField* formFieldAt(int position);

// The field of a key row, or nullptr for rows no control edits (Exif 48-51).
const FormField* formFieldForRow(const KeyRow& row);

// The field by its name (case-insensitive) or by its full key text.
const FormField* findFormField(const QString& nameOrKey);

// The plain (non-date) fields in the order a run treats them: key-list order, Exif first,
// then IPTC, then XMP.
std::span<const FormField* const> plainFieldsInKeyOrder();

// The six date fields in the order a run treats them.
std::span<const FormField* const> dateFieldsInRunOrder();

} // namespace tagmoor
