#pragma once

#include <QDateTime>
#include <QString>

#include <memory>
#include <optional>

namespace tagmoor {

// Date texts and date parts. Everything here is local to the user's calendar and time zone:
// ICU's default locale and default time zone at the moment of the call. All functions are
// safe to call from any thread.

// The parts of a date in the current calendar and time zone.
struct DateParts {
    int year = 0;
    int month = 0;
    int day = 0;
    int hour = 0;
    int minute = 0;
    int second = 0;

    bool operator==(const DateParts&) const = default;
};

// The parts of `date`; an invalid date gives all zeros.
DateParts datePartsOf(const QDateTime& date);

// The number of days of the month that `date` lies in; nothing for an invalid date.
std::optional<int> daysInMonth(const QDateTime& date);

// The one formatter of rule dates, pattern "yyyy-MM-dd HH:mm:ss", created once at first use
// with the default locale and time zone of that moment. Every date a rule produces is turned
// into the text written to the file by it.
class SharedDateFormatter {
public:
    ~SharedDateFormatter();
    SharedDateFormatter(const SharedDateFormatter&) = delete;
    SharedDateFormatter& operator=(const SharedDateFormatter&) = delete;

    // The text of `date`; an invalid date gives an empty text.
    QString format(const QDateTime& date) const;
    // The whole text must match the pattern, each part within its range.
    std::optional<QDateTime> parse(const QString& text) const;

private:
    friend const SharedDateFormatter& sharedDateFormatter();
    SharedDateFormatter();
    struct Impl;
    std::unique_ptr<Impl> m_impl;
};

const SharedDateFormatter& sharedDateFormatter();

// Parses a rule text "yyyy-MM-dd HH:mm:ss" strictly (whole text, every part within its
// range). The date rules assemble their texts with hyphens in the time part
// ("2021-05-06 10-22-33"); that form is accepted as well, so that the increment modes and
// the keep parts of "Update Date" take effect. Out-of-range parts are refused, not rolled
// over: "2021-02-31 10-00-00", hour 24, minute 60 and second 60 give nothing, and the rule
// then falls back as it does for any text it cannot parse.
std::optional<QDateTime> parseRuleDate(const QString& text);

// The date of these calendar parts in the user's zone, through the same strict text as the
// rules: nothing for parts that make no date there (an invalid day, or a time that the change
// to summer time skips).
std::optional<QDateTime> ruleDateOf(const QDate& day, const QTime& time);

// The same with a zone offset: "yyyy-MM-dd HH:mm:ss Z", e.g. "2021-05-06 10:22:33 +0200".
std::optional<QDateTime> parseZonedDate(const QString& text);

// `date` by a Unicode date pattern, e.g. u"h:mm:ss a"; an invalid date gives an empty text.
QString formatWithPattern(const QDateTime& date, const char16_t* pattern);

// `date` with medium date and time styles of the default locale ("Jan 5, 2021, 10:22:33 AM").
QString mediumDateTimeText(const QDateTime& date);

} // namespace tagmoor
