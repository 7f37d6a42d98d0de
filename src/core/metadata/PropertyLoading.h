#pragma once

#include "metadata/ExtraTags.h"
#include "metadata/MetadataFieldSet.h"
#include "model/CGImageProperties.h"

#include <QDateTime>
#include <QString>
#include <QUrl>

#include <optional>

namespace Exiv2 {
class Image;
}

namespace tagmoor {

// A file's record: nothing when the file is not a readable image of an accepted type.
// Reads headers only. Safe to call from any thread.
std::optional<CGImageProperties> loadImageProperties(const QUrl& url);

// The dates of the record that loadImageProperties gives, taken from an image Exiv2 has
// parsed already (the bytes a write is about to edit), with the photo's sidecar laid over
// them; the tags' other values are not read. The pixel size is the one Exiv2 found, if any.
// Call it where the image may be read (under the XMP lock when the image's XMP is not decoded
// yet).
CGImageProperties datesOfParsedImage(const QUrl& url, const Exiv2::Image& image);

// A file's record and its extra values (keywords, rating, label...) from one parse; nothing
// when the file gives no record. The extras are what readExtraValuesOf gives.
struct RecordAndExtras {
    CGImageProperties record;
    std::optional<ExtraValues> extras;
};
std::optional<RecordAndExtras> loadImagePropertiesAndExtras(const QUrl& url);

// Whether loadImageProperties gives the file a record, with as little work as tells it: a JPEG
// whose frame header Qt's reader finds needs no parse of its tags.
bool givesRecord(const QString& path);

// The key-list values of a file, cast to their row kinds; all absent when the bridge failed.
MetadataFieldSet readMetadataFieldSet(const QString& path);

// The first of the 13 metadata date patterns that parses the whole text, in the current
// locale and time zone.
std::optional<QDateTime> parseMetadataDate(const QString& text);

} // namespace tagmoor
