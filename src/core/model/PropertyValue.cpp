#include "model/PropertyValue.h"

#include <QHash>

#include <bit>
#include <climits>
#include <optional>
#include <utility>

namespace tagmoor {

namespace {

// The values a thread made last, by content, so that equal texts, numbers and dates share one
// value.
// Bounded: when full it starts over, which only costs some sharing.
class SharedValues {
public:
    PackedVariant get(const QVariant& v) {
        switch (v.metaType().id()) {
        case QMetaType::QString:
            return lookup(m_texts, *static_cast<const QString*>(v.constData()), v);
        case QMetaType::LongLong:
            return lookup(m_numbers, *static_cast<const qint64*>(v.constData()), v);
        // Reals by their bits: 0.0 and -0.0 stay apart, and each NaN is its own.
        case QMetaType::Float:
            return lookup(m_floats,
                          std::bit_cast<quint32>(*static_cast<const float*>(v.constData())), v);
        case QMetaType::Double:
            return lookup(m_doubles,
                          std::bit_cast<quint64>(*static_cast<const double*>(v.constData())), v);
        case QMetaType::UChar:
            return lookup(m_bytes, *static_cast<const quint8*>(v.constData()), v);
        case QMetaType::QDateTime:
            if (const auto key = dateKey(*static_cast<const QDateTime*>(v.constData())))
                return lookup(m_dates, *key, v);
            return PackedVariant::unshared(v);
        default:
            return PackedVariant::unshared(v);
        }
    }

private:
    // A date in UTC, in local time or at a fixed offset is told apart by its instant and by
    // how it is shown (its kind of time, and the offset); one in a named zone keeps a value of
    // its own.
    using DateKey = std::pair<qint64, int>;
    static std::optional<DateKey> dateKey(const QDateTime& date) {
        if (!date.isValid())
            return std::nullopt;
        switch (date.timeSpec()) {
        case Qt::UTC:
            return DateKey{date.toMSecsSinceEpoch(), INT_MIN};
        case Qt::LocalTime:
            return DateKey{date.toMSecsSinceEpoch(), INT_MIN + 1};
        case Qt::OffsetFromUTC:
            return DateKey{date.toMSecsSinceEpoch(), date.offsetFromUtc()};
        case Qt::TimeZone:
            break;
        }
        return std::nullopt;
    }

