#pragma once

#include "metadata/MetadataTest.h"

#include <QByteArray>
#include <QString>

#include <sys/stat.h>

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>

namespace tagmoor {

// Replaces the bytes of one file so that, whatever happens (full disk, crash, kill, a rival
// writer), the file holds either its old bytes or the complete new ones.
//
// The new bytes go to a hidden temporary file beside the target (".tagmoor-<pid>-XXXXXX.tmp",
// so a folder scan skips it and a later run can tell whether its writer is still alive), are
// flushed to disk and checked, get the target's owner and permissions, and are renamed over
// the target in one step (a staged output's new bytes go to a file without a name where the
// file system has them, named only once complete). The target itself is never opened for
// writing. A temporary file
// left by a killed process is removed by the next replacement in that folder (once per folder
// and process).
class SafeFileReplace {
public:
    // Told of each replacement of a file that holds the user's bytes (not of a staged output
    // that goes without the flush), after the new bytes are flushed and checked and before
    // they take the target's place. Set per thread with WitnessScope.
    class Witness {
    public:
        virtual ~Witness() = default;
        // `replaced` are the target's bytes that the new ones replace: its first `keptFrom`
        // bytes when the rest stays (the new head is `newSize` bytes at `newData`), else the
        // whole old file. `old` is the target's status when it was read. False stops the
        // replacement, the target keeping its bytes, with `error` telling why.
        virtual bool beforeReplace(const QString& target, const QByteArray& replaced,
                                   qint64 keptFrom, const char* newData, std::size_t newSize,
                                   const struct stat& old, QString* error) = 0;
        // Told of each new file written without the flush (a staged output or a copy), once
        // it is complete: its status then, and the CRC-32C of all its bytes, taken as they were
        // written.
        virtual void written(const struct stat& file, std::uint32_t crc) {
            Q_UNUSED(file);
            Q_UNUSED(crc);
        }
    };
    // Makes `witness` the witness of this thread's replacements while it lives.
    class WitnessScope {
    public:
        explicit WitnessScope(Witness* witness);
        ~WitnessScope();
        WitnessScope(const WitnessScope&) = delete;
        WitnessScope& operator=(const WitnessScope&) = delete;

    private:
        Witness* m_previous;
    };

    // Makes the replacement of one file on this thread, while it lives, a copy: the new bytes
    // do not take `source`'s place but become a new file at `destination`, a name that must
    // be free (a file there, or one put there meanwhile, is never replaced). The source is only
    // read, through a link if it is one. The copy gets the source's owner and extended
    // attributes where it may, and its permissions with the owner's write bit; it goes without
    // the flush, as a staged output does. `beforePublish` is given the finished file's
    // descriptor before it takes its name (to set its dates); false from it leaves the name
    // free. Any other replacement on this thread meanwhile fails, so that a copy's bytes never
    // take the place of a file of the user's.
    class CopyScope {
    public:
        CopyScope(const QString& source, const QString& destination,
                  std::function<bool(int fd)> beforePublish);
        ~CopyScope();
        CopyScope(const CopyScope&) = delete;
        CopyScope& operator=(const CopyScope&) = delete;

        // Whether the copy took its name.
        bool published() const { return m_published; }
        // Why the source could not be opened, no new file could be made in the destination's
        // folder, or the complete and checked one could not take its name (taken meanwhile,
        // say): the errno value and a text; 0 when none of these happened.
        int placeError() const { return m_placeError; }
        const QString& placeErrorText() const { return m_placeErrorText; }

    private:
        friend class SafeFileReplace;
        // Keeps `error` (an errno value) as the reason, `what` naming the step.
        void placeFailed(const char* what, int error);
        CopyScope* m_previous;
        QString m_source;
        QByteArray m_destination;
        std::function<bool(int fd)> m_beforePublish;
        bool m_used = false;
        bool m_published = false;
        int m_placeError = 0;
        QString m_placeErrorText;
    };

    // The steps of a replacement, at each of which a test can inject a failure or block
    // (writeFaultAt, WriteSeams.h). `Write` is reached before each chunk of the temporary
    // file, so a test can stop a writer with the copy half done.
    enum class Step { Read, Create, Write, Verify, Flush, Rename };

    enum class ReadResult { Read, Changed, Failed };

    // A link at `targetPath` is followed to the file it names (see setFlushToDisk()).
    explicit SafeFileReplace(const QString& targetPath);
    ~SafeFileReplace();
    SafeFileReplace(const SafeFileReplace&) = delete;
    SafeFileReplace& operator=(const SafeFileReplace&) = delete;

    // Reads the target's bytes: all of them, or with `firstBytes` given only that many from
    // the start (readUpTo fetches more). `Changed` when `expected` is given and the file's size
    // or modification time differ from it; `Failed` when the file can't be read or written by
    // us.
    ReadResult readTarget(const std::optional<FileStamp>& expected, qint64 firstBytes = -1);
    // Reads on until the target's first `size` bytes are held (all of them when it is
    // shorter). False when reading failed, with errorText() telling why.
    bool readUpTo(qint64 size);
    // The bytes read so far, from the start of the target.
    const QByteArray& originalBytes() const { return m_original; }
    // The target's size when it was read.
    qint64 targetSize() const { return qint64(m_status.st_size); }

