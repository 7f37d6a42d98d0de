#pragma once

#include <QByteArray>

#include <functional>
#include <optional>

namespace tagmoor {

// Where the picture data of a JPEG begin: the position just past its first start-of-scan
// marker, found by walking the markers the way Exiv2 walks them (padding up to a 0xff, any
// number of 0xff fill bytes, then the marker; every marker but start-of-scan and end-of-image
// carries a length that counts itself). Exiv2 reads and writes a JPEG's metadata from the
// bytes before that point only, and copies everything after it unchanged.
//
// `bytes` holds the start of the file; `more(size)` is asked to make it hold at least `size`
// bytes and answers whether it could. Nothing when the head ends in an end-of-image marker
// first, runs past the file's end, holds a segment too short for its length field, or grows
// past `limit` bytes.
std::optional<qint64> jpegScanStart(const QByteArray& bytes,
                                    const std::function<bool(qint64 size)>& more,
                                    qint64 limit = 16 * 1024 * 1024);

} // namespace tagmoor