    static constexpr qsizetype kMax = 4096;
    template <typename Key>
    PackedVariant lookup(QHash<Key, PackedVariant>& map, const Key& key, const QVariant& v) {
        if (const auto it = map.constFind(key); it != map.cend())
            return *it;
        if (map.size() >= kMax)
            map.clear();
        PackedVariant value = PackedVariant::unshared(v);
        map.insert(key, value);
        return value;
    }
    QHash<QString, PackedVariant> m_texts;
    QHash<qint64, PackedVariant> m_numbers;
    QHash<quint32, PackedVariant> m_floats;
    QHash<quint64, PackedVariant> m_doubles;
    QHash<quint8, PackedVariant> m_bytes;
    QHash<DateKey, PackedVariant> m_dates;
};

// Whether an UnsharedValues lives on this thread.
thread_local bool t_unshared = false;

} // namespace

UnsharedValues::UnsharedValues() : m_outer(std::exchange(t_unshared, true)) {}

UnsharedValues::~UnsharedValues() {
    t_unshared = m_outer;
}

void PackedVariant::assign(const QVariant& v) {
    if (!v.isValid()) {
        ValuePool::release(std::exchange(m_index, 0));
        return;
    }
    if (t_unshared) {
        *this = unshared(v);
        return;
    }
    thread_local SharedValues shared;
    *this = shared.get(v);
}

PropertyValue::Kind PropertyValue::kindOf(const QVariant& v) {
    // An invalid variant's type is 0, which falls to Absent below.
    switch (v.metaType().id()) {
    case QMetaType::QString:
        return Kind::Text;
    case QMetaType::LongLong:
        return Kind::Int64;
    case QMetaType::Float:
        return Kind::Float32;
    case QMetaType::Double:
        return Kind::Float64;
    case QMetaType::UChar:
        return Kind::UInt8;
    case QMetaType::ULongLong:
        return Kind::UInt64;
    case QMetaType::QDateTime:
        return Kind::Date;
    case QMetaType::QByteArray:
        return Kind::Bytes;
    case QMetaType::QVariantList:
        return Kind::List;
    case QMetaType::QVariantMap:
        return Kind::Dictionary;
    default:
        return Kind::Absent;
    }
}

PropertyValue PropertyValue::fromVariant(const QVariant& v) {
    PropertyValue p;
    if (kindOf(v) != Kind::Absent)
        p.m_value = v;
    return p;
}

namespace {
template <typename T> std::optional<T> take(const QVariant& v, PropertyValue::Kind want) {
    if (PropertyValue::kindOf(v) != want)
        return std::nullopt;
    return v.value<T>();
}
} // namespace

std::optional<QString> PropertyValue::text() const {
    return take<QString>(m_value, Kind::Text);
}
std::optional<qint64> PropertyValue::int64() const {
    return take<qint64>(m_value, Kind::Int64);
}
std::optional<float> PropertyValue::float32() const {
    return take<float>(m_value, Kind::Float32);
}
std::optional<double> PropertyValue::float64() const {
    return take<double>(m_value, Kind::Float64);
}
std::optional<double> PropertyValue::real() const {
    if (const auto f = float32())
        return double(*f);
    return float64();
}
std::optional<double> PropertyValue::number() const {
    if (const auto i = int64())
        return double(*i);
    if (const auto u = uint8())
        return double(*u);
    if (const auto u = uint64())
        return double(*u);
    return real();
}
std::optional<quint8> PropertyValue::uint8() const {
    return take<quint8>(m_value, Kind::UInt8);
}
std::optional<quint64> PropertyValue::uint64() const {
    return take<quint64>(m_value, Kind::UInt64);
}
std::optional<QDateTime> PropertyValue::date() const {
    return take<QDateTime>(m_value, Kind::Date);
}
std::optional<QByteArray> PropertyValue::bytes() const {
    return take<QByteArray>(m_value, Kind::Bytes);
}
std::optional<QVariantList> PropertyValue::list() const {
    return take<QVariantList>(m_value, Kind::List);
}
std::optional<QVariantMap> PropertyValue::dictionary() const {
    return take<QVariantMap>(m_value, Kind::Dictionary);
}

bool PropertyValue::operator==(const PropertyValue& other) const {
    const QVariant& a = m_value.get();
    const QVariant& b = other.m_value.get();
    // Texts are most of what is compared (merging a long selection compares every marked
    // photo's texts): straight to the strings, without the variant's dispatch.
    if (m_value.sharesWith(other.m_value))
        return true;
    if (a.metaType().id() == QMetaType::QString && b.metaType().id() == QMetaType::QString)
        return *static_cast<const QString*>(a.constData()) ==
               *static_cast<const QString*>(b.constData());
    return kind() == other.kind() && a == b;
}

const char* PropertyValue::kindName(Kind kind) {
    switch (kind) {
    case Kind::Absent:
        return "absent";
    case Kind::Text:
        return "text";
    case Kind::Int64:
        return "int64";
    case Kind::Float32:
        return "float32";
    case Kind::Float64:
        return "float64";
    case Kind::UInt8:
        return "uint8";
    case Kind::UInt64:
        return "uint64";
    case Kind::Date:
        return "date";
    case Kind::Bytes:
        return "bytes";
    case Kind::List:
        return "list";
    case Kind::Dictionary:
        return "dictionary";
    }
    return "absent";
}

std::optional<qint64> PropertyValue::wholeNumber() const {
    if (auto v = int64())
        return *v;
    if (auto v = uint64())
        return qint64(*v);
    if (auto v = uint8())
        return *v;
    if (auto v = float64())
        return qint64(*v);
    if (auto v = float32())
        return qint64(*v);
    return std::nullopt;
}

} // namespace tagmoor
