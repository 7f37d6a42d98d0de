#include "dates/OriginalFinalDateJson.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QJsonValue>

#include <cmath>
#include <concepts>
#include <limits>
#include <type_traits>
#include <utility>
#include <vector>

namespace tagmoor {

namespace {

// QJsonObject writes its keys sorted; the stored form keeps the declared order, so objects
// are written by hand from (name, JSON text) pairs.
using Members = std::vector<std::pair<QByteArray, QByteArray>>;

QByteArray jsonScalar(const QJsonValue& value) {
    // A one-element array is the simplest way to have Qt escape a lone value.
    const QByteArray array = QJsonDocument(QJsonArray{value}).toJson(QJsonDocument::Compact);
    return array.mid(1, array.size() - 2);
}

QByteArray jsonObject(const Members& members) {
    QByteArray out = "{";
    for (const auto& [name, value] : members) {
        if (out.size() > 1)
            out += ',';
        // Member names are plain identifiers: nothing to escape.
        out += '"';
        out += name;
        out += "\":";
        out += value;
    }
    out += '}';
    return out;
}

QByteArray boolean(bool value) {
    return value ? "true" : "false";
}

QString dateText(const QDateTime& date) {
    return date.toUTC().toString(Qt::ISODateWithMs);
}

// The stored members of each rule record, in their stored order: the one list that both the
// encoder and the decoder walk. `f(name, member)` is called for each.
template <typename Self, typename F>
requires std::same_as<std::remove_const_t<Self>, UpdateDate>
void forEachMember(Self& v, F&& f) {
    f("changeDays", v.changeDays);
    f("changeMonths", v.changeMonths);
    f("changeYears", v.changeYears);
    f("changeHours", v.changeHours);
    f("changeMinutes", v.changeMinutes);
    f("changeSeconds", v.changeSeconds);
    f("timeMode", v.timeMode);
    f("isKeepOriginalDays", v.isKeepOriginalDays);
    f("isKeepOriginalMonths", v.isKeepOriginalMonths);
    f("isKeepOriginalYears", v.isKeepOriginalYears);
    f("isKeepOriginalTime", v.isKeepOriginalTime);
}

template <typename Self, typename F>
requires std::same_as<std::remove_const_t<Self>, IDOD>
void forEachMember(Self& v, F&& f) {
    f("changeDays", v.changeDays);
    f("changeMonths", v.changeMonths);
    f("changeYears", v.changeYears);
    f("isKeepOriginalDays", v.isKeepOriginalDays);
    f("isKeepOriginalMonths", v.isKeepOriginalMonths);
    f("isKeepOriginalYears", v.isKeepOriginalYears);
}

template <typename Self, typename F>
requires std::same_as<std::remove_const_t<Self>, IDOT>
void forEachMember(Self& v, F&& f) {
    f("changeHours", v.changeHours);
    f("changeMinutes", v.changeMinutes);
    f("changeSeconds", v.changeSeconds);
    f("isKeepOriginalHours", v.isKeepOriginalHours);
    f("isKeepOriginalMinutes", v.isKeepOriginalMinutes);
    f("isKeepOriginalSeconds", v.isKeepOriginalSeconds);
}

// A rule as it is stored: a flag for each mode and the values of every row. Only the
// program's own rules have exactly one flag set.
struct StoredDateRule {
    bool isKeepOriginal = true;
    bool isEmptyValue = false;
    bool isSelectDate = false;
    bool isUpdateDate = false;
    bool isIDOD = false;
    bool isIDOT = false;
    std::optional<QDateTime> selectDate;
    UpdateDate updateDate;
    IDOD idod;
    IDOT idot;
};

StoredDateRule storedOf(const DateTimeConfiguration& rule) {
    const DateRuleInputs& in = rule.inputs();
    return {rule.is<KeepOriginal>(),
            rule.is<EmptyValue>(),
            rule.is<SelectDate>(),
            rule.is<UpdateDate>(),
            rule.is<IDOD>(),
            rule.is<IDOT>(),
            in.selectDate,
            in.updateDate,
            in.idod,
            in.idot};
}

// Several flags set read as the mode that a run has always obeyed: an empty value wins over
// keeping the original, which wins over the modes in the panel's order. No flag keeps the
// original.
DateTimeConfiguration ruleOf(const StoredDateRule& s) {
    const DateRuleInputs in{s.selectDate, s.updateDate, s.idod, s.idot};
    if (s.isEmptyValue)
        return {EmptyValue{}, in};
    if (s.isKeepOriginal)
        return {KeepOriginal{}, in};
    if (s.isSelectDate)
        return {SelectDate{s.selectDate}, in};
    if (s.isUpdateDate)
        return {s.updateDate, in};
    if (s.isIDOD)
        return {s.idod, in};
    if (s.isIDOT)
        return {s.idot, in};
    return {KeepOriginal{}, in};
}

template <typename Self, typename F>
requires std::same_as<std::remove_const_t<Self>, StoredDateRule>
void forEachMember(Self& v, F&& f) {
    f("isKeepOriginal", v.isKeepOriginal);
    f("isEmptyValue", v.isEmptyValue);
    f("isSelectDate", v.isSelectDate);
    f("isUpdateDate", v.isUpdateDate);
    f("isIDOD", v.isIDOD);
    f("isIDOT", v.isIDOT);
    f("selectDate", v.selectDate);
    f("updateDate", v.updateDate);
    f("idod", v.idod);
    f("idot", v.idot);
}

// Writing: one overload per member kind; a record becomes a nested object.
template <typename Record> QByteArray encode(const Record& v);

void put(Members& members, const char* name, bool value) {
    members.emplace_back(name, boolean(value));
}
void put(Members& members, const char* name, int value) {
    members.emplace_back(name, QByteArray::number(value));
}
void put(Members& members, const char* name, TimeMode value) {
    members.emplace_back(name, value == TimeMode::pm ? "\"pm\"" : "\"am\"");
}
// An absent or invalid date is left out.
void put(Members& members, const char* name, const std::optional<QDateTime>& date) {
    if (date && date->isValid())
        members.emplace_back(name, jsonScalar(dateText(*date)));
}
template <typename Record>
requires std::is_class_v<Record>
void put(Members& members, const char* name, const Record& record) {
    members.emplace_back(name, encode(record));
}
void put(Members& members, const char* name, const DateTimeConfiguration& rule) {
    members.emplace_back(name, encode(storedOf(rule)));
}

template <typename Record> QByteArray encode(const Record& v) {
    Members members;
    forEachMember(v, [&](const char* name, const auto& value) { put(members, name, value); });
    return jsonObject(members);
}

template <typename Record> bool decodeInto(const QJsonObject& o, Record& v);

// Reading: each reader gives false when the member is missing or of the wrong type, and the
// whole decode then fails.
class Reader {
public:
    explicit Reader(const QJsonObject& object) : m_object(object) {}

