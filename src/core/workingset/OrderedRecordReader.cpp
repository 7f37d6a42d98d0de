#include "workingset/OrderedRecordReader.h"

#include "foundation/ThreadPriority.h"
#include "workingset/WorkingSetLog.h"

namespace tagmoor::detail {

void logFailedRead(const QString& path, const char* what) {
    if (what)
        qCWarning(lcWorkingSet) << "Reading" << path << "failed:" << what;
    else
        qCWarning(lcWorkingSet) << "Reading" << path << "failed";
}

void startReaderTask() {
    lowerThisThreadsPriority();
}

} // namespace tagmoor::detail
