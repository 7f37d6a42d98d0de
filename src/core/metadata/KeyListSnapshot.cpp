#include "metadata/KeyListSnapshot.h"

#include "metadata/PictureTags.h"
#include "model/KeyTable.h"

#include <QHash>

#include <exiv2/exiv2.hpp>

#include <algorithm>
#include <string_view>
#include <type_traits>
#include <unordered_map>

namespace tagmoor {

namespace {

// A key as Exiv2 spells it (the spelling its data give back), with the numbers that name it in
// a block: the IFD and tag of an Exif key, the record and dataset of an IPTC one. Learnt once
// per key and thread: parsing a key's text looks its tag up by name, which costs more than the
// rest of a snapshot.
struct KnownKey {
    std::string text;
    quint32 id = 0;
};

quint32 idOf(int group, quint16 tag) {
    return (quint32(group) << 16) | tag;
}

template <typename Key> const KnownKey& knownKey(const QString& text) {
    thread_local std::unordered_map<QString, KnownKey> known;
    auto found = known.find(text);
    if (found == known.end()) {
        const Key key(text.toStdString());
        KnownKey k{key.key(), 0};
        if constexpr (std::is_same_v<Key, Exiv2::ExifKey>)
            k.id = idOf(key.ifdId(), key.tag());
        else if constexpr (std::is_same_v<Key, Exiv2::IptcKey>)
            k.id = idOf(int(key.record()), key.tag());
        found = known.emplace(text, std::move(k)).first;
    }
    return found->second;
}

// The first datum of a block under each wanted key; `at` tells where a key's value goes.
template <typename Data, typename Place>
void takeFirstValues(const Data& data, const Place& place,
                     std::vector<const Exiv2::Value*>& values) {
    for (const auto& datum : data) {
        const int at = place(datum);
        if (at >= 0 && !values[std::size_t(at)])
            values[std::size_t(at)] = &datum.value();
    }
}

std::vector<Exiv2::byte> bytesOf(const Exiv2::Value& value) {
    std::vector<Exiv2::byte> bytes(std::size_t(std::max(0L, value.size())));
    if (!bytes.empty())
        value.copy(bytes.data(), Exiv2::littleEndian);
    return bytes;
}

// Two values read the same: of one type with the same bytes (which give the same text), or
// else with the same text.
bool sameValue(const Exiv2::Value& asked, const Exiv2::Value& landed, bool byText) {
    if (!byText && asked.typeId() == landed.typeId() && asked.size() == landed.size() &&
        bytesOf(asked) == bytesOf(landed))
        return true;
    return asked.toString() == landed.toString();
}

template <typename Map> int placeIn(const Map& map, const typename Map::key_type& key) {
    const auto found = map.find(key);
    return found == map.end() ? -1 : found->second;
}

} // namespace

// The keys a snapshot compares and where each one's value sits. It depends only on whether the
// file is TIFF-built, so each of the two is laid out once and shared by every snapshot.
struct KeyListSnapshot::Layout {
    explicit Layout(bool tiff);

    static const Layout& of(bool tiff) {
        static const Layout plain(false);
        static const Layout tiffBuilt(true);
        return tiff ? tiffBuilt : plain;
    }

    QStringList exifKeys;
    QStringList iptcKeys = iptcKeyNames();
    QStringList xmpKeys = xmpKeyNames();
    // Where each key of the lists sits among the values: Exif and IPTC keys by the numbers
    // that name them in their block, XMP keys by their text.
    std::unordered_map<quint32, int> exifAt;
    std::unordered_map<quint32, int> iptcAt;
    std::unordered_map<std::string, int> xmpAt;
    // The place of each key of the three lists, in list order.
    std::vector<int> placeOf;
};

KeyListSnapshot::Layout::Layout(bool tiff) {
    // Left out: the rows that no reader or writer uses (the maker note is among them, and
    // Exiv2 rewrites it), and in TIFF-built files the tags of the pictures' layout, which
    // Exiv2 keeps as the file has them.
    const QStringList& allExifKeys = exifKeyNames();
    for (int row = 0; row < allExifKeys.size(); ++row) {
        if (isSkippedExifRow(row))
            continue;
        if (tiff) {
            const Exiv2::ExifKey key(allExifKeys.at(row).toStdString());
            if (describesPicture(key.groupName(), key.tag()))
                continue;
        }
        exifKeys << allExifKeys.at(row);
    }
    // Two texts of one key (a key named twice) share the place of the first.
    const auto place = [this](auto& map, const auto& key) {
        const int next = int(placeOf.size());
        placeOf.push_back(map.emplace(key, next).first->second);
    };
    for (const QString& key : std::as_const(exifKeys))
        place(exifAt, knownKey<Exiv2::ExifKey>(key).id);
    for (const QString& key : std::as_const(iptcKeys))
        place(iptcAt, knownKey<Exiv2::IptcKey>(key).id);
    for (const QString& key : std::as_const(xmpKeys))
        place(xmpAt, knownKey<Exiv2::XmpKey>(key).text);
}

KeyListSnapshot::KeyListSnapshot(const Exiv2::Image& image)
    : m_layout(Layout::of(isTiffContainer(image))) {
    // The image goes on changing as it is written: the snapshot keeps copies of its values.
    m_values = valuesOf(image);
    for (const Exiv2::Value*& value : m_values) {
        if (!value)
            continue;
        m_copies.push_back(std::unique_ptr<Exiv2::Value>(value->clone().release()));
        value = m_copies.back().get();
    }
}

KeyListSnapshot::~KeyListSnapshot() = default;

KeyListSnapshot::Values KeyListSnapshot::valuesOf(const Exiv2::Image& image) const {
    const Layout& l = m_layout;
    Values values(std::size_t(l.exifKeys.size() + l.iptcKeys.size() + l.xmpKeys.size()));
    takeFirstValues(
        image.exifData(),
        [&](const Exiv2::Exifdatum& datum) {
            return placeIn(l.exifAt, idOf(datum.ifdId(), datum.tag()));
        },
        values);
    takeFirstValues(
        image.iptcData(),
        [&](const Exiv2::Iptcdatum& datum) {
            return placeIn(l.iptcAt, idOf(int(datum.record()), datum.tag()));
        },
        values);
    takeFirstValues(
        image.xmpData(),
        [&](const Exiv2::Xmpdatum& datum) { return placeIn(l.xmpAt, datum.key()); }, values);
    return values;
}

QStringList KeyListSnapshot::differencesIn(const Exiv2::Image& written) const {
    const Values now = valuesOf(written);
    QStringList differing;
    std::size_t at = 0;
    const Layout& l = m_layout;
    for (const QStringList* keys : {&l.exifKeys, &l.iptcKeys, &l.xmpKeys}) {
        const bool byText = keys == &l.xmpKeys;
        for (const QString& key : *keys) {
            const auto place = std::size_t(l.placeOf[at++]);
            const Exiv2::Value* asked = m_values[place];
            const Exiv2::Value* landed = now[place];
            const bool same = !asked ? !landed : landed && sameValue(*asked, *landed, byText);
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
