#pragma once

#include "model/KeyTable.h"

#include <QString>

#include <optional>
#include <span>

namespace tagmoor {

// What kind of control sits at a form position: a text field, an integer or decimal field,
// a date field filled by the date panel, or a popup over a code table.
enum class FormKind { Text, Integer, Decimal, Date, Popup };

constexpr int kFormPositionCount = 90;

// One position of the editor form and the key row behind it. Positions index
// fieldEditedFlags; 67-76 and 84-88 have no control and no key and are not in the table.
struct FormField {
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

// The six date positions, in the order in which a run treats them.
namespace formpos {
constexpr int DateTimeOriginal = 9;
constexpr int CreationDate = 10;
constexpr int ModifyDate = 11;
constexpr int CreateDateXMP = 58;
constexpr int ModifyDateXMP = 59;
constexpr int CreateDatePhotoshop = 60;
} // namespace formpos

// The 75 keyed positions in ascending position order.
std::span<const FormField> formFields();

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
