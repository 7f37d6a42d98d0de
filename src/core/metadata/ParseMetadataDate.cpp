// Date texts from metadata: the first of 13 patterns that parses the whole text wins.
#include "metadata/PropertyLoading.h"

#include "metadata/DateDigitFormat.h"

#include <unicode/calendar.h>
#include <unicode/locid.h>
#include <unicode/parsepos.h>
#include <unicode/smpdtfmt.h>
#include <unicode/timezone.h>
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

bool isAsciiDigit(char16_t c) {
    return c >= u'0' && c <= u'9';
}
bool isAsciiLetter(char16_t c) {
    return (c >= u'a' && c <= u'z') || (c >= u'A' && c <= u'Z');
}

// Punctuation that no number parser of any locale takes into or after a number: not a sign,
// not a decimal or grouping separator, not a quote.
bool isPlainPunctuation(char16_t c) {
    return c > u' ' && c < 0x7F && !isAsciiDigit(c) && !isAsciiLetter(c) &&
           std::u16string_view(u"+-.,'").find(c) == std::u16string_view::npos;
}

// What the cheap tests below need to know of a text.
struct TextShape {
    bool hasLetter = false;
    bool startsWithDigit = false;
    // The character after the leading ASCII digits, when it is plain punctuation; else 0.
    char16_t afterDigits = 0;
    // Runs of digits, when every digit of the text is one of these runs: an ASCII text in
    // which no number parser could read "NaN". Otherwise -1 (unknown).
    int digitRuns = -1;
    bool endsWithDigit = false;

    explicit TextShape(std::u16string_view text) {
        hasLetter = std::any_of(text.begin(), text.end(), isAsciiLetter);
        const bool ascii =
            std::all_of(text.begin(), text.end(), [](char16_t c) { return c < 0x80; });
        const auto lower = [](char16_t c) { return c | 0x20; };
        bool mentionsNaN = false;
        for (std::size_t i = 0; i + 2 < text.size(); ++i)
            mentionsNaN |=
                lower(text[i]) == u'n' && lower(text[i + 1]) == u'a' && lower(text[i + 2]) == u'n';
        if (ascii && !mentionsNaN) {
            digitRuns = 0;
            for (std::size_t i = 0; i < text.size(); ++i)
                digitRuns += isAsciiDigit(text[i]) && (i == 0 || !isAsciiDigit(text[i - 1]));
        }
        startsWithDigit = !text.empty() && isAsciiDigit(text.front());
        endsWithDigit = !text.empty() && isAsciiDigit(text.back());
        const auto end = std::find_if_not(text.begin(), text.end(), isAsciiDigit);
        if (startsWithDigit && end != text.end() && isPlainPunctuation(*end))
            afterDigits = *end;
    }
};

// Puts the short way for plain digit fields in place of ICU's number parser, unless the
// locale gives some field a number format of its own.
void useDigitFormat(icu::SimpleDateFormat& format, std::u16string_view pattern) {
    const icu::NumberFormat* common = format.getNumberFormat();
    const auto* decimal = dynamic_cast<const icu::DecimalFormat*>(common);
    if (!decimal)
        return;
    for (const char16_t c : pattern)
        if (isAsciiLetter(c) && format.getNumberFormatForField(c) != common)
            return;
    format.adoptNumberFormat(new DateDigitFormat(*decimal));
}

// One pattern's formatter. Building an ICU formatter costs far more than a parse, so each
// thread keeps its own, with a calendar of its own to parse into (the formatter would
// otherwise clone its calendar for every parse).
struct Parser {
    std::unique_ptr<icu::SimpleDateFormat> format;
    std::unique_ptr<icu::Calendar> calendar;
    bool hasZone = false;
    // Only digit fields and punctuation: such a pattern never takes an ASCII letter.
    bool allDigits = false;
    // Begins with a day or month name, which can't begin with a digit.
    bool startsWithName = false;
    // The punctuation that follows a leading digit field ("yyyy-..." gives '-'); else 0.
    char16_t firstSeparator = 0;
    // Digit fields; in these patterns each stands apart from the next, so each needs a run
    // of digits of its own.
    int digitFields = 0;
    // Ends with a zone, which no digit run that a digit field took can give.
    bool endsWithZone = false;

