#pragma once

#include <QString>

#include <array>
#include <span>
#include <vector>

namespace tagmoor {

// How one copy of a value is held.
enum class CopyForm {
    Text,    // Exif ASCII, an IPTC dataset or a simple XMP property
    LangAlt, // an XMP language alternative: the x-default item
    Seq,     // an XMP ordered list of names (dc:creator): one item per name, "; " between
};

struct CopyKey {
    const char* key = nullptr;
    CopyForm form = CopyForm::Text;
    // The most bytes an IPTC dataset holds (IIM 4.2); 0 for the other blocks.
    int maxBytes = 0;
};

// The text cut to at most `maxBytes` bytes of UTF-8, never inside a character; 0 leaves it.
QString fittedToBytes(const QString& text, int maxBytes);

// A value that several tags hold, one copy each, as the Metadata Working Group's guidelines
// keep them in step: Exif, XMP and IPTC for the caption, the creator and the rights, XMP and
// IPTC for the location shown. The keys stand in the order in which a reader prefers them
// (Exif, then XMP, then IPTC).
struct CopyGroup {
    const char* name;
    std::array<CopyKey, 3> keys; // a group of two copies leaves the last key empty

    std::span<const CopyKey> copies() const {
        return {keys.data(), keys[2].key ? std::size_t(3) : std::size_t(2)};
    }
};

std::span<const CopyGroup> copyGroups();

// The group that holds `key`, or nullptr.
const CopyGroup* copyGroupOf(const QString& key);

// One tag to write so that a group's copies agree; an empty text removes the tag.
struct CopyWrite {
    CopyKey copy;
    QString text;

    bool operator==(const CopyWrite& other) const {
        return QString::fromLatin1(copy.key) == QString::fromLatin1(other.copy.key) &&
               copy.form == other.copy.form && text == other.text;
    }
};

// An edited value of a tag that belongs to a group.
struct EditedCopy {
    QString key;
    QString text;
};

// The writes that bring the other copies of each edited group in step with its edit, an IPTC
// copy cut to what its dataset holds (the other copies keep the whole text). When
// more than one copy of a group was edited, the first in the group's order gives the value,
// and the others edited are left as they were edited.
std::vector<CopyWrite> copyWritesFor(const std::vector<EditedCopy>& edited);

} // namespace tagmoor
