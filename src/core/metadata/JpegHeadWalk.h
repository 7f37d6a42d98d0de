#pragma once

#include <QByteArray>

#include <functional>
#include <optional>

namespace tagmoor {

// The head of a JPEG: its segments up to the start of its picture data, walked marker by
// marker the way Exiv2 walks them (padding up to a 0xff, any number of 0xff fill bytes, then
// the marker; every marker but start-of-scan and end-of-image carries a length that counts
// itself). Exiv2 reads and writes a JPEG's metadata from the head only, and copies everything
// after it unchanged.
struct JpegHeadWalk {
    qint64 end = 0;          // just past the marker that ends the head
    bool endOfImage = false; // that marker ends the image instead of starting its scan
};

// `bytes` holds the start of the file; `more(size)` is asked to make it hold at least `size`
// bytes and answers whether it could. `segment(marker, at, length)` is told of each segment
// with a length, whose length field is at `at`, once all of it is held. Nothing when the head
// runs past the file's end, holds a segment too short for its length field, or grows past
// `limit` bytes.
using JpegSegmentVisit = std::function<void(unsigned char marker, qint64 at, qint64 length)>;
std::optional<JpegHeadWalk> walkJpegHead(const QByteArray& bytes,
                                         const std::function<bool(qint64 size)>& more,
                                         const JpegSegmentVisit& segment = {},
                                         qint64 limit = 16 * 1024 * 1024);

// Where the picture data of a JPEG begin: just past its first start-of-scan marker. Nothing
// where walkJpegHead gives nothing or the image ends first.
std::optional<qint64> jpegScanStart(const QByteArray& bytes,
                                    const std::function<bool(qint64 size)>& more,
                                    qint64 limit = 16 * 1024 * 1024);

} // namespace tagmoor
