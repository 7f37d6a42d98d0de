#include "dates/OriginalFinalDate.h"

namespace tagmoor {

namespace {

// The three members of each field, in the order of DateField.
struct FieldMembers {
    std::optional<QDateTime> OriginalFinalDate::*slot;
    DateTimeConfiguration OriginalFinalDate::*rule;
    bool OriginalFinalDate::*alive;
};

constexpr FieldMembers kMembers[] = {
    {&OriginalFinalDate::dateTimeOriginal, &OriginalFinalDate::configurationTimeOriginal,
     &OriginalFinalDate::dateTimeOriginalAlive},
    {&OriginalFinalDate::creationDate, &OriginalFinalDate::configurationCreationDate,
     &OriginalFinalDate::creationDateAlive},
    {&OriginalFinalDate::modifyDate, &OriginalFinalDate::configurationModifyDate,
     &OriginalFinalDate::modifyDateAlive},
    {&OriginalFinalDate::createDateXMP, &OriginalFinalDate::configurationCreateDateXMP,
     &OriginalFinalDate::createDateXMPAlive},
    {&OriginalFinalDate::modifyDateXMP, &OriginalFinalDate::configurationModifyDateXMP,
     &OriginalFinalDate::modifyDateXMPAlive},
    {&OriginalFinalDate::createDateXMPPhotoshop,
     &OriginalFinalDate::configurationCreateDateXMPPhotoshop,
     &OriginalFinalDate::createDateXMPPhotoshopAlive},
};

const FieldMembers& membersOf(DateField field) {
    return kMembers[static_cast<int>(field)];
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
