#include "metadata/JpegHead.h"

#include <QFile>

#include <cstring>

namespace tagmoor {

namespace {

constexpr unsigned char kApp1 = 0xe1;
constexpr unsigned char kStartOfScan = 0xda;
constexpr unsigned char kEndOfImage = 0xd9;
// The signature of an XMP segment, with its terminating zero.
constexpr char kXmpSignature[] = "http://ns.adobe.com/xap/1.0/";
constexpr int kXmpSignatureSize = sizeof kXmpSignature; // 29
// The largest head read: a JPEG's segments are at most 64 KiB each, and no camera writes more
// than a handful before its picture data.
constexpr qint64 kMaxHead = 16 * 1024 * 1024;

// Reads from `file` until `bytes` holds at least `size` bytes; false at the end of the file
// or past kMaxHead.
bool fill(QFile& file, QByteArray& bytes, qint64 size) {
    if (size > kMaxHead)
        return false;
    while (bytes.size() < size) {
        const QByteArray more = file.read(std::max<qint64>(size - bytes.size(), 64 * 1024));
        if (more.isEmpty())
            return false;
        bytes += more;
    }
    return true;
}

unsigned char at(const QByteArray& bytes, qint64 i) {
    return static_cast<unsigned char>(bytes[i]);
}

} // namespace

std::optional<JpegHead> readJpegHead(const QString& path) {
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return std::nullopt;
    JpegHead head;
    QByteArray& bytes = head.segments;
    if (!fill(file, bytes, 2) || at(bytes, 0) != 0xff || at(bytes, 1) != 0xd8)
        return std::nullopt;
    qint64 pos = 2;
    for (;;) {
        // Padding up to the next 0xff, then any number of 0xff fill bytes, then the marker.
        do {
            if (!fill(file, bytes, pos + 1))
                return std::nullopt;
        } while (at(bytes, pos++) != 0xff);
        do {
            if (!fill(file, bytes, pos + 1))
                return std::nullopt;
        } while (at(bytes, pos++) == 0xff);
        const unsigned char marker = at(bytes, pos - 1);
        if (marker == kStartOfScan || marker == kEndOfImage) {
            bytes.truncate(pos);
            return head;
        }
        // Every other marker carries a length that counts itself.
        if (!fill(file, bytes, pos + 2))
            return std::nullopt;
        const qint64 size = (qint64(at(bytes, pos)) << 8) | at(bytes, pos + 1);
        if (size < 2 || !fill(file, bytes, pos + size))
            return std::nullopt;
        if (marker == kApp1 && size >= 2 + kXmpSignatureSize &&
            std::memcmp(bytes.constData() + pos + 2, kXmpSignature, kXmpSignatureSize) == 0) {
            if (!head.hasXmp) {
                const qint64 start = pos + 2 + kXmpSignatureSize;
                head.xmpPacket.assign(bytes.constData() + start, std::size_t(pos + size - start));
                head.hasXmp = true;
            }
            bytes[pos + 2] = 'X'; // no longer an XMP signature for Exiv2
        }
        pos += size;
    }
}

} // namespace tagmoor
