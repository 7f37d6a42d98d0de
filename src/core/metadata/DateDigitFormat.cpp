#include "metadata/DateDigitFormat.h"

#include <unicode/fmtable.h>
#include <unicode/parsepos.h>

namespace tagmoor {

void DateDigitFormat::parse(const icu::UnicodeString& text, icu::Formattable& result,
                            icu::ParsePosition& position) const {
    const int32_t start = position.getIndex();
    int32_t end = start;
    int64_t value = 0;
    // Nine digits keep the value far from any overflow; longer runs go to ICU.
    while (end < text.length() && end - start < 9 && text[end] >= u'0' && text[end] <= u'9')
        value = value * 10 + (text[end++] - u'0');
    const bool endsCleanly = end == text.length() || text[end] == u':' || text[end] == u'/' ||
                             text[end] == u'T' || text[end] == u' ' || text[end] == u'-';
    if (end > start && endsCleanly) {
        result.setInt64(value);
        position.setIndex(end);
        return;
    }
    icu::DecimalFormat::parse(text, result, position);
}

} // namespace tagmoor
