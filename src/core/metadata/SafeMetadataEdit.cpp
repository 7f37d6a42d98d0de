#include "metadata/SafeMetadataEdit.h"

#include "metadata/ImageKind.h"
#include "metadata/IptcDigest.h"
#include "metadata/MetadataLibrary.h"
#include "metadata/SafeFileReplace.h"
#include "metadata/StandardFormFile.h"

#include <QFile>

#include <exiv2/exiv2.hpp>

namespace tagmoor {

Q_LOGGING_CATEGORY(lcMetadataWrite, "tagmoor.metadata.write", QtInfoMsg)

namespace {

WriteStatus statusOf(const SafeFileReplace& file) {
    switch (file.trouble()) {
    case SafeFileReplace::Trouble::Changed:
        return WriteStatus::FileChanged;
    case SafeFileReplace::Trouble::NotRegular:
        return WriteStatus::NotAPhoto;
    case SafeFileReplace::Trouble::System:
        return writeStatusOfErrno(file.errorCode());
    case SafeFileReplace::Trouble::None:
        break;
    }
    return WriteStatus::Failed;
}

} // namespace

SafeMetadataEdit::Result SafeMetadataEdit::run(const QString& path,
                                               const std::optional<FileStamp>& expected,
                                               const Edit& edit, bool flushToDisk,
                                               WriteStatus* failure, bool standardForm) {
    const auto fail = [&](WriteStatus status, const QString& text) {
        if (failure)
            *failure = status;
        throw Exiv2::Error(Exiv2::kerErrorMessage, text.toStdString());
    };

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
        fail(statusOf(file), file.errorText());
    }

    // The type is told again from the very bytes that are to be edited: the file may have
    // been replaced since it was added (a video or a PostScript file under a photo's name),
    // and such bytes must never reach Exiv2's parsers.
    const QByteArray& original = file.originalBytes();
    const ImageKind kind = sniffImageKind(original.left(kImageKindHeadSize));
    if (kind == ImageKind::Unknown)
        fail(WriteStatus::NotAPhoto, path + QStringLiteral(": not a photo of an accepted type"));
    if (!exiv2Reads(kind))
        fail(WriteStatus::NotWritable, QStringLiteral("Writing to %1 images is not supported")
                                           .arg(QString::fromLatin1(imageKindName(kind))));

    // Exiv2 works on a copy of its own: for a TIFF whose tags still fit, it writes the new
    // values into the very buffer it was given, and the file's read bytes must stay as they
    // were on disk, since the replacement copies the unchanged end of the new file from there.
    const QByteArray working(original.constData(), original.size());
    auto image = Exiv2::ImageFactory::open(
        reinterpret_cast<const Exiv2::byte*>(working.constData()), long(working.size()));
    Q_ASSERT(image.get() != nullptr);
    LandedCheck landedCheck;
    {
        // Parsing and serialising XMP share one toolkit that is not safe across threads.
        const auto xmpLock = lockXmpToolkit();
        image->readMetadata();
        if (standardForm) {
            const QString refusal = standardFormRefusal(*image, kind, original.size());
            if (!refusal.isEmpty())
                fail(WriteStatus::NotWritable, path + QStringLiteral(": ") + refusal);
        }
        landedCheck = edit(*image);
        image->writeMetadata();
    }

    // The image now lives in memory; its io holds the complete new file.
    Exiv2::BasicIo& io = image->io();
    if (io.open() != 0)
        throw Exiv2::Error(Exiv2::kerDataSourceOpenFailed, io.path(), Exiv2::strError());
    const long size = io.size();
    const bool refreshDigest = standardForm && (kind == ImageKind::Jpeg || kind == ImageKind::Psd);
    Exiv2::byte* bytes = io.mmap(refreshDigest);
    if (refreshDigest)
        tagmoor::refreshIptcDigest(bytes, std::size_t(size));
    // Exiv2 writes a PNG's Exif into a text chunk; the standard form moves it to eXIf.
    QByteArray rewritten;
    if (standardForm && kind == ImageKind::Png)
        rewritten = withExifChunk(
            QByteArray::fromRawData(reinterpret_cast<const char*>(bytes), qsizetype(size)),
            image->exifData());
    const char* newBytes =
        rewritten.isNull() ? reinterpret_cast<const char*>(bytes) : rewritten.constData();
    const std::size_t newSize =
        rewritten.isNull() ? std::size_t(size) : std::size_t(rewritten.size());
    QString notLanded;
    const bool replaced = file.replaceWith(newBytes, newSize, [&](const QString& temporaryPath) {
        auto check =
            Exiv2::ImageFactory::open(QFile::encodeName(temporaryPath).toStdString(), true);
        const auto xmpLock = lockXmpToolkit();
        check->readMetadata();
        if (landedCheck)
            notLanded = landedCheck(*check);
        return notLanded.isEmpty();
    });
    io.munmap();
    io.close();
    if (!notLanded.isEmpty())
        fail(WriteStatus::NotWritable, path + QStringLiteral(": ") + notLanded);
    if (!replaced)
        fail(statusOf(file), file.errorText());
    return Result::Written;
}

} // namespace tagmoor
