#include "dates/OriginalDate.h"

namespace tagmoor {

namespace {

std::optional<QDateTime> dateOf(const PropertyValue& value) {
    const auto date = value.date();
    if (!date || !date->isValid())
        return std::nullopt;
    return date;
}

template <typename Group>
std::optional<QDateTime> groupDate(const std::optional<Group>& group,
                                   PropertyValue Group::*member) {
    return group ? dateOf((*group).*member) : std::nullopt;
}

} // namespace

const std::optional<QDateTime>& OriginalDate::get(DateField field) const {
    return const_cast<OriginalDate*>(this)->get(field);
}

std::optional<QDateTime>& OriginalDate::get(DateField field) {
    switch (field) {
    case DateField::dateTimeOriginal:
        return dateTimeOriginal;
    case DateField::creationDate:
        return creationDate;
    case DateField::modifyDate:
        return modifyDate;
    case DateField::createDateXMP:
        return createDateXMP;
    case DateField::modifyDateXMP:
        return modifyDateXMP;
    case DateField::createDateXMPPhotoshop:
        break;
    }
    return createDateXMPPhotoshop;
}

OriginalDate OriginalDate::of(const CGImageProperties& record) {
    OriginalDate dates;
    dates.dateTimeOriginal = groupDate(record.exifProperties, &EXIFProperties::dateTimeOriginal);
    dates.creationDate = dateOf(record.createDate);
    dates.modifyDate = dateOf(record.modifyDate);
    dates.createDateXMP = groupDate(record.xmpDataProperties, &XMPDataProperties::createDate);
    dates.modifyDateXMP = groupDate(record.xmpDataProperties, &XMPDataProperties::modifyDate);
    dates.createDateXMPPhotoshop =
        groupDate(record.xmpDataProperties, &XMPDataProperties::photoshopCreateDate);
    return dates;
}

} // namespace tagmoor
