#include "editor/SelectionMerge.h"

#include "editor/FieldDisplay.h"

namespace tagmoor {

MergedSelection mergeSelection(const QList<const CGImageProperties*>& selected) {
    MergedSelection merged;
    if (selected.isEmpty())
        return merged;
    merged.record = withKeyGroups(*selected.first());
    merged.placeholders.fill(Placeholder::MultipleValues);
    const CGImageProperties& first = *selected.first();
    for (const FormField& field : formFields()) {
        Placeholder& placeholder = merged.placeholders[std::size_t(field.position)];
        if (FieldDisplay::isEmpty(first, field)) {
            bool allEmpty = true;
            for (const CGImageProperties* record : selected) {
                if (!FieldDisplay::isEmpty(*record, field)) {
                    allEmpty = false;
                    break;
                }
            }
            placeholder = allEmpty ? Placeholder::EmptyInAllImages : Placeholder::MultipleValues;
            continue;
        }
        bool allAgree = true;
        for (const CGImageProperties* record : selected) {
            if (record != &first && !FieldDisplay::agree(first, *record, field)) {
                allAgree = false;
                break;
            }
        }
        if (!allAgree)
            field.keyRow().field(merged.record)->clear();
    }
    return merged;
}

} // namespace tagmoor
