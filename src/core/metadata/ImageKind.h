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
    Heif, // HEIC, HEIF and AVIF: the ISO box format with an image brand
    Cr3,  // Canon's ISO box RAW
    Jxl,  // JPEG XL, bare code stream or in its box format
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

// Whether Exiv2 can write this kind back. The box formats (HEIF, AVIF, CR3, JPEG XL) and a few
// RAW formats (RW2, MRW, RAF) it reads only; their tags go to a sidecar, and their bytes are
// never handed to its writer.
bool exiv2Writes(ImageKind kind);

const char* imageKindName(ImageKind kind);

} // namespace tagmoor
