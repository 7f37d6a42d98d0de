#pragma once

#include <QByteArray>
#include <QString>

namespace tagmoor {

// The photo types that Tagmoor accepts, told from a file's first bytes. Unknown covers
// everything else: empty and text files, videos, PostScript, folders, unreadable files.
enum class ImageKind {
    Unknown,
    Jpeg,
    Png,
    WebP,
    Tiff, // plain TIFF and the TIFF-built camera RAW files (CR2, NEF, DNG, ARW, IIQ, ...)
    Orf,  // Olympus: TIFF with its own signature
    Rw2,  // Panasonic and Leica: TIFF with its own signature
    Jp2,  // JPEG 2000 in its box format (jp2, jpf, jpx)
    J2k,  // bare JPEG 2000 code stream (j2k, j2c)
    Psd,
    Crw,
    Mrw,
    Raf,
    X3f,
    Kyocera,
};

// How many leading bytes sniffImageKind wants to see.
constexpr int kImageKindHeadSize = 64;

// The kind of the content that starts with `head`.
ImageKind sniffImageKind(const QByteArray& head);

// The first `size` bytes of a regular file (fewer when it is shorter); empty for anything
// else: folders, devices, pipes, files that can't be opened.
QByteArray readImageHead(const QString& path, qsizetype size = kImageKindHeadSize);

// The kind of a regular file's content; Unknown when it can't be opened or read.
ImageKind sniffImageKindOfFile(const QString& path);

// Whether Exiv2 parses this kind at all (bare code streams, X3F and Kyocera it doesn't).
bool exiv2Reads(ImageKind kind);

const char* imageKindName(ImageKind kind);

} // namespace tagmoor
