#pragma once

#include <QString>

namespace tagmoor {

// What became of one write or clean of a file. Anything but Written means the file kept its
// old bytes: the edit is all there or not at all.
enum class WriteStatus {
    Written,
    NotWritable,  // the format cannot hold what was asked (Exiv2 refuses it, or drops it)
    DiskFull,     // no room for the new file
    NoPermission, // the file or its folder may not be written
    FileChanged,  // the file changed since it was read, or while it was written
    NotAPhoto,    // the bytes are no longer a photo of an accepted type, or not a regular file
    Failed,       // anything else: a broken file, an error of Exiv2 or of the system
};

struct WriteResult {
    WriteStatus status = WriteStatus::Written;
    // For the user: the cause in a few words, with the system's or Exiv2's own text.
    QString detail;

    bool written() const { return status == WriteStatus::Written; }
    bool operator==(const WriteResult&) const = default;
};

// The status that a failure of the file system with this errno value stands for.
WriteStatus writeStatusOfErrno(int error);

// A short text for the user, such as "disk full".
QString writeStatusText(WriteStatus status);

} // namespace tagmoor
