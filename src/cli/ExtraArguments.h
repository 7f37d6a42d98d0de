#pragma once

#include "extras/ExtraEdits.h"

#include <QString>

namespace tagmoor::cli {

// The options of `apply` that edit beyond the form's fields: keywords, rating, label, the
// IPTC Core and Extension texts and the copies in step.

// Whether `arg` ("--rating") is one of them; all take a value.
bool isExtraOption(const QString& arg);

// Takes the option's value into `edits`; false with `error` set when the value is refused.
bool applyExtraOption(ExtraEdits& edits, const QString& arg, const QString& value, QString* error);

// Their part of `apply --help`.
QString extraOptionsHelp();

} // namespace tagmoor::cli
