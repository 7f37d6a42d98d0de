#include "editor/FieldDisplay.h"

#include "dates/DateTexts.h"
#include "editor/FormPopups.h"
#include "model/Keywords.h"

#include <cmath>

namespace tagmoor {

bool presetHoldsValue(const CGImageProperties& values, Field field) {
    const FormField& row = formField(field);
    if (row.isDate())
        return false;
    if (row.kind == FormKind::Popup)
        return FieldDisplay::popupRow(values, row) != FormPopups::kBlankRow;
    return !FieldDisplay::text(values, row).isEmpty();
}

namespace {

const PropertyValue& valueOf(const CGImageProperties& record, const FormField& field) {
    static const PropertyValue absent;
    const PropertyValue* value = field.keyRow().peek(record);
    return value ? *value : absent;
}

QString shortestFloat(float f) {
    for (int precision = 1; precision <= 9; ++precision) {
        const QString text = QString::number(double(f), 'g', precision);
        if (text.toFloat() == f)
            return text;
    }
    return QString::number(double(f), 'g', 9);
}

QString shortestDouble(double d) {
    return QString::number(d, 'g', QLocale::FloatingPointShortest);
}

// Zeros are no value on the form.
QString withoutZero(const QString& text) {
    if (text == QLatin1String("0") || text == QLatin1String("0.0") || text == QLatin1String("-0"))
        return {};
    return text;
}

} // namespace

namespace FieldDisplay {

QString numberText(const PropertyValue& value) {
    if (auto i = value.int64())
        return QString::number(*i);
    if (auto f = value.float32())
        return std::isfinite(*f) ? shortestFloat(*f) : QString();
    if (auto d = value.float64())
        return std::isfinite(*d) ? shortestDouble(*d) : QString();
    if (auto u = value.uint8())
        return QString::number(*u);
    if (auto u = value.uint64())
        return QString::number(*u);
    if (auto t = value.text())
        return *t;
    if (auto list = value.list()) {
        QStringList parts;
        for (const QVariant& v : *list)
            parts << numberText(PropertyValue::fromVariant(v));
        return parts.join(QStringLiteral(", "));
    }
    return {};
}

QString text(const CGImageProperties& record, const FormField& field) {
    const PropertyValue& value = valueOf(record, field);
    if (value.isAbsent())
        return {};
    switch (field.kind) {
    case FormKind::Text:
        // A list (a photo's keywords) shows as "a, b, c".
        if (const auto list = value.list())
            return joinKeywords(QVariant(*list).toStringList());
        return value.text().value_or(QString());
    case FormKind::Integer:
    case FormKind::Decimal:
        return withoutZero(numberText(value));
    case FormKind::Date:
        if (auto date = value.date())
            return sharedDateFormatter().format(*date);
        return value.text().value_or(QString());
    case FormKind::Popup:
        break;
    }
    return {};
}

int popupRow(const CGImageProperties& record, const FormField& field) {
    return FormPopups::rowOf(field.field, valueOf(record, field));
}

bool isEmpty(const CGImageProperties& record, const FormField& field) {
    const PropertyValue& value = valueOf(record, field);
    if (value.isAbsent())
        return true;
    if (field.kind == FormKind::Popup)
        return false;
    return text(record, field).isEmpty();
}

bool agree(const CGImageProperties& a, const CGImageProperties& b, const FormField& field) {
    const PropertyValue& va = valueOf(a, field);
    const PropertyValue& vb = valueOf(b, field);
    if (va == vb)
        return true;
    if (field.kind == FormKind::Popup)
        return popupRow(a, field) == popupRow(b, field) &&
               popupRow(a, field) != FormPopups::kBlankRow;
    if (field.kind == FormKind::Date) {
        const auto da = va.date();
        const auto db = vb.date();
        if (da && db)
            return *da == *db;
    }
    return text(a, field) == text(b, field);
}

} // namespace FieldDisplay

} // namespace tagmoor
