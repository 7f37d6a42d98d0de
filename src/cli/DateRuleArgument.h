#pragma once

#include "dates/DateField.h"
#include "dates/DateTimeConfiguration.h"

#include <QDateTime>
#include <QString>

#include <optional>

namespace tagmoor::cli {

// A date rule as given on the command line, FIELD=RULE, turned into the rule and date slot
// that the date panel would have stored. The syntax is in ApplyCommand's help.
struct DateRuleArgument {
    DateField field = DateField::dateTimeOriginal;
    DateTimeConfiguration rule;
    std::optional<QDateTime> slot;

    // Parses "FIELD=RULE"; on failure gives nothing and sets `error`.
    static std::optional<DateRuleArgument> parse(const QString& text, QString* error);
};

} // namespace tagmoor::cli
