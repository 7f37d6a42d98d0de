#pragma once

#include "model/Field.h"

#include <QString>

#include <optional>

namespace tagmoor {

// How a numeric field of the editor checks each change of its text.
enum class NumericClass {
    None,             // not a numeric field
    Integer,          // integer parse; a text that doesn't parse is filtered
    IntegerWithLimit, // the same, with the limit check in between
    Decimal,          // decimal parse; a text that doesn't parse is filtered
    DecimalWithLimit, // the same, with the limit check in between
};

NumericClass numericClassOf(Field field);

// The largest value a field takes (a 32-bit float).
float limitOf(Field field);

// What the text change path makes of a typed text: the text the control then holds, and the
// message of the limit popover when the value went over the limit.
struct FieldInputResult {
    QString text;
    std::optional<QString> limitMessage;
    bool operator==(const FieldInputResult&) const = default;
};

// Runs the numeric checks of the field on `typed`: parse, limit check, filter. A field that
// is not numeric gets its text back unchanged.
FieldInputResult checkFieldInput(Field field, const QString& typed);

// Keeps "0" to "9" and, in decimal mode, the first ".".
QString filterDigits(const QString& text, bool decimal);

// The leading number of a text, as a text field gives its float value: "12abc" is 12, a text
// without a leading number 0.
float leadingFloat(const QString& text);

// "Value can not be greater than 1024.0".
QString limitMessageFor(float limit);

} // namespace tagmoor
