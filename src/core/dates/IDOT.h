#pragma once

namespace tagmoor {

// Increment or decrement the original time: deltas of hour, minute and second.
struct IDOT {
    int changeHours = 0;
    int changeMinutes = 0;
    int changeSeconds = 0;
    bool isKeepOriginalHours = false;
    bool isKeepOriginalMinutes = false;
    bool isKeepOriginalSeconds = false;

    bool operator==(const IDOT&) const = default;
};

} // namespace tagmoor
