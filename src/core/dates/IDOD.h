#pragma once

namespace tagmoor {

// Increment or decrement the original date: deltas of day, month and year.
struct IDOD {
    int changeDays = 0;
    int changeMonths = 0;
    int changeYears = 0;
    bool isKeepOriginalDays = false;
    bool isKeepOriginalMonths = false;
    bool isKeepOriginalYears = false;

    bool operator==(const IDOD&) const = default;
};

} // namespace tagmoor
