#pragma once

#include <QStringList>

namespace tagmoor::cli {

// `tagmoor-cli export --csv`: the photos' metadata as one table, a row per photo.
int runExport(const QStringList& args);

// `tagmoor-cli import --csv FILE`: each row's cells become that photo's edits, written by a
// batch run as `apply` writes.
int runImport(const QStringList& args);

} // namespace tagmoor::cli
