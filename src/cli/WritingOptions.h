#pragma once

#include "batch/RunValues.h"

#include <QString>

namespace tagmoor::cli {

// The options of `apply` that choose how tags are written and dates shifted: --standard and
// --carry. Gives true when `arg` is one of them (and sets it in `values`).
bool takeWritingOption(const QString& arg, RunValues& values);

} // namespace tagmoor::cli
