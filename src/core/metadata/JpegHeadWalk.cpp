#include "metadata/JpegHeadWalk.h"

namespace tagmoor {

std::optional<JpegHeadWalk> walkJpegHead(const QByteArray& bytes,
                                         const std::function<bool(qint64 size)>& more,
                                         const JpegSegmentVisit& segment, qint64 limit) {
    const auto have = [&](qint64 size) {
        return size <= limit && (bytes.size() >= size || (more(size) && bytes.size() >= size));
    };
    const auto at = [&](qint64 i) { return static_cast<unsigned char>(bytes[i]); };
    if (!have(2) || at(0) != 0xff || at(1) != 0xd8)
        return std::nullopt;
    qint64 pos = 2;
    for (;;) {
        do {
            if (!have(pos + 1))
                return std::nullopt;
        } while (at(pos++) != 0xff);
        do {
            if (!have(pos + 1))
                return std::nullopt;
        } while (at(pos++) == 0xff);
        const unsigned char marker = at(pos - 1);
        if (marker == 0xda || marker == 0xd9)
            return JpegHeadWalk{pos, marker == 0xd9};
        if (!have(pos + 2))
            return std::nullopt;
        const qint64 size = (qint64(at(pos)) << 8) | at(pos + 1);
        if (size < 2 || !have(pos + size))
            return std::nullopt;
        if (segment)
            segment(marker, pos, size);
        pos += size;
    }
}

std::optional<qint64> jpegScanStart(const QByteArray& bytes,
                                    const std::function<bool(qint64 size)>& more, qint64 limit) {
    const auto walk = walkJpegHead(bytes, more, {}, limit);
    if (!walk || walk->endOfImage)
        return std::nullopt;
    return walk->end;
}

} // namespace tagmoor
