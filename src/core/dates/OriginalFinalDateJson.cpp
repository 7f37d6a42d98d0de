#include "dates/OriginalFinalDateJson.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QJsonValue>

#include <cmath>
#include <limits>
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
        out += jsonScalar(QString::fromLatin1(name));
        out += ':';
        out += value;
    }
    out += '}';
    return out;
}

QByteArray boolean(bool value) {
    return value ? "true" : "false";
}
QByteArray number(int value) {
    return QByteArray::number(value);
}

QString dateText(const QDateTime& date) {
    return date.toUTC().toString(Qt::ISODateWithMs);
}

void addDate(Members& members, const char* name, const std::optional<QDateTime>& date) {
    if (date && date->isValid())
        members.emplace_back(name, jsonScalar(dateText(*date)));
}

QByteArray encode(const UpdateDate& v) {
    return jsonObject({
        {"changeDays", number(v.changeDays)},
        {"changeMonths", number(v.changeMonths)},
        {"changeYears", number(v.changeYears)},
        {"changeHours", number(v.changeHours)},
        {"changeMinutes", number(v.changeMinutes)},
        {"changeSeconds", number(v.changeSeconds)},
        {"timeMode", v.timeMode == TimeMode::pm ? "\"pm\"" : "\"am\""},
        {"isKeepOriginalDays", boolean(v.isKeepOriginalDays)},
        {"isKeepOriginalMonths", boolean(v.isKeepOriginalMonths)},
        {"isKeepOriginalYears", boolean(v.isKeepOriginalYears)},
        {"isKeepOriginalTime", boolean(v.isKeepOriginalTime)},
    });
}

QByteArray encode(const IDOD& v) {
    return jsonObject({
        {"changeDays", number(v.changeDays)},
        {"changeMonths", number(v.changeMonths)},
        {"changeYears", number(v.changeYears)},
        {"isKeepOriginalDays", boolean(v.isKeepOriginalDays)},
        {"isKeepOriginalMonths", boolean(v.isKeepOriginalMonths)},
        {"isKeepOriginalYears", boolean(v.isKeepOriginalYears)},
    });
}

QByteArray encode(const IDOT& v) {
    return jsonObject({
        {"changeHours", number(v.changeHours)},
        {"changeMinutes", number(v.changeMinutes)},
        {"changeSeconds", number(v.changeSeconds)},
        {"isKeepOriginalHours", boolean(v.isKeepOriginalHours)},
        {"isKeepOriginalMinutes", boolean(v.isKeepOriginalMinutes)},
        {"isKeepOriginalSeconds", boolean(v.isKeepOriginalSeconds)},
    });
}

QByteArray encode(const DateTimeConfiguration& v) {
    Members members{
        {"isKeepOriginal", boolean(v.isKeepOriginal)},
        {"isEmptyValue", boolean(v.isEmptyValue)},
        {"isSelectDate", boolean(v.isSelectDate)},
        {"isUpdateDate", boolean(v.isUpdateDate)},
        {"isIDOD", boolean(v.isIDOD)},
        {"isIDOT", boolean(v.isIDOT)},
    };
    addDate(members, "selectDate", v.selectDate);
    members.emplace_back("updateDate", encode(v.updateDate));
    members.emplace_back("idod", encode(v.idod));
    members.emplace_back("idot", encode(v.idot));
    return jsonObject(members);
}

bool decodeInto(const QJsonObject& o, UpdateDate& v);
bool decodeInto(const QJsonObject& o, IDOD& v);
bool decodeInto(const QJsonObject& o, IDOT& v);
bool decodeInto(const QJsonObject& o, DateTimeConfiguration& v);

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

    template <typename Record> void read(const char* name, Record& out) {
        const QJsonValue v = m_object.value(QLatin1String(name));
        if (!v.isObject() || !decodeInto(v.toObject(), out))
            m_ok = false;
    }

private:
    QJsonObject m_object;
    bool m_ok = true;
};

bool decodeInto(const QJsonObject& o, UpdateDate& v) {
    Reader r(o);
    r.read("changeDays", v.changeDays);
    r.read("changeMonths", v.changeMonths);
    r.read("changeYears", v.changeYears);
    r.read("changeHours", v.changeHours);
    r.read("changeMinutes", v.changeMinutes);
    r.read("changeSeconds", v.changeSeconds);
    r.read("timeMode", v.timeMode);
    r.read("isKeepOriginalDays", v.isKeepOriginalDays);
    r.read("isKeepOriginalMonths", v.isKeepOriginalMonths);
    r.read("isKeepOriginalYears", v.isKeepOriginalYears);
    r.read("isKeepOriginalTime", v.isKeepOriginalTime);
    return r.ok();
}

bool decodeInto(const QJsonObject& o, IDOD& v) {
    Reader r(o);
    r.read("changeDays", v.changeDays);
    r.read("changeMonths", v.changeMonths);
    r.read("changeYears", v.changeYears);
    r.read("isKeepOriginalDays", v.isKeepOriginalDays);
    r.read("isKeepOriginalMonths", v.isKeepOriginalMonths);
    r.read("isKeepOriginalYears", v.isKeepOriginalYears);
    return r.ok();
}

bool decodeInto(const QJsonObject& o, IDOT& v) {
    Reader r(o);
    r.read("changeHours", v.changeHours);
    r.read("changeMinutes", v.changeMinutes);
    r.read("changeSeconds", v.changeSeconds);
    r.read("isKeepOriginalHours", v.isKeepOriginalHours);
    r.read("isKeepOriginalMinutes", v.isKeepOriginalMinutes);
    r.read("isKeepOriginalSeconds", v.isKeepOriginalSeconds);
    return r.ok();
}

bool decodeInto(const QJsonObject& o, DateTimeConfiguration& v) {
    Reader r(o);
    r.read("isKeepOriginal", v.isKeepOriginal);
    r.read("isEmptyValue", v.isEmptyValue);
    r.read("isSelectDate", v.isSelectDate);
    r.read("isUpdateDate", v.isUpdateDate);
    r.read("isIDOD", v.isIDOD);
    r.read("isIDOT", v.isIDOT);
    r.read("selectDate", v.selectDate);
    r.read("updateDate", v.updateDate);
    r.read("idod", v.idod);
    r.read("idot", v.idot);
    return r.ok();
}

const char* ruleName(DateField field) {
    switch (field) {
    case DateField::dateTimeOriginal:
        return "configurationTimeOriginal";
    case DateField::creationDate:
        return "configurationCreationDate";
    case DateField::modifyDate:
        return "configurationModifyDate";
    case DateField::createDateXMP:
        return "configurationCreateDateXMP";
    case DateField::modifyDateXMP:
        return "configurationModifyDateXMP";
    case DateField::createDateXMPPhotoshop:
        break;
    }
    return "configurationCreateDateXMPPhotoshop";
}

QByteArray aliveName(DateField field) {
    return QByteArray(dateFieldName(field)) + "Alive";
}

} // namespace

QByteArray encodeOriginalFinalDate(const OriginalFinalDate& rules) {
    Members members;
    for (DateField field : allDateFields)
        addDate(members, dateFieldName(field), rules.slot(field));
    for (DateField field : allDateFields)
        members.emplace_back(ruleName(field), encode(rules.rule(field)));
    for (DateField field : allDateFields)
        members.emplace_back(aliveName(field), boolean(rules.alive(field)));
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
        r.read(ruleName(field), rules.rule(field));
    for (DateField field : allDateFields)
        r.read(aliveName(field).constData(), rules.alive(field));
    if (!r.ok())
        return std::nullopt;
    return rules;
}

} // namespace tagmoor
