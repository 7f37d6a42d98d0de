#pragma once

#include <array>

namespace tagmoor {

// The six date fields of a photo that carry a rule, in the order in which they are stored
// and handled.
enum class DateField {
    dateTimeOriginal,
    creationDate,
    modifyDate,
    createDateXMP,
    modifyDateXMP,
    createDateXMPPhotoshop,
};

inline constexpr std::array<DateField, 6> allDateFields{
    DateField::dateTimeOriginal, DateField::creationDate,  DateField::modifyDate,
    DateField::createDateXMP,    DateField::modifyDateXMP, DateField::createDateXMPPhotoshop,
};

// The metadata key a field's rule writes or deletes, e.g. "Exif.Photo.DateTimeOriginal".
const char* dateFieldKey(DateField field);

// The field's name as it appears in the stored rules, e.g. "createDateXMP".
const char* dateFieldName(DateField field);

} // namespace tagmoor
