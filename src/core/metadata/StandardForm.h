#pragma once

#include <QString>

#include <string>

namespace Exiv2 {
class Image;
class ExifData;
} // namespace Exiv2

namespace tagmoor {

class ErasedRows;
class WrittenProperties;

// A date text of the program ("yyyy-MM-dd HH:mm:ss", or already the tag's own form) in the
// form an Exif date tag holds: "YYYY:MM:DD HH:MM:SS". Text that is no such date stays as it is.
QString exifDateText(const QString& text);
// The same in ISO 8601 for an XMP date: "YYYY-MM-DDTHH:MM:SS", with its fraction and zone if
// it had them.
QString xmpDateText(const QString& text);

// The rational text of a value: "1/n" for a value that is the inverse of a whole number (an
// exposure time), else Exiv2's own conversion.
std::string rationalText(double value);

// Writes the values in the standard form (see WriteOptions::standardForm): rows without a
// value are left alone, numbers are written as text into the datum so that it keeps its type,
// dates take their tag's form. The GPS rule and the erased
// rows work as in PropertyWriter. Without an XMP edit or erasure the XMP packet is written
// back as it was read. Throws what Exiv2 throws.
void applyStandardForm(Exiv2::Image& image, const WrittenProperties& written,
                       const ErasedRows& erased);

// When the IPTC rows of `written` hold text outside ASCII: adds the UTF-8 declaration to a
// block that declares no character set. A block that declares another set would have its
// new text misread, so this throws an Exiv2 error saying so (the file is then not changed).
void declareIptcCharset(Exiv2::Image& image, const WrittenProperties& written);
// The same for a writer that has put text outside ASCII into the IPTC block itself.
void declareIptcUtf8(Exiv2::Image& image);

} // namespace tagmoor
