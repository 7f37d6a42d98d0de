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
    std::optional<QDateTime> dateTimeOriginal;
    std::optional<QDateTime> creationDate;
    std::optional<QDateTime> modifyDate;
    std::optional<QDateTime> createDateXMP;
    std::optional<QDateTime> modifyDateXMP;
    std::optional<QDateTime> createDateXMPPhotoshop;

    DateTimeConfiguration configurationTimeOriginal;
    DateTimeConfiguration configurationCreationDate;
    DateTimeConfiguration configurationModifyDate;
    DateTimeConfiguration configurationCreateDateXMP;
    DateTimeConfiguration configurationModifyDateXMP;
    DateTimeConfiguration configurationCreateDateXMPPhotoshop;

    bool dateTimeOriginalAlive = false;
    bool creationDateAlive = false;
    bool modifyDateAlive = false;
    bool createDateXMPAlive = false;
    bool modifyDateXMPAlive = false;
    bool createDateXMPPhotoshopAlive = false;

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
