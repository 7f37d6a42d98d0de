#include "geo/CoordinateText.h"

#include <QRegularExpression>

#include <charconv>
#include <cmath>

namespace tagmoor {

float floatValueOfText(const QString& text) {
    static const QRegularExpression number(
        QStringLiteral("^\\s*[+-]?(\\d+\\.?\\d*|\\.\\d+)([eE][+-]?\\d+)?"));
    const QRegularExpressionMatch match = number.match(text);
    if (!match.hasMatch())
        return 0;
    bool ok = false;
    const float value = match.captured(0).trimmed().toFloat(&ok);
    return ok && std::isfinite(value) ? value : 0;
}

QString coordinateText(float degrees) {
    if (!std::isfinite(degrees))
        return QStringLiteral("0");
    char buffer[64];
    const auto result =
        std::to_chars(buffer, buffer + sizeof buffer, degrees, std::chars_format::fixed);
    const QString text = QString::fromLatin1(buffer, result.ptr - buffer);
    return text == QLatin1String("-0") ? QStringLiteral("0") : text;
}

} // namespace tagmoor
