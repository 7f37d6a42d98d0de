#pragma once

#include <QThread>

#include <algorithm>

namespace tagmoor {

// The number of threads for work that is spread over the machine's cores (a batch run, the
// thumbnails, a large preset load): one per core, at least one and at most four, since past
// that the disk, not the processor, sets the pace.
inline int workerThreadCount() {
    return std::clamp(QThread::idealThreadCount(), 1, 4);
}

} // namespace tagmoor
