#include "metadata/JpegHead.h"

#include "foundation/PageCopy.h"
#include "metadata/JpegHeadWalk.h"

#include <QFile>
#include <QVarLengthArray>

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <cstring>
#include <string_view>

namespace tagmoor {

namespace {

constexpr unsigned char kApp1 = 0xe1;
// The signature of an XMP segment, with its terminating zero.
constexpr char kXmpSignature[] = "http://ns.adobe.com/xap/1.0/";
constexpr int kXmpSignatureSize = sizeof kXmpSignature; // 29
// The largest head read: a JPEG's segments are at most 64 KiB each, and no camera writes more
// than a handful before its picture data.
constexpr qint64 kMaxHead = 16 * 1024 * 1024;
// The first read, and half the least of every later one, without copying much of the picture
// data too.
constexpr qint64 kFirstRead = kJpegHeadStartSize;

// The file, opened when bytes past the ones at hand are first wanted and read with plain
// system calls: the head is read once, so a buffered device would only copy it twice.
class HeadFile {
public:
    explicit HeadFile(const QString& path) : m_path(path) {}
    ~HeadFile() {
        if (m_fd >= 0)
            ::close(m_fd);
    }
    HeadFile(const HeadFile&) = delete;
    HeadFile& operator=(const HeadFile&) = delete;

    // Reads until `bytes`, which holds the file's first bytes, holds at least `size`; false
    // at the end of the file, on an error or past kMaxHead.
    bool fill(QByteArray& bytes, qint64 size) {
        if (size > kMaxHead)
            return false;
        if (bytes.size() < size && m_fd < 0) {
            m_fd = ::open(QFile::encodeName(m_path).constData(), O_RDONLY | O_CLOEXEC);
            if (m_fd < 0)
                return false;
        }
        while (bytes.size() < size) {
            const qint64 have = bytes.size();
            const qint64 want = std::max(size - have, have == 0 ? kFirstRead : kFirstRead * 2);
            resizeForRead(bytes, have + want);
            ssize_t got;
            do {
                got = ::pread(m_fd, bytes.data() + have, std::size_t(want), off_t(have));
            } while (got < 0 && errno == EINTR);
            bytes.resize(have + std::max<ssize_t>(got, 0));
            if (got <= 0)
                return false;
        }
        return true;
    }

private:
    const QString& m_path;
    int m_fd = -1;
};

bool isXmlSpace(char c) {
    return c == ' ' || c == '\t' || c == '\n' || c == '\r';
}

} // namespace

std::string xmpPacketWithoutPadding(std::string_view packet) {
    const std::size_t end = packet.rfind("<?xpacket end=");
    const std::size_t close = packet.find("?>", end);
    if (end == std::string_view::npos || close == std::string_view::npos ||
        !std::all_of(packet.begin() + std::ptrdiff_t(close + 2), packet.end(), isXmlSpace))
        return std::string(packet);
    std::size_t rootEnd = end;
    // The padding is mostly lines of spaces: whole words of them are passed eight bytes at a
    // time, the rest byte by byte.
    constexpr std::uint64_t kEightSpaces = 0x2020202020202020;
    while (rootEnd > 0) {
        std::uint64_t word = 0;
        if (rootEnd >= sizeof word) {
            std::memcpy(&word, packet.data() + rootEnd - sizeof word, sizeof word);
            if (word == kEightSpaces) {
                rootEnd -= sizeof word;
                continue;
            }
        }
        if (!isXmlSpace(packet[rootEnd - 1]))
            break;
        --rootEnd;
    }
    const std::string_view root = packet.substr(0, rootEnd);
    if (rootEnd == end || !(root.ends_with("</x:xmpmeta>") || root.ends_with("</x:xapmeta>")))
        return std::string(packet);
    const std::string_view trailer = packet.substr(end);
    std::string kept;
    kept.reserve(root.size() + trailer.size());
    kept.append(root).append(trailer);
    return kept;
}

std::optional<JpegHead> readJpegHead(const QString& path, const QByteArray& start) {
    HeadFile file(path);
    JpegHead head;
    QByteArray& bytes = head.segments;
    bytes = start;
    // The XMP signatures are masked once the head is cut to its end: `bytes` still shares the
    // caller's first bytes until then, and only the head's own bytes are copied.
    QVarLengthArray<qint64, 2> signatures;
    const auto walk = walkJpegHead(
        bytes, [&](qint64 size) { return file.fill(bytes, size); },
        [&](unsigned char marker, qint64 pos, qint64 size) {
            if (marker != kApp1 || size < 2 + kXmpSignatureSize ||
                std::memcmp(bytes.constData() + pos + 2, kXmpSignature, kXmpSignatureSize) != 0)
                return;
            if (!head.hasXmp) {
                const qint64 start = pos + 2 + kXmpSignatureSize;
                head.xmpPacket = xmpPacketWithoutPadding(
                    std::string_view(bytes.constData() + start, std::size_t(pos + size - start)));
                head.hasXmp = true;
            }
            signatures.append(pos + 2);
        },
        kMaxHead);
    if (!walk)
        return std::nullopt;
    bytes.truncate(walk->end);
    for (const qint64 at : signatures)
        bytes[at] = 'X'; // no longer an XMP signature for Exiv2
    return head;
}

std::optional<QSize> jpegFrameSize(const QString& path, const QByteArray& start) {
    HeadFile file(path);
    QByteArray bytes = start;
    std::optional<QSize> size;
    const auto walk = walkJpegHead(
        bytes, [&](qint64 wanted) { return file.fill(bytes, wanted); },
        [&](unsigned char marker, qint64 pos, qint64 length) {
            // The start-of-frame markers, but for the table and arithmetic-coding ones that
            // share their range; the first one counts.
            const bool frame = marker >= 0xc0 && marker <= 0xcf && marker != 0xc4 &&
                               marker != 0xc8 && marker != 0xcc;
            if (!frame || size || length < 7)
                return;
            const auto byte = [&](qint64 at) { return int(static_cast<uchar>(bytes[pos + at])); };
            const int height = byte(3) << 8 | byte(4);
            const int width = byte(5) << 8 | byte(6);
            if (width > 0 && height > 0)
                size = QSize(width, height);
        },
        kMaxHead);
    return walk && !walk->endOfImage ? size : std::nullopt;
}

} // namespace tagmoor
