// Writing of the typed values into a file, through SafeMetadataEdit so that the file is
// replaced only by a complete, verified new one.
#include "metadata/MetadataTest.h"

#include "metadata/Exiv2Guard.h"
#include "metadata/FieldSetReading.h"
#include "metadata/KeyListSnapshot.h"
#include "metadata/MergeForWriting.h"
#include "metadata/PropertyLoading.h"
#include "metadata/PropertyWriter.h"
#include "metadata/SafeMetadataEdit.h"
#include "metadata/StandardForm.h"

#include <QFile>

#include <memory>

#include <exiv2/exiv2.hpp>

namespace tagmoor {

namespace {

// The kind of a failure that Exiv2 itself reported: its refusals of a type or of a block in a
// type all say "not supported".
WriteStatus statusOfExiv2Failure(Exiv2Failure kind, const QString& what) {
    if (kind == Exiv2Failure::Library && what.contains(QLatin1String("not supported")))
        return WriteStatus::NotWritable;
    return WriteStatus::Failed;
}

// What one write lays into the open image: the values, then the erased rows.
struct WrittenEdits {
    WrittenProperties values;
    ErasedRows erased;
};

// Writes the values that `edits` gives for the open image, then erases its erased rows.
WriteResult writeWith(const MetadataTest& bridge, const QString& path,
                      const std::optional<FileStamp>& expected,
                      const std::function<WrittenEdits(Exiv2::Image&)>& edits) {
    if (QFile::decodeName(QFile::encodeName(path)) != path)
        return {WriteStatus::Failed, QStringLiteral("the path has no form on the file system")};
    WriteResult result;
    guardExiv2(
        [&] {
            const auto outcome = SafeMetadataEdit::run(
                path, expected,
                [&](Exiv2::Image& image) -> SafeMetadataEdit::LandedCheck {
                    const WrittenEdits written = edits(image);
                    const WrittenProperties& values = written.values;
                    const ErasedRows& erased = written.erased;
                    const WriteOptions& options = bridge.writeOptions();
                    if (options.standardForm)
                        applyStandardForm(image, values, erased);
                    else
                        PropertyWriter::apply(image, values, erased);
                    if (options.declareIptcCharset)
                        declareIptcCharset(image, values);
                    applyExtraWrite(image, bridge.extraWrite(), options.declareIptcCharset);
                    auto asked = std::make_shared<KeyListSnapshot>(image);
                    return [asked](Exiv2::Image& written) {
                        const QStringList missing = asked->differencesIn(written);
                        return missing.isEmpty() ? QString() : notLandedText(missing);
                    };
                },
                bridge.flushesToDisk(), &result.status, bridge.writeOptions().standardForm);
            if (outcome == SafeMetadataEdit::Result::FileChanged)
                result = {WriteStatus::FileChanged, QStringLiteral("changed since it was read")};
        },
        [&](Exiv2Failure kind, const QString& what) {
            // Anything else than Exiv2's own errors (allocation, a broken value) ends the write
            // the same way, under the shorter text.
            if (kind == Exiv2Failure::Library)
                qCWarning(lcMetadataWrite).noquote()
                    << QStringLiteral("*** error exiv2 exception '") + what +
                           QStringLiteral("' ***");
            else
                qCWarning(lcMetadataWrite).noquote() << QStringLiteral("*** error exception ***");
            if (result.written())
                result.status = statusOfExiv2Failure(kind, what);
            result.detail = what;
        });
    return result;
}

// The values to write: in the standard form only the edited fields, merged over nothing;
// in the described form merged over what the file holds.
WrittenProperties mergedOver(const MetadataTest& bridge, const MetadataFieldSet& editedFields,
                             const Exiv2::Image& image) {
    if (bridge.writeOptions().standardForm)
        return mergeForWriting(editedFields, MetadataFieldSet{});
    return mergeForWriting(editedFields, readMetadataFieldSet(image));
}

} // namespace

WriteResult MetadataTest::setImagePropertiesAll(const QString& path,
                                                const WrittenProperties& properties,
                                                const ErasedRows& erased,
                                                const std::optional<FileStamp>& expected) const {
    return writeWith(*this, path, expected, [&](Exiv2::Image&) {
        return WrittenEdits{properties, erased};
    });
}

WriteResult MetadataTest::writeMergedFields(const QString& path,
                                            const MetadataFieldSet& editedFields,
                                            const ErasedRows& erased,
                                            const std::optional<FileStamp>& expected) const {
    return writeWith(*this, path, expected, [&](Exiv2::Image& image) {
        return WrittenEdits{mergedOver(*this, editedFields, image), erased};
    });
}

WriteResult MetadataTest::writeEditsOfOwnRecord(const QString& path, const QUrl& recordUrl,
                                                const EditsOfRecord& editsOf,
                                                const std::optional<FileStamp>& expected) const {
    return writeWith(*this, path, expected, [&](Exiv2::Image& image) {
        EditedRows edits = editsOf(datesOfParsedImage(recordUrl, image));
        return WrittenEdits{mergedOver(*this, edits.values, image), std::move(edits.erased)};
    });
}

} // namespace tagmoor
