#include "presets/PresetJson.h"

#include "dates/OriginalFinalDateJson.h"
#include "foundation/BoundedFile.h"
#include "presets/PresetCheck.h"
#include "presets/PresetDictionary.h"

#include <QDateTime>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QStringList>

#include <charconv>
#include <cmath>
#include <limits>

namespace tagmoor {

namespace {

const QString kFormatKey = QStringLiteral("tagmoorPreset");
const QString kPresetKey = QStringLiteral("preset");
const QString kTimeSetting = QStringLiteral("TimeSetting");
constexpr int kFormatVersion = 1;
constexpr int kMaxDepth = 32;

// Integers beyond 2^53 lose digits as JSON numbers.
constexpr qint64 kExactInJson = qint64(1) << 53;

QJsonObject tagged(const char* kind, const QJsonValue& value) {
    return QJsonObject{{QLatin1String(kind), value}};
}

QJsonValue exactInteger(qint64 n) {
    return n > -kExactInJson && n < kExactInJson ? QJsonValue(double(n))
                                                 : QJsonValue(QString::number(n));
}

QJsonValue floating(double d) {
    if (std::isnan(d))
        return QStringLiteral("nan");
    if (std::isinf(d))
        return d > 0 ? QStringLiteral("inf") : QStringLiteral("-inf");
    return d;
}

// A float32 is written through its shortest text, so that 2.8f reads "2.8", not the digits
// of the double nearest to it.
QJsonValue floating32(float f) {
    if (!std::isfinite(f))
        return floating(double(f));
    char buffer[32];
    const auto end = std::to_chars(buffer, buffer + sizeof buffer, f).ptr;
    return QByteArray(buffer, int(end - buffer)).toDouble();
}

std::optional<QJsonValue> toJson(const QVariant& value, int depth, QString* error) {
    if (depth > kMaxDepth) {
        *error = QStringLiteral("values nested too deep");
        return std::nullopt;
    }
    switch (value.typeId()) {
    case QMetaType::QString:
        return QJsonValue(value.toString());
    case QMetaType::LongLong:
        return tagged("int64", exactInteger(value.toLongLong()));
    case QMetaType::Int:
        return tagged("int32", value.toInt());
    case QMetaType::UInt:
        return tagged("uint32", double(value.toUInt()));
    case QMetaType::ULongLong: {
        const quint64 n = value.toULongLong();
        return tagged("uint64", n < quint64(kExactInJson) ? QJsonValue(double(n))
                                                          : QJsonValue(QString::number(n)));
    }
    case QMetaType::UChar:
        return tagged("uint8", int(value.value<uchar>()));
    case QMetaType::Float:
        return tagged("float32", floating32(value.toFloat()));
    case QMetaType::Double:
        return tagged("float64", floating(value.toDouble()));
    case QMetaType::Bool:
        return tagged("bool", value.toBool());
    case QMetaType::QDateTime: {
        const QDateTime d = value.toDateTime();
        return tagged("date", d.isValid()
                                  ? d.toOffsetFromUtc(d.offsetFromUtc()).toString(Qt::ISODateWithMs)
                                  : QString());
    }
    case QMetaType::QDate:
        return tagged("day", value.toDate().toString(Qt::ISODate));
    case QMetaType::QByteArray:
        return tagged("bytes", QString::fromLatin1(value.toByteArray().toBase64()));
    case QMetaType::QStringList:
        return tagged("texts", QJsonArray::fromStringList(value.toStringList()));
    case QMetaType::QVariantList: {
        QJsonArray array;
        for (const QVariant& element : value.toList()) {
            const auto json = toJson(element, depth + 1, error);
            if (!json)
                return std::nullopt;
            array.append(*json);
        }
        return tagged("list", array);
    }
    case QMetaType::QVariantMap: {
        QJsonObject object;
        const QVariantMap map = value.toMap();
        for (auto it = map.begin(); it != map.end(); ++it) {
            const auto json = toJson(it.value(), depth + 1, error);
            if (!json)
                return std::nullopt;
            object.insert(it.key(), *json);
        }
        return tagged("map", object);
    }
    default:
        *error = QStringLiteral("a value of kind %1 has no JSON form")
                     .arg(QLatin1String(value.metaType().name()));
        return std::nullopt;
    }
}

std::optional<qint64> integerOf(const QJsonValue& v) {
    if (v.isString()) {
        bool ok = false;
        const qint64 n = v.toString().toLongLong(&ok);
        return ok ? std::optional<qint64>(n) : std::nullopt;
    }
    if (!v.isDouble())
        return std::nullopt;
    const double d = v.toDouble();
    if (d != std::floor(d) || std::abs(d) >= double(kExactInJson))
        return std::nullopt;
    return qint64(d);
}

std::optional<double> floatingOf(const QJsonValue& v) {
    if (v.isDouble())
        return v.toDouble();
    const QString s = v.toString();
    if (s == QLatin1String("nan"))
        return std::numeric_limits<double>::quiet_NaN();
    if (s == QLatin1String("inf"))
        return std::numeric_limits<double>::infinity();
    if (s == QLatin1String("-inf"))
        return -std::numeric_limits<double>::infinity();
    return std::nullopt;
}

std::optional<float> float32Of(const QJsonValue& v) {
    const auto d = floatingOf(v);
    if (!d)
        return std::nullopt;
    if (!std::isfinite(*d))
        return float(*d);
    // Back through the shortest text of the double, read as a float: the float that was
    // written, with no second rounding.
    char buffer[32];
    const auto end = std::to_chars(buffer, buffer + sizeof buffer, *d).ptr;
    float f = 0;
    if (std::from_chars(buffer, end, f).ec != std::errc())
        return std::nullopt;
    return f;
}

// The readers of the values of one kind each: the value, or nothing when the JSON does not
// read as one.
using ValueReader = std::optional<QVariant> (*)(const QJsonValue& v);

template <class T> std::optional<QVariant> variantOf(const std::optional<T>& value) {
    return value ? std::optional<QVariant>(QVariant(*value)) : std::nullopt;
}

std::optional<QVariant> readInt64(const QJsonValue& v) {
    return variantOf(integerOf(v));
}

std::optional<QVariant> readInt32(const QJsonValue& v) {
    const auto n = integerOf(v);
    if (!n || *n < std::numeric_limits<int>::min() || *n > std::numeric_limits<int>::max())
        return std::nullopt;
    return QVariant(int(*n));
}

std::optional<QVariant> readUint32(const QJsonValue& v) {
    const auto n = integerOf(v);
    if (!n || *n < 0 || *n > qint64(std::numeric_limits<uint>::max()))
        return std::nullopt;
    return QVariant(uint(*n));
}

std::optional<QVariant> readUint64(const QJsonValue& v) {
    bool ok = v.isString();
    quint64 n = 0;
    if (ok)
        n = v.toString().toULongLong(&ok);
    else if (const auto small = integerOf(v); small && *small >= 0) {
        n = quint64(*small);
        ok = true;
    }
    return ok ? std::optional<QVariant>(QVariant(n)) : std::nullopt;
}

std::optional<QVariant> readUint8(const QJsonValue& v) {
    const auto n = integerOf(v);
    if (!n || *n < 0 || *n > 255)
        return std::nullopt;
    return QVariant::fromValue(uchar(*n));
}

std::optional<QVariant> readFloat32(const QJsonValue& v) {
    return variantOf(float32Of(v));
}

std::optional<QVariant> readFloat64(const QJsonValue& v) {
    return variantOf(floatingOf(v));
}

std::optional<QVariant> readBool(const QJsonValue& v) {
    return v.isBool() ? std::optional<QVariant>(QVariant(v.toBool())) : std::nullopt;
}

std::optional<QVariant> readDate(const QJsonValue& v) {
    if (!v.isString())
        return std::nullopt;
    if (v.toString().isEmpty())
        return QVariant(QDateTime());
    const QDateTime d = QDateTime::fromString(v.toString(), Qt::ISODateWithMs);
    return d.isValid() ? std::optional<QVariant>(QVariant(d)) : std::nullopt;
}

std::optional<QVariant> readDay(const QJsonValue& v) {
    const QDate d = QDate::fromString(v.toString(), Qt::ISODate);
    return v.isString() && (d.isValid() || v.toString().isEmpty())
               ? std::optional<QVariant>(QVariant(d))
               : std::nullopt;
}

std::optional<QVariant> readBytes(const QJsonValue& v) {
    if (!v.isString())
        return std::nullopt;
    const auto decoded = QByteArray::fromBase64Encoding(v.toString().toLatin1(),
                                                        QByteArray::AbortOnBase64DecodingErrors);
    return decoded ? std::optional<QVariant>(QVariant(*decoded)) : std::nullopt;
}

std::optional<QVariant> readTexts(const QJsonValue& v) {
    if (!v.isArray())
        return std::nullopt;
    QStringList texts;
    for (const QJsonValue& element : v.toArray()) {
        if (!element.isString())
            return std::nullopt;
        texts << element.toString();
    }
    return QVariant(texts);
}

struct ValueKind {
    const char* kind;
    ValueReader read;
};

// The kinds that hold no other values; "list" and "map" are read by fromJson itself.
constexpr ValueKind kValueKinds[] = {
    {"int64", readInt64},     {"int32", readInt32}, {"uint32", readUint32},
    {"uint64", readUint64},   {"uint8", readUint8}, {"float32", readFloat32},
    {"float64", readFloat64}, {"bool", readBool},   {"date", readDate},
    {"day", readDay},         {"bytes", readBytes}, {"texts", readTexts},
};

std::optional<QVariant> fromJson(const QJsonValue& json, int depth, QString* error);

std::optional<QVariant> readList(const QJsonArray& elements, int depth, QString* error) {
    QVariantList list;
    for (const QJsonValue& element : elements) {
        auto value = fromJson(element, depth + 1, error);
        if (!value)
            return std::nullopt;
        list << *value;
    }
    return QVariant(list);
}

std::optional<QVariant> readMap(const QJsonObject& entries, int depth, QString* error) {
    QVariantMap map;
    for (auto it = entries.begin(); it != entries.end(); ++it) {
        auto value = fromJson(it.value(), depth + 1, error);
        if (!value)
            return std::nullopt;
        map.insert(it.key(), *value);
    }
    return QVariant(map);
}

std::optional<QVariant> fromJson(const QJsonValue& json, int depth, QString* error) {
    const auto refuse = [&](const QString& why) -> std::optional<QVariant> {
        *error = why;
        return std::nullopt;
    };
    if (depth > kMaxDepth)
        return refuse(QStringLiteral("values nested too deep"));
    if (json.isString())
        return QVariant(json.toString());
    if (!json.isObject() || json.toObject().size() != 1)
        return refuse(QStringLiteral("a value is neither a text nor {\"kind\": value}"));
    const QJsonObject object = json.toObject();
    const QString kind = object.begin().key();
    const QJsonValue v = object.begin().value();
    const auto bad = [&] {
        return refuse(QStringLiteral("a value of kind \"%1\" does not read as one").arg(kind));
    };
    if (kind == QLatin1String("list"))
        return v.isArray() ? readList(v.toArray(), depth, error) : bad();
    if (kind == QLatin1String("map"))
        return v.isObject() ? readMap(v.toObject(), depth, error) : bad();
    for (const ValueKind& known : kValueKinds) {
        if (kind == QLatin1String(known.kind)) {
            auto value = known.read(v);
            return value ? value : bad();
        }
    }
    return refuse(QStringLiteral("unknown value kind \"%1\"").arg(kind));
}

} // namespace

QByteArray encodePresetJson(const ActualPreset& preset, QString* error) {
    QString ignored;
    QString& why = error ? *error : ignored;
    QJsonObject stored;
    const QVariantMap dictionary = presetToDictionary(preset);
    for (auto it = dictionary.begin(); it != dictionary.end(); ++it) {
        if (it.key() == kTimeSetting) {
            // The rules are JSON already: written as an object, not as base64 of their text.
            stored.insert(it.key(), QJsonDocument::fromJson(it.value().toByteArray()).object());
            continue;
        }
        const auto json = toJson(it.value(), 0, &why);
        if (!json)
            return {};
        stored.insert(it.key(), *json);
    }
    const QJsonObject file{{kFormatKey, kFormatVersion}, {kPresetKey, stored}};
    return QJsonDocument(file).toJson(QJsonDocument::Indented);
}

std::optional<ActualPreset> decodePresetJson(const QByteArray& json, QString* error) {
    QString ignored;
    QString& why = error ? *error : ignored;
    QJsonParseError parse;
    const QJsonDocument document = QJsonDocument::fromJson(json, &parse);
    if (parse.error != QJsonParseError::NoError) {
        why = QStringLiteral("not JSON (%1 at byte %2)").arg(parse.errorString()).arg(parse.offset);
        return std::nullopt;
    }
    const QJsonObject file = document.object();
    if (!document.isObject() || !file.value(kFormatKey).isDouble() ||
        !file.value(kPresetKey).isObject()) {
        why =
            QStringLiteral("not a preset file (no \"%1\" and \"%2\")").arg(kFormatKey, kPresetKey);
        return std::nullopt;
    }
    if (file.value(kFormatKey).toInt() != kFormatVersion) {
        why = QStringLiteral("a preset file of version %1; this program reads version %2")
                  .arg(file.value(kFormatKey).toInt())
                  .arg(kFormatVersion);
        return std::nullopt;
    }
    const QJsonObject stored = file.value(kPresetKey).toObject();
    QVariantMap dictionary;
    for (auto it = stored.begin(); it != stored.end(); ++it) {
        if (it.key() == kTimeSetting) {
            const QByteArray rules = QJsonDocument(it.value().toObject()).toJson();
            if (!it.value().isObject() || !decodeOriginalFinalDate(rules)) {
                why = QStringLiteral("the date rules do not read");
                return std::nullopt;
            }
            dictionary.insert(it.key(), rules);
            continue;
        }
        auto value = fromJson(it.value(), 0, &why);
        if (!value) {
            why = QStringLiteral("\"%1\": %2").arg(it.key(), why);
            return std::nullopt;
        }
        dictionary.insert(it.key(), *value);
    }
    if (!dictionary.value(QStringLiteral("name")).canConvert<QString>() ||
        dictionary.value(QStringLiteral("name")).typeId() != QMetaType::QString ||
        dictionary.value(QStringLiteral("name")).toString().isEmpty()) {
        why = QStringLiteral("the preset has no name");
        return std::nullopt;
    }
    return presetFromDictionary(dictionary, nullptr, PhotoRead::Later);
}

std::optional<ActualPreset> readPresetJsonFile(const QString& path, QString* error) {
    QString ignored;
    QString& why = error ? *error : ignored;
    const BoundedRead file = readBoundedFile(path, kMaxPresetJsonBytes);
    if (!file.ok()) {
        why = QStringLiteral("cannot read %1: %2").arg(path, file.error);
        return std::nullopt;
    }
    std::optional<ActualPreset> preset = decodePresetJson(file.bytes, &why);
    if (!preset) {
        why = QStringLiteral("%1 is not a preset file: %2").arg(path, why);
        return std::nullopt;
    }
    if (const std::optional<QString> refusal = presetRefusal(*preset)) {
        why = QStringLiteral("the preset of %1 is refused: %2").arg(path, *refusal);
        return std::nullopt;
    }
    return preset;
}

} // namespace tagmoor
