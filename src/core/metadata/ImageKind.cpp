#include "metadata/ImageKind.h"

#include "foundation/PageCopy.h"

#include <QFile>

#include <algorithm>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace tagmoor {

namespace {

bool startsWith(const QByteArray& head, const char* magic, qsizetype size, qsizetype at = 0) {
    return head.size() >= at + size && std::memcmp(head.constData() + at, magic, size) == 0;
}

// The ISO base media formats: a "ftyp" box whose major or compatible brands name the kind.
ImageKind boxFormatKind(const QByteArray& head) {
    if (!startsWith(head, "ftyp", 4, 4))
        return ImageKind::Unknown;
    const qsizetype boxSize = qsizetype(quint8(head[0])) << 24 | qsizetype(quint8(head[1])) << 16 |
                              qsizetype(quint8(head[2])) << 8 | qsizetype(quint8(head[3]));
    const qsizetype end = std::min(head.size(), std::max<qsizetype>(boxSize, 16));
    for (qsizetype at = 8; at + 4 <= end; at += at == 8 ? 8 : 4) {
        const QByteArray brand = head.mid(at, 4);
        if (brand == "crx ")
            return ImageKind::Cr3;
        if (brand == "jxl ")
            return ImageKind::Jxl;
        if (brand == "heic" || brand == "heix" || brand == "heim" || brand == "heis" ||
            brand == "mif1" || brand == "msf1" || brand == "avif" || brand == "avis")
            return ImageKind::Heif;
    }
    return ImageKind::Unknown;
}

} // namespace

ImageKind sniffImageKind(const QByteArray& head) {
    if (startsWith(head, "\xFF\xD8\xFF", 3))
        return ImageKind::Jpeg;
    if (startsWith(head, "\x89PNG\r\n\x1A\n", 8))
        return ImageKind::Png;
    if (startsWith(head, "RIFF", 4) && startsWith(head, "WEBP", 4, 8))
        return ImageKind::WebP;
    // Canon's first RAW format starts like a little-endian TIFF with a different tag.
    if (startsWith(head, "II\x1A\0\0\0HEAPCCDR", 14))
        return ImageKind::Crw;
    if (startsWith(head, "II*\0", 4) || startsWith(head, "MM\0*", 4))
        return ImageKind::Tiff;
    if (startsWith(head, "IIRO", 4) || startsWith(head, "IIRS", 4) || startsWith(head, "MMOR", 4))
        return ImageKind::Orf;
    if (startsWith(head, "IIU\0", 4))
        return ImageKind::Rw2;
    if (startsWith(head, "\0\0\0\x0CjP  \r\n\x87\n", 12))
        return ImageKind::Jp2;
    if (startsWith(head, "\xFF\x4F\xFF\x51", 4))
        return ImageKind::J2k;
    if (startsWith(head, "8BPS", 4))
        return ImageKind::Psd;
    if (startsWith(head, "\0MRM", 4))
        return ImageKind::Mrw;
    if (startsWith(head, "FUJIFILMCCD-RAW", 15))
        return ImageKind::Raf;
    if (startsWith(head, "FOVb", 4))
        return ImageKind::X3f;
    // Kyocera's RAW has no signature at its start; the maker's name is stored reversed.
    if (startsWith(head, "ARECOYK", 7, 0x19))
        return ImageKind::Kyocera;
    if (startsWith(head, "\xFF\x0A", 2) || startsWith(head, "\0\0\0\x0CJXL \r\n\x87\n", 12))
        return ImageKind::Jxl;
    return boxFormatKind(head);
}

QByteArray readImageHead(const QString& path, qsizetype size) {
    const QByteArray native = QFile::encodeName(path);
    // O_NONBLOCK: a FIFO with a photo's name must not stall the scan.
    const int fd = ::open(native.constData(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
    if (fd < 0)
        return {};
    QByteArray head;
    struct stat st {};
    if (::fstat(fd, &st) == 0 && S_ISREG(st.st_mode)) {
        resizeForRead(head, size);
        const ssize_t got = ::read(fd, head.data(), head.size());
        head.resize(got > 0 ? got : 0);
    }
    ::close(fd);
    return head;
}

ImageKind sniffImageKindOfFile(const QString& path) {
    return sniffImageKind(readImageHead(path));
}

bool exiv2Reads(ImageKind kind) {
    switch (kind) {
    case ImageKind::Jpeg:
    case ImageKind::Png:
    case ImageKind::WebP:
    case ImageKind::Tiff:
    case ImageKind::Orf:
    case ImageKind::Rw2:
    case ImageKind::Jp2:
    case ImageKind::Psd:
    case ImageKind::Crw:
    case ImageKind::Mrw:
    case ImageKind::Raf:
    case ImageKind::Heif:
    case ImageKind::Cr3:
        return true;
    case ImageKind::Unknown:
    case ImageKind::J2k:
    case ImageKind::X3f:
    case ImageKind::Kyocera:
    case ImageKind::Jxl: // Exiv2 finds no tags in a bare code stream, and few in the box form
        break;
    }
    return false;
}

bool exiv2Writes(ImageKind kind) {
    switch (kind) {
    case ImageKind::Jpeg:
    case ImageKind::Png:
    case ImageKind::WebP:
    case ImageKind::Tiff:
    case ImageKind::Orf:
    case ImageKind::Jp2:
    case ImageKind::Psd:
    case ImageKind::Crw:
        return true;
    case ImageKind::Unknown:
    case ImageKind::Rw2:
    case ImageKind::Mrw:
    case ImageKind::Raf:
    case ImageKind::J2k:
    case ImageKind::X3f:
    case ImageKind::Kyocera:
    case ImageKind::Heif:
    case ImageKind::Cr3:
    case ImageKind::Jxl:
        break;
    }
    return false;
}

const char* imageKindName(ImageKind kind) {
    switch (kind) {
    case ImageKind::Unknown:
        return "unknown";
    case ImageKind::Jpeg:
        return "jpeg";
    case ImageKind::Png:
        return "png";
    case ImageKind::WebP:
        return "webp";
    case ImageKind::Tiff:
        return "tiff";
    case ImageKind::Orf:
        return "orf";
    case ImageKind::Rw2:
        return "rw2";
    case ImageKind::Jp2:
        return "jp2";
    case ImageKind::J2k:
        return "j2k";
    case ImageKind::Psd:
        return "psd";
    case ImageKind::Crw:
        return "crw";
    case ImageKind::Mrw:
        return "mrw";
    case ImageKind::Raf:
        return "raf";
    case ImageKind::X3f:
        return "x3f";
    case ImageKind::Kyocera:
        return "kyocera";
    case ImageKind::Heif:
        return "heif";
    case ImageKind::Cr3:
        return "cr3";
    case ImageKind::Jxl:
        return "jxl";
    }
    return "unknown";
}

} // namespace tagmoor
