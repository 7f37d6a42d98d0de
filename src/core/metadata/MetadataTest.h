#pragma once

#include "metadata/CleanOptions.h"
#include "metadata/ExtraTags.h"
#include "metadata/MetadataFieldSet.h"
#include "metadata/WriteOptions.h"
#include "metadata/WriteResult.h"
#include "metadata/WrittenProperties.h"
#include "model/CGImageProperties.h"
#include "model/ErasedRows.h"

#include <QDateTime>
#include <QString>
#include <QStringList>
#include <QVariantMap>

#include <functional>
#include <optional>

namespace tagmoor {

// When a caller read a file: writing refuses to go on if the file changed since.
struct FileStamp {
    qint64 size = -1;
    QDateTime modified;
};

// The one class that talks to Exiv2. Nothing above it sees an Exiv2 type: it writes typed
// values by row of the key lists, and reads into dictionaries keyed by the full Exiv2 key text
// ("exif", "iptc", "xmp" at the top).
// No exception ever leaves it. It holds no shared state; make a fresh one for each use.
class MetadataTest {
public:
    // Writes and cleans flush the new file to disk before it replaces the old one. A caller
    // whose target holds nothing of the user's yet (a batch's staged output) may turn it off.
    void setFlushesToDisk(bool flush) { m_flushesToDisk = flush; }
    bool flushesToDisk() const { return m_flushesToDisk; }

    // The form in which writes lay their values into the file (see WriteOptions).
    void setWriteOptions(const WriteOptions& options) { m_writeOptions = options; }
    const WriteOptions& writeOptions() const { return m_writeOptions; }

    // What writes lay into the file beyond the key-list rows (see ExtraWrite); none by default.
    void setExtraWrite(ExtraWrite write) { m_extraWrite = std::move(write); }
    const ExtraWrite& extraWrite() const { return m_extraWrite; }

    // Every tag of the file in three dictionaries: values are QString, float (QMetaType::Float)
    // or, for GPS latitude and longitude, double. Nothing when Exiv2 failed; an empty map
    // when the path can't be encoded for the file system.
    std::optional<QVariantMap> readAllPropertiesFrom(const QString& path) const;

    // Exiv2's own data printed as JSON-shaped text per block; a diagnostic aid.
    QVariantMap readJSONStringFrom(const QString& path) const;

    // Writes the values (from mergeForWriting) and then erases the tags of the erased rows.
    // The file is replaced only by a complete, verified copy that holds under the key lists'
    // keys what was asked; on any failure it keeps its old bytes. When `expected` is
    // given and the file's size or modification time differ, nothing is written. Failures are
    // logged, and the result says what became of the write.
    WriteResult
    setImagePropertiesAll(const QString& path, const WrittenProperties& properties,
                          const ErasedRows& erased,
                          const std::optional<FileStamp>& expected = std::nullopt) const;

    // The same write with the values that mergeForWriting makes of `editedFields` over
    // what the file holds, taken from the very bytes that are edited (the file is read once).
    WriteResult writeMergedFields(const QString& path, const MetadataFieldSet& editedFields,
                                  const ErasedRows& erased,
                                  const std::optional<FileStamp>& expected = std::nullopt) const;

    // The same write with edits worked out from the photo's own dates as the very bytes that
    // are edited hold them: `editsOf` is given a record with the dates that loadImageProperties
    // would give for `recordUrl` (the photo whose bytes `path` holds), read from those bytes,
    // so that the file is parsed once for both. The record's other tags are not read.
    struct EditedRows {
        MetadataFieldSet values;
        ErasedRows erased;
    };
    using EditsOfRecord = std::function<EditedRows(const CGImageProperties& own)>;
    WriteResult
    writeEditsOfOwnRecord(const QString& path, const QUrl& recordUrl, const EditsOfRecord& editsOf,
                          const std::optional<FileStamp>& expected = std::nullopt) const;

    // Strips the chosen groups from the file, with the same safe replacement and the same
    // refusal when `expected` no longer matches. Failures are not logged (but for the debug
    // category); the result says what became of the clean.
    WriteResult cleanMetadata(const QString& path, const CleanOptions& groups,
                              const std::optional<FileStamp>& expected = std::nullopt) const;

private:
    bool m_flushesToDisk = true;
    WriteOptions m_writeOptions;
    ExtraWrite m_extraWrite;
};

} // namespace tagmoor
