#pragma once

#include "model/CGImageProperties.h"
#include "model/FormFieldTable.h"

#include <QString>

#include <optional>

namespace tagmoor::cli {

// A coded field (a popup of the form: orientation, flash, metering mode, the GPS references,
// the country code...) only takes a value that one of its rows stands for; anything else would
// be written as given and shown as blank by every reader. Gives the message for the user when
// the value that `--set` put into `record` is not one of them, naming the field and the
// values it takes. An empty value and a field that is no popup always pass.
std::optional<QString> refusedCodedValue(const FormField& field, const CGImageProperties& record);

} // namespace tagmoor::cli
