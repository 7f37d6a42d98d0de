#include "dates/DateField.h"

#include "model/FormFieldTable.h"

namespace tagmoor {

namespace {

struct DateFieldRow {
    const char* name;
    const char* ruleName;
    const char* key;
};

constexpr DateFieldRow kRows[] = {
#define TAGMOOR_DATE_ROW(name, rule, key) {#name, #rule, key},
    TAGMOOR_DATE_FIELDS(TAGMOOR_DATE_ROW)
#undef TAGMOOR_DATE_ROW
};
static_assert(std::size(kRows) == allDateFields.size());

const DateFieldRow& rowOf(DateField field) {
    return kRows[static_cast<int>(field)];
}

} // namespace

const char* dateFieldKey(DateField field) {
    return rowOf(field).key;
}

const char* dateFieldName(DateField field) {
    return rowOf(field).name;
}

const char* dateRuleName(DateField field) {
    return rowOf(field).ruleName;
}

std::optional<DateField> dateFieldOf(Field field) {
    const auto fields = dateFieldsInRunOrder();
    for (std::size_t i = 0; i < fields.size(); ++i) {
        if (fields[i]->field == field)
            return allDateFields[i];
    }
    return std::nullopt;
}

} // namespace tagmoor
