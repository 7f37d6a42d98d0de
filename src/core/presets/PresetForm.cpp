#include "presets/PresetForm.h"

#include "batch/FormSnapshot.h"
#include "dates/DateField.h"
#include "editor/DateSummary.h"
#include "editor/FieldDisplay.h"
#include "editor/FormPopups.h"
#include "editor/MetadataForm.h"
#include "model/FormFieldTable.h"

namespace tagmoor {

CGImageProperties presetValuesOf(const MetadataForm& form) {
    CGImageProperties values = form.readForm();
    for (const FormField& field : formFields()) {
        const bool held = field.kind == FormKind::Popup
                              ? form.popupRow(field.field) != FormPopups::kBlankRow
                              : !form.text(field.field).isEmpty();
        if (!held)
            field.keyRow().field(values)->clear();
    }
    return values;
}

PresetRunEdits presetRunEdits(const ActualPreset& preset) {
    const CGImageProperties values = preset.properties.value_or(makeEmptyRecord(std::nullopt));
    PresetRunEdits out;
    out.editedProperties = FormSnapshot::empty();
    out.editorDates = preset.timeSetting.value_or(OriginalFinalDate{});
    // The same steps as showing the values in the form and reading the form back: each value
    // goes through the text or row its control would show.
    for (const FormField& field : formFields()) {
        PropertyValue& value = *field.keyRow().field(out.editedProperties);
        if (field.isDate()) {
            const auto date = dateFieldOf(field.field);
            if (!date || !out.editorDates.alive(*date))
                continue;
            out.fieldEditedFlags.set(field.field);
            // The form keeps the date only while its field shows a summary.
            const auto& slot = out.editorDates.slot(*date);
            if (slot && !dateSummary(out.editorDates.rule(*date), slot).isEmpty())
                value = PropertyValue(*slot);
            continue;
        }
        if (!presetHoldsValue(values, field.field))
            continue;
        if (field.kind == FormKind::Popup) {
            if (auto chosen =
                    FormPopups::valueOfRow(field.field, FieldDisplay::popupRow(values, field)))
                value = *chosen;
        } else {
            FormSnapshot::setText(out.editedProperties, field, FieldDisplay::text(values, field));
        }
        out.fieldEditedFlags.set(field.field);
    }
    FormSnapshot::signCoordinates(out.editedProperties);
    return out;
}

} // namespace tagmoor
