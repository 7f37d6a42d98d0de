#pragma once

#include <QByteArray>
#include <QSize>
#include <QString>

#include <optional>
#include <string>
#include <string_view>

namespace tagmoor {

// The segments of a JPEG up to the start of its picture data, with every XMP segment masked so
// that Exiv2 passes over it, and the first XMP packet kept aside, without the whitespace
// padding after its root element (which XML ignores). Exiv2 then parses the Exif, IPTC and
// comment of `segments` without its XMP toolkit, which is not safe on two threads at once;
// only the decoding of `xmpPacket` needs the XMP lock. Readers on several threads thus wait
// for each other only while XMP is decoded.
struct JpegHead {
    QByteArray segments; // from the start-of-image marker to the start-of-scan marker
    std::string xmpPacket;
    bool hasXmp = false;
};

// How many of a file's first bytes a caller that reads them anyway does well to read: the head
// of most photos without a thumbnail.
constexpr qsizetype kJpegHeadStartSize = 16 * 1024;

// The head of the JPEG at `path`, walked marker by marker as Exiv2 walks it. Nothing for a
// file whose head does not end in a start-of-scan or end-of-image marker within the file, or
// that holds a segment too short for its own length field: such a file is read the ordinary
// way, and Exiv2 tells what is wrong with it. `start` may hold the file's first bytes, read
// already: the file is then opened only when the head goes on past them.
std::optional<JpegHead> readJpegHead(const QString& path, const QByteArray& start = {});

// The picture size that the frame header of the JPEG at `path` gives, found as Exiv2 finds it
// while it walks the head: nothing when the head does not walk to picture data or holds no
// frame header with a width and a height. `start` as for readJpegHead().
std::optional<QSize> jpegFrameSize(const QString& path, const QByteArray& start = {});

// An XMP packet without the whitespace padding that writers leave between the end of the root
// element and the packet's closing marker for in-place edits (Exiv2 leaves 2 KiB). XML ignores
// whitespace after the root element, so the toolkit builds the same tree from either, but it
// scans every byte it is given, under the XMP lock. Only the plain case is cut: the root's end
// tag, whitespace, and the closing marker last in the packet; any other packet is given back
// whole.
std::string xmpPacketWithoutPadding(std::string_view packet);

} // namespace tagmoor
