#pragma once

#include <QStringList>

#include <map>
#include <string>

namespace Exiv2 {
class Image;
}

namespace tagmoor {

// What an image holds under the keys of the three key lists: the text of each key's first
// datum, or nothing. Taken once an edit is made and compared with the file as written, it
// tells whether the format kept what was asked: Exiv2 drops silently what a type has no
// room for. Costs one lookup a key. The rows that nothing writes, and in TIFF-built files
// the tags that lay out the pictures, are not compared.
class KeyListSnapshot {
public:
    explicit KeyListSnapshot(const Exiv2::Image& image);

    // The keys whose value (or presence) differs in `written`, in key-list order.
    QStringList differencesIn(const Exiv2::Image& written) const;

private:
    using Values = std::map<std::string, std::string>;
    static Values valuesOf(const Exiv2::Image& image, const QStringList& exifKeys,
                           const QStringList& iptcKeys, const QStringList& xmpKeys);

    QStringList m_exifKeys;
    QStringList m_iptcKeys;
    QStringList m_xmpKeys;
    Values m_values;
};

// The text a landed check gives for the keys that did not land.
QString notLandedText(const QStringList& keys);

} // namespace tagmoor
