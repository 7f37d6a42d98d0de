#pragma once

#include "dates/DateField.h"
#include "model/CGImageProperties.h"

#include <QDateTime>

#include <optional>

namespace tagmoor {

// The six dates of one photo as they stood when read: the photo's own date of each field.
struct OriginalDate {
#define TAGMOOR_DATE_SLOT(name, rule, key) std::optional<QDateTime> name;
    TAGMOOR_DATE_FIELDS(TAGMOOR_DATE_SLOT)
#undef TAGMOOR_DATE_SLOT

    const std::optional<QDateTime>& get(DateField field) const;
    std::optional<QDateTime>& get(DateField field);

    // The record's dates: each field's date is the record field that its key fills when the
    // photo is read. A value that is absent, not a date or an invalid date gives no date.
    static OriginalDate of(const CGImageProperties& record);

    bool operator==(const OriginalDate&) const = default;
};

} // namespace tagmoor
