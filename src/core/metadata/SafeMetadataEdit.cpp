#include "metadata/SafeMetadataEdit.h"

#include "metadata/MetadataLibrary.h"
#include "metadata/SafeFileReplace.h"

#include <QFile>

#include <exiv2/exiv2.hpp>

namespace tagmoor {

Q_LOGGING_CATEGORY(lcMetadataWrite, "tagmoor.metadata.write", QtInfoMsg)

SafeMetadataEdit::Result SafeMetadataEdit::run(const QString& path,
                                               const std::optional<FileStamp>& expected,
                                               const std::function<void(Exiv2::Image&)>& edit,
                                               bool flushToDisk) {
    SafeFileReplace file(path);
    file.setFlushToDisk(flushToDisk);
    switch (file.readTarget(expected)) {
    case SafeFileReplace::ReadResult::Read:
        break;
    case SafeFileReplace::ReadResult::Changed:
        qCWarning(lcMetadataWrite).noquote()
            << QStringLiteral("*** file changed since it was read, nothing written '%1' ***")
                   .arg(path);
        return Result::FileChanged;
    case SafeFileReplace::ReadResult::Failed:
        throw Exiv2::Error(Exiv2::kerErrorMessage, file.errorText().toStdString());
    }

    const QByteArray& original = file.originalBytes();
    auto image = Exiv2::ImageFactory::open(
        reinterpret_cast<const Exiv2::byte*>(original.constData()), long(original.size()));
    Q_ASSERT(image.get() != nullptr);
    {
        // Parsing and serialising XMP share one toolkit that is not safe across threads.
        const auto xmpLock = lockXmpToolkit();
        image->readMetadata();
        edit(*image);
        image->writeMetadata();
    }

    // The image now lives in memory; its io holds the complete new file.
    Exiv2::BasicIo& io = image->io();
    if (io.open() != 0)
        throw Exiv2::Error(Exiv2::kerDataSourceOpenFailed, io.path(), Exiv2::strError());
    const long size = io.size();
    const Exiv2::byte* bytes = io.mmap();
    const bool replaced = file.replaceWith(
        reinterpret_cast<const char*>(bytes), std::size_t(size), [](const QString& temporaryPath) {
            auto check =
                Exiv2::ImageFactory::open(QFile::encodeName(temporaryPath).toStdString(), true);
            const auto xmpLock = lockXmpToolkit();
            check->readMetadata();
            return true;
        });
    io.munmap();
    io.close();
    if (!replaced)
        throw Exiv2::Error(Exiv2::kerErrorMessage, file.errorText().toStdString());
    return Result::Written;
}

} // namespace tagmoor
