#include "metadata/MetadataLibrary.h"

namespace tagmoor {

// The program's own: the XMP lock is not timed.
bool xmpLockTimed() {
    return false;
}

void xmpLockHeld(std::int64_t, std::int64_t) {}

} // namespace tagmoor
