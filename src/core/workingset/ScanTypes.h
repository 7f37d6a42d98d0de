#pragma once

#include "model/CGImageProperties.h"
#include "photolibrary/PhotoLibraryTypes.h"
#include "workingset/FolderWalk.h"

#include <QList>
#include <QSet>
#include <QString>
#include <QUrl>

#include <functional>
#include <optional>

namespace tagmoor {

// Reads one file's record; nothing when it is not a readable image. Called on reader threads.
using RecordLoader = std::function<std::optional<CGImageProperties>(const QUrl&)>;

// Lists the originals of one photo library package. Called on the scan's thread.
using LibraryReader = std::function<LibraryRead(const QUrl& package)>;

// Everything a scan needs, by value.
struct ScanRequest {
    QList<QUrl> stagedURLs;
    // Paths of the records already in the list: a file among them is passed over silently.
    QSet<QString> existingPaths;
    // Number of records in the list before the scan, for the "Images Selected" label.
    int listCountBefore = 0;
    bool isFirst = false;
    // Number of threads reading records in parallel; the result is the same for any number.
    int readerThreads = 2;
    // Defaults to loadImageProperties.
    RecordLoader loader;
    // Without one, library packages are passed over.
    LibraryReader libraryReader;
    // Originals of chosen library albums, added before the staged files, and those of them
    // the library read left out.
    QList<LibraryItem> libraryItems;
    QList<LibraryLeftOut> libraryLeftOut;
};

// The result flags of a scan.
struct ScanFlags {
    bool isNotSupportedExtension = false;
    bool isAvailableAlready = false;
    bool isAddedEmpty = false;
    bool operator==(const ScanFlags&) const = default;
};

// The scan's counters and the item being looked at.
struct ScanCounters {
    int totalPhotos = 0;
    int processedPhotos = 0;
    int imagesInList = 0; // records in the list, the ones added so far included
    QString currentPath;
    bool operator==(const ScanCounters&) const = default;
};

struct ScanResult {
    ScanFlags flags;
    ScanCounters counters;
    int added = 0;
    bool stopped = false;
    // Photos met that cannot be added because no path names them (a file name that is not
    // valid UTF-8), with the reason; shown to the user rather than dropped silently.
    QList<LeftOutEntry> leftOut;
    // Library originals that are not on disk, and why a library gave nothing.
    int missingOriginals = 0;
    QStringList libraryNotes;
    // The scan went through originals chosen from a library (albums or the whole library).
    bool mergedLibraryOriginals = false;
};

} // namespace tagmoor

Q_DECLARE_METATYPE(tagmoor::ScanCounters)
Q_DECLARE_METATYPE(tagmoor::ScanResult)
