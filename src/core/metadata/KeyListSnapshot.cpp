#include "metadata/KeyListSnapshot.h"

#include "metadata/PictureTags.h"
#include "model/KeyTable.h"

#include <QHash>

#include <exiv2/exiv2.hpp>

#include <string_view>
#include <unordered_map>
#include <unordered_set>

namespace tagmoor {

namespace {

// Exiv2's own spelling of a key (the one its data give back), learnt once per key and thread:
// parsing a key's text looks its tag up by name, which costs more than the rest of a snapshot.
template <typename Key> const std::string& canonicalKey(const QString& text) {
    thread_local std::unordered_map<QString, std::string> known;
    auto found = known.find(text);
    if (found == known.end())
        found = known.emplace(text, Key(text.toStdString()).key()).first;
    return found->second;
}

// The text of the first datum under each wanted key, in one pass over the block.
template <typename Key, typename Data>
void takeFirstValues(const Data& data, const QStringList& keys,
                     std::map<std::string, std::string>& values) {
    if (keys.isEmpty() || data.empty())
        return;
    std::unordered_set<std::string_view> wanted;
    wanted.reserve(std::size_t(keys.size()));
    for (const QString& key : keys)
        wanted.insert(canonicalKey<Key>(key));
    for (const auto& datum : data) {
        std::string key = datum.key();
        if (wanted.count(key) != 0 && values.count(key) == 0)
            values.emplace(std::move(key), datum.value().toString());
    }
}

} // namespace

KeyListSnapshot::KeyListSnapshot(const Exiv2::Image& image)
    : m_iptcKeys(iptcKeyNames()), m_xmpKeys(xmpKeyNames()) {
    // Left out: the rows that no reader or writer uses (the maker note is among them, and
    // Exiv2 rewrites it), and in TIFF-built files the tags of the pictures' layout, which
    // Exiv2 keeps as the file has them.
    const bool tiff = isTiffContainer(image);
    const QStringList& exifKeys = exifKeyNames();
    for (int row = 0; row < exifKeys.size(); ++row) {
        if (isSkippedExifRow(row))
            continue;
        if (tiff) {
            const Exiv2::ExifKey key(exifKeys.at(row).toStdString());
            if (describesPicture(key.groupName(), key.tag()))
                continue;
        }
        m_exifKeys << exifKeys.at(row);
    }
    m_values = valuesOf(image, m_exifKeys, m_iptcKeys, m_xmpKeys);
}

KeyListSnapshot::Values KeyListSnapshot::valuesOf(const Exiv2::Image& image,
                                                  const QStringList& exifKeys,
                                                  const QStringList& iptcKeys,
                                                  const QStringList& xmpKeys) {
    Values values;
    takeFirstValues<Exiv2::ExifKey>(image.exifData(), exifKeys, values);
    takeFirstValues<Exiv2::IptcKey>(image.iptcData(), iptcKeys, values);
    takeFirstValues<Exiv2::XmpKey>(image.xmpData(), xmpKeys, values);
    return values;
}

QStringList KeyListSnapshot::differencesIn(const Exiv2::Image& written) const {
    const Values now = valuesOf(written, m_exifKeys, m_iptcKeys, m_xmpKeys);
    QStringList differing;
    for (const QStringList* keys : {&m_exifKeys, &m_iptcKeys, &m_xmpKeys}) {
        for (const QString& key : *keys) {
            const std::string& k = keys == &m_exifKeys   ? canonicalKey<Exiv2::ExifKey>(key)
                                   : keys == &m_iptcKeys ? canonicalKey<Exiv2::IptcKey>(key)
                                                         : canonicalKey<Exiv2::XmpKey>(key);
            const auto asked = m_values.find(k);
            const auto landed = now.find(k);
            const bool same = asked == m_values.end()
                                  ? landed == now.end()
                                  : landed != now.end() && landed->second == asked->second;
            if (!same)
                differing << key;
        }
    }
    return differing;
}

QString notLandedText(const QStringList& keys) {
    return QStringLiteral("the format did not keep %1").arg(keys.join(QStringLiteral(", ")));
}

} // namespace tagmoor
