#include "metadata/MergeForWriting.h"

#include "metadata/PropertyLoading.h"

namespace tagmoor {

WrittenProperties mergeForWriting(const MetadataFieldSet& editedFields, const QString& path) {
    return mergeForWriting(editedFields, readMetadataFieldSet(path));
}

WrittenProperties mergeForWriting(const MetadataFieldSet& editedFields,
                                  const MetadataFieldSet& inFile) {
    WrittenProperties merged;
    for (const KeyRow& row : allKeyRows()) {
        if (row.read == ReadKind::NotRead)
            continue;
        // An edited empty text counts as a value: it is written as an empty tag.
        const PropertyValue& edited = editedFields.at(row);
        merged.set(row, edited.isPresent() ? edited : inFile.at(row));
    }
    return merged;
}

} // namespace tagmoor
