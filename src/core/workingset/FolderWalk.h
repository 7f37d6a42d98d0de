#pragma once

#include <QList>
#include <QString>
#include <QStringList>

#include <atomic>
#include <functional>

namespace tagmoor {

// A file or folder that a walk met but cannot hand on: its name is not valid UTF-8, so no
// path of the program can name it, or the folder cannot be read. It is told, never dropped
// without a word.
struct LeftOutEntry {
    QString path; // for display: the bytes that are no UTF-8 written as \xNN
    bool isFolder = false;
    QString reason;
    bool operator==(const LeftOutEntry&) const = default;
};

struct FolderWalkResult {
    QStringList files;   // absolute paths of regular files, in walk order
    bool failed = false; // the folder itself could not be opened
    // Regular files and folders (not hidden ones) that the walk cannot hand on.
    QList<LeftOutEntry> leftOut;
};

// Walks a folder recursively and lists its regular files, images or not. Hidden entries
// (names starting with a dot) are skipped, packages (folders with a package extension such
// as ".photoslibrary") are not entered, symbolic links to folders are not followed (so a
// link loop ends nothing), and any path whose lowercased form contains "/itunes" or
// "photo booth library" is left out. Unreadable sub-folders are passed over and listed in
// `leftOut`. Entries of one
// folder come in name order, a sub-folder's files where the sub-folder stands.
// Stops early, returning what it has, when `stop` becomes true.
FolderWalkResult walkFolder(const QString& folder, const std::atomic_bool* stop = nullptr);

// The same walk, handing each file's absolute path to `onFile` as it is met instead of
// listing them: a folder of any size costs no more than the names of one folder. Gives false
// when the folder itself could not be opened.
bool walkFolder(const QString& folder, const std::function<void(const QString& path)>& onFile,
                QList<LeftOutEntry>* leftOut, const std::atomic_bool* stop = nullptr);

// A file name's bytes as text for the user: valid UTF-8 as it is, any other byte as \xNN.
QString displayFileName(const QByteArray& name);

// Whether a folder of this name is a package that the walk does not enter.
bool isPackageFolderName(const QString& name);

// Whether the walk leaves this path out (the "/itunes" and Photo Booth rules).
bool isExcludedMediaPath(const QString& absolutePath);

} // namespace tagmoor
