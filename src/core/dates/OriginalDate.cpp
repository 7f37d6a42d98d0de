#include "dates/OriginalDate.h"

#include "model/KeyTable.h"

namespace tagmoor {

namespace {

struct Member {
    std::optional<QDateTime> OriginalDate::*date;
};

constexpr Member kMembers[] = {
#define TAGMOOR_DATE_MEMBER(name, rule, key) {&OriginalDate::name},
    TAGMOOR_DATE_FIELDS(TAGMOOR_DATE_MEMBER)
#undef TAGMOOR_DATE_MEMBER
};

std::optional<QDateTime> dateOf(const PropertyValue* value) {
    const auto date = value ? value->date() : std::nullopt;
    if (!date || !date->isValid())
        return std::nullopt;
    return date;
}

// The key row of each field, looked up once.
const std::array<const KeyRow*, allDateFields.size()>& keyRows() {
    static const auto rows = [] {
        std::array<const KeyRow*, allDateFields.size()> out{};
        for (DateField field : allDateFields)
            out[std::size_t(field)] = findKeyRow(QLatin1String(dateFieldKey(field)));
        return out;
    }();
    return rows;
}

} // namespace

const std::optional<QDateTime>& OriginalDate::get(DateField field) const {
    return this->*kMembers[static_cast<int>(field)].date;
}

std::optional<QDateTime>& OriginalDate::get(DateField field) {
    return this->*kMembers[static_cast<int>(field)].date;
}

OriginalDate OriginalDate::of(const CGImageProperties& record) {
    OriginalDate dates;
    for (DateField field : allDateFields) {
        const KeyRow* row = keyRows()[std::size_t(field)];
        dates.get(field) = row ? dateOf(row->peek(record)) : std::nullopt;
    }
    return dates;
}

} // namespace tagmoor
