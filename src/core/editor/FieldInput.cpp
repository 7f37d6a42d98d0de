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

NumericClass numericClassOf(int position) {
    switch (position) {
    case 12: // ISO
        return NumericClass::IntegerWithLimit;
    case 15: // focal length in 35 mm
    case 23: // white balance
    case 24: // saturation
    case 26: // sharpness
    case 79: // standard output sensitivity
    case 82: // colour space
        return NumericClass::Integer;
    case 13: // F number
    case 14: // focal length
    case 20: // exposure time
    case 63: // X resolution
    case 64: // Y resolution
    case 80: // compressed bits per pixel
    case 81: // max aperture value
    case 89: // digital zoom ratio
        return NumericClass::DecimalWithLimit;
    case 31: // GPS latitude
    case 33: // GPS longitude
    case 35: // GPS altitude
    case 66: // primary chromaticities
        return NumericClass::Decimal;
    default:
        return NumericClass::None;
    }
}

float limitOf(int position) {
    switch (position) {
    case 13:
        return 1024.0f;
    case 14:
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

FieldInputResult checkFieldInput(int position, const QString& typed) {
    const NumericClass kind = numericClassOf(position);
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
        const float limit = limitOf(position);
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
