#pragma once

#include "dates/DateField.h"
#include "dates/DateTimeConfiguration.h"
#include "dates/OriginalFinalDate.h"
#include "model/CGImageProperties.h"

#include <QDateTime>
#include <QString>

#include <optional>

namespace tagmoor {

// What a date rule asks of one field of one photo.
struct DateRuleOutcome {
    enum class Action {
        nothing,   // the tag stays as it is in the file
        deleteKey, // the field's key goes on the photo's list of keys to erase
        writeText, // `text` is written to the field's key
    };

    Action action = Action::nothing;
    QString text;

    static DateRuleOutcome nothing() { return {}; }
    static DateRuleOutcome deleteKey() { return {Action::deleteKey, {}}; }
    static DateRuleOutcome write(const QString& text) { return {Action::writeText, text}; }

    bool operator==(const DateRuleOutcome&) const = default;
};

// The new value of one date field under its rule. `slot` is the field's date slot of the
// rule store, `own` the photo's own date in this field. The date parts are computed one by
// one and never carry into the next part: a day past the month's end comes back at the
// start of the same month, a month past December at the start of the same year, an hour
// past 24 and a minute or second past 60 at the bottom of their ranges. Each wrap happens
// once. Every step goes through a text and parseRuleDate; a step whose text is refused
// leaves the work date empty, and when it is still empty at the end, `own` is written.
// Pure and thread-safe.
DateRuleOutcome applyDateRule(const DateTimeConfiguration& rule,
                              const std::optional<QDateTime>& slot,
                              const std::optional<QDateTime>& own);

// The same for one field of a photo's record under a store of rules.
DateRuleOutcome applyDateRule(DateField field, const CGImageProperties& record,
                              const OriginalFinalDate& rules);

} // namespace tagmoor
