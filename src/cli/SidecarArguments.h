#pragma once

#include "batch/RunValues.h"

#include <QString>

namespace tagmoor::cli {

// The options of `apply` about sidecars and the accepted formats:
//   --sidecar never|fallback|always|both, --sidecar-strip keep|strip|remove,
//   --sidecar-name ext|base, --formats all|classic.
bool isSidecarOption(const QString& arg);

// Takes one of them with its value into `values` (and the process's choices of formats and of
// reading sidecars); false with `error` set for a value it does not know.
bool takeSidecarOption(const QString& arg, const QString& value, RunValues& values, QString* error);

QString sidecarHelp();

} // namespace tagmoor::cli
