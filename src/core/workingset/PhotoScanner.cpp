#include "workingset/PhotoScanner.h"

#include "foundation/StopControl.h"
#include "foundation/ThreadPriority.h"
#include "metadata/PropertyLoading.h"
#include "metadata/XmpSidecar.h"
#include "workingset/FolderWalk.h"
#include "workingset/OrderedRecordReader.h"
#include "workingset/SupportedExtensions.h"
#include "workingset/WorkingSetLog.h"

#include <QElapsedTimer>
#include <QFileInfo>

#include <exception>

#include <sys/resource.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace tagmoor {

struct PhotoScanner::Shared {
    StopControl control;
    std::atomic_bool running{false};
    RecordQueue records;
};

namespace {

// One pass over the staged files. Owns the order: files are decided one after the other on
// this thread; only the reading of a record runs on the reader threads, and the results are
// committed in the order the files were met.
class ScanRun {
public:
    ScanRun(PhotoScanner& owner, PhotoScanner::Shared& shared, ScanRequest request)
        : m_owner(owner), m_shared(shared), m_request(std::move(request)),
          m_committed(m_request.existingPaths) {
        if (!m_request.loader)
            m_request.loader = &loadImageProperties;
        m_reader.emplace(withSidecarListing(withFileSize(m_request.loader), m_sidecars),
                         m_request.readerThreads,
                         [this](const QString& path, std::optional<CGImageProperties>&& record) {
                             take(path, std::move(record));
                         });
        m_counters.imagesInList = m_request.listCountBefore;
    }

    ScanResult run() {
        const QList<QUrl> urls = distinct(m_request.stagedURLs);
        countingPass(urls);
        if (!stopped())
            libraryPass(urls);
        emit m_owner.countingFinished(m_counters.totalPhotos);
        m_clock.start();
        libraryRecordPass();
        addingPass(urls);
        m_reader->finish();
        flush(true);
        ScanResult result;
        result.flags = m_flags;
        result.counters = m_counters;
        result.added = m_added;
        result.stopped = stopped();
        result.leftOut = m_leftOut;
        result.missingOriginals = m_missingOriginals;
        result.mergedLibraryOriginals = m_mergedLibraryOriginals;
        result.libraryNotes = m_libraryNotes;
        for (const LeftOutEntry& entry : m_leftOut)
            qCWarning(lcWorkingSet).noquote() << "left out" << entry.path << "-" << entry.reason;
        return result;
    }

private:
    static QList<QUrl> distinct(const QList<QUrl>& urls) {
        QList<QUrl> out;
        QSet<QUrl> seen;
        for (const QUrl& url : urls) {
            if (!seen.contains(url)) {
                seen.insert(url);
                out.append(url);
            }
        }
        return out;
    }

    bool stopped() const { return m_shared.control.stopRequested(); }

    // Waits while the stop question is up, with the records read so far handed over; true
    // when the scan is to end.
    bool pauseAndStopTest() {
        if (!m_shared.control.pauseRequested())
            return stopped();
        flush(true);
        return m_shared.control.waitBetweenPhotos();
    }

    void countingPass(const QList<QUrl>& urls) {
        for (const QUrl& url : urls) {
            if (pauseAndStopTest())
                return;
            const QString path = url.toLocalFile();
            if (isPhotoLibraryPackage(path))
                continue;
            const QFileInfo info(path);
            if (!info.exists())
                continue;
            if (info.isDir())
                m_counters.totalPhotos +=
                    int(walkFolder(path, m_shared.control.stopFlag()).files.size());
            else
                ++m_counters.totalPhotos;
        }
    }

    void libraryPass(const QList<QUrl>& urls) {
        for (const QUrl& url : urls) {
            if (!isPhotoLibraryPackage(url.toLocalFile()))
                continue;
            if (!m_request.libraryReader) {
                qCInfo(lcWorkingSet) << "No library reader; passing over" << url.toLocalFile();
                continue;
            }
            LibraryRead read = m_request.libraryReader(url);
            if (!read.note.isEmpty())
                m_libraryNotes << read.note;
            m_libraryItems << read.items;
            noteLeftOut(read.leftOut);
        }
        m_libraryItems << m_request.libraryItems;
        noteLeftOut(m_request.libraryLeftOut);
        m_counters.totalPhotos += int(m_libraryItems.size());
        m_mergedLibraryOriginals = !m_libraryItems.isEmpty();
    }

