#pragma once

#include "extras/CopyGroups.h"
#include "extras/ExtraEdits.h"
#include "extras/ExtraValues.h"
#include "metadata/MetadataFieldSet.h"

#include <QString>

#include <optional>
#include <vector>

namespace Exiv2 {
class Image;
class XmpData;
} // namespace Exiv2

namespace tagmoor {

// What a write lays into a photo beyond the key-list rows: the extra edits, and the copies
// that follow an edited caption, creator, rights or location field.
struct ExtraWrite {
    ExtraEdits edits;
    std::vector<CopyWrite> copies;

    bool isEmpty() const { return !edits.writesTags() && copies.empty(); }
};

// Lays `write` over the open image's metadata: keyword lists edited in place, the rating in
// XMP and in Exif's two rating tags, the label, the texts, the people shown, the copies. Only
// the tags that change are touched. IPTC text outside ASCII gets the UTF-8 declaration when
// `declareIptcCharset`. Throws what Exiv2 throws.
void applyExtraWrite(Exiv2::Image& image, const ExtraWrite& write, bool declareIptcCharset);

// Lays a photo's keyword lists into XMP that holds none of the three XMP lists (the flat
// lists as one dc:subject, the paths as they stand), so that a keyword edit of it keeps the
// photo's other keywords.
void seedKeywordLists(Exiv2::XmpData& xmp, const KeywordLists& lists);

// The values of an open image. Throws what Exiv2 throws.
ExtraValues readExtraValues(const Exiv2::Image& image);

// Whether a photo's values are read with those of its XMP sidecar laid over them (when
// sidecars are read at all), or as the photo's bytes alone hold them.
enum class SidecarValues { Merged, Ignored };

struct SidecarRead;

// The values of the photo at `path`; nothing when it cannot be read.
std::optional<ExtraValues> readExtraValuesOf(const QString& path,
                                             SidecarValues sidecar = SidecarValues::Merged);

// `values`, read from the photo at `path`, with those of its sidecar laid over them as
// readExtraValuesOf lays them.
std::optional<ExtraValues> withSidecarValues(const QString& path, std::optional<ExtraValues> values,
                                             SidecarValues sidecar = SidecarValues::Merged);
// The same, with the sidecar that a look beside the photo already found (nothing: none).
std::optional<ExtraValues> withSidecarValues(std::optional<ExtraValues> values,
                                             const std::optional<SidecarRead>& sidecar);

// The text a reader takes from a group of copies: the first copy, in the group's order, that
// holds a non-empty value. Throws what Exiv2 throws.
std::optional<QString> preferredCopyText(const Exiv2::Image& image, const CopyGroup& group);

// Fills the key-list rows of each group of copies (the caption, creator, rights and location
// fields) with the text a reader prefers, so that a photo shows one value per group. Throws
// what Exiv2 throws.
void preferCopies(const Exiv2::Image& image, MetadataFieldSet& set);

} // namespace tagmoor
