#pragma once

#include "metadata/MetadataTest.h"

#include <QLoggingCategory>
#include <QString>

#include <functional>
#include <optional>

namespace Exiv2 {
class Image;
}

namespace tagmoor {

Q_DECLARE_LOGGING_CATEGORY(lcMetadataWrite)

// Changes the metadata of one file without ever letting Exiv2 write the file itself: Exiv2
// works on the file's bytes in memory, and SafeFileReplace puts the result in place only
// when it is complete, flushed and reads back.
class SafeMetadataEdit {
public:
    enum class Result { Written, FileChanged };

    // Opens the file's bytes, reads the metadata, lets `edit` change it and writes it.
    // `FileChanged` (logged, nothing written) when `expected` no longer matches the file.
    // Throws Exiv2's errors, what `edit` throws, and an Exiv2 error for every failure of the
    // file system; whenever it throws, the file keeps its old bytes.
    // `flushToDisk` false skips the flush; see SafeFileReplace::setFlushToDisk.
    static Result run(const QString& path, const std::optional<FileStamp>& expected,
                      const std::function<void(Exiv2::Image&)>& edit, bool flushToDisk = true);
};

} // namespace tagmoor
