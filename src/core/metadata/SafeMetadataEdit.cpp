#include "metadata/SafeMetadataEdit.h"

#include "metadata/ImageKind.h"
#include "metadata/IptcDigest.h"
#include "metadata/JpegHead.h"
#include "metadata/JpegHeadWalk.h"
#include "metadata/MetadataLibrary.h"
#include "metadata/SafeFileReplace.h"
#include "metadata/StandardFormFile.h"
#include "metadata/WriteSeams.h"
#include "metadata/XmpNamespaces.h"

#include <QFile>
#include <QScopeGuard>

#include <exiv2/exiv2.hpp>

#include <cstring>
#include <optional>
#include <string>
#include <utility>
#include <vector>

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

// Tells the caller the kind of failure, then throws it as Exiv2's error, as every other failure
// of the edit is thrown.
[[noreturn]] void failWith(WriteStatus* failure, WriteStatus status, const QString& text) {
    if (failure)
        *failure = status;
    throw Exiv2::Error(Exiv2::kerErrorMessage, text.toStdString());
}

// The first read of a photo: enough for the head of nearly every JPEG, whose picture data are
// then never read at all.
constexpr qint64 kFirstRead = 128 * 1024;

// The XMP segments of a JPEG head: the first one's packet as Exiv2 reads it (everything after
// the signature), and where each XMP segment's signature starts.
struct HeadXmp {
    std::string packet;
    bool found = false;
    std::vector<qint64> signatures;
};

// A head's XMP packet as it was read, and the block it decoded to before any edit. The
// written head's packet is most often the very same bytes (an edit of Exif or IPTC values
// leaves it as it was); reading it back then takes a copy of that block, since decoding the
// same bytes again gives the same block, and neither the toolkit's lock nor its decoder,
// which costs more than all the rest of the read, are needed a second time.
struct DecodedXmp {
    std::string packet;
    Exiv2::XmpData data;
};

constexpr char kXmpSignature[] = "http://ns.adobe.com/xap/1.0/";
constexpr qint64 kXmpSignatureSize = sizeof kXmpSignature; // with its terminating zero

// Nothing when the head does not walk to its picture data.
std::optional<HeadXmp> xmpOfHead(const QByteArray& head) {
    HeadXmp xmp;
    const auto walk = walkJpegHead(
        head, [](qint64) { return false; },
        [&](unsigned char marker, qint64 at, qint64 length) {
            const char* signature = head.constData() + at + 2;
            if (marker != 0xe1 || length < 2 + kXmpSignatureSize ||
                std::memcmp(signature, kXmpSignature, kXmpSignatureSize) != 0)
                return;
            if (!xmp.found)
                xmp.packet.assign(signature + kXmpSignatureSize,
                                  std::size_t(length - 2 - kXmpSignatureSize));
            xmp.found = true;
            xmp.signatures.push_back(at + 2);
        });
    if (!walk || walk->endOfImage)
        return std::nullopt;
    return xmp;
}

// Reads a JPEG head's metadata as readMetadata() does, with the XMP packet decoded apart, so
// that the XMP lock is held only while the packet is decoded and the rest is parsed beside
// other threads. While Exiv2 parses, the head's XMP signatures are masked so that it passes
// over them; then they are put back: `head` is the very buffer that the image reads, and
// that its writer copies the other segments from. A packet that is `known`'s takes a copy of
// its block; with `keep`, the packet and what it decoded to are kept there.
void readXmpApart(Exiv2::Image& image, QByteArray& head, const HeadXmp& xmp,
                  const DecodedXmp* known, DecodedXmp* keep) {
    char* bytes = head.data();
    for (const qint64 at : xmp.signatures)
        bytes[at] = 'X';
    const auto unmask = qScopeGuard([&] {
        for (const qint64 at : xmp.signatures)
            bytes[at] = kXmpSignature[0];
    });
    // Decoded first when the lock is free, else once the rest is parsed (the two parts do not
    // touch each other; readMetadata() empties the image's XMP, so the packet is decoded into
    // a block of its own that the image takes at the end).
    Exiv2::XmpData decoded;
    const auto decode = [&] {
        if (decodeXmpPacket(decoded, xmpPacketWithoutPadding(xmp.packet)) != 0)
            qCDebug(lcMetadataWrite) << "Failed to decode XMP metadata";
    };
    bool done = xmp.packet.empty();
    if (!done && known && known->packet == xmp.packet) {
        decoded = known->data;
        done = true;
    }
    if (!done) {
        if (const auto xmpLock = tryLockXmpToolkit(); xmpLock.ownsLock()) {
            decode();
            done = true;
        }
    }
    image.readMetadata();
    if (!done) {
        const auto xmpLock = lockXmpToolkit();
        decode();
    }
    // The packet goes in while the image's XMP block is still empty: Image::xmpPacket()
    // serialises a block that is not, through the toolkit, without the lock.
    if (xmp.found) {
        if (keep)
            *keep = DecodedXmp{xmp.packet, decoded};
        image.xmpPacket() = xmp.packet;
        std::swap(image.xmpData(), decoded);
    }
}

