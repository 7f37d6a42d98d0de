#pragma once

#include <unicode/decimfmt.h>

namespace tagmoor {

// The number format behind the date parser, with a short way for the common case. ICU's
// own number parser costs a few microseconds per date field; a field that is a run of ASCII
// digits ended by the end of the text or by ':', '/' or 'T' (none of which any number
// parser takes) is read here directly, with the same result. Everything else goes to ICU.
class DateDigitFormat : public icu::DecimalFormat {
public:
    explicit DateDigitFormat(const icu::DecimalFormat& base) : icu::DecimalFormat(base) {}

    DateDigitFormat* clone() const override { return new DateDigitFormat(*this); }

    using icu::DecimalFormat::parse;
    void parse(const icu::UnicodeString& text, icu::Formattable& result,
               icu::ParsePosition& position) const override;
};

} // namespace tagmoor
