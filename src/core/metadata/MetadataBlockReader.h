#pragma once

#include "metadata/ImageKind.h"
#include "metadata/MetadataFieldSet.h"
#include "model/KeyTable.h"

#include <QSize>
#include <QString>
#include <QStringList>
#include <QVariant>
#include <QVariantMap>

#include <functional>
#include <optional>
#include <string>

namespace Exiv2 {
class Image;
}

namespace tagmoor {

// The reading half of the bridge, datum by datum: opens a file through Exiv2 (only when its
// content is a photo type that Tagmoor accepts), walks the Exif, IPTC and XMP blocks in file
// order and converts each value by the reading rules: numbers to 32-bit floats (GPS
// latitude and longitude to double degrees), texts to QString, other types skipped.
// No exception leaves it.
class MetadataBlockReader {
public:
    enum class Outcome { Read, UnencodablePath, Failed };

    // Receives every datum that has a value of a kept type. A key may come again; the later
    // datum stands. On Failed the caller drops what it received.
    using Sink = std::function<void(KeyBlock block, const std::string& key, QVariant&& value)>;

    // What a caller already knows of the file, and what it wants besides the tags.
    struct Options {
        // The kind told from the file's first bytes; read here when not given.
        std::optional<ImageKind> kind;
        // Receives the pixel size that Exiv2 found in the picture's own header, if any.
        std::optional<QSize>* headerSize = nullptr;
        // The file's first bytes when the caller has read them already; a JPEG's head is then
        // read from the file only past them.
        QByteArray start;
        // Handed the parsed image once the rows are read, so that a caller takes more from
        // the same parse; what it throws leaves the rows read.
        std::function<void(const Exiv2::Image&)> alsoRead;
    };

    // Every datum of the three blocks.
    static Outcome read(const QString& path, const Sink& sink, const Options& options);
    static Outcome read(const QString& path, const Sink& sink);

    // Only the data of the read rows of the key table, matched by Exiv2's tag numbers so
    // that no other datum costs more than a comparison, each set into `set` as the value
    // read() gives for the same key cast to the row's kind: a value of the wrong kind, or a
    // number the kind can't hold exactly, leaves the row absent. A row may come again, and
    // the later stands. On any outcome but Read the caller drops what was set.
    static Outcome readKeyListRows(const QString& path, MetadataFieldSet& set,
                                   const Options& options);
    // The same rows of an image that is open and read already. Throws what Exiv2 throws.
    // With `datesOnly`, the date rows alone are set (with the copies they prefer).
    static void readKeyListRows(const Exiv2::Image& image, MetadataFieldSet& set,
                                bool datesOnly = false);

    // Lets `visit` look at the parsed image of the file (read as read() reads it).
    static Outcome readParsed(const QString& path,
                              const std::function<void(const Exiv2::Image&)>& visit);

    // The photo's keywords: the IPTC Keywords datasets, then the items of the XMP subject
    // (dc:subject) that are not among them yet, in file order; empty ones left out.
    static QStringList keywordList(const Exiv2::Image& image);

    // Exiv2's own data of each block as JSON-shaped text under "exif", "iptc" and "xmp";
    // what stands when Exiv2 fails midway.
    static QVariantMap readJsonShaped(const QString& path);
};

} // namespace tagmoor
