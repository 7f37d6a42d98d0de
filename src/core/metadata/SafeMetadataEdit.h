#pragma once

#include "metadata/MetadataTest.h"
#include "metadata/WriteResult.h"

#include <QLoggingCategory>
#include <QString>

#include <functional>
#include <optional>

namespace Exiv2 {
class Image;
}

namespace tagmoor {

class SafeFileReplace;
enum class ImageKind;

Q_DECLARE_LOGGING_CATEGORY(lcMetadataWrite)

// Changes the metadata of one file without ever letting Exiv2 write the file itself: Exiv2
// works on the file's bytes in memory, and SafeFileReplace puts the result in place only
// when it is complete, flushed, reads back and holds what the edit asked for.
class SafeMetadataEdit {
public:
    enum class Result { Written, FileChanged };

    // Looks at the new file as Exiv2 reads it back: empty when it holds what the edit asked
    // for, else a text that says what did not land.
    using LandedCheck = std::function<QString(Exiv2::Image& written)>;
    // Changes the open image and gives the check of the result (or an empty function).
    using Edit = std::function<LandedCheck(Exiv2::Image& image)>;

    // Reads the file's bytes, tests that they are still a photo of an accepted type (nothing
    // else reaches Exiv2), reads the metadata, lets `edit` change it and writes it.
    // `FileChanged` (logged, nothing written) when `expected` no longer matches the file.
    // Throws Exiv2's errors, what `edit` throws, and an Exiv2 error for every failure of the
    // file system, for bytes that are no photo, for a type Exiv2 can't write and for an edit
    // that did not land; whenever it throws, the file keeps its old bytes, and `failure`
    // (when given) has been set to the kind of failure first.
    // `flushToDisk` false skips the flush; see SafeFileReplace::setFlushToDisk.
    // `standardForm` writes the file as other programs expect it: the Photoshop digest of the
    // IPTC block of a JPEG or a Photoshop document follows the new block, a PNG keeps its Exif
    // in an eXIf chunk, and a photo that Exiv2 would damage (see standardFormRefusal) is not
    // written at all.
    static Result run(const QString& path, const std::optional<FileStamp>& expected,
                      const Edit& edit, bool flushToDisk = true, WriteStatus* failure = nullptr,
                      bool standardForm = false);

private:
    // One pass of Exiv2 over the file's bytes, or only over its first `headEnd` bytes, and the
    // replacement. Nothing when Exiv2's new head does not end where the picture data start.
    static std::optional<Result> editBytes(SafeFileReplace& file, ImageKind kind,
                                           const std::optional<qint64>& headEnd, const Edit& edit,
                                           WriteStatus* failure, bool standardForm,
                                           const QString& path);
};

} // namespace tagmoor
