#pragma once

#include "model/CGImageProperties.h"
#include "model/FormFieldTable.h"

#include <QString>

#include <optional>

namespace tagmoor {

// The form read back into a record, as a run receives it: what an empty form gives, and
// how one control's text becomes its value.
class FormSnapshot {
public:
    // Every control empty: text fields hold the empty text, numeric fields and popups 0 (or
    // the empty text for the popups that hold a text), date fields nothing.
    static CGImageProperties empty();

    // Puts a control's text into the record as the form would: a text as it is, an integer
    // or decimal field parsed as a number, a popup as its stored code. Gives an error text
    // when the text doesn't fit the field; date fields take no text (their rule decides).
    static std::optional<QString> setText(CGImageProperties& record, const FormField& field,
                                          const QString& text);
};

} // namespace tagmoor
