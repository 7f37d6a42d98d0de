#pragma once

#include "metadata/ImageKind.h"

#include <QByteArray>
#include <QString>

namespace Exiv2 {
class Image;
class ExifData;
} // namespace Exiv2

namespace tagmoor {

// Why a photo, as read into `image` from a file of `fileSize` bytes, is not to be written in
// the standard form, or an empty text when it may be. Exiv2 would damage it further:
// - a TIFF-built file that is cut short (strips, tiles or a preview run past its end): Exiv2
//   sets the offsets of the missing data to zero;
// - a Nikon maker note with a scan directory: Exiv2 keeps the directory's offset but not the
//   directory when it lays the maker note out anew.
QString standardFormRefusal(const Exiv2::Image& image, ImageKind kind, qint64 fileSize);

// A PNG as Exiv2 wrote it, with its Exif in the standard place: the text chunk of the raw
// profile "exif" that Exiv2 writes becomes an eXIf chunk with the same Exif (`exifData`) as
// TIFF bytes, where the text chunk stood. Any other eXIf chunk goes. Bytes that are no PNG,
// or a PNG without the raw profile, come back unchanged.
QByteArray withExifChunk(const QByteArray& png, const Exiv2::ExifData& exifData);

} // namespace tagmoor
