#pragma once

#include <QString>

namespace tagmoor {

// Copies a photo to its output path without ever leaving a partial file there and without
// replacing anything: the bytes go to a hidden temporary file in the target's folder, which
// is then moved into place only if nothing stands at the target. The copy keeps the source's
// permissions and modification time, as a platform copy does.
class FileCopier {
public:
    // True when the target now holds a complete copy. False when the source is not a
    // readable regular file, the target exists (this is how editing in place works: a
    // photo copied onto itself fails here and is then written where it is), or any step
    // failed; `error` then says why, and no temporary file remains.
    static bool copyNoClobber(const QString& source, const QString& target, QString* error);
};

} // namespace tagmoor
