#include "metadata/WriteSeams.h"

namespace tagmoor {

// The program's own: a JPEG's head is edited alone.
bool editWholeFilesOnly() {
    return false;
}

} // namespace tagmoor
