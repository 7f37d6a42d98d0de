#pragma once

#include "dates/DateField.h"
#include "dates/DateTimeConfiguration.h"

#include <QDateTime>

#include <optional>

namespace tagmoor {

// The rules of all six date fields as one value: per field a date slot (the date the panel
// produced, which the rule starts from), the rule, and a touched flag that the panel sets
// once the user changed the field's rule. Members are in the stored order: six slots, six
// rules, six flags. A default value is the empty store: no dates, keep-original rules,
// nothing touched.
struct OriginalFinalDate {
#define TAGMOOR_DATE_SLOT(name, rule, key) std::optional<QDateTime> name;
    TAGMOOR_DATE_FIELDS(TAGMOOR_DATE_SLOT)
#undef TAGMOOR_DATE_SLOT

#define TAGMOOR_DATE_RULE(name, rule, key) DateTimeConfiguration rule;
    TAGMOOR_DATE_FIELDS(TAGMOOR_DATE_RULE)
#undef TAGMOOR_DATE_RULE

#define TAGMOOR_DATE_ALIVE(name, rule, key) bool name##Alive = false;
    TAGMOOR_DATE_FIELDS(TAGMOOR_DATE_ALIVE)
#undef TAGMOOR_DATE_ALIVE

    // The three members of one field.
    std::optional<QDateTime>& slot(DateField field);
    const std::optional<QDateTime>& slot(DateField field) const;
    DateTimeConfiguration& rule(DateField field);
    const DateTimeConfiguration& rule(DateField field) const;
    bool& alive(DateField field);
    bool alive(DateField field) const;

    bool operator==(const OriginalFinalDate&) const = default;
};

} // namespace tagmoor
