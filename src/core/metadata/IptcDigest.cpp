#include "metadata/IptcDigest.h"

#include <QByteArrayView>
#include <QCryptographicHash>

#include <cstring>
#include <optional>

namespace tagmoor {

namespace {

constexpr std::size_t kDigestSize = 16;
constexpr char kPhotoshop[] = "Photoshop 3.0"; // followed by a NUL in the segment

std::size_t bigEndian(const unsigned char* p, int bytes) {
    std::size_t value = 0;
    for (int i = 0; i < bytes; ++i)
        value = (value << 8) | p[i];
    return value;
}

struct Span {
    std::size_t offset = 0;
    std::size_t size = 0;
};

struct PhotoshopResources {
    std::optional<Span> iptc;
    std::optional<Span> digest;
};

// Walks the "8BIM" resources of one Photoshop segment's data [begin, end): signature, id,
// a Pascal name padded to an even length, a size and the data, padded to an even length.
PhotoshopResources resourcesIn(const unsigned char* data, std::size_t begin, std::size_t end) {
    PhotoshopResources found;
    std::size_t at = begin;
    while (at + 12 <= end && std::memcmp(data + at, "8BIM", 4) == 0) {
        const std::size_t id = bigEndian(data + at + 4, 2);
        std::size_t name = std::size_t(data[at + 6]) + 1;
        name += name % 2;
        const std::size_t sizeAt = at + 6 + name;
        if (sizeAt + 4 > end)
            break;
        const std::size_t size = bigEndian(data + sizeAt, 4);
        const std::size_t dataAt = sizeAt + 4;
        if (size > end - dataAt)
            break;
        if (id == 0x0404)
            found.iptc = Span{dataAt, size};
        else if (id == 0x0425)
            found.digest = Span{dataAt, size};
        at = dataAt + size + size % 2;
    }
    return found;
}

// The resources of a JPEG: those of its one Photoshop segment among the segments of its head.
// An IPTC block split over several segments is left as it is.
PhotoshopResources jpegResources(const unsigned char* jpeg, std::size_t size) {
    std::size_t at = 2;
    int photoshopSegments = 0;
    PhotoshopResources found;
    while (at + 4 <= size && jpeg[at] == 0xFF) {
        const unsigned char marker = jpeg[at + 1];
        if (marker == 0xDA || marker == 0xD9)
            break;
        if (marker == 0xFF) {
            ++at; // fill byte
            continue;
        }
        const std::size_t length = bigEndian(jpeg + at + 2, 2);
        if (length < 2 || length > size - at - 2)
            return {};
        const std::size_t dataAt = at + 4;
        const std::size_t end = at + 2 + length;
        const std::size_t tag = sizeof(kPhotoshop); // with its NUL
        if (marker == 0xED && end - dataAt >= tag &&
            std::memcmp(jpeg + dataAt, kPhotoshop, tag) == 0) {
            ++photoshopSegments;
            found = resourcesIn(jpeg, dataAt + tag, end);
        }
        at = end;
    }
    return photoshopSegments == 1 ? found : PhotoshopResources{};
}

// The resources of a Photoshop document: a 26-byte header, the colour mode data and then the
// image resources, each of the two behind its 4-byte length.
PhotoshopResources psdResources(const unsigned char* psd, std::size_t size) {
    constexpr std::size_t kHeader = 26;
    if (size < kHeader + 4)
        return {};
    const std::size_t colourData = bigEndian(psd + kHeader, 4);
    if (colourData > size - kHeader - 8)
        return {};
    const std::size_t lengthAt = kHeader + 4 + colourData;
    const std::size_t length = bigEndian(psd + lengthAt, 4);
    if (length > size - lengthAt - 4)
        return {};
    return resourcesIn(psd, lengthAt + 4, lengthAt + 4 + length);
}

} // namespace

bool refreshIptcDigest(unsigned char* data, std::size_t size) {
    PhotoshopResources found;
    if (size >= 4 && data[0] == 0xFF && data[1] == 0xD8)
        found = jpegResources(data, size);
    else if (size >= 4 && std::memcmp(data, "8BPS", 4) == 0)
        found = psdResources(data, size);
    if (!found.iptc || !found.digest || found.digest->size != kDigestSize)
        return false;
    const QByteArray digest = QCryptographicHash::hash(
        QByteArrayView(data + found.iptc->offset, qsizetype(found.iptc->size)),
        QCryptographicHash::Md5);
    unsigned char* stored = data + found.digest->offset;
    if (std::memcmp(stored, digest.constData(), kDigestSize) == 0)
        return false;
    std::memcpy(stored, digest.constData(), kDigestSize);
    return true;
}
} // namespace tagmoor
