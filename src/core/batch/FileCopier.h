#pragma once

#include <QString>

namespace tagmoor {

// Copies a photo to its output path without ever leaving a partial file there and without
// replacing anything: the bytes go to a hidden temporary file in the target's folder, which
// is then moved into place only if nothing stands at the target. The copy keeps the source's
// permissions and modification time, as a platform copy does, except that it is the run's
// own: its owner may always write it, so that the edit can land.
//
// The hidden files are named as the writer's temporary files (".tagmoor-<pid>-XXXXXX.tmp"),
// and staging in a folder first removes those that a killed process left there.
//
// Every function takes `error` for a text that says why it failed and `errorCode` for the
// errno value, if a call of the system failed (0 otherwise); both may be null.
class FileCopier {
public:
    // True when the target now holds a complete copy. False when the source is not a
    // readable regular file, the target exists (this is how editing in place works: a
    // photo copied onto itself fails here and is then written where it is), or any step
    // failed; no temporary file then remains.
    static bool copyNoClobber(const QString& source, const QString& target, QString* error,
                              int* errorCode = nullptr);

    // A hidden file in `folder` with the source's bytes, ready to be changed and then put in
    // place with publish(). It shares the source's storage (a hard link) when the file
    // system allows and the source is writable by its owner: whoever changes it must replace
    // the file, never write into it, and call detach() before publishing. Empty on failure.
    static QString stage(const QString& source, const QString& folder, QString* error,
                         int* errorCode = nullptr);

    // Turns a staged file that still shares the source's storage into a real copy.
    static bool detach(const QString& staged, const QString& source, QString* error,
                       int* errorCode = nullptr);

    // Moves a staged file to `target` unless something stands there; removes it on failure.
    static bool publish(const QString& staged, const QString& target, QString* error,
                        int* errorCode = nullptr);
};

} // namespace tagmoor
