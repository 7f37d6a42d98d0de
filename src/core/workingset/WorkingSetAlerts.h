#pragma once

#include "foundation/UserPrompt.h"
#include "workingset/FolderWalk.h"
#include "workingset/ScanTypes.h"

#include <optional>

namespace tagmoor {

// An alert and how long after the triggering event it comes up.
struct TimedAlert {
    Alert alert;
    int delayMs = 0;
    bool operator==(const TimedAlert&) const = default;
};

// The one alert at the end of a scan, by priority: both flags, already added, unsupported
// (text depends on whether the list ended empty), then an empty folder. None otherwise.
std::optional<TimedAlert> endOfScanAlert(const ScanFlags& flags, bool listEmpty);

// The alert after an open panel closed, from its two notes; shown after 0.5 seconds.
std::optional<TimedAlert> panelAlert(bool alreadyAdded, bool ignored);

// The files and folders a scan could not hand on (a name that is not valid UTF-8, a folder
// that cannot be read), each with its reason; nothing when there are none. It follows the
// end-of-scan alert, so nothing leaves the list without a word.
std::optional<Alert> leftOutAlert(const QList<LeftOutEntry>& entries);

// What a photo library could not give: the notes of libraries that gave nothing (no database,
// another kind of database) and the number of originals missing from disk; none when all
// went well. It follows the end-of-scan alert.
std::optional<Alert> libraryAlert(int missingOriginals, const QStringList& notes);

// The three "Some images cannot be added" alerts of the panels and the scan's end.
Alert alertAlreadyAdded();
Alert alertIgnoreFilesAdded();
Alert alertAlreadyAddedAndBeIgnore();

// "Stop adding images?" with "YES" and "NO".
Alert stopScanningQuestion();
// The questions of "Remove All Selected" and "Remove All".
Alert removeSelectedQuestion();
Alert removeAllQuestion();

} // namespace tagmoor
