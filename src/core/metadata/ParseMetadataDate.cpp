// Date texts from metadata: the first of 13 patterns that parses the whole text wins.
#include "metadata/PropertyLoading.h"

#include <unicode/locid.h>
#include <unicode/parsepos.h>
#include <unicode/smpdtfmt.h>
#include <unicode/unistr.h>

#include <array>
#include <memory>
#include <string>

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
// photo, so each thread keeps its formatters. They are rebuilt when the default locale
// changes; ICU's default time zone is fixed by the formatter's calendar when it is built.
struct FormatterCache {
    std::string localeName;
    std::array<std::unique_ptr<icu::SimpleDateFormat>, kPatterns.size()> formatters;

    icu::SimpleDateFormat* get(std::size_t i) {
        const char* current = icu::Locale::getDefault().getName();
        if (localeName != current) {
            localeName = current;
            for (auto& f : formatters)
                f.reset();
        }
        if (!formatters[i]) {
            UErrorCode status = U_ZERO_ERROR;
            auto f = std::make_unique<icu::SimpleDateFormat>(icu::UnicodeString(kPatterns[i]),
                                                             status);
            if (U_FAILURE(status))
                return nullptr;
            f->setLenient(false);
            formatters[i] = std::move(f);
        }
        return formatters[i].get();
    }
};

} // namespace

std::optional<QDateTime> parseMetadataDate(const QString& text) {
    if (text.isEmpty())
        return std::nullopt;
    thread_local FormatterCache cache;
    const icu::UnicodeString input(reinterpret_cast<const char16_t*>(text.utf16()),
                                   int32_t(text.size()));
    for (std::size_t i = 0; i < kPatterns.size(); ++i) {
        const icu::SimpleDateFormat* formatter = cache.get(i);
        if (!formatter)
            continue;
        icu::ParsePosition position(0);
        const UDate date = formatter->parse(input, position);
        if (position.getErrorIndex() == -1 && position.getIndex() == input.length())
            return QDateTime::fromMSecsSinceEpoch(qint64(date));
    }
    return std::nullopt;
}

} // namespace tagmoor
