#pragma once

#include "dates/TimeMode.h"

namespace tagmoor {

// The values of the rule "Update Date". The wrapping rule reads only the keep flags, since the
// wanted date already stands in the field's date slot; the rule on each photo's own date
// (applyOwnDateRule) reads the numbers of the parts that are not kept.
struct UpdateDate {
    int changeDays = 0;
    int changeMonths = 0;
    int changeYears = 0;
    int changeHours = 0;
    int changeMinutes = 0;
    int changeSeconds = 0;
    TimeMode timeMode = TimeMode::am;
    bool isKeepOriginalDays = false;
    bool isKeepOriginalMonths = false;
    bool isKeepOriginalYears = false;
    bool isKeepOriginalTime = false;

    bool operator==(const UpdateDate&) const = default;
};

} // namespace tagmoor
