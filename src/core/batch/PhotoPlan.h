#pragma once

#include <QString>

#include <optional>

namespace tagmoor {

// Where one photo of a run goes, decided in list order before any file is touched: the
// source, the output path after the rename rule, and what the result screen's output folder
// becomes. Planning is cheap and sequential; the file work may then run in parallel.
struct PhotoPlan {
    // The ordinal of the photo among the selected ones (1-based) and the run's total.
    int processed = 0;
    int total = 0;
    // False for a record without url: the photo is skipped.
    bool hasUrl = false;
    QString sourcePath;
    QString finalPath;
    // Set when the new name is not one file name ("/" in it, "." or ".."), or the output would
    // stand outside its folder: the photo is skipped and nothing is touched.
    bool unsafeName = false;
    // Where the source and the output stand, by the identity of their folders (see
    // locationOf); empty when the folder does not exist.
    QString sourceLocation;
    QString finalLocation;
    // Set when this photo changes the result screen's output folder.
    std::optional<QString> outputDirectoryValue;
};

} // namespace tagmoor
