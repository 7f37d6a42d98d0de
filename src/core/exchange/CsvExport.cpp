#include "exchange/CsvExport.h"

#include "editor/FieldDisplay.h"
#include "exchange/CsvColumns.h"
#include "model/FormFieldTable.h"
#include "model/Keywords.h"

#include <charconv>
#include <cmath>

namespace tagmoor::CsvExport {

namespace {

// The shortest text that reads back as the same number, without an exponent for the sizes
// photos hold ("300", not "3e+02").
template <typename Number> QString shortest(Number value) {
    if (!std::isfinite(value))
        return {};
    char buffer[64];
    const auto result = std::to_chars(buffer, buffer + sizeof buffer, value);
    return QString::fromLatin1(buffer, result.ptr - buffer);
}

QString numberText(const PropertyValue& value) {
    if (const auto f = value.float32())
        return shortest(*f);
    if (const auto d = value.float64())
        return shortest(*d);
    return FieldDisplay::numberText(value);
}

// A list of numbers, such as the primary chromaticities, is printed as its items one blank
// apart, as the metadata tools print it.
QString numbersText(const QVariantList& list) {
    QStringList items;
    for (const QVariant& item : list)
        items << numberText(PropertyValue::fromVariant(item));
    return items.join(QLatin1Char(' '));
}

} // namespace

QString cellOf(const CGImageProperties& record, Field field) {
    const KeyRow& row = formField(field).keyRow();
    const PropertyValue* value = row.peek(record);
    if (!value || value->isAbsent())
        return {};
    if (const auto date = value->date())
        return date->toString(QStringLiteral("yyyy:MM:dd HH:mm:ss"));
    if (const auto text = value->text())
        return *text;
    if (const auto list = value->list()) {
        if (formKind(field) == FormKind::Text)
            return joinKeywords(keywordsOfValue(*list));
        return numbersText(*list);
    }
    return numberText(*value);
}

CsvTable table(const QList<CsvPhoto>& photos, const std::optional<QList<Field>>& fields) {
    QList<Field> columns;
    if (fields) {
        columns = *fields;
    } else {
        for (const Field field : CsvColumns::fieldsInOrder()) {
            for (const CsvPhoto& photo : photos) {
                if (!cellOf(photo.record, field).isEmpty()) {
                    columns << field;
                    break;
                }
            }
        }
    }
    CsvTable t;
    t.header << QString::fromLatin1(CsvColumns::sourceFile);
    for (const Field field : columns)
        t.header << CsvColumns::nameOf(field);
    for (const CsvPhoto& photo : photos) {
        QStringList row{photo.sourceFile};
        for (const Field field : columns)
            row << cellOf(photo.record, field);
        t.rows << row;
    }
    return t;
}

} // namespace tagmoor::CsvExport
