#include "metadata/MergeForWriting.h"

#include "metadata/PropertyLoading.h"

namespace tagmoor {

namespace {

QVariantMap mergeBlock(std::span<const KeyRow> rows, const QStringList& keyNames,
                       const MetadataFieldSet& edited, const MetadataFieldSet& inFile) {
    QVariantMap block;
    for (const KeyRow& row : rows) {
        if (row.read == ReadKind::NotRead)
            continue;
        // An edited empty text counts as a value: it is written as an empty tag.
        const PropertyValue& value = edited.at(row).isPresent() ? edited.at(row) : inFile.at(row);
        if (value.isPresent())
            block.insert(keyNames.at(row.row), value.variant());
    }
    return block;
}

} // namespace

QVariantMap mergeForWriting(const MetadataFieldSet& editedFields, const QString& path) {
    return mergeForWriting(editedFields, readMetadataFieldSet(path));
}

QVariantMap mergeForWriting(const MetadataFieldSet& editedFields, const MetadataFieldSet& inFile) {
    return {
        {QStringLiteral("exif"), mergeBlock(exifKeyRows(), exifKeyNames(), editedFields, inFile)},
        {QStringLiteral("iptc"), mergeBlock(iptcKeyRows(), iptcKeyNames(), editedFields, inFile)},
        {QStringLiteral("xmp"), mergeBlock(xmpKeyRows(), xmpKeyNames(), editedFields, inFile)},
    };
}

} // namespace tagmoor
