#pragma once

#include <QByteArray>
#include <QDateTime>
#include <QString>

#include <memory>

class QLockFile;

namespace tagmoor {

// The presets live in a file of their own beside the main settings file ("Tagmoor.conf" ->
// "Tagmoor.presets"), under the key "kPropertiesDataAP", so that the main file stays small:
// every other setting written rewrites the main file whole, and a list of many presets would
// make each of those writes, and the start, slow. The file holds a line that names it, then
// the block's bytes as they are (no text escaping to undo when it is read). A write goes to a
// new file that replaces the old one, so a crash in the middle of a save leaves the previous
// list. The window and the command line both write it: a writer holds the file's lock
// ("<file>.lock") from its reading of the file to its writing.
namespace PresetFile {

// The presets file that goes with a main settings file.
QString pathFor(const QString& settingsFile);

// The largest presets file that is read.
constexpr qint64 kMaxBytes = 256 * 1024 * 1024;

enum class ReadStatus { Missing, Ok, Damaged };
// The block stored in the file at `path`: Missing without a file, Damaged when the file is not
// in the presets format, holds no block, is no regular file or is larger than kMaxBytes. Never
// waits on a pipe or a device.
ReadStatus read(const QString& path, QByteArray* block);

// Stores `block` in the file at `path`; false when it could not be written (the previous file
// stays).
bool write(const QString& path, const QByteArray& block);

// Renames an unreadable file to "<path>.damaged-<UTC time>" ("-2", "-3", ... when taken), so
// that the next save cannot overwrite it; gives the new path, or an empty text on failure.
QString keepAside(const QString& path, const QDateTime& when);
// Copies the file to such a name and leaves it in place; the copy's path, or empty.
QString copyAside(const QString& path, const QDateTime& when);

// The lock of the presets file at `path`, taken for as long as the object lives. A lock left
// by a process that died is taken over.
class Lock {
public:
    explicit Lock(const QString& path, int timeoutMs = 10000);
    ~Lock();
    Lock(const Lock&) = delete;
    Lock& operator=(const Lock&) = delete;
    bool isLocked() const;

private:
    std::unique_ptr<QLockFile> m_lock;
};

} // namespace PresetFile

} // namespace tagmoor
