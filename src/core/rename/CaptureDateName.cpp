#include "rename/CaptureDateName.h"

#include <unicode/locid.h>
#include <unicode/smpdtfmt.h>
#include <unicode/timezone.h>

#include <memory>

namespace tagmoor {

namespace {

std::unique_ptr<icu::SimpleDateFormat> formatterFor(const QString& pattern) {
    UErrorCode status = U_ZERO_ERROR;
    auto format = std::make_unique<icu::SimpleDateFormat>(
        icu::UnicodeString(reinterpret_cast<const UChar*>(pattern.utf16()), int(pattern.size())),
        icu::Locale("en_US_POSIX"), status);
    if (U_FAILURE(status))
        return nullptr;
    return format;
}

bool isRefused(QChar c) {
    static const QString refused = QStringLiteral("/:\\<>\"|?*");
    return c.unicode() < 0x20 || c.unicode() == 0x7f || refused.contains(c);
}

} // namespace

QString defaultCaptureDatePattern() {
    return QStringLiteral("yyyyMMdd-HHmmss");
}

QString captureDateName(const QString& pattern, const QDateTime& moment) {
    if (!moment.isValid())
        return {};
    const auto format = formatterFor(pattern.isEmpty() ? defaultCaptureDatePattern() : pattern);
    if (!format)
        return {};
    format->adoptTimeZone(icu::TimeZone::createDefault());
    icu::UnicodeString text;
    format->format(UDate(moment.toMSecsSinceEpoch()), text);
    QString name(reinterpret_cast<const QChar*>(text.getBuffer()), text.length());
    for (QChar& c : name) {
        if (isRefused(c))
            c = QLatin1Char('-');
    }
    // A leading dot would hide the file; trailing dots and blanks are refused elsewhere.
    qsizetype start = 0;
    while (start < name.size() && (name[start] == QLatin1Char('.') || name[start].isSpace()))
        ++start;
    qsizetype end = name.size();
    while (end > start && (name[end - 1] == QLatin1Char('.') || name[end - 1].isSpace()))
        --end;
    return name.mid(start, end - start);
}

std::optional<QString> refusedCaptureDatePattern(const QString& pattern) {
    if (pattern.isEmpty())
        return std::nullopt;
    if (!formatterFor(pattern))
        return QStringLiteral("'%1' is not a date pattern").arg(pattern);
    // Two moments that differ in every field give the same text only when the pattern has
    // no field at all.
    const QDateTime a(QDate(2001, 2, 3), QTime(4, 5, 6));
    const QDateTime b(QDate(2012, 11, 24), QTime(17, 38, 49));
    if (captureDateName(pattern, a) == captureDateName(pattern, b))
        return QStringLiteral("the pattern '%1' holds no date field").arg(pattern);
    if (captureDateName(pattern, a).isEmpty())
        return QStringLiteral("the pattern '%1' makes no name").arg(pattern);
    return std::nullopt;
}

QString countedCaptureName(const QString& base, int n) {
    return base + QLatin1Char('-') + QString::number(n);
}

} // namespace tagmoor