// Writes a JPEG image with its XMP packet encoded apart, as the JPEG writer encodes it, so that
// the XMP lock is held only while the packet is encoded, with the prefixes the photo was read
// with and its namespaces under their own names. A packet that does not encode goes the usual
// way, under the lock, with Exiv2's own message. With nothing written, why the photo's XMP may
// not be written anew (see OwnXmpPrefixes::rewriteRefusal()); else nothing.
std::string writeXmpApart(Exiv2::Image& image, bool standardForm) {
    if (!image.writeXmpFromPacket()) {
        std::string packet;
        const auto xmpLock = lockXmpToolkit();
        const OwnXmpPrefixes own(std::as_const(image).xmpPacket());
        if (std::string refusal = own.rewriteRefusal(standardForm); !refusal.empty())
            return refusal;
        const int status = Exiv2::XmpParser::encode(packet, image.xmpData(),
                                                    Exiv2::XmpParser::useCompactFormat |
                                                        Exiv2::XmpParser::omitAllFormatting);
        if (status > 1) {
            image.writeMetadata();
            return {};
        }
        own.keepNamespaceNames(packet);
        // From the packet, first: Image::xmpPacket() would otherwise serialise the block again.
        image.writeXmpFromPacket(true);
        image.xmpPacket() = std::move(packet);
    }
    image.writeMetadata();
    return {};
}

// Parses a JPEG head with its XMP apart when it walks, else all of it under the lock. `known`
// and `keep` as for readXmpApart().
void readHead(Exiv2::Image& image, QByteArray& head, const DecodedXmp* known = nullptr,
              DecodedXmp* keep = nullptr) {
    if (const std::optional<HeadXmp> xmp = xmpOfHead(head)) {
        readXmpApart(image, head, *xmp, known, keep);
        return;
    }
    const auto xmpLock = lockXmpToolkit();
    image.readMetadata();
    settleXmpPrefixesAfterRead(image);
}

// Parses `image`, which reads `working`, lets `editImage` change it and writes it into its io.
// Parsing and serialising XMP share one toolkit that is not safe across threads: a JPEG's head
// holds the lock only for its XMP packet, any other file for the whole of its parse and writing.
// With nothing written, why the photo's XMP may not be written anew; else nothing. A head's
// XMP packet and its block as read are kept in `read`.
template <typename EditImage>
std::string parseEditAndWrite(Exiv2::Image& image, QByteArray& working, ImageKind kind,
                              bool headOnly, bool standardForm, DecodedXmp& read,
                              EditImage&& editImage) {
    if (headOnly) {
        readHead(image, working, nullptr, &read);
        editImage();
        return writeXmpApart(image, standardForm);
    }
    const auto xmpLock = lockXmpToolkit();
    image.readMetadata();
    const OwnXmpPrefixes own(std::as_const(image).xmpPacket());
    editImage();
    // A JPEG read whole gets its packet written apart as a head's is, to the same bytes, with
    // its namespaces under their own names; other formats' writers encode it themselves.
    const bool writerEncodes = kind != ImageKind::Jpeg;
    if (std::string refusal =
            own.rewriteRefusal(standardForm, writerEncodes ? &image.xmpData() : nullptr);
        !refusal.empty() && !image.writeXmpFromPacket())
        return refusal;
    if (kind == ImageKind::Jpeg)
        return writeXmpApart(image, standardForm);
    image.writeMetadata();
    return {};
}

// Puts `size` new bytes (a new head, with `headEnd`) in place once they read back holding
// what the edit asked for; `notLanded` tells what did not land. `read` is the old head's XMP.
bool replaceChecked(SafeFileReplace& file, const char* data, std::size_t size,
                    const std::optional<qint64>& headEnd, const DecodedXmp& read,
                    const SafeMetadataEdit::LandedCheck& landedCheck, QString& notLanded) {
    const auto landed = [&](Exiv2::Image& check) {
        if (landedCheck)
            notLanded = landedCheck(check);
        return notLanded.isEmpty();
    };
    // A new head is read back from the temporary file and parsed as it came back, as the edit
    // parsed the old head: Exiv2 reads a JPEG no further than its picture data.
    const auto verifyHead = [&](QByteArray& written) {
        auto check = Exiv2::ImageFactory::open(
            reinterpret_cast<const Exiv2::byte*>(written.constData()), long(written.size()));
        readHead(*check, written, &read);
        return landed(*check);
    };
    const auto verify = [&](const QString& temporaryPath) {
        auto check =
            Exiv2::ImageFactory::open(QFile::encodeName(temporaryPath).toStdString(), true);
        {
            const auto xmpLock = lockXmpToolkit();
            check->readMetadata();
            settleXmpPrefixesAfterRead(*check);
        }
        return landed(*check);
    };
    return headEnd ? file.replaceHeadWith(data, size, *headEnd, verifyHead)
                   : file.replaceWith(data, size, verify);
}

} // namespace

