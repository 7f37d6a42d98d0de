#include "batch/FormSnapshot.h"

#include "foundation/ValueForm.h"

#include <cmath>

namespace tagmoor {

namespace {

bool holdsText(const KeyRow& row) {
    return row.write == WriteKind::Text || row.write == WriteKind::GpsRef;
}

void signByReference(PropertyValue& degrees, const PropertyValue& reference, QLatin1String positive,
                     QLatin1String negative) {
    const QString letter = reference.text().value_or(QString()).trimmed().toUpper();
    if (letter != positive && letter != negative)
        return;
    const bool negativeSide = letter == negative;
    if (const auto d = degrees.float64())
        degrees = PropertyValue(negativeSide ? -std::fabs(*d) : std::fabs(*d));
    else if (const auto f = degrees.float32())
        degrees = PropertyValue(negativeSide ? -std::fabs(*f) : std::fabs(*f));
}

} // namespace

CGImageProperties FormSnapshot::empty() {
    CGImageProperties record = makeEmptyRecord(std::nullopt);
    for (const FormField& field : formFields()) {
        if (field.isDate())
            continue;
        const KeyRow& row = field.keyRow();
        PropertyValue& value = *row.field(record);
        if (holdsText(row))
            value = PropertyValue(QString());
        else if (field.kind == FormKind::Decimal)
            value = PropertyValue(0.0f);
        else
            value = PropertyValue(qint64(0));
    }
    return record;
}

std::optional<QString> FormSnapshot::setText(CGImageProperties& record, const FormField& field,
                                             const QString& text) {
    if (field.isDate())
        return QStringLiteral("%1 is a date field: give it a date rule").arg(field.name());
    const KeyRow& row = field.keyRow();
    if (!record.tiffProperties || !record.exifProperties || !record.gpsProperties ||
        !record.iptcProperties || !record.xmpDataProperties)
        return QStringLiteral("the record lacks a metadata group");
    PropertyValue& value = *row.field(record);
    if (holdsText(row)) {
        value = PropertyValue(text);
        return std::nullopt;
    }
    const QString t = text.trimmed();
    if (t.isEmpty()) {
        value = field.kind == FormKind::Decimal ? PropertyValue(0.0f) : PropertyValue(qint64(0));
        return std::nullopt;
    }
    if (field.kind == FormKind::Decimal) {
        bool ok = false;
        const double d = t.toDouble(&ok);
        if (!ok || !std::isfinite(d))
            return QStringLiteral("%1 takes a decimal number, not '%2'").arg(field.name(), text);
        // A coordinate keeps its double in the standard form: a float is off by up to a metre.
        if (row.read == ReadKind::Float64 && isStandardForm())
            value = PropertyValue(d);
        else
            value = PropertyValue(float(d));
        return std::nullopt;
    }
    bool ok = false;
    const qint64 i = t.toLongLong(&ok);
    if (!ok)
        return QStringLiteral("%1 takes an integer, not '%2'").arg(field.name(), text);
    value = PropertyValue(i);
    return std::nullopt;
}

void FormSnapshot::signCoordinates(CGImageProperties& record) {
    if (!record.gpsProperties)
        return;
    GPSProperties& gps = *record.gpsProperties;
    signByReference(gps.latitude, gps.latitudeRef, QLatin1String("N"), QLatin1String("S"));
    signByReference(gps.longitude, gps.longitudeRef, QLatin1String("E"), QLatin1String("W"));
}

} // namespace tagmoor
