#include "batch/BatchLog.h"

namespace tagmoor {
Q_LOGGING_CATEGORY(lcBatch, "tagmoor.batch")
}
