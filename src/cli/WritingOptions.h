#pragma once

#include "batch/RunValues.h"

#include <QString>
#include <QStringList>

namespace tagmoor::cli {

// The options of `apply` that choose how dates are shifted: --carry. Gives true when `arg` is
// one of them (and sets it in `values`).
bool takeWritingOption(const QString& arg, RunValues& values);

// Takes --form standard|described (or --form=NAME), and --standard for --form standard, from
// anywhere before "--", and sets the process's form. Gives false, with a message on standard
// error, for a name that is no form.
bool takeFormOption(QStringList& args);

} // namespace tagmoor::cli
