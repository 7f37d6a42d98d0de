#pragma once

#include "model/ValuePool.h"

#include <QByteArray>
#include <QDateTime>
#include <QString>
#include <QVariant>

#include <optional>
#include <utility>

namespace tagmoor {

// A QVariant that costs four bytes while it is empty: a record holds some 240 values, most of
// them absent, so a present value lives in the value store and an absent one takes no more
// room than its number.
// A present value is immutable and shared: copies share it, and texts and numbers read from
// many photos (a camera's make, an artist, an ISO speed) are shared among the records of one
// reading thread, so a long list holds each such value a few times rather than once a photo.
class PackedVariant {
public:
    PackedVariant() = default;
    explicit PackedVariant(const QVariant& v) { assign(v); }
    PackedVariant(const PackedVariant& other) : m_index(other.m_index) {
        ValuePool::retain(m_index);
    }
    PackedVariant(PackedVariant&& other) noexcept : m_index(std::exchange(other.m_index, 0)) {}
    PackedVariant& operator=(const PackedVariant& other) {
        ValuePool::retain(other.m_index);
        ValuePool::release(std::exchange(m_index, other.m_index));
        return *this;
    }
    PackedVariant& operator=(PackedVariant&& other) noexcept {
        if (this != &other)
            ValuePool::release(std::exchange(m_index, std::exchange(other.m_index, 0)));
        return *this;
    }
    PackedVariant& operator=(const QVariant& v) {
        assign(v);
        return *this;
    }
    ~PackedVariant() { ValuePool::release(m_index); }

    const QVariant& get() const { return m_index ? ValuePool::value(m_index) : empty(); }
    operator const QVariant&() const { return get(); }
    // Holds no value: the cheap test for the many absent fields of a record.
    bool isNull() const { return m_index == 0; }
    // The same shared value (equal, without comparing).
    bool sharesWith(const PackedVariant& other) const { return m_index == other.m_index; }

    // A value of its own, shared with no earlier one.
    static PackedVariant unshared(const QVariant& v) {
        PackedVariant p;
        if (v.isValid())
            p.m_index = ValuePool::make(v);
        return p;
    }

private:
    static const QVariant& empty() {
        static const QVariant none;
        return none;
    }
    void assign(const QVariant& v);
    quint32 m_index = 0;
};

// While one lives on a thread, the values that thread packs share nothing with earlier ones.
// Sharing pays where records are kept (the working list of many photos); a record that is
// printed and dropped gains nothing from it, and its look-ups cost about a tenth of a read.
class UnsharedValues {
public:
    UnsharedValues();
    ~UnsharedValues();
    UnsharedValues(const UnsharedValues&) = delete;
    UnsharedValues& operator=(const UnsharedValues&) = delete;

private:
    bool m_outer;
};

// An optional value of exactly one of ten kinds. Nothing is converted on assignment or on
// reading: a value that holds the float 3.0 gives nothing when asked for an integer.
// The value is stored in a QVariant so that presets can stream it with its kind intact.
class PropertyValue {
public:
    enum class Kind {
        Absent,
        Text,
        Int64,
        Float32,
        Float64,
        UInt8,
        UInt64,
        Date,
        Bytes,
        List,
        Dictionary,
    };

    PropertyValue() = default;
    PropertyValue(const QString& text) : m_value(QVariant(text)) {}
    PropertyValue(const char* text) : m_value(QVariant(QString::fromUtf8(text))) {}
    PropertyValue(qint64 v) : m_value(QVariant::fromValue<qint64>(v)) {}
    PropertyValue(int v) : m_value(QVariant::fromValue<qint64>(v)) {}
    PropertyValue(float v) : m_value(QVariant::fromValue<float>(v)) {}
    PropertyValue(double v) : m_value(QVariant::fromValue<double>(v)) {}
    PropertyValue(quint8 v) : m_value(QVariant::fromValue<quint8>(v)) {}
    PropertyValue(quint64 v) : m_value(QVariant::fromValue<quint64>(v)) {}
    PropertyValue(const QDateTime& v) : m_value(QVariant(v)) {}
    PropertyValue(const QByteArray& v) : m_value(QVariant(v)) {}
    PropertyValue(const QVariantList& v) : m_value(QVariant(v)) {}
    PropertyValue(const QVariantMap& v) : m_value(QVariant(v)) {}

    // A variant of one of the ten kinds keeps it; anything else (or null) is absent.
    static PropertyValue fromVariant(const QVariant& v);
    static Kind kindOf(const QVariant& v);

    Kind kind() const { return kindOf(m_value); }
    bool isPresent() const { return !m_value.isNull() && kind() != Kind::Absent; }
    bool isAbsent() const { return !isPresent(); }
    void clear() { m_value = QVariant(); }

    std::optional<QString> text() const;
    std::optional<qint64> int64() const;
    std::optional<float> float32() const;
    std::optional<double> float64() const;
    // A float of either width, as a double (a coordinate is a double in the standard form and
    // a float in the described one).
    std::optional<double> real() const;
    // A number of any of the five numeric kinds, as a double; nothing for the other kinds.
    std::optional<double> number() const;
    // A number of any of the five numeric kinds as a whole number (a float cut towards zero);
    // nothing for the other kinds.
    std::optional<qint64> wholeNumber() const;
    std::optional<quint8> uint8() const;
    std::optional<quint64> uint64() const;
    std::optional<QDateTime> date() const;
    std::optional<QByteArray> bytes() const;
    std::optional<QVariantList> list() const;
    std::optional<QVariantMap> dictionary() const;

    // The stored variant (null when absent); what presets archive.
    const QVariant& variant() const { return m_value.get(); }

    // Same kind and same value.
    bool operator==(const PropertyValue& other) const;

    static const char* kindName(Kind kind);

private:
    PackedVariant m_value;
};

} // namespace tagmoor
