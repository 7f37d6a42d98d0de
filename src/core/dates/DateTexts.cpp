#include "dates/DateTexts.h"

#include <unicode/calendar.h>
#include <unicode/locid.h>
#include <unicode/smpdtfmt.h>
#include <unicode/timezone.h>

#include <cmath>
#include <map>
#include <memory>
#include <mutex>
#include <string>

namespace tagmoor {

namespace {

constexpr char16_t kRulePattern[] = u"yyyy-MM-dd HH:mm:ss";
constexpr char16_t kHyphenRulePattern[] = u"yyyy-MM-dd HH-mm-ss";
constexpr char16_t kZonedPattern[] = u"yyyy-MM-dd HH:mm:ss Z";

icu::UnicodeString toUnicode(const QString& text) {
    return icu::UnicodeString(reinterpret_cast<const char16_t*>(text.utf16()),
                              int32_t(text.size()));
}

QString toQString(const icu::UnicodeString& text) {
    return QString(reinterpret_cast<const QChar*>(text.getBuffer()), text.length());
}

UDate toUDate(const QDateTime& date) {
    return UDate(date.toMSecsSinceEpoch());
}

QDateTime fromUDate(UDate date) {
    return QDateTime::fromMSecsSinceEpoch(qint64(std::llround(date)));
}

std::unique_ptr<icu::SimpleDateFormat>
makeStrictFormat(const char16_t* pattern, const icu::Locale& locale, const icu::TimeZone& zone) {
    UErrorCode status = U_ZERO_ERROR;
    auto format =
        std::make_unique<icu::SimpleDateFormat>(icu::UnicodeString(pattern), locale, status);
    if (U_FAILURE(status))
        return nullptr;
    format->setTimeZone(zone);
    // Strict: a part outside its range (31 February, hour 24) is refused, not rolled over.
    format->setLenient(false);
    return format;
}

// Parses the whole of `text`; trailing characters make it fail.
std::optional<QDateTime> parseWhole(icu::SimpleDateFormat& format, const QString& text) {
    const icu::UnicodeString input = toUnicode(text);
    icu::ParsePosition position(0);
    const UDate date = format.parse(input, position);
    if (position.getErrorIndex() >= 0 || position.getIndex() != input.length())
        return std::nullopt;
    return fromUDate(date);
}

// Formatters and a calendar for the calling thread, in ICU's default locale and time zone.
// Making an ICU formatter costs far more than using one, and the batch parses a few texts per
// field and photo, so each thread keeps its own and rebuilds them only when the default
// locale or time zone has changed since; the results are those of a new formatter per call.
class ThreadDateContext {
public:
    static ThreadDateContext& current() {
        thread_local ThreadDateContext context;
        context.refresh();
        return context;
    }

    icu::SimpleDateFormat* format(const char16_t* pattern) {
        auto& slot = m_formats[pattern];
        if (!slot)
            slot = makeStrictFormat(pattern, m_locale, *m_zone);
        return slot.get();
    }

    // A calendar set up as the parser of `pattern` sets up its own (zone, leniency, wall-time
    // rules), to be given fields as that parser gives them.
    icu::Calendar* calendarOf(const char16_t* pattern) {
        auto& slot = m_parserCalendars[pattern];
        if (!slot) {
            if (icu::SimpleDateFormat* parser = format(pattern))
                slot.reset(parser->getCalendar()->clone());
        }
        return slot.get();
    }

    icu::Calendar* calendar() {
        if (!m_calendar) {
            UErrorCode status = U_ZERO_ERROR;
            m_calendar.reset(icu::Calendar::createInstance(*m_zone, m_locale, status));
            if (U_FAILURE(status))
                m_calendar.reset();
        }
        return m_calendar.get();
    }

private:
    void refresh() {
        const icu::Locale& locale = icu::Locale::getDefault();
        std::unique_ptr<icu::TimeZone> zone(icu::TimeZone::createDefault());
        if (m_zone && locale == m_locale && *zone == *m_zone)
            return;
        m_locale = locale;
        m_zone = std::move(zone);
        m_formats.clear();
        m_parserCalendars.clear();
        m_calendar.reset();
    }

