#pragma once

#include "metadata/SafeFileReplace.h"

#include <QDateTime>
#include <QHash>
#include <QList>
#include <QMutex>
#include <QSet>
#include <QString>
#include <QWaitCondition>

#include <cstdint>
#include <memory>
#include <optional>

#include <sys/stat.h>

namespace tagmoor {

// One past run as its journal tells it.
struct JournalRun {
    QString id;
    QDateTime when;
    bool inPlace = true;
    // The output folder of a run into a folder.
    QString folder;
    int photos = 0;
    bool undone = false;
};

// A file that undo left as it is, and why.
struct LeftAlone {
    QString path;
    QString reason;
};

struct UndoReport {
    enum class Status { Undone, NoSuchRun, AlreadyUndone };
    Status status = Status::Undone;
    QString id;
    // The photos given back their old bytes and the created files removed.
    QStringList restored;
    QList<LeftAlone> leftAlone;
};

// The journal of one batch run, kept under the user's data folder ("Tagmoor/journal/<id>/"),
// so that the run can be undone: for a photo changed in place, the bytes the write replaced
// (a JPEG's old head only, when the picture data stayed), its old file times and permissions;
// for a run into a folder, the files it made. Each with the size, modification time and hash
// of what the run left, so that undo can tell a file changed since.
//
// Records are appended to one file; a photo's record goes with its old bytes in one write and
// is flushed before the photo is replaced, so a journal cut short by a crash still undoes what
// it holds, and a photo is never replaced without its record. Safe to use from several threads
// at once.
class RunJournal : public SafeFileReplace::Witness {
public:
    // How many runs are kept; starting a run removes the oldest beyond them.
    static constexpr int kKeptRuns = 20;

    // Starts the journal of a new run; nothing, with `error` set, when it can't be made.
    static std::unique_ptr<RunJournal> start(bool inPlace, const QString& folder, int photos,
                                             QString* error = nullptr);
    // The folder that holds the journals.
    static QString root();
    // The runs in the journal, newest first.
    static QList<JournalRun> runs();
    // Undoes run `id` (empty: the newest not undone).
    static UndoReport undo(const QString& id = {});

    ~RunJournal() override;

    QString id() const { return m_id; }

    bool beforeReplace(const QString& target, const QByteArray& replaced, qint64 keptFrom,
                       const char* newData, std::size_t newSize, const struct stat& old,
                       QString* error) override;

    // Notes the size and modification time that the files replaced in place on this thread
    // since the last call have now, once the run is done with them (their file dates set).
    // Gives their paths.
    QStringList settleReplaced();
    void written(const struct stat& file, std::uint32_t crc) override;
    // Notes a file the run made (an output, a sidecar), as it is now.
    void recordCreated(const QString& path);
    // The same, for a file whose status its caller has just read.
    void recordCreated(const QString& path, const struct stat& st);

private:
    explicit RunJournal(QString folder, QString id);
    // Appends an entry (a record's line, and the old bytes that go with it). On failure the file
    // is cut back to its last whole entry. Called with m_mutex held.
    bool append(const QByteArray& entry, QString* error);
    // Waits until the entries appended so far, up to the `entry`-th, are on the disk. One
    // thread flushes at a time, without the lock, for every entry appended before it began; the
    // others wait for that flush rather than each making its own. Should a flush fail, the
    // entries since the last good one go, and nothing more is recorded. Called with m_mutex
    // held through `lock`.
    bool flushThrough(quint64 entry, QMutexLocker<QMutex>& lock, QString* error);

    QString m_folder;
    QString m_id;
    QMutex m_mutex;
    // The files replaced in place on each thread and not yet settled.
    QHash<Qt::HANDLE, QStringList> m_pending;
    // The checksums of the last files written on each thread, by file: what recordCreated
    // takes instead of reading a file back.
    struct Written {
        dev_t device;
        ino_t inode;
        off_t size;
        std::uint32_t crc;
    };
    QHash<Qt::HANDLE, QList<Written>> m_written;
    int m_fd = -1;
    // Where the last whole entry ends.
    qint64 m_size = 0;
    // An entry cut short could not be taken back: nothing more is recorded.
    bool m_broken = false;
    // The entries appended, and how many of them, and how many bytes, a flush has put on the
    // disk; whether a flush is under way, and the signal of its end.
    quint64 m_entries = 0;
    quint64 m_flushedEntries = 0;
    qint64 m_flushedSize = 0;
    bool m_flushing = false;
    QWaitCondition m_flushDone;
};

} // namespace tagmoor