    // Whether the new bytes are flushed to disk before the rename (the default). Only a file
    // that holds nothing of the user's yet, such as a batch's staged output, may go without;
    // such a file is the run's own, so its name is taken as it is, no link followed (set
    // before readTarget()).
    void setFlushToDisk(bool flush) { m_flushToDisk = flush; }

    // Puts `size` bytes at `data` in place of the target. `verify` gets the temporary file's
    // path after it was flushed and must return true for the replacement to go on; an
    // exception from it leaves the target alone and propagates. False on failure, with the
    // target untouched and no temporary file left.
    bool replaceWith(const char* data, std::size_t size,
                     const std::function<bool(const QString& temporaryPath)>& verify);
    // The same, for new bytes that are `size` bytes at `data` followed by the target's own
    // bytes from `keptFrom` to its end, which need not have been read: they are copied from
    // the file that was read, inside the kernel where it can.
    bool replaceWith(const char* data, std::size_t size, qint64 keptFrom,
                     const std::function<bool(const QString& temporaryPath)>& verify);

    // The same for a new head in place of the target's first `keptFrom` bytes, with the check
    // given the head as it reads back from the temporary file (its first `size` bytes, read
    // again once written) rather than the file's path: a check that parses only the head then
    // needs no second opening of the file. The check may change the bytes it is given.
    using HeadCheck = std::function<bool(QByteArray& writtenHead)>;
    bool replaceHeadWith(const char* data, std::size_t size, qint64 keptFrom,
                         const HeadCheck& check);

    QString errorText() const { return m_error; }
    // The errno value of the failure (0 when there was none, or it was no system error).
    int errorCode() const { return m_errorCode; }
    // What kind of failure it was.
    enum class Trouble {
        None,
        System,     // a call of the system failed: errorCode() tells which errno
        Changed,    // the target changed since it was read, or while the new bytes were written
        NotRegular, // the target is not a regular file (a pipe, a device, a folder, a link)
    };
    Trouble trouble() const { return m_trouble; }

    // The size and modification time of a file now; nothing when it can't be examined.
    static std::optional<FileStamp> stampOf(const QString& path);
    // Whether a file name is one of our temporary files.
    static bool isTemporaryName(const QString& fileName);
    // A template for mkstemps() that makes a temporary name of this process in `folder`
    // (six X before a four-character suffix). Others who stage files beside a target use it,
    // so that the same sweep removes what a killed process of theirs left.
    static QByteArray temporaryTemplate(const QString& folder);
    // Gives the file `target` a second name in `folder`: a free temporary name of this process,
    // taken by a hard link, without making a file first. Empty when the link fails for
    // another reason than a name in use, with `error` (if given) set to its errno value.
    static QByteArray linkUnderTemporaryName(const QByteArray& folder, const QByteArray& target,
                                             int* error = nullptr);
    // Renames `from` to `to` unless a file is there; false with errno set otherwise.
    static bool renameNoReplace(const QByteArray& from, const QByteArray& to);
    // Removes, once per folder and process, the temporary files in `folder` whose process is
    // gone. Replacing a file does this for its folder by itself.
    static void sweepLeftovers(const QString& folder);
    // Waits until the replaced files of earlier replacements are given back to the file system
    // (a background thread drops their last, hidden, name).
    static void waitForReleases();

    // How many bytes at the end of `data` equal those at the end of `original`.
    static std::size_t unchangedTailSize(const char* data, std::size_t size,
                                         const QByteArray& original);

private:
    bool replace(const char* data, std::size_t size, qint64 keptFrom,
                 const std::function<bool(const QString& temporaryPath)>& verify);
    // The steps of replace() on the temporary file `fd`: the new bytes with the target's
    // owner, mode and attributes; the caller's check and the flush; the move over the target.
    bool createTemporary(const QString& folder);
    bool fillTemporary(int fd, const char* data, std::size_t size, qint64 keptFrom, qint64 kept);
    bool verifyAndFlush(int fd, const std::function<bool(const QString& temporaryPath)>& verify);
    bool moveIntoPlace(const QString& folder);
    bool publishCopy();
    bool writeNewBytes(int fd, const char* data, std::size_t size, int* error);
    // With `crc`, the bytes go through memory and are summed on the way, continuing `*crc`.
    bool copyFromTarget(int fd, qint64 from, qint64 to, qint64 length, int* error,
                        std::uint32_t* crc = nullptr);

    bool m_flushToDisk = true;
    // The copy this replacement makes instead, if any (CopyScope).
    CopyScope* m_copy = nullptr;
    int m_readFd = -1;
    // The temporary file while it is open.
    int m_temporaryFd = -1;
    bool fail(const QString& what, int error);
    bool targetUnchangedSinceRead();
    void removeTemporary();

    QString m_target;
    QByteArray m_encodedTarget;
    QByteArray m_original;
    struct stat m_status {};
    QByteArray m_temporary;
    // The CRC-32C of the temporary file's bytes, when a witness is to be told of them.
    std::uint32_t m_writtenCrc = 0;
    QString m_error;
    int m_errorCode = 0;
    Trouble m_trouble = Trouble::None;
};

} // namespace tagmoor
