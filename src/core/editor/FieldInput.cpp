#include "editor/FieldInput.h"

#include <QCoreApplication>
#include <QRegularExpression>

#include <cmath>
#include <limits>

namespace tagmoor {

namespace {

constexpr float kDefaultLimit = 65535.0f;

bool parsesAsInteger(const QString& text) {
    bool ok = false;
    text.toLongLong(&ok, 10);
    return ok;
}

bool parsesAsDecimal(const QString& text) {
    static const QRegularExpression decimal(
        QStringLiteral("^[+-]?([0-9]+(\\.[0-9]*)?|\\.[0-9]+)([eE][+-]?[0-9]+)?$"));
    return decimal.match(text).hasMatch();
}

// A float printed the way the popover shows a limit: always with a fraction or an exponent.
QString floatText(float value) {
    if (std::fabs(value) >= 1e16f)
        return QString::number(double(value), 'g', 8);
    return QString::number(double(value), 'f', 1);
}

// The text a field holds when it is set to a number.
QString plainNumber(float value) {
    if (value == std::floor(value) && std::fabs(value) < 1e15f)
        return QString::number(qint64(value));
    return QString::number(double(value), 'g', 9);
}

} // namespace

NumericClass numericClassOf(Field field) {
    switch (field) {
    case Field::ISO:
        return NumericClass::IntegerWithLimit;
    case Field::FocalLengthIn35mmFormat:
    case Field::WhiteBalance:
    case Field::Saturation:
    case Field::Sharpness:
    case Field::StandardOutputSensitivityOthers:
    case Field::ColorSpaceOthers:
        return NumericClass::Integer;
    case Field::FNumber:
    case Field::FocalLength:
    case Field::ExposureTime:
    case Field::FXResolutionTiffData:
    case Field::FYResolutionTiffData:
    case Field::CompressedBitsPerPixelOthers:
    case Field::MaxApertureValueOthers:
    case Field::DigitalZoomRatioOthers:
        return NumericClass::DecimalWithLimit;
    case Field::GPSLatitude:
    case Field::GPSLongitude:
    case Field::GPSAltitude:
    case Field::PrimaryChromaticitiesTiffData:
        return NumericClass::Decimal;
    default:
        return NumericClass::None;
    }
}

float limitOf(Field field) {
    switch (field) {
    case Field::FNumber:
        return 1024.0f;
    case Field::FocalLength:
        return std::numeric_limits<float>::max();
    default:
        return kDefaultLimit;
    }
}

QString filterDigits(const QString& text, bool decimal) {
    QString out;
    out.reserve(text.size());
    bool dotSeen = false;
    for (const QChar c : text) {
        if (c >= QLatin1Char('0') && c <= QLatin1Char('9')) {
            out.append(c);
        } else if (decimal && c == QLatin1Char('.') && !dotSeen) {
            dotSeen = true;
            out.append(c);
        }
    }
    return out;
}

float leadingFloat(const QString& text) {
    static const QRegularExpression leading(
        QStringLiteral("^\\s*[+-]?([0-9]+(\\.[0-9]*)?|\\.[0-9]+)([eE][+-]?[0-9]+)?"));
    const QRegularExpressionMatch m = leading.match(text);
    if (!m.hasMatch())
        return 0.0f;
    bool ok = false;
    const double d = m.captured(0).trimmed().toDouble(&ok);
    if (!ok)
        return 0.0f;
    if (d > double(std::numeric_limits<float>::max()))
        return std::numeric_limits<float>::infinity();
    return float(d);
}

QString limitMessageFor(float limit) {
    return QCoreApplication::translate("FieldInput", "Value can not be greater than ") +
           floatText(limit);
}

FieldInputResult checkFieldInput(Field field, const QString& typed) {
    const NumericClass kind = numericClassOf(field);
    FieldInputResult result{typed, std::nullopt};
    if (kind == NumericClass::None)
        return result;
    const bool decimal = kind == NumericClass::Decimal || kind == NumericClass::DecimalWithLimit;
    const bool parses = decimal ? parsesAsDecimal(typed) : parsesAsInteger(typed);
    // Latitude, longitude, altitude and the chromaticities share the plain limit: a typed
    // 70000 is cut back like any other value over it, while 91 stays as typed.
    const bool limited = kind == NumericClass::IntegerWithLimit ||
                         kind == NumericClass::DecimalWithLimit || kind == NumericClass::Decimal;
    if (limited) {
        const float limit = limitOf(field);
        if (leadingFloat(result.text) > limit) {
            result.limitMessage = limitMessageFor(limit);
            result.text.chop(1);
            if (leadingFloat(result.text) > limit)
                result.text = plainNumber(limit);
        }
        result.text.remove(QLatin1Char(','));
    }
    if (!parses)
        result.text = filterDigits(result.text, decimal);
    return result;
}

} // namespace tagmoor