    icu::Locale m_locale;
    std::unique_ptr<icu::TimeZone> m_zone;
    std::map<const char16_t*, std::unique_ptr<icu::SimpleDateFormat>> m_formats;
    std::map<const char16_t*, std::unique_ptr<icu::Calendar>> m_parserCalendars;
    std::unique_ptr<icu::Calendar> m_calendar;
};

std::optional<QDateTime> parseWith(const char16_t* pattern, const QString& text) {
    icu::SimpleDateFormat* format = ThreadDateContext::current().format(pattern);
    return format ? parseWhole(*format, text) : std::nullopt;
}

// ICU's Calendar::get gives 0 on failure; a part the calendar cannot give counts as 0.
int field(icu::Calendar& calendar, UCalendarDateFields which) {
    UErrorCode status = U_ZERO_ERROR;
    const int32_t value = calendar.get(which, status);
    return U_SUCCESS(status) ? value : 0;
}

} // namespace

DateParts datePartsOf(const QDateTime& date) {
    icu::Calendar* calendar = ThreadDateContext::current().calendar();
    if (!calendar || !date.isValid())
        return {};
    UErrorCode status = U_ZERO_ERROR;
    calendar->setTime(toUDate(date), status);
    if (U_FAILURE(status))
        return {};
    DateParts parts;
    parts.year = field(*calendar, UCAL_YEAR);
    parts.month = field(*calendar, UCAL_MONTH) + 1;
    parts.day = field(*calendar, UCAL_DATE);
    parts.hour = field(*calendar, UCAL_HOUR_OF_DAY);
    parts.minute = field(*calendar, UCAL_MINUTE);
    parts.second = field(*calendar, UCAL_SECOND);
    return parts;
}

std::optional<int> daysInMonth(const QDateTime& date) {
    icu::Calendar* calendar = ThreadDateContext::current().calendar();
    if (!calendar || !date.isValid())
        return std::nullopt;
    UErrorCode status = U_ZERO_ERROR;
    calendar->setTime(toUDate(date), status);
    const int32_t days = calendar->getActualMaximum(UCAL_DATE, status);
    if (U_FAILURE(status) || days <= 0)
        return std::nullopt;
    return days;
}

struct SharedDateFormatter::Impl {
    std::mutex mutex; // ICU formatters must not be used by two threads at once
    std::unique_ptr<icu::SimpleDateFormat> format;
};

SharedDateFormatter::SharedDateFormatter() : m_impl(std::make_unique<Impl>()) {
    std::unique_ptr<icu::TimeZone> zone(icu::TimeZone::createDefault());
    m_impl->format = makeStrictFormat(kRulePattern, icu::Locale::getDefault(), *zone);
}

SharedDateFormatter::~SharedDateFormatter() = default;

QString SharedDateFormatter::format(const QDateTime& date) const {
    if (!date.isValid() || !m_impl->format)
        return {};
    icu::UnicodeString text;
    std::lock_guard lock(m_impl->mutex);
    m_impl->format->format(toUDate(date), text);
    return toQString(text);
}

std::optional<QDateTime> SharedDateFormatter::parse(const QString& text) const {
    if (!m_impl->format)
        return std::nullopt;
    std::lock_guard lock(m_impl->mutex);
    return parseWhole(*m_impl->format, text);
}

const SharedDateFormatter& sharedDateFormatter() {
    static const SharedDateFormatter formatter;
    return formatter;
}

std::optional<QDateTime> parseRuleDate(const QString& text) {
    // The assembled rule texts carry hyphens in the time part; the form with colons is what
    // the shared formatter writes. A hyphen after the blank picks the first form.
    const qsizetype blank = text.indexOf(QLatin1Char(' '));
    const bool hyphenatedTime = blank >= 0 && text.indexOf(QLatin1Char('-'), blank) >= 0;
    return parseWith(hyphenatedTime ? kHyphenRulePattern : kRulePattern, text);
}

std::optional<QDateTime> ruleDateOf(const QDate& day, const QTime& time) {
    if (!day.isValid() || !time.isValid())
        return std::nullopt;
    // The parse of the text below sets these fields, in this order, on a cleared copy of its
    // calendar and takes the moment they give; setting them straight gives the same moment
    // (a time that summer time skips is refused alike) without writing and parsing a text.
    // Years outside 1-9999 take the text's way.
    if (day.year() >= 1 && day.year() <= 9999) {
        if (icu::Calendar* calendar = ThreadDateContext::current().calendarOf(kHyphenRulePattern)) {
            calendar->clear();
            calendar->set(UCAL_YEAR, day.year());
            calendar->set(UCAL_MONTH, day.month() - 1);
            calendar->set(UCAL_DATE, day.day());
            calendar->set(UCAL_HOUR_OF_DAY, time.hour());
            calendar->set(UCAL_MINUTE, time.minute());
            calendar->set(UCAL_SECOND, time.second());
            UErrorCode status = U_ZERO_ERROR;
            const UDate moment = calendar->getTime(status);
            if (U_FAILURE(status))
                return std::nullopt;
            return fromUDate(moment);
        }
    }
    return parseRuleDate(QString::number(day.year()) +
                         QString::asprintf("-%02d-%02d %02d-%02d-%02d", day.month(), day.day(),
                                           time.hour(), time.minute(), time.second()));
}

std::optional<QDateTime> parseZonedDate(const QString& text) {
    return parseWith(kZonedPattern, text);
}

QString formatWithPattern(const QDateTime& date, const char16_t* pattern) {
    icu::SimpleDateFormat* format = ThreadDateContext::current().format(pattern);
    if (!date.isValid() || !format)
        return {};
    icu::UnicodeString text;
    format->format(toUDate(date), text);
    return toQString(text);
}

QString mediumDateTimeText(const QDateTime& date) {
    if (!date.isValid())
        return {};
    std::unique_ptr<icu::DateFormat> format(icu::DateFormat::createDateTimeInstance(
        icu::DateFormat::kMedium, icu::DateFormat::kMedium, icu::Locale::getDefault()));
    if (!format)
        return {};
    icu::UnicodeString text;
    format->format(toUDate(date), text);
    return toQString(text);
}

} // namespace tagmoor
