#pragma once

#include <QStringList>

// Each subcommand of tagmoor-cli lives in a file of its own. Exit codes: 0 all done,
// 1 some photos gave no result or were skipped, 2 bad arguments.
namespace tagmoor::cli {

int runRead(const QStringList& args);
int runApply(const QStringList& args);
int runPresets(const QStringList& args);
int runHistory(const QStringList& args);
int runUndo(const QStringList& args);

} // namespace tagmoor::cli
