#include "workingset/WorkingSetLog.h"

Q_LOGGING_CATEGORY(lcWorkingSet, "tagmoor.workingset")
