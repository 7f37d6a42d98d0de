#include "presets/PresetDictionary.h"

#include "dates/DateTexts.h"
#include "dates/OriginalFinalDateJson.h"
#include "metadata/PropertyLoading.h"
#include "presets/PresetExtras.h"
#include "presets/PresetLog.h"
#include "presets/PresetPhoto.h"

#include <QHash>

#include <functional>
#include <type_traits>
#include <vector>

namespace tagmoor {

namespace {

// Keys of the preset dictionary.
const QString kName = QStringLiteral("name");
const QString kIndex = QStringLiteral("index");
const QString kPath = QStringLiteral("path");
const QString kPropertite = QStringLiteral("propertite");
const QString kCreateDate = QStringLiteral("createDate");
const QString kModifyDate = QStringLiteral("modifyDate");
const QString kTimeSettingKey = QStringLiteral("TimeSetting");
const QString kExtras = QStringLiteral("extras");

// Keys of the record dictionary that are not group or field keys.
const QString kColorModel = QStringLiteral("kCGImagePropertyColorModel");
const QString kFileSize = QStringLiteral("kCGImagePropertyFileSize");

// Calls fn(dictionaryKey, member) for every group of the record, in declared order.
template <typename Fn> void forEachGroupMember(Fn&& fn) {
    using R = CGImageProperties;
    fn(QStringLiteral("kCGImagePropertyTIFFDictionary"), &R::tiffProperties);
    fn(QStringLiteral("kCGImagePropertyGIFDictionary"), &R::gifProperties);
    fn(QStringLiteral("kCGImagePropertyJFIFDictionary"), &R::jfifProperties);
    fn(QStringLiteral("kCGImagePropertyExifDictionary"), &R::exifProperties);
    fn(QStringLiteral("kCGImagePropertyPNGDictionary"), &R::pngProperties);
    fn(QStringLiteral("kCGImagePropertyIPTCDictionary"), &R::iptcProperties);
    fn(QStringLiteral("kCGImagePropertyGPSDictionary"), &R::gpsProperties);
    fn(QStringLiteral("kCGImagePropertyRawDictionary"), &R::rawProperties);
    fn(QStringLiteral("kCGImagePropertyCIFFDictionary"), &R::ciffProperties);
    fn(QStringLiteral("kCGImagePropertyMakerCanonDictionary"), &R::makerCanonProperties);
    fn(QStringLiteral("kCGImagePropertyMakerNikonDictionary"), &R::makerNikonProperties);
    fn(QStringLiteral("kCGImagePropertyMakerMinoltaDictionary"), &R::makerMinoltaProperties);
    fn(QStringLiteral("kCGImagePropertyMakerFujiDictionary"), &R::makerFujiProperties);
    fn(QStringLiteral("kCGImagePropertyMakerOlympusDictionary"), &R::makerOlympusProperties);
    fn(QStringLiteral("kCGImagePropertyMakerPentaxDictionary"), &R::makerPentaxProperties);
    fn(QStringLiteral("kCGImageProperty8BIMDictionary"), &R::bimProperties);
    fn(QStringLiteral("kCGImagePropertyDNGDictionary"), &R::dngProperties);
    fn(QStringLiteral("kCGImagePropertyExifAuxDictionary"), &R::exifAuxProperties);
    fn(QStringLiteral("kCGImagePropertyOpenEXRDictionary"), &R::openEXRProperties);
    fn(QStringLiteral("kCGImagePropertyMakerAppleDictionary"), &R::makerAppleProperties);
}

template <typename Group>
concept HasFields = requires {
    Group::fields();
};

// A group's fields that travel (those with a key), keyed by their key text. Built once per
// group type, so that neither writing nor reading converts key texts again and again.
template <typename Group> struct GroupKeys {
    std::vector<std::pair<QString, PropertyValue Group::*>> byOrder;
    QHash<QString, PropertyValue Group::*> byKey;

    static const GroupKeys& get() {
        static const GroupKeys keys = [] {
            GroupKeys k;
            for (const auto& f : Group::fields()) {
                if (!f.imageIOKey)
                    continue;
                const QString key = QString::fromLatin1(f.imageIOKey);
                k.byOrder.emplace_back(key, f.member);
                k.byKey.insert(key, f.member);
            }
            return k;
        }();
        return keys;
    }
};

template <typename Group> QVariantMap groupToMap(const Group& group) {
    QVariantMap map;
    if constexpr (HasFields<Group>) {
        for (const auto& [key, member] : GroupKeys<Group>::get().byOrder) {
            const PropertyValue& v = group.*member;
            if (v.isPresent())
                map.insert(key, v.variant());
        }
    }
    return map;
}

template <typename Group> Group groupFromMap(const QVariantMap& map) {
    Group group;
    if constexpr (HasFields<Group>) {
        const auto& byKey = GroupKeys<Group>::get().byKey;
        for (auto it = map.constBegin(); it != map.constEnd(); ++it)
            if (const auto member = byKey.value(it.key()))
                group.*member = PropertyValue::fromVariant(it.value());
    }
    return group;
}

// The record's top-level values that travel under a key of their own.
const std::vector<std::pair<QString, PropertyValue CGImageProperties::*>>& topLevelKeys() {
    static const auto keys = [] {
        std::vector<std::pair<QString, PropertyValue CGImageProperties::*>> k;
        for (const auto& f : CGImageProperties::topLevelFields())
            if (f.imageIOKey)
                k.emplace_back(QString::fromLatin1(f.imageIOKey), f.member);
        return k;
    }();
    return keys;
}

// The five XMP values sit at the top level under keys of their own.
struct XmpKey {
    QString key;
    PropertyValue XMPDataProperties::*member;
    bool isDate;
};
const std::vector<XmpKey>& xmpKeys() {
    static const std::vector<XmpKey> keys{
        {QStringLiteral("SerialNumberXMP"), &XMPDataProperties::serialNumber, false},
        {QStringLiteral("LensXMP"), &XMPDataProperties::lens, false},
        {QStringLiteral("CreateDateXMP"), &XMPDataProperties::createDate, true},
        {QStringLiteral("ModifyDateXMP"), &XMPDataProperties::modifyDate, true},
        {QStringLiteral("PhotoshopCreateDateXMP"), &XMPDataProperties::photoshopCreateDate, true},
    };
    return keys;
}

// An XMP date travels as the text the rules write; other kinds as they stand.
QVariant xmpDateToVariant(const PropertyValue& value) {
    if (const auto date = value.date())
        return sharedDateFormatter().format(*date);
    return value.variant();
}

// A stored XMP date is text in one of the metadata date forms; anything else is no date.
PropertyValue xmpDateFromVariant(const QVariant& value) {
    if (value.typeId() != QMetaType::QString)
        return {};
    if (const auto date = parseMetadataDate(value.toString()))
        return *date;
    return {};
}

std::optional<qint64> integerOf(const QVariant& v) {
    switch (v.typeId()) {
    case QMetaType::LongLong:
    case QMetaType::Int:
        return v.toLongLong();
    default:
        return std::nullopt;
    }
}

using DictionaryReader = std::function<void(CGImageProperties&, const QVariant&)>;

// What to do with each key of a record dictionary. The file size has no reader: it is never
// taken from the dictionary.
const QHash<QString, DictionaryReader>& dictionaryReaders() {
    static const QHash<QString, DictionaryReader> readers = [] {
        QHash<QString, DictionaryReader> r;
        forEachGroupMember([&](const QString& key, auto member) {
            r.insert(key, [member](CGImageProperties& record, const QVariant& v) {
                using Group = typename std::decay_t<decltype(record.*member)>::value_type;
                if (v.typeId() == QMetaType::QVariantMap)
                    (record.*member).emplace(groupFromMap<Group>(v.toMap()));
            });
        });
        for (const auto& [key, member] : topLevelKeys()) {
            if (key == kFileSize)
                continue;
            // A structured binding cannot be captured before C++20 in every compiler (clang 14).
            r.insert(key, [field = member](CGImageProperties& record, const QVariant& v) {
                record.*field = PropertyValue::fromVariant(v);
            });
        }
        r.insert(kColorModel, [](CGImageProperties& record, const QVariant& v) {
            if (v.typeId() != QMetaType::QString)
                return;
            for (const auto& [key, member] : GroupKeys<ColorModelProperties>::get().byOrder)
                if (v.toString() == key)
                    *record.colorModelProperties.*member = key;
        });
        for (const XmpKey& x : xmpKeys()) {
            r.insert(x.key, [x](CGImageProperties& record, const QVariant& v) {
                *record.xmpDataProperties.*(x.member) =
                    x.isDate ? xmpDateFromVariant(v) : PropertyValue::fromVariant(v);
            });
        }
        return r;
    }();
    return readers;
}

} // namespace

QVariantMap recordToDictionary(const CGImageProperties& record) {
    QVariantMap dict;
    forEachGroupMember([&](const QString& key, auto member) {
        if (const auto& group = record.*member)
            dict.insert(key, groupToMap(*group));
    });
    for (const auto& [key, member] : topLevelKeys()) {
        const PropertyValue& v = record.*member;
        if (v.isPresent())
            dict.insert(key, v.variant());
    }
    // One colour model: the constant of the first model that holds a value.
    if (record.colorModelProperties) {
        for (const auto& [key, member] : GroupKeys<ColorModelProperties>::get().byOrder) {
            if ((*record.colorModelProperties.*member).isPresent()) {
                dict.insert(kColorModel, key);
                break;
            }
        }
    }
    if (record.xmpDataProperties) {
        for (const XmpKey& x : xmpKeys()) {
            const PropertyValue& v = *record.xmpDataProperties.*(x.member);
            if (v.isPresent())
                dict.insert(x.key, x.isDate ? xmpDateToVariant(v) : v.variant());
        }
    }
    return dict;
}

CGImageProperties dictionaryToRecord(const QVariantMap& dict, const std::optional<QUrl>& url,
                                     PhotoRead photo) {
    CGImageProperties record;
    record.url = url;
    record.colorModelProperties.emplace();
    record.xmpDataProperties.emplace();
    // One pass over what the dictionary holds; keys that no reader knows are ignored.
    const auto& readers = dictionaryReaders();
    for (auto it = dict.constBegin(); it != dict.constEnd(); ++it) {
        const auto reader = readers.constFind(it.key());
        if (reader != readers.constEnd())
            (*reader)(record, it.value());
    }
    if (photo == PhotoRead::Now && url && url->isLocalFile()) {
        QString why;
        if (const auto facts = readPresetPhoto(url->toLocalFile(), &why))
            applyPresetPhoto(record, *facts);
        else
            qCWarning(lcPresets).noquote()
                << "Could not read the preset's file" << url->toLocalFile() << ":" << why;
    }
    return record;
}

QVariantMap presetToDictionary(const ActualPreset& preset) {
    QVariantMap dict;
    if (preset.name)
        dict.insert(kName, *preset.name);
    if (preset.index)
        dict.insert(kIndex, QVariant::fromValue<qint64>(*preset.index));
    if (const auto& record = preset.properties) {
        if (!record->path().isEmpty())
            dict.insert(kPath, record->path());
        dict.insert(kPropertite, recordToDictionary(*record));
        if (record->createDate.isPresent())
            dict.insert(kCreateDate, record->createDate.variant());
        if (record->modifyDate.isPresent())
            dict.insert(kModifyDate, record->modifyDate.variant());
    }
    if (preset.timeSetting)
        dict.insert(kTimeSettingKey, encodeOriginalFinalDate(*preset.timeSetting));
    if (preset.extras)
        dict.insert(kExtras, presetExtrasToDictionary(*preset.extras));
    return dict;
}

ActualPreset presetFromDictionary(const QVariantMap& dict, StoredRulesCache* rulesCache,
                                  PhotoRead photo) {
    ActualPreset preset;
    preset.index = integerOf(dict.value(kIndex));
    const QVariant name = dict.value(kName);
    preset.name = name.typeId() == QMetaType::QString ? name.toString() : QString();

    const QVariant propertite = dict.value(kPropertite);
    if (propertite.typeId() == QMetaType::QVariantMap) {
        const QVariant path = dict.value(kPath);
        std::optional<QUrl> url;
        if (path.typeId() == QMetaType::QString && !path.toString().isEmpty())
            url = QUrl::fromLocalFile(path.toString());
        preset.properties = dictionaryToRecord(propertite.toMap(), url, photo);
    } else {
        preset.properties = makeEmptyRecord(std::nullopt);
    }

    const QVariant rules = dict.value(kTimeSettingKey);
    std::optional<OriginalFinalDate> decoded;
    if (rules.typeId() == QMetaType::QByteArray) {
        const QByteArray json = rules.toByteArray();
        const auto known =
            rulesCache ? rulesCache->constFind(json) : StoredRulesCache::const_iterator();
        if (rulesCache && known != rulesCache->constEnd()) {
            decoded = *known;
        } else {
            decoded = decodeOriginalFinalDate(json);
            if (rulesCache && decoded)
                rulesCache->insert(json, *decoded);
        }
    }
    if (!decoded && rules.isValid())
        qCWarning(lcPresets) << "A preset's date rules could not be read; default rules stand";
    preset.timeSetting = decoded.value_or(OriginalFinalDate{});

    preset.extras = presetExtrasFromDictionary(dict.value(kExtras));
    preset.properties->createDate = PropertyValue::fromVariant(dict.value(kCreateDate));
    preset.properties->modifyDate = PropertyValue::fromVariant(dict.value(kModifyDate));
    return preset;
}

} // namespace tagmoor
