#include "dates/OriginalFinalDate.h"

namespace tagmoor {

namespace {

// The three members of each field, in the order of DateField.
struct FieldMembers {
    std::optional<QDateTime> OriginalFinalDate::*slot;
    DateTimeConfiguration OriginalFinalDate::*rule;
    bool OriginalFinalDate::*alive;
};

constexpr FieldMembers kFinalMembers[] = {
#define TAGMOOR_DATE_MEMBERS(name, rule, key)                                                      \
    {&OriginalFinalDate::name, &OriginalFinalDate::rule, &OriginalFinalDate::name##Alive},
    TAGMOOR_DATE_FIELDS(TAGMOOR_DATE_MEMBERS)
#undef TAGMOOR_DATE_MEMBERS
};

const FieldMembers& membersOf(DateField field) {
    return kFinalMembers[static_cast<int>(field)];
}

} // namespace

std::optional<QDateTime>& OriginalFinalDate::slot(DateField field) {
    return this->*membersOf(field).slot;
}

const std::optional<QDateTime>& OriginalFinalDate::slot(DateField field) const {
    return this->*membersOf(field).slot;
}

DateTimeConfiguration& OriginalFinalDate::rule(DateField field) {
    return this->*membersOf(field).rule;
}

const DateTimeConfiguration& OriginalFinalDate::rule(DateField field) const {
    return this->*membersOf(field).rule;
}

bool& OriginalFinalDate::alive(DateField field) {
    return this->*membersOf(field).alive;
}

bool OriginalFinalDate::alive(DateField field) const {
    return this->*membersOf(field).alive;
}

} // namespace tagmoor
