#pragma once

namespace tagmoor {

// Morning or afternoon of a time chosen in the date panel.
enum class TimeMode {
    am,
    pm,
};

} // namespace tagmoor
