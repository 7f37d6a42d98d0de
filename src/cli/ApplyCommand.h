#pragma once

#include "ApplyOptions.h"

#include <QString>

namespace tagmoor::cli {

// Runs a batch as `apply` does with options already parsed (their photos in `inputs`);
// `command` names the command in messages. Texts with placeholders are filled in per photo
// when the options' texts hold some, or when `templatesPerPhoto` says that the photos' own
// values may. Gives the exit status.
int runParsedApply(ApplyOptions options, const QString& command, bool templatesPerPhoto);

} // namespace tagmoor::cli
