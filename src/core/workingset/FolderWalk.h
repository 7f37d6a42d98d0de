#pragma once

#include <QString>
#include <QStringList>

#include <atomic>

namespace tagmoor {

struct FolderWalkResult {
    QStringList files;   // absolute paths of regular files, in walk order
    bool failed = false; // the folder itself could not be opened
};

// Walks a folder recursively and lists its regular files, images or not. Hidden entries
// (names starting with a dot) are skipped, packages (folders with a package extension such
// as ".photoslibrary") are not entered, symbolic links to folders are not followed (so a
// link loop ends nothing), and any path whose lowercased form contains "/itunes" or
// "photo booth library" is left out. Unreadable sub-folders are passed over. Entries of one
// folder come in name order, a sub-folder's files where the sub-folder stands.
// Stops early, returning what it has, when `stop` becomes true.
FolderWalkResult walkFolder(const QString& folder, const std::atomic_bool* stop = nullptr);

// Whether a folder of this name is a package that the walk does not enter.
bool isPackageFolderName(const QString& name);

// Whether the walk leaves this path out (the "/itunes" and Photo Booth rules).
bool isExcludedMediaPath(const QString& absolutePath);

} // namespace tagmoor
