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

    // The form shows a coordinate as degrees beside its reference popup, and a run writes one
    // signed number whose sign becomes the reference. So a reference that names a hemisphere
    // ("N"/"S", "E"/"W") signs the degrees, whether they were typed with a minus or not;
    // without one the degrees keep their own sign.
    static void signCoordinates(CGImageProperties& record);
};

} // namespace tagmoor