SafeMetadataEdit::Result SafeMetadataEdit::run(const QString& path,
                                               const std::optional<FileStamp>& expected,
                                               const Edit& edit, bool flushToDisk,
                                               WriteStatus* failure, bool standardForm) {
    const auto fail = [failure](WriteStatus status, const QString& text) {
        failWith(failure, status, text);
    };

    SafeFileReplace file(path);
    file.setFlushToDisk(flushToDisk);
    switch (file.readTarget(expected, editWholeFilesOnly() ? -1 : kFirstRead)) {
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
    // A format that Exiv2 reads only never reaches its writer.
    if (!exiv2Reads(kind) || !exiv2Writes(kind))
        fail(WriteStatus::NotWritable,
             QStringLiteral("Writing to %1 images is not supported")
                 .arg(QString::fromLatin1(imageKindName(kind)).toUpper()));

    // Exiv2 reads and writes a JPEG's metadata from the segments before its picture data and
    // copies the picture data unchanged. So a JPEG's head alone goes through Exiv2, and the
    // new file is the new head followed by the photo's own picture data, copied from the file
    // inside the kernel: the same bytes as from the whole file, for a fraction of the work.
    std::optional<qint64> headEnd;
    if (kind == ImageKind::Jpeg && !editWholeFilesOnly())
        headEnd = jpegScanStart(original, [&](qint64 size) {
            return file.readUpTo(std::max(size, qint64(original.size()) + kFirstRead));
        });
    if (headEnd && *headEnd >= file.targetSize())
        headEnd.reset();
    if (!headEnd && !file.readUpTo(file.targetSize()))
        fail(statusOf(file), file.errorText());

    for (;;) {
        const std::optional<Result> done =
            editBytes(file, kind, headEnd, edit, failure, standardForm, path);
        if (done)
            return *done;
        // Exiv2 did not end the new head where the picture data start: the head alone does
        // not tell it all, so the whole file goes through it.
        headEnd.reset();
        if (!file.readUpTo(file.targetSize()))
            fail(statusOf(file), file.errorText());
    }
}

std::optional<SafeMetadataEdit::Result>
SafeMetadataEdit::editBytes(SafeFileReplace& file, ImageKind kind,
                            const std::optional<qint64>& headEnd, const Edit& edit,
                            WriteStatus* failure, bool standardForm, const QString& path) {
    const auto fail = [failure](WriteStatus status, const QString& text) {
        failWith(failure, status, text);
    };
    const QByteArray& original = file.originalBytes();
    // Exiv2 works on a copy of its own: for a TIFF whose tags still fit, it writes the new
    // values into the very buffer it was given, and the file's read bytes must stay as they
    // were on disk, since the replacement copies the unchanged end of the new file from there.
    QByteArray working(original.constData(), headEnd ? *headEnd : original.size());
    auto image = Exiv2::ImageFactory::open(
        reinterpret_cast<const Exiv2::byte*>(working.constData()), long(working.size()));
    Q_ASSERT(image.get() != nullptr);
    const auto editImage = [&] {
        if (standardForm) {
            const QString refusal = standardFormRefusal(*image, kind, file.targetSize());
            if (!refusal.isEmpty())
                fail(WriteStatus::NotWritable, path + QStringLiteral(": ") + refusal);
        }
        return edit(*image);
    };
    LandedCheck landedCheck;
    DecodedXmp read;
    if (const std::string refusal =
            parseEditAndWrite(*image, working, kind, headEnd.has_value(), standardForm, read,
                              [&] { landedCheck = editImage(); });
        !refusal.empty())
        fail(WriteStatus::NotWritable,
             path + QStringLiteral(": ") + QString::fromStdString(refusal));

    // The image now lives in memory; its io holds the complete new file (or head).
    Exiv2::BasicIo& io = image->io();
    if (io.open() != 0)
        throw Exiv2::Error(Exiv2::kerDataSourceOpenFailed, io.path(), Exiv2::strError());
    const long size = io.size();
    const bool refreshDigest = standardForm && (kind == ImageKind::Jpeg || kind == ImageKind::Psd);
    Exiv2::byte* bytes = io.mmap(refreshDigest);
    const auto closeIo = qScopeGuard([&] {
        io.munmap();
        io.close();
    });
    if (headEnd && (size < 2 || bytes[size - 2] != 0xff || bytes[size - 1] != 0xda))
        return std::nullopt;
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
    const bool replaced =
        replaceChecked(file, newBytes, newSize, headEnd, read, landedCheck, notLanded);
    if (!notLanded.isEmpty())
        fail(WriteStatus::NotWritable, path + QStringLiteral(": ") + notLanded);
    if (!replaced)
        fail(statusOf(file), file.errorText());
    return Result::Written;
}

} // namespace tagmoor
