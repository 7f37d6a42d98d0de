// Date texts from metadata: the first of 13 patterns that parses the whole text wins.
#include "metadata/PropertyLoading.h"

#include <unicode/calendar.h>
#include <unicode/locid.h>
#include <unicode/parsepos.h>
#include <unicode/smpdtfmt.h>
#include <unicode/unistr.h>

#include <algorithm>
#include <array>
#include <memory>
#include <string>
#include <string_view>

namespace tagmoor {

namespace {

// The order is a decision: the 12-hour pattern comes before the 24-hour one, and the Exif
// form uses the week-based year "YYYY" as it has always been written.
constexpr std::array<const char16_t*, 13> kPatterns{
    u"yyyy-MM-dd hh:mm:ss",
    u"yyyy-MM-dd HH:mm:ss",
    u"yyyy-MM-dd'T'HH:mm:ssZ",
    u"YYYY:MM:dd HH:mm:ss",
    u"EEEE, MMM d, yyyy",
    u"MM/dd/yyyy",
    u"MM-dd-yyyy HH:mm",
    u"MMM d, h:mm a",
    u"MMMM yyyy",
    u"MMM d, yyyy",
    u"E, d MMM yyyy HH:mm:ss Z",
    u"dd.MM.yy",
    u"HH:mm:ss.SSS",
};

// Building an ICU formatter costs far more than a parse, and a scan parses six dates per
// photo, so each thread keeps its formatters, each with a calendar of its own to parse into
// (the formatter would otherwise clone its calendar for every parse). They are rebuilt when
// the default locale changes.
struct Parser {
    std::unique_ptr<icu::SimpleDateFormat> format;
    std::unique_ptr<icu::Calendar> calendar;
    bool hasZone = false;
    // Only digit fields and punctuation: such a pattern never takes an ASCII letter.
    bool allDigits = false;
    // Begins with a day or month name, which can't begin with a digit.
    bool startsWithName = false;

    // Whether ICU could possibly accept the text; a failed ICU parse costs microseconds,
    // mostly in its number parser and in case folding the month and day names.
    bool mayMatch(bool textHasLetter, bool textStartsWithDigit) const {
        return !(allDigits && textHasLetter) && !(startsWithName && textStartsWithDigit);
    }

    // Whether the whole text parses; the moment in milliseconds since the epoch.
    std::optional<UDate> parse(const icu::UnicodeString& text) {
        // A zone in the text ("Z") is set on the calendar; start again from the default.
        // (Comparing zones costs more than setting one: the comparison walks their rules.)
        if (hasZone)
            calendar->setTimeZone(format->getTimeZone());
        calendar->clear();
        icu::ParsePosition position(0);
        format->parse(text, *calendar, position);
        if (position.getErrorIndex() != -1 || position.getIndex() != text.length())
            return std::nullopt;
        UErrorCode status = U_ZERO_ERROR;
        const UDate date = calendar->getTime(status);
        if (U_FAILURE(status))
            return std::nullopt;
        return date;
    }
};

struct ParserCache {
    std::string localeName;
    std::array<Parser, kPatterns.size()> parsers;

    Parser* get(std::size_t i) {
        const char* current = icu::Locale::getDefault().getName();
        if (localeName != current) {
            localeName = current;
            parsers = {};
        }
        Parser& p = parsers[i];
        if (!p.format) {
            UErrorCode status = U_ZERO_ERROR;
            auto format = std::make_unique<icu::SimpleDateFormat>(
                icu::UnicodeString(kPatterns[i]), status);
            if (U_FAILURE(status))
                return nullptr;
            format->setLenient(false);
            p.calendar.reset(format->getCalendar()->clone());
            if (!p.calendar)
                return nullptr;
            p.format = std::move(format);
            const std::u16string_view pattern(kPatterns[i]);
            const auto has = [&](std::u16string_view part) {
                return pattern.find(part) != std::u16string_view::npos;
            };
            p.hasZone = has(u"Z");
            p.allDigits = !has(u"Z") && !has(u"E") && !has(u"a") && !has(u"MMM") && !has(u"'");
            p.startsWithName = pattern.starts_with(u"E") || pattern.starts_with(u"MMM");
        }
        return &p;
    }
};

} // namespace

std::optional<QDateTime> parseMetadataDate(const QString& text) {
    if (text.isEmpty())
        return std::nullopt;
    thread_local ParserCache cache;
    const icu::UnicodeString input(reinterpret_cast<const char16_t*>(text.utf16()),
                                   int32_t(text.size()));
    const bool hasLetter = std::any_of(text.begin(), text.end(), [](QChar c) {
        return (c >= u'a' && c <= u'z') || (c >= u'A' && c <= u'Z');
    });
    const bool startsWithDigit = text.front() >= u'0' && text.front() <= u'9';
    for (std::size_t i = 0; i < kPatterns.size(); ++i) {
        Parser* parser = cache.get(i);
        if (!parser || !parser->mayMatch(hasLetter, startsWithDigit))
            continue;
        if (const std::optional<UDate> date = parser->parse(input))
            return QDateTime::fromMSecsSinceEpoch(qint64(*date));
    }
    return std::nullopt;
}

} // namespace tagmoor
