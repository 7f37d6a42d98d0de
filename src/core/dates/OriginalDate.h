#pragma once

#include "dates/DateField.h"
#include "model/CGImageProperties.h"

#include <QDateTime>

#include <optional>

namespace tagmoor {

// The six dates of one photo as they stood when read: the photo's own date of each field.
struct OriginalDate {
    std::optional<QDateTime> dateTimeOriginal;
    std::optional<QDateTime> creationDate;
    std::optional<QDateTime> modifyDate;
    std::optional<QDateTime> createDateXMP;
    std::optional<QDateTime> modifyDateXMP;
    std::optional<QDateTime> createDateXMPPhotoshop;

    const std::optional<QDateTime>& get(DateField field) const;
    std::optional<QDateTime>& get(DateField field);

    // The record's dates: exifProperties.dateTimeOriginal, the top-level createDate and
    // modifyDate, and the XMP group's createDate, modifyDate and photoshopCreateDate. A
    // value that is absent, not a date or an invalid date gives no date.
    static OriginalDate of(const CGImageProperties& record);

    bool operator==(const OriginalDate&) const = default;
};

} // namespace tagmoor