    // The pattern's shape is read at once; its ICU formatter is built on the first text that
    // the shape lets through, since most patterns never get that far.
    explicit Parser(std::u16string_view pattern) : m_pattern(pattern) {
        const auto has = [&](std::u16string_view part) {
            return pattern.find(part) != std::u16string_view::npos;
        };
        hasZone = has(u"Z");
        endsWithZone = pattern.ends_with(u"Z");
        allDigits = !has(u"Z") && !has(u"E") && !has(u"a") && !has(u"MMM") && !has(u"'");
        startsWithName = pattern.starts_with(u"E") || pattern.starts_with(u"MMM");
        const auto fieldEnd = std::find_if_not(pattern.begin(), pattern.end(),
                                               [&](char16_t c) { return c == pattern.front(); });
        for (std::size_t i = 0; i < pattern.size();) {
            const char16_t c = pattern[i];
            if (c == u'\'') {
                const std::size_t close = pattern.find(u'\'', i + 1);
                i = close == std::u16string_view::npos ? pattern.size() : close + 1;
                continue;
            }
            std::size_t run = 1;
            while (i + run < pattern.size() && pattern[i + run] == c)
                ++run;
            const bool digitField =
                std::u16string_view(u"yYdHhmsS").find(c) != std::u16string_view::npos ||
                (c == u'M' && run <= 2);
            digitFields += digitField;
            i += run;
        }
        // A '-' counts too: the text's side of the test below is plain punctuation only, which
        // no number parser takes, and a literal of a strict pattern matches only itself.
        if (std::u16string_view(u"yYMdHh").find(pattern.front()) != std::u16string_view::npos &&
            fieldEnd - pattern.begin() <= 4 && fieldEnd != pattern.end() &&
            (isPlainPunctuation(*fieldEnd) || *fieldEnd == u'-'))
            firstSeparator = *fieldEnd;
    }

    // Whether ICU could accept the text at all. A parse that fails still costs microseconds
    // (ICU copies a number format for each digit field and case-folds every month and day
    // name), and most texts fail most patterns; these tests only turn away what can't match.
    bool mayMatch(const TextShape& text) const {
        if (allDigits && text.hasLetter)
            return false;
        if (startsWithName && text.startsWithDigit)
            return false;
        if (text.digitRuns >= 0 && text.digitRuns < digitFields)
            return false;
        // Every run went to a digit field and the text ends in one: nothing left for the zone.
        if (endsWithZone && text.digitRuns == digitFields && text.endsWithDigit)
            return false;
        return !(firstSeparator && text.afterDigits && text.afterDigits != firstSeparator);
    }

    // Whether the whole text parses; the moment in milliseconds since the epoch. Nothing when
    // ICU cannot build the pattern's formatter.
    std::optional<UDate> parse(const icu::UnicodeString& text) {
        if (!format && !buildFormat())
            return std::nullopt;
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

private:
    bool buildFormat() {
        if (m_unbuildable)
            return false;
        m_unbuildable = true;
        UErrorCode status = U_ZERO_ERROR;
        auto f = std::make_unique<icu::SimpleDateFormat>(
            icu::UnicodeString(m_pattern.data(), int32_t(m_pattern.size())), status);
        if (U_FAILURE(status))
            return false;
        f->setLenient(false);
        useDigitFormat(*f, m_pattern);
        calendar.reset(f->getCalendar()->clone());
        if (!calendar)
            return false;
        format = std::move(f);
        m_unbuildable = false;
        return true;
    }

    std::u16string_view m_pattern;
    bool m_unbuildable = false;
};

// The thread's parsers, rebuilt when ICU's default locale or time zone changes.
struct ParserCache {
    std::string localeName;
    icu::UnicodeString zoneId;
    std::array<std::unique_ptr<Parser>, kPatterns.size()> parsers;

    // Call once per text, before get().
    void followDefaults() {
        const char* locale = icu::Locale::getDefault().getName();
        const std::unique_ptr<icu::TimeZone> zone(icu::TimeZone::createDefault());
        icu::UnicodeString id;
        if (zone)
            zone->getID(id);
        if (localeName != locale || zoneId != id) {
            localeName = locale;
            zoneId = id;
            parsers = {};
        }
    }

    Parser& get(std::size_t i) {
        if (!parsers[i])
            parsers[i] = std::make_unique<Parser>(kPatterns[i]);
        return *parsers[i];
    }
};

} // namespace

std::optional<QDateTime> parseMetadataDate(const QString& text) {
    if (text.isEmpty())
        return std::nullopt;
    thread_local ParserCache cache;
    cache.followDefaults();
    const std::u16string_view view(reinterpret_cast<const char16_t*>(text.utf16()),
                                   std::size_t(text.size()));
    const icu::UnicodeString input(view.data(), int32_t(view.size()));
    const TextShape shape(view);
    for (std::size_t i = 0; i < kPatterns.size(); ++i) {
        Parser& parser = cache.get(i);
        if (!parser.mayMatch(shape))
            continue;
        if (const std::optional<UDate> date = parser.parse(input))
            return QDateTime::fromMSecsSinceEpoch(qint64(*date));
    }
    return std::nullopt;
}

} // namespace tagmoor
