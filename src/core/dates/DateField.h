#pragma once

#include <array>
#include <optional>

namespace tagmoor {

enum class Field;

// The six date fields of a photo that carry a rule, in the order in which they are stored
// and handled: the one table that everything about them is derived from. Each row gives
//   - the field's name: its enumerator, the member that holds its date, its stored name;
//   - the name of the member that holds its rule, which is also the rule's stored name;
//   - the metadata key that the rule writes or deletes, and that the photo's date is read from.
#define TAGMOOR_DATE_FIELDS(X)                                                                     \
    X(dateTimeOriginal, configurationTimeOriginal, "Exif.Photo.DateTimeOriginal")                  \
    X(creationDate, configurationCreationDate, "Exif.Photo.DateTimeDigitized")                     \
    X(modifyDate, configurationModifyDate, "Exif.Image.DateTime")                                  \
    X(createDateXMP, configurationCreateDateXMP, "Xmp.xmp.CreateDate")                             \
    X(modifyDateXMP, configurationModifyDateXMP, "Xmp.xmp.ModifyDate")                             \
    X(createDateXMPPhotoshop, configurationCreateDateXMPPhotoshop, "Xmp.photoshop.DateCreated")

enum class DateField {
#define TAGMOOR_DATE_ENUMERATOR(name, rule, key) name,
    TAGMOOR_DATE_FIELDS(TAGMOOR_DATE_ENUMERATOR)
#undef TAGMOOR_DATE_ENUMERATOR
};

inline constexpr std::array allDateFields{
#define TAGMOOR_DATE_ENTRY(name, rule, key) DateField::name,
    TAGMOOR_DATE_FIELDS(TAGMOOR_DATE_ENTRY)
#undef TAGMOOR_DATE_ENTRY
};

// The metadata key a field's rule writes or deletes, e.g. "Exif.Photo.DateTimeOriginal".
const char* dateFieldKey(DateField field);

// The field's name as it appears in the stored rules, e.g. "createDateXMP".
const char* dateFieldName(DateField field);

// The name of the field's rule in the stored rules, e.g. "configurationTimeOriginal".
const char* dateRuleName(DateField field);

// The date field a field of the editor form shows, if it shows one.
std::optional<DateField> dateFieldOf(Field field);

} // namespace tagmoor
