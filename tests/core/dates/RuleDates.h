#pragma once
// A date of a rule test written as text, "2001-02-03 04:05:06"; a null text is no date.
#include "dates/DateTexts.h"

#include <gtest/gtest.h>

#include <optional>

namespace tagmoor::test {

inline std::optional<QDateTime> at(const char* text) {
    if (!text)
        return std::nullopt;
    const auto date = parseRuleDate(QString::fromLatin1(text));
    EXPECT_TRUE(date.has_value()) << text;
    return date;
}

} // namespace tagmoor::test
