#pragma once
// The Exif tags that a TIFF-built file needs to describe its pictures. Exiv2 keeps them as the
// file has them whatever the Exif data say, and cleaning leaves them in place.
#include <exiv2/exiv2.hpp>

#include <cstdint>
#include <set>
#include <string>

namespace tagmoor {

// TIFF, DNG, NEF, CR2, ORF, RW2 and the other TIFF-built types: their Exif block also says where
// the pictures are and how to decode them.
inline bool isTiffContainer(const Exiv2::Image& image) {
    const int type = image.imageType();
    return type == Exiv2::ImageType::tiff || type == Exiv2::ImageType::cr2 ||
           type == Exiv2::ImageType::orf || type == Exiv2::ImageType::rw2;
}

// Whether the tag of this Exif group describes a picture of a TIFF-built file. Clearing such a
// tag would leave a file that no reader can show (Exiv2 keeps only what it deems the main
// image: a DNG would lose its preview and every DNG tag).
inline bool describesPicture(const std::string& group, uint16_t tag) {
    const bool imageDirectory = group == "Thumbnail" || group.rfind("Image", 0) == 0 ||
                                group.rfind("SubImage", 0) == 0 || group.rfind("SubThumb", 0) == 0;
    if (!imageDirectory)
        return false;
    static const std::set<uint16_t> structure{
        0x00fe, 0x00ff, 0x0100, 0x0101, 0x0102, 0x0103, 0x0106, 0x0107, 0x010a, 0x0111, 0x0115,
        0x0116, 0x0117, 0x011a, 0x011b, 0x011c, 0x0128, 0x012d, 0x013d, 0x013e, 0x013f, 0x0140,
        0x0142, 0x0143, 0x0144, 0x0145, 0x014a, 0x0152, 0x0153, 0x015b, 0x0200, 0x0201, 0x0202,
        0x0211, 0x0212, 0x0213, 0x0214, 0x828d, 0x828e, 0x8773, 0x9216};
    // From 0xc5d8 on: the raw layout tags of cameras and every DNG tag.
    return structure.count(tag) != 0 || tag >= 0xc5d8;
}

} // namespace tagmoor