    void noteLeftOut(const QList<LibraryLeftOut>& entries) {
        for (const LibraryLeftOut& entry : entries)
            m_leftOut.append({entry.path, false, entry.reason});
    }

    // The originals named by libraries, before the staged files: one already in the list is
    // noted as such, a missing one is counted for the end-of-scan alert, an empty file is
    // passed over, and the others are read like any photo and keep the library's texts.
    void libraryRecordPass() {
        for (const LibraryItem& entry : std::as_const(m_libraryItems)) {
            if (pauseAndStopTest())
                return;
            ++m_counters.processedPhotos;
            m_counters.currentPath = entry.path;
            flush(false);
            if (m_committed.contains(entry.path) || m_dispatched.contains(entry.path)) {
                m_flags.isAvailableAlready = true;
                continue;
            }
            if (!hasSupportedExtension(entry.path)) {
                m_flags.isNotSupportedExtension = true;
                continue;
            }
            const QFileInfo info(entry.path);
            if (!info.isFile()) {
                ++m_missingOriginals;
                continue;
            }
            if (info.size() == 0)
                continue;
            if (entry.properties)
                m_libraryProperties.insert(entry.path, *entry.properties);
            dispatch(entry.path);
        }
        m_libraryItems.clear();
    }

    void addingPass(const QList<QUrl>& urls) {
        for (const QUrl& url : urls) {
            if (pauseAndStopTest())
                return;
            const QString path = url.toLocalFile();
            if (isPhotoLibraryPackage(path))
                continue;
            const QFileInfo info(path);
            if (!info.exists()) {
                // A name that was not valid UTF-8 reached us with stand-ins for its bad bytes.
                if (path.contains(QChar::ReplacementCharacter) && hasSupportedExtension(path))
                    m_leftOut.append(
                        {path, false, QStringLiteral("the file name is not valid UTF-8")});
                continue;
            }
            if (!info.isDir()) {
                if (info.isFile()) {
                    item(path);
                } else {
                    // A pipe or a device under an image name: counted, never opened (a read
                    // could block for ever).
                    ++m_counters.processedPhotos;
                    m_counters.currentPath = path;
                }
                continue;
            }
            const FolderWalkResult walk = walkFolder(path, m_shared.control.stopFlag());
            if (walk.failed)
                continue;
            for (const LeftOutEntry& entry : walk.leftOut) {
                if (entry.isFolder || hasSupportedExtension(entry.path))
                    m_leftOut.append(entry);
            }
            if (walk.files.isEmpty())
                m_flags.isAddedEmpty = true;
            for (const QString& file : walk.files) {
                if (pauseAndStopTest())
                    return;
                item(file);
            }
        }
    }

    // One file met by the adding pass.
    void item(const QString& path) {
        ++m_counters.processedPhotos;
        m_counters.currentPath = path;
        flush(false);
        if (m_committed.contains(path))
            return;
        if (!hasSupportedExtension(path)) {
            m_flags.isNotSupportedExtension = true;
            return;
        }
        // A second sighting of a path already being read gives the same answer as the
        // first: a record (then this one is a duplicate) or none. Either way, nothing to do.
        if (m_dispatched.contains(path))
            return;
        dispatch(path);
    }

    // Reads the record of a file met for the first time, here or on a reader thread.
    void dispatch(const QString& path) {
        m_dispatched.insert(path);
        m_reader->read(path);
    }

    void take(const QString& path, std::optional<CGImageProperties>&& record) {
        if (record && !m_committed.contains(path))
            commitRecord(std::move(*record), path);
        else if (!record)
            noteNoRecord(path);
    }

    // The files of a scan are only read while it runs: each folder's sidecars are listed once,
    // after the first few photos of the folder, rather than looked for under two names per
    // photo.
    static RecordLoader withSidecarListing(RecordLoader loader, SidecarListing& sidecars) {
        return [loader = std::move(loader), &sidecars](const QUrl& url) {
            const SidecarListing::Scope listed(sidecars);
            return loader(url);
        };
    }

    // The list shows the file's size beside its pixel size; it is asked of the file here, on
    // the reader thread, so the views never touch the disk.
    static RecordLoader withFileSize(RecordLoader loader) {
        return [loader = std::move(loader)](const QUrl& url) {
            std::optional<CGImageProperties> record = loader(url);
            if (record && record->fileSize.isAbsent())
                record->fileSize = qint64(QFileInfo(url.toLocalFile()).size());
            return record;
        };
    }

