#pragma once

#include <QString>

namespace tagmoor {

// The absolute path of an existing file or folder with every symbolic link, "." and ".."
// resolved, as QFileInfo::canonicalFilePath() gives it; empty when the path leads nowhere.
// The kernel names the file it opened, in three system calls however deep the path: the
// usual way asks for each folder of the path in turn, and a batch asks this for every photo.
QString canonicalPathOf(const QString& path);

} // namespace tagmoor
