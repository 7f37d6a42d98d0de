#include "metadata/KeyListSnapshot.h"

#include "metadata/PictureTags.h"
#include "model/KeyTable.h"

#include <exiv2/exiv2.hpp>

namespace tagmoor {

KeyListSnapshot::KeyListSnapshot(const Exiv2::Image& image, const QStringList& exifKeys,
                                 const QStringList& iptcKeys, const QStringList& xmpKeys)
    : m_iptcKeys(iptcKeys), m_xmpKeys(xmpKeys) {
    // Left out: the rows that no reader or writer uses (the maker note is among them, and
    // Exiv2 rewrites it), and in TIFF-built files the tags of the pictures' layout, which
    // Exiv2 keeps as the file has them.
    const bool tiff = isTiffContainer(image);
    for (int row = 0; row < exifKeys.size(); ++row) {
        if (isSkippedExifRow(row))
            continue;
        const Exiv2::ExifKey key(exifKeys.at(row).toStdString());
        if (tiff && describesPicture(key.groupName(), key.tag()))
            continue;
        m_exifKeys << exifKeys.at(row);
    }
    m_values = valuesOf(image, m_exifKeys, m_iptcKeys, m_xmpKeys);
}

KeyListSnapshot::Values KeyListSnapshot::valuesOf(const Exiv2::Image& image,
                                                  const QStringList& exifKeys,
                                                  const QStringList& iptcKeys,
                                                  const QStringList& xmpKeys) {
    Values values;
    const auto take = [&](const auto& data, const auto& key) {
        const auto found = data.findKey(key);
        if (found != data.end())
            values.emplace(key.key(), found->value().toString());
    };
    for (const QString& key : exifKeys)
        take(image.exifData(), Exiv2::ExifKey(key.toStdString()));
    for (const QString& key : iptcKeys)
        take(image.iptcData(), Exiv2::IptcKey(key.toStdString()));
    for (const QString& key : xmpKeys)
        take(image.xmpData(), Exiv2::XmpKey(key.toStdString()));
    return values;
}

QStringList KeyListSnapshot::differencesIn(const Exiv2::Image& written) const {
    const Values now = valuesOf(written, m_exifKeys, m_iptcKeys, m_xmpKeys);
    QStringList differing;
    for (const QStringList* keys : {&m_exifKeys, &m_iptcKeys, &m_xmpKeys}) {
        for (const QString& key : *keys) {
            const std::string k = key.toStdString();
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