    // A file named like a photo that gives none (a text file called .jpg, a damaged picture)
    // is content that is not supported, and the end-of-scan alert says so. A file that has
    // vanished meanwhile is passed over without a note.
    void noteNoRecord(const QString& path) {
        if (QFileInfo(path).isFile())
            m_flags.isNotSupportedExtension = true;
    }

    // `path` is the text the file was read under: the set of committed paths shares it with
    // the set of dispatched ones instead of holding a text of its own for every photo.
    void commitRecord(CGImageProperties&& record, const QString& path) {
        if (const auto it = m_libraryProperties.constFind(path); it != m_libraryProperties.cend())
            record.photoLibraryProperties = *it;
        if (!path.isEmpty())
            m_committed.insert(path);
        m_batch.append(std::move(record));
        ++m_counters.imagesInList;
        ++m_added;
        if (m_batch.size() >= PhotoScanner::maxBatch)
            flush(true);
    }

    // Hands over the records and the counters; without `force`, at most every interval.
    void flush(bool force) {
        if (!force && m_clock.isValid() && m_clock.elapsed() < PhotoScanner::progressIntervalMs)
            return;
        if (!m_batch.isEmpty() && m_shared.records.put(std::exchange(m_batch, {})))
            emit m_owner.recordsWaiting();
        if (m_counters.processedPhotos > 0 && m_counters != m_lastSent) {
            emit m_owner.progress(m_counters);
            m_lastSent = m_counters;
        }
        m_clock.restart();
    }

    PhotoScanner& m_owner;
    PhotoScanner::Shared& m_shared;
    ScanRequest m_request;
    QSet<QString> m_committed;
    QSet<QString> m_dispatched;
    SidecarListing m_sidecars; // outlives the reader, whose threads use it
    std::optional<OrderedRecordReader> m_reader;
    QList<CGImageProperties> m_batch;
    ScanFlags m_flags;
    ScanCounters m_counters;
    ScanCounters m_lastSent;
    QList<LeftOutEntry> m_leftOut;
    QList<LibraryItem> m_libraryItems;
    QHash<QString, PhotoLibraryProperties> m_libraryProperties;
    QStringList m_libraryNotes;
    int m_missingOriginals = 0;
    bool m_mergedLibraryOriginals = false;
    QElapsedTimer m_clock;
    int m_added = 0;
};

} // namespace

PhotoScanner::PhotoScanner(QObject* parent)
    : QObject(parent), m_shared(std::make_shared<Shared>()) {
    qRegisterMetaType<ScanCounters>();
    qRegisterMetaType<ScanResult>();
    qRegisterMetaType<QList<CGImageProperties>>();
}

PhotoScanner::~PhotoScanner() {
    if (m_thread) {
        resume(true);
        m_thread->wait();
        delete m_thread;
    }
}

bool PhotoScanner::start(ScanRequest request) {
    if (m_shared->running.load())
        return false;
    if (m_thread) {
        m_thread->wait();
        delete m_thread;
        m_thread = nullptr;
    }
    m_shared->control.reset();
    m_shared->running = true;
    m_thread = QThread::create([this, shared = m_shared, request = std::move(request)]() mutable {
        lowerThisThreadsPriority();
        ScanRun scan(*this, *shared, std::move(request));
        const ScanResult result = scan.run();
        shared->running = false;
        emit finished(result);
    });
    m_thread->setObjectName(QStringLiteral("PhotoScanner"));
    m_thread->start();
    return true;
}

bool PhotoScanner::isRunning() const {
    return m_shared->running.load();
}

void PhotoScanner::pause() {
    m_shared->control.requestPause();
}

void PhotoScanner::resume(bool stop) {
    m_shared->control.answer(stop);
}

QList<CGImageProperties> PhotoScanner::takeRecords(qsizetype max) {
    return m_shared->records.take(max);
}

qsizetype PhotoScanner::waitingRecords() const {
    return m_shared->records.size();
}

bool PhotoScanner::wait(int timeoutMs) {
    if (!m_thread)
        return true;
    return timeoutMs < 0 ? m_thread->wait() : m_thread->wait(QDeadlineTimer(timeoutMs));
}

} // namespace tagmoor
