#pragma once

#include <QDateTime>
#include <QString>

namespace tagmoor {

// A file that cannot be read as what it should be is kept for the user under a name of its
// own, "<path>.damaged-<UTC time>" ("-2", "-3", ... when that is taken), so that the next
// write cannot overwrite it.

// Renames the file; gives the new path, or an empty text on failure.
QString keepFileAside(const QString& path, const QDateTime& when);
// Copies the file and leaves it in place; gives the copy's path, or an empty text.
QString copyFileAside(const QString& path, const QDateTime& when);

} // namespace tagmoor
