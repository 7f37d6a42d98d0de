#include "workingset/FileSizeText.h"

#include "foundation/ValueForm.h"

#include <QLocale>

#include <cmath>

namespace tagmoor {

namespace {

QString describedSizeText(std::uint64_t n) {
    if (n <= 999)
        return QStringLiteral("%1 bytes").arg(n);
    const float k = float(n / 1000);
    if (n <= 999999)
        return QString::asprintf("%.1f KB", double(k));
    const float m = k / 1000.0f;
    if (m < 1000.0f)
        return QString::asprintf("%.1f MB", double(m));
    return QString::asprintf("%.1f GB", double(m / 1000.0f));
}

// The unit is chosen on the rounded value, so that 999,960 bytes read "1.0 MB" rather than
// "1000.0 KB". The number is written as the user's language writes numbers.
QString standardSizeText(std::uint64_t n) {
    const QLocale locale;
    if (n <= 999)
        return QStringLiteral("%1 bytes").arg(locale.toString(qulonglong(n)));
    static const char* const kUnits[] = {"KB", "MB", "GB"};
    double value = double(n);
    for (const char* unit : kUnits) {
        value /= 1000.0;
        const bool last = unit == kUnits[std::size(kUnits) - 1];
        if (last || std::round(value * 10.0) < 10000.0)
            return locale.toString(value, 'f', 1) + QLatin1Char(' ') + QLatin1String(unit);
    }
    return {};
}

} // namespace

QString fileSizeText(std::uint64_t n) {
    return isStandardForm() ? standardSizeText(n) : describedSizeText(n);
}

} // namespace tagmoor
