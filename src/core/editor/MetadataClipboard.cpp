#include "editor/MetadataClipboard.h"

#include "dates/DateField.h"
#include "editor/FieldDisplay.h"
#include "editor/FormPopups.h"
#include "editor/FormSections.h"
#include "editor/MetadataForm.h"
#include "model/FormFieldTable.h"

#include <QCoreApplication>

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

QString extraTextLabel(ExtraText text) {
    static const char* const labels[] = {
        QT_TRANSLATE_NOOP("MetadataClipboard", "Alt text"),
        QT_TRANSLATE_NOOP("MetadataClipboard", "Extended description"),
        QT_TRANSLATE_NOOP("MetadataClipboard", "Event"),
        QT_TRANSLATE_NOOP("MetadataClipboard", "Usage terms"),
        QT_TRANSLATE_NOOP("MetadataClipboard", "Credit line"),
        QT_TRANSLATE_NOOP("MetadataClipboard", "Instructions"),
        QT_TRANSLATE_NOOP("MetadataClipboard", "Creator email"),
        QT_TRANSLATE_NOOP("MetadataClipboard", "Creator phone"),
        QT_TRANSLATE_NOOP("MetadataClipboard", "Creator website"),
        QT_TRANSLATE_NOOP("MetadataClipboard", "Creator city"),
        QT_TRANSLATE_NOOP("MetadataClipboard", "Creator country")};
    static_assert(std::size(labels) == kExtraTextCount);
    return QCoreApplication::translate("MetadataClipboard", labels[std::size_t(text)]);
}

} // namespace

void MetadataClipboard::copy(const CGImageProperties& record,
                             const std::optional<ExtraValues>& extras) {
    m_record = record;
    m_extras = {};
    m_entries.clear();
    for (const FormField& field : formFields()) {
        if (FieldDisplay::isEmpty(record, field))
            continue;
        if (field.kind == FormKind::Popup &&
            FieldDisplay::popupRow(record, field) == FormPopups::kBlankRow)
            continue;
        m_entries << Entry{field.field, labelOf(field.field), shownValue(record, field),
                           Kind::field, ExtraText::AltText};
    }
    if (extras)
        copyExtras(*extras);
}

void MetadataClipboard::copyExtras(const ExtraValues& extras) {
    m_extras = extras;
    const auto add = [this](Kind kind, const char* label, const QString& value) {
        m_entries << Entry{Field{}, QCoreApplication::translate("MetadataClipboard", label), value,
                           kind, ExtraText::AltText};
    };
    if (extras.rating) {
        add(Kind::rating, QT_TRANSLATE_NOOP("MetadataClipboard", "Rating"),
            *extras.rating == kRejectedRating
                ? QCoreApplication::translate("MetadataClipboard", "rejected")
                : QString::number(*extras.rating));
    }
    if (extras.label && !extras.label->isEmpty())
        add(Kind::label, QT_TRANSLATE_NOOP("MetadataClipboard", "Label"), *extras.label);
    for (const ExtraTextRow& row : kExtraTextRows) {
        const auto& text = extras.texts[std::size_t(row.text)];
        if (text && !text->isEmpty())
            m_entries << Entry{Field{}, extraTextLabel(row.text), *text, Kind::text, row.text};
    }
    if (!extras.persons.isEmpty())
        add(Kind::persons, QT_TRANSLATE_NOOP("MetadataClipboard", "People shown"),
            extras.persons.join(QStringLiteral(", ")));
}

void MetadataClipboard::clear() {
    m_entries.clear();
    m_record = {};
    m_extras = {};
}

void MetadataClipboard::paste(MetadataForm& form, const std::function<bool(Field)>& ticked) const {
    QList<bool> byPosition;
    for (const Entry& entry : m_entries)
        byPosition << (entry.kind == Kind::field && ticked(entry.field));
    ExtraEdits unused;
    paste(form, unused, byPosition);
}

void MetadataClipboard::pasteExtra(const Entry& entry, ExtraEdits& extras) const {
    switch (entry.kind) {
    case Kind::field:
        break;
    case Kind::rating:
        extras.rating = m_extras.rating;
        break;
    case Kind::label:
        extras.label = m_extras.label;
        break;
    case Kind::text:
        extras.texts[std::size_t(entry.text)] = m_extras.texts[std::size_t(entry.text)];
        break;
    case Kind::persons:
        extras.persons = m_extras.persons;
        break;
    }
}

void MetadataClipboard::paste(MetadataForm& form, ExtraEdits& extras,
                              const QList<bool>& ticked) const {
    // The coordinates go before their references, so that a reference signs the pasted
    // degrees rather than the ones the form held.
    QList<Field> references;
    for (qsizetype i = 0; i < m_entries.size(); ++i) {
        const Entry& entry = m_entries[i];
        if (!ticked.value(i))
            continue;
        if (entry.kind != Kind::field) {
            pasteExtra(entry, extras);
            continue;
        }
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
