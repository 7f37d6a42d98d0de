#include "editor/MetadataClipboard.h"

#include "dates/DateField.h"
#include "editor/FieldDisplay.h"
#include "editor/FormPopups.h"
#include "editor/FormSections.h"
#include "editor/MetadataForm.h"
#include "model/FormFieldTable.h"

namespace tagmoor {

namespace {

bool isReference(Field field) {
    return field == Field::GPSLatitudeRef || field == Field::GPSLongitudeRef;
}

// The value as the form shows it: a popup by its row's text.
QString shownValue(const CGImageProperties& record, const FormField& field) {
    if (field.kind != FormKind::Popup)
        return FieldDisplay::text(record, field);
    return FormPopups::rowTexts(field.field).value(FieldDisplay::popupRow(record, field));
}

} // namespace

void MetadataClipboard::copy(const CGImageProperties& record) {
    m_record = record;
    m_entries.clear();
    for (const FormField& field : formFields()) {
        if (FieldDisplay::isEmpty(record, field))
            continue;
        if (field.kind == FormKind::Popup &&
            FieldDisplay::popupRow(record, field) == FormPopups::kBlankRow)
            continue;
        m_entries << Entry{field.field, labelOf(field.field), shownValue(record, field)};
    }
}

void MetadataClipboard::clear() {
    m_entries.clear();
    m_record = {};
}

void MetadataClipboard::paste(MetadataForm& form, const std::function<bool(Field)>& ticked) const {
    // The coordinates go before their references, so that a reference signs the pasted
    // degrees rather than the ones the form held.
    QList<Field> references;
    for (const Entry& entry : m_entries) {
        if (!ticked(entry.field))
            continue;
        const FormField& field = formField(entry.field);
        if (isReference(entry.field)) {
            references << entry.field;
        } else if (const auto date = dateFieldOf(entry.field)) {
            const PropertyValue* value = field.keyRow().peek(m_record);
            if (const auto when = value ? value->date() : std::nullopt)
                form.commitDateRule(*date, SelectDate{*when}, *when);
        } else if (field.kind == FormKind::Popup) {
            form.choosePopupRow(entry.field, FieldDisplay::popupRow(m_record, field));
        } else {
            form.editText(entry.field, FieldDisplay::text(m_record, field));
        }
    }
    for (const Field reference : references) {
        form.chooseReferenceRow(reference, FieldDisplay::popupRow(m_record, formField(reference)));
    }
    // The controls show the pasted values: the form's edit paths take them as typed, where
    // the control already holds the text.
    emit form.formReset();
}

} // namespace tagmoor
