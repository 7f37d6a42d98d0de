#pragma once

namespace tagmoor {

// The process-wide position of the location subsystem: where the picker starts and what it
// hands back when it closes, read by the editor's GPS fields; also the default coordinate
// the home screen's location view falls back on.
struct SharedLocation {
    double latitude = 0;
    double longitude = 0;

    static SharedLocation& instance() {
        static SharedLocation location;
        return location;
    }
};

} // namespace tagmoor
