#pragma once

#include <QMap>
#include <QString>

#include <optional>

namespace tagmoor {

// One tag as a file holds it: its type's name and its value's text (Exiv2's plain form,
// "72/1", "1", "2008:05:08 10:54:28").
struct TagText {
    QString type;
    QString value;
    bool operator==(const TagText&) const = default;
};

// Every tag of the file by key ("Exif.Image.Orientation"); a key repeated in the file gets
// "[2]", "[3]"... from its second datum on. Tags that only say where other data lie in the
// file (offsets of sub-directories, strips, the thumbnail and the maker note's block, whose
// tags are listed one by one) are left out: a rewrite moves them without changing what the
// file says. Nothing when the file cannot be read.
std::optional<QMap<QString, TagText>> listTags(const QString& path);

} // namespace tagmoor
