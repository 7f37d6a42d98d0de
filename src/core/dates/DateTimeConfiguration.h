#pragma once

#include "dates/IDOD.h"
#include "dates/IDOT.h"
#include "dates/UpdateDate.h"

#include <QDateTime>

#include <optional>

namespace tagmoor {

// The rule of one date field. The panel sets exactly one of the six mode flags; a rule that
// nobody has touched keeps the original.
struct DateTimeConfiguration {
    bool isKeepOriginal = true;
    bool isEmptyValue = false;
    bool isSelectDate = false;
    bool isUpdateDate = false;
    bool isIDOD = false;
    bool isIDOT = false;
    std::optional<QDateTime> selectDate;
    UpdateDate updateDate;
    IDOD idod;
    IDOT idot;

    bool operator==(const DateTimeConfiguration&) const = default;
};

} // namespace tagmoor
