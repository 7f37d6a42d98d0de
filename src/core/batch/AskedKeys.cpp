#include "batch/AskedKeys.h"

#include "dates/DateField.h"
#include "model/FormFieldTable.h"

namespace tagmoor {

std::optional<QSet<QString>> askedKeys(const RunValues& values) {
    if (values.processingMode != ProcessingMode::keepUnedited)
        return std::nullopt;
    QSet<QString> keys;
    for (const FormField& field : formFields()) {
        if (values.fieldEditedFlags.test(field.field))
            keys.insert(QString::fromLatin1(field.keyRow().key));
    }
    for (DateField date : allDateFields) {
        if (values.editorDates.alive(date))
            keys.insert(QString::fromLatin1(dateFieldKey(date)));
    }
    return keys;
}

} // namespace tagmoor
