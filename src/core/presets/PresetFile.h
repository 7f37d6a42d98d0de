#pragma once

#include <QByteArray>
#include <QDateTime>
#include <QString>

#include <optional>

namespace tagmoor {

// The presets live in a settings file of their own beside the main one ("Tagmoor.conf" ->
// "Tagmoor.presets"), under the key "kPropertiesDataAP", so that the main file stays small:
// every other setting written rewrites the main file whole, and a list of many presets would
// make each of those writes, and the start, slow. The file is a QSettings file in a format of
// our own: a line that names it, then the block's bytes as they are (no text escaping to undo
// when it is read). QSettings writes it to a new file that replaces the old one, so a crash in
// the middle of a save leaves the previous list.
namespace PresetFile {

// The presets file that goes with a main settings file.
QString pathFor(const QString& settingsFile);

enum class ReadStatus { Missing, Ok, Damaged };
// The block stored in the file at `path`: Missing without a file, Damaged when the file is not
// in the presets format or holds no block.
ReadStatus read(const QString& path, QByteArray* block);

// Stores `block` in the file at `path` and writes it at once; false when it could not be
// written (the previous file stays).
bool write(const QString& path, const QByteArray& block);

// Renames an unreadable file to "<path>.damaged-<UTC time>" ("-2", "-3", ... when taken), so
// that the next save cannot overwrite it; gives the new path, or an empty text on failure.
QString keepAside(const QString& path, const QDateTime& when);

} // namespace PresetFile

} // namespace tagmoor
