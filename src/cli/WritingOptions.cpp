#include "WritingOptions.h"

namespace tagmoor::cli {

bool takeWritingOption(const QString& arg, RunValues& values) {
    if (arg == QLatin1String("--standard")) {
        values.writeOptions.standardForm = true;
        return true;
    }
    if (arg == QLatin1String("--carry")) {
        values.carryShifts = true;
        return true;
    }
    return false;
}

} // namespace tagmoor::cli
