#pragma once

#include <QStringList>

#include <memory>
#include <vector>

namespace Exiv2 {
class Image;
class Value;
} // namespace Exiv2

namespace tagmoor {

// What an image holds under the keys of the three key lists: the value of each key's first
// datum, or nothing. Taken once an edit is made and compared with the file as written, it
// tells whether the format kept what was asked: Exiv2 drops silently what a type has no
// room for. Two values are the same when their texts are; the texts are made only for values
// whose type or bytes differ. The rows that nothing writes, and in TIFF-built files the tags
// that lay out the pictures, are not compared.
class KeyListSnapshot {
public:
    explicit KeyListSnapshot(const Exiv2::Image& image);
    ~KeyListSnapshot();

    // The keys whose value (or presence) differs in `written`, in key-list order.
    QStringList differencesIn(const Exiv2::Image& written) const;

private:
    struct Layout;
    // The first value under each key of the three lists, in list order (null when none); held
    // by the image it was read from, or by m_copies.
    using Values = std::vector<const Exiv2::Value*>;
    Values valuesOf(const Exiv2::Image& image) const;

    const Layout& m_layout;
    Values m_values;
    std::vector<std::unique_ptr<Exiv2::Value>> m_copies;
};

// The text a landed check gives for the keys that did not land.
QString notLandedText(const QStringList& keys);

} // namespace tagmoor
