#pragma once

#include "rename/Rename.h"

#include <QString>

#include <optional>

namespace tagmoor::cli {

// The rename rule as given to --rename, turned into what the rename panel would store. The
// syntax is in ApplyCommand's help.
std::optional<Rename> parseRenameArgument(const QString& text, QString* error);

} // namespace tagmoor::cli
