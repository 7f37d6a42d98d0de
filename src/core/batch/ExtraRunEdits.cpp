#include "batch/ExtraRunEdits.h"

#include "batch/DatesInZone.h"
#include "model/FormFieldTable.h"

namespace tagmoor {

ExtraWrite extraWriteOf(const RunValues& values, const FieldEdits& edits) {
    ExtraWrite write{values.extras, {}};
    if (values.extras.datesZone)
        write.edits.dateOffsets = exifDateOffsets(*values.extras.datesZone, edits);
    if (!values.extras.syncsCopies())
        return write;
    std::vector<EditedCopy> edited;
    for (const FormField* field : plainFieldsInKeyOrder()) {
        const KeyRow& row = field->keyRow();
        const QString key = QLatin1String(row.key);
        if (!values.fieldEditedFlags.test(field->field) || !copyGroupOf(key))
            continue;
        if (const std::optional<QString> text = edits.values.at(row).text())
            edited.push_back({key, *text});
        else if (edits.isErased(row))
            edited.push_back({key, QString()});
    }
    write.copies = copyWritesFor(edited);
    return write;
}

} // namespace tagmoor