    bool ok() const { return m_ok; }

    void read(const char* name, bool& out) {
        const QJsonValue v = m_object.value(QLatin1String(name));
        if (v.isBool())
            out = v.toBool();
        else
            m_ok = false;
    }

    void read(const char* name, int& out) {
        const QJsonValue v = m_object.value(QLatin1String(name));
        const double d = v.toDouble(std::nan(""));
        if (v.isDouble() && std::isfinite(d) && d == std::floor(d) &&
            d >= double(std::numeric_limits<int>::min()) &&
            d <= double(std::numeric_limits<int>::max()))
            out = int(d);
        else
            m_ok = false;
    }

    void read(const char* name, TimeMode& out) {
        const QString text = m_object.value(QLatin1String(name)).toString();
        if (text == QLatin1String("am"))
            out = TimeMode::am;
        else if (text == QLatin1String("pm"))
            out = TimeMode::pm;
        else
            m_ok = false;
    }

    // Absent and null give no date; text must be an ISO 8601 date.
    void read(const char* name, std::optional<QDateTime>& out) {
        const QJsonValue v = m_object.value(QLatin1String(name));
        out.reset();
        if (v.isUndefined() || v.isNull())
            return;
        const QDateTime date = QDateTime::fromString(v.toString(), Qt::ISODateWithMs);
        if (v.isString() && date.isValid())
            out = date.toLocalTime();
        else
            m_ok = false;
    }

    void read(const char* name, DateTimeConfiguration& out) {
        StoredDateRule stored;
        read(name, stored);
        out = ruleOf(stored);
    }

    template <typename Record> void read(const char* name, Record& out) {
        const QJsonValue v = m_object.value(QLatin1String(name));
        if (!v.isObject() || !decodeInto(v.toObject(), out))
            m_ok = false;
    }

private:
    QJsonObject m_object;
    bool m_ok = true;
};

template <typename Record> bool decodeInto(const QJsonObject& o, Record& v) {
    Reader r(o);
    forEachMember(v, [&](const char* name, auto& value) { r.read(name, value); });
    return r.ok();
}

QByteArray aliveName(DateField field) {
    return QByteArray(dateFieldName(field)) + "Alive";
}

} // namespace

QByteArray encodeOriginalFinalDate(const OriginalFinalDate& rules) {
    Members members;
    for (DateField field : allDateFields)
        put(members, dateFieldName(field), rules.slot(field));
    for (DateField field : allDateFields)
        put(members, dateRuleName(field), rules.rule(field));
    for (DateField field : allDateFields)
        put(members, aliveName(field).constData(), rules.alive(field));
    return jsonObject(members);
}

std::optional<OriginalFinalDate> decodeOriginalFinalDate(const QByteArray& json) {
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(json, &error);
    if (error.error != QJsonParseError::NoError || !document.isObject())
        return std::nullopt;
    OriginalFinalDate rules;
    Reader r(document.object());
    for (DateField field : allDateFields)
        r.read(dateFieldName(field), rules.slot(field));
    for (DateField field : allDateFields)
        r.read(dateRuleName(field), rules.rule(field));
    for (DateField field : allDateFields)
        r.read(aliveName(field).constData(), rules.alive(field));
    if (!r.ok())
        return std::nullopt;
    return rules;
}

} // namespace tagmoor
