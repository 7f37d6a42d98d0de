#pragma once

#include "batch/RunValues.h"

#include <QString>

namespace tagmoor::cli {

// `apply --preset NAME`: lays the stored preset under the values parsed from the command
// line. The preset gives its fields, their edit flags and its date rules; every field or
// date that --set or --date gave keeps the command line's value. False, with the reason in
// `error`, when the store has no preset of that name.
bool applyStoredPreset(RunValues& values, const QString& name, QString* error);

} // namespace tagmoor::cli
