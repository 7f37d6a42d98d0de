#include "metadata/SafeFileReplace.h"

#include "foundation/CanonicalPath.h"
#include "foundation/Checksum.h"
#include "foundation/PageCopy.h"
#include "metadata/WriteSeams.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QMutex>
#include <QRandomGenerator>
#include <QRegularExpression>
#include <QScopeGuard>
#include <QSet>
#include <QTimeZone>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <condition_variable>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <mutex>
#include <sys/xattr.h>
#include <thread>
#include <unistd.h>
#include <utility>
#include <vector>

namespace tagmoor {

namespace {

constexpr std::size_t kChunk = 4 * 1024 * 1024;
constexpr std::size_t kSummedPiece = 256 * 1024;

// Asks whether a step is to fail (see WriteSeams.h); 0 means go on.
int injectedError(SafeFileReplace::Step step) {
    return writeFaultAt(step);
}

const QRegularExpression& temporaryPattern() {
    static const QRegularExpression re(QStringLiteral("^\\.tagmoor-(\\d+)-[A-Za-z0-9]{6}\\.tmp$"));
    return re;
}

thread_local SafeFileReplace::Witness* t_witness = nullptr;
thread_local SafeFileReplace::CopyScope* t_copy = nullptr;

// The path under which this process reaches the open file `fd`.
QByteArray fdPath(int fd) {
    return "/proc/self/fd/" + QByteArray::number(fd);
}

// A new file without a name in `folder`, open for reading and writing; -1 where the file
// system has no such files or a name could not be given to it later (no /proc).
int openUnnamedIn(const QString& folder) {
    static const bool namesByFd = ::access("/proc/self/fd", X_OK) == 0;
    if (!namesByFd)
        return -1;
    return ::open(QFile::encodeName(folder).constData(), O_TMPFILE | O_RDWR | O_CLOEXEC, 0600);
}

QDateTime modificationTime(const struct stat& st) {
    return QDateTime::fromMSecsSinceEpoch(
        qint64(st.st_mtim.tv_sec) * 1000 + st.st_mtim.tv_nsec / 1000000, Qt::UTC);
}

} // namespace

// A killed writer leaves its temporary file behind. Once per folder and process, remove those
// whose writing process no longer exists; a live one (this process included) may still be
// writing, so its files stay.
void SafeFileReplace::sweepLeftovers(const QString& folder) {
    static QMutex mutex;
    static QSet<QString> swept;
    {
        QMutexLocker lock(&mutex);
        if (swept.contains(folder))
            return;
        swept.insert(folder);
    }
    const QStringList names = QDir(folder).entryList({QStringLiteral(".tagmoor-*.tmp")},
                                                     QDir::Files | QDir::Hidden | QDir::System);
    for (const QString& name : names) {
        const auto match = temporaryPattern().match(name);
        if (!match.hasMatch())
            continue;
        const pid_t pid = pid_t(match.captured(1).toLongLong());
        if (pid == getpid() || kill(pid, 0) == 0 || errno != ESRCH)
            continue;
        QFile::remove(folder + QLatin1Char('/') + name);
    }
}

QByteArray SafeFileReplace::linkUnderTemporaryName(const QByteArray& folder,
                                                   const QByteArray& target, int* error) {
    static const char kAlphabet[] =
        "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789";
    for (int attempt = 0; attempt < 8; ++attempt) {
        QByteArray name = folder + "/.tagmoor-" + QByteArray::number(getpid()) + '-';
        for (int i = 0; i < 6; ++i)
            name += kAlphabet[QRandomGenerator::global()->bounded(int(sizeof kAlphabet) - 1)];
        name += ".tmp";
        if (::link(target.constData(), name.constData()) == 0)
            return name;
        if (errno != EEXIST)
            break;
    }
    if (error)
        *error = errno;
    return {};
}

QByteArray SafeFileReplace::temporaryTemplate(const QString& folder) {
    return QFile::encodeName(folder) + "/.tagmoor-" + QByteArray::number(getpid()) + "-XXXXXX.tmp";
}

namespace {

bool writeAll(int fd, const char* data, std::size_t size, int* error) {
    std::size_t done = 0;
    while (done < size) {
        if (const int injected = injectedError(SafeFileReplace::Step::Write)) {
            *error = injected;
            return false;
        }
        const std::size_t chunk = std::min(kChunk, size - done);
        std::size_t chunkDone = 0;
        while (chunkDone < chunk) {
            const ssize_t n = ::write(fd, data + done + chunkDone, chunk - chunkDone);
            if (n < 0) {
                if (errno == EINTR)
                    continue;
                *error = errno;
                return false;
            }
            chunkDone += std::size_t(n);
        }
        done += chunk;
    }
    return true;
}

// Writes `size` bytes of memory at the new file's offset `at` (where its offset stands). Bytes
// that the kernel would copy slowly from their places in their pages (see PageCopy.h) go
// through a buffer that puts each at its place in the file's pages.
bool writeFromMemory(int fd, qint64 at, const char* data, std::size_t size, int* error) {
    if (kernelCopiesFast(reinterpret_cast<std::uintptr_t>(data), std::uintptr_t(at)))
        return writeAll(fd, data, size, error);
    QByteArray buffer;
    resizeForRead(buffer, qsizetype(std::min(size, kSummedPiece) + kPageSize));
    for (std::size_t done = 0; done < size;) {
        const std::size_t place = std::size_t(at + qint64(done)) % kPageSize;
        const std::size_t n = std::min(size - done, std::size_t(buffer.size()) - place);
        std::memcpy(buffer.data() + place, data + done, n);
        if (!writeAll(fd, buffer.constData() + place, n, error))
            return false;
        done += n;
    }
    return true;
}

// Where a piece read from file offset `readAt` and written at `writeAt` goes in a buffer that
// starts a page, so that both of the kernel's copies run at full speed: at the read's place in
// its page, unless the write's place lies a few bytes past that; then 32 bytes before it.
std::size_t piecePlace(qint64 readAt, qint64 writeAt) {
    const std::size_t read = std::size_t(readAt) % kPageSize;
    if (kernelCopiesFast(read, std::size_t(writeAt) % kPageSize))
        return read;
    return (read + kPageSize - 32) % kPageSize;
}

// Extended attributes (tags of file managers, access lists) go with the file's bytes to the new
// inode. Best effort: a file system or a name that refuses one leaves that one behind.
void copyExtendedAttributes(const char* from, int toFd) {
    const ssize_t listSize = ::listxattr(from, nullptr, 0);
    if (listSize <= 0)
        return;
    QByteArray names(listSize, '\0');
    const ssize_t got = ::listxattr(from, names.data(), std::size_t(names.size()));
    if (got <= 0)
        return;
    for (const QByteArray& name : names.left(got).split('\0')) {
        if (name.isEmpty())
            continue;
        const ssize_t valueSize = ::getxattr(from, name.constData(), nullptr, 0);
        if (valueSize < 0)
            continue;
        QByteArray value(valueSize, '\0');
        const ssize_t read =
            ::getxattr(from, name.constData(), value.data(), std::size_t(value.size()));
        if (read >= 0)
            ::fsetxattr(toFd, name.constData(), value.constData(), std::size_t(read), 0);
    }
}

// Giving back the blocks of the replaced photo costs more than the rest of the replacement
// (the file system frees them inside the call that drops the last name). So the old file keeps
// a second, hidden name across the rename, and a thread of its own drops that name. Should the
// process die first, the name is a leftover like any other and the next sweep removes it.
// Waking that thread for each photo cost more than dropping a small photo's name, so it drops
// the names a few at a time: once some have gathered, or a moment after the first came.
class Releaser {
public:
    static Releaser& instance() {
        // Destroyed at exit, after the names still to drop are dropped.
        static Releaser releaser;
        return releaser;
    }

    Releaser(const Releaser&) = delete;
    Releaser& operator=(const Releaser&) = delete;

    ~Releaser() {
        {
            const std::lock_guard lock(m_mutex);
            m_ending = true;
        }
        m_wake.notify_one();
        if (m_thread.joinable())
            m_thread.join();
    }

    void release(QByteArray name) {
        const std::lock_guard lock(m_mutex);
        if (!m_thread.joinable())
            m_thread = std::thread([this] { run(); });
        m_names.push_back(std::move(name));
        if (m_names.size() == 1 || m_names.size() >= kGathered)
            m_wake.notify_one();
    }

    // Returns once every name given so far is dropped.
    void waitForDone() {
        std::unique_lock lock(m_mutex);
        ++m_waiting;
        m_wake.notify_one();
        m_done.wait(lock, [&] { return m_names.empty() && !m_dropping; });
        --m_waiting;
    }

private:
    Releaser() = default;

    static constexpr std::size_t kGathered = 16;
    static constexpr std::chrono::milliseconds kLinger{50};

    void run() {
        std::unique_lock lock(m_mutex);
        for (;;) {
            m_wake.wait(lock, [&] { return m_ending || !m_names.empty(); });
            if (m_names.empty())
                return;
            m_wake.wait_for(lock, kLinger, [&] {
                return m_ending || m_waiting > 0 || m_names.size() >= kGathered;
            });
            std::vector<QByteArray> names;
            names.swap(m_names);
            m_dropping = true;
            lock.unlock();
            for (const QByteArray& name : names)
                ::unlink(name.constData());
            lock.lock();
            m_dropping = false;
            m_done.notify_all();
        }
    }

    std::mutex m_mutex;
    std::condition_variable m_wake;
    std::condition_variable m_done;
    std::vector<QByteArray> m_names;
    bool m_dropping = false;
    bool m_ending = false;
    int m_waiting = 0;
    std::thread m_thread;
};

// A second hidden name for the file at `target` in `folder`, or empty when the file system
// won't give one (no hard links there); the replacement then frees the old file itself.
QByteArray linkAside(const QByteArray& folder, const QByteArray& target) {
    return SafeFileReplace::linkUnderTemporaryName(folder, target);
}

} // namespace

SafeFileReplace::WitnessScope::WitnessScope(Witness* witness) : m_previous(t_witness) {
    t_witness = witness;
}

SafeFileReplace::WitnessScope::~WitnessScope() {
    t_witness = m_previous;
}

SafeFileReplace::CopyScope::CopyScope(const QString& source, const QString& destination,
                                      std::function<bool(int fd)> beforePublish)
    : m_previous(t_copy), m_source(source), m_destination(QFile::encodeName(destination)),
      m_beforePublish(std::move(beforePublish)) {
    t_copy = this;
}

SafeFileReplace::CopyScope::~CopyScope() {
    t_copy = m_previous;
}

void SafeFileReplace::CopyScope::placeFailed(const char* what, int error) {
    m_placeError = error;
    m_placeErrorText = QStringLiteral("%1: %2").arg(QLatin1String(what),
                                                    QString::fromLocal8Bit(std::strerror(error)));
}

std::size_t SafeFileReplace::unchangedTailSize(const char* data, std::size_t size,
                                               const QByteArray& original) {
    const std::size_t most = std::min(size, std::size_t(original.size()));
    const char* a = data + size;
    const char* b = original.constData() + original.size();
    // Compared in blocks from the end, then byte by byte within the first block that differs.
    constexpr std::size_t kBlock = 4096;
    std::size_t same = 0;
    while (same + kBlock <= most && std::memcmp(a - same - kBlock, b - same - kBlock, kBlock) == 0)
        same += kBlock;
    while (same < most && a[-std::ptrdiff_t(same) - 1] == b[-std::ptrdiff_t(same) - 1])
        ++same;
    return same;
}

// The new bytes usually end with a long run that the old file holds at its own end (the picture
// data behind the tags). That run is copied from the old file inside the kernel, which costs a
// fraction of writing it from memory; the rest is written.
bool SafeFileReplace::writeNewBytes(int fd, const char* data, std::size_t size, int* error) {
    constexpr std::size_t kWorthCopying = 64 * 1024;
    const std::size_t tail =
        m_readFd >= 0 ? unchangedTailSize(data, size, m_original) : std::size_t(0);
    if (tail < kWorthCopying)
        return writeFromMemory(fd, 0, data, size, error);
    const std::size_t head = size - tail;
    return writeFromMemory(fd, 0, data, head, error) &&
           copyFromTarget(fd, qint64(m_original.size()) - qint64(tail), qint64(head), qint64(tail),
                          error);
}

// Copies `length` bytes of the file that was read, from offset `from`, to offset `to` of the
// new file (where the file's offset stands). Where the kernel cannot copy between the two files,
// the bytes go through memory.
// A file that has become shorter since it was read has changed under us: that fails.
bool SafeFileReplace::copyFromTarget(int fd, qint64 from, qint64 to, qint64 length, int* error,
                                     std::uint32_t* crc) {
    if (const int injected = injectedError(Step::Write)) {
        *error = injected;
        return false;
    }
    loff_t in = loff_t(from);
    loff_t out = loff_t(to);
    qint64 copied = 0;
    if (crc) {
        // Bytes that were read already (all of a small photo) are written and summed from
        // memory.
        copied = std::clamp<qint64>(qint64(m_original.size()) - from, 0, length);
        if (copied > 0) {
            const char* held = m_original.constData() + from;
            if (!writeFromMemory(fd, to, held, std::size_t(copied), error))
                return false;
            *crc = crc32c(held, std::size_t(copied), *crc);
        }
    }
    while (!crc && copied < length) {
        const ssize_t n =
            ::copy_file_range(m_readFd, &in, fd, &out, std::size_t(length - copied), 0);
        if (n > 0) {
            copied += n;
            continue;
        }
        if (n < 0 && errno == EINTR)
            continue;
        if (n < 0 && errno != EXDEV && errno != ENOSYS && errno != EINVAL && errno != EOPNOTSUPP) {
            *error = errno;
            return false;
        }
        break; // no copy between these files, or the old file is shorter now
    }
    // Summed pieces are small enough to be summed and written while the processor's cache
    // still holds them.
    const qint64 piece = crc ? qint64(kSummedPiece) : qint64(kChunk);
    // The writes go on from where the kernel's copy stopped (it moves no file offsets).
    if (copied < length && ::lseek(fd, off_t(to + copied), SEEK_SET) < 0) {
        *error = errno;
        return false;
    }
    QByteArray buffer;
    while (copied < length) {
        if (buffer.isEmpty())
            resizeForRead(buffer, qsizetype(std::min<qint64>(piece, length) + qint64(kPageSize)));
        char* const at = buffer.data() + piecePlace(from + copied, to + copied);
        const std::size_t want =
            std::size_t(std::min<qint64>(buffer.constData() + buffer.size() - at, length - copied));
        const ssize_t n = ::pread(m_readFd, at, want, off_t(from + copied));
        if (n < 0 && errno == EINTR)
            continue;
        if (n <= 0) {
            if (n == 0)
                m_trouble = Trouble::Changed;
            *error = n < 0 ? errno : EBUSY;
            return false;
        }
        if (!writeAll(fd, at, std::size_t(n), error))
            return false;
        if (crc)
            *crc = crc32c(at, std::size_t(n), *crc);
        copied += n;
    }
    return true;
}

void SafeFileReplace::waitForReleases() {
    Releaser::instance().waitForDone();
}

SafeFileReplace::SafeFileReplace(const QString& targetPath)
    : m_copy(t_copy && targetPath == t_copy->m_source ? t_copy : nullptr), m_target(targetPath) {}

SafeFileReplace::~SafeFileReplace() {
    removeTemporary();
    if (m_readFd >= 0)
        ::close(m_readFd);
}

bool SafeFileReplace::fail(const QString& what, int error) {
    m_errorCode = error;
    if (m_trouble == Trouble::None)
        m_trouble = Trouble::System;
    m_error = m_target + QStringLiteral(": ") + what + QStringLiteral(": ") +
              QString::fromLocal8Bit(std::strerror(error)) +
              QStringLiteral(" (errno = %1)").arg(error);
    return false;
}

void SafeFileReplace::removeTemporary() {
    if (!m_temporary.isEmpty()) {
        ::unlink(m_temporary.constData());
        m_temporary.clear();
    }
}

SafeFileReplace::ReadResult SafeFileReplace::readTarget(const std::optional<FileStamp>& expected,
                                                        qint64 firstBytes) {
    // A file of the user's is written through a symbolic link to the file it names, so that
    // the link stays a link. A file that goes without the flush is the run's own, made under a
    // name of its own, so no link leads to it: its name is taken as it is.
    if (m_flushToDisk && !m_copy) {
        const QString canonical = canonicalPathOf(m_target);
        m_encodedTarget = QFile::encodeName(canonical.isEmpty() ? m_target : canonical);
    } else {
        m_encodedTarget = QFile::encodeName(m_target);
    }
    // Without blocking: a pipe put in the photo's place must not stall the writer. The target
    // is resolved once, here; a link put there since is not followed. The source of a copy is
    // only read, so it is read through its link.
    const int fd = ::open(m_encodedTarget.constData(),
                          O_RDONLY | O_CLOEXEC | O_NONBLOCK | (m_copy ? 0 : O_NOFOLLOW));
    if (fd < 0) {
        const int error = errno;
        if (error == ELOOP)
            m_trouble = Trouble::NotRegular;
        // A source that cannot be opened gives no copy at all, as opposed to a copy whose
        // edit failed.
        if (m_copy)
            m_copy->placeFailed("open source", error);
        fail(QStringLiteral("Failed to open file"), error);
        return ReadResult::Failed;
    }
    // Kept open until the replacement is done: the unchanged end of the new bytes is copied
    // from this very file, not from whatever its name leads to by then.
    m_readFd = fd;
    if (::fstat(fd, &m_status) != 0) {
        fail(QStringLiteral("Failed to examine file"), errno);
        return ReadResult::Failed;
    }
    if (!S_ISREG(m_status.st_mode)) {
        m_trouble = Trouble::NotRegular;
        fail(QStringLiteral("Not a regular file"), EINVAL);
        return ReadResult::Failed;
    }
    if (expected && (expected->size != qint64(m_status.st_size) ||
                     expected->modified != modificationTime(m_status))) {
        m_error = m_target + QStringLiteral(": changed since it was read");
        m_trouble = Trouble::Changed;
        return ReadResult::Changed;
    }
    // Renaming needs only the folder's permission; a file that we may not write stays as it is.
    if (!m_copy && ::access(m_encodedTarget.constData(), W_OK) != 0) {
        fail(QStringLiteral("Failed to open file for writing"), errno);
        return ReadResult::Failed;
    }
    if (const int injected = injectedError(Step::Read)) {
        fail(QStringLiteral("Failed to read file"), injected);
        return ReadResult::Failed;
    }
    return readUpTo(firstBytes < 0 ? targetSize() : firstBytes) ? ReadResult::Read
                                                                : ReadResult::Failed;
}

bool SafeFileReplace::readUpTo(qint64 size) {
    const qsizetype wanted = qsizetype(std::min(size, targetSize()));
    qsizetype done = m_original.size();
    if (done >= wanted)
        return true;
    resizeForRead(m_original, wanted);
    while (done < wanted) {
        const ssize_t n =
            ::pread(m_readFd, m_original.data() + done, std::size_t(wanted - done), off_t(done));
        if (n < 0 && errno == EINTR)
            continue;
        if (n <= 0) {
            m_original.truncate(done);
            return fail(QStringLiteral("Failed to read file"), n < 0 ? errno : EIO);
        }
        done += n;
    }
    return true;
}

bool SafeFileReplace::targetUnchangedSinceRead() {
    struct stat now {};
    if (::stat(m_encodedTarget.constData(), &now) != 0)
        return false;
    return now.st_dev == m_status.st_dev && now.st_ino == m_status.st_ino &&
           now.st_size == m_status.st_size && now.st_mtim.tv_sec == m_status.st_mtim.tv_sec &&
           now.st_mtim.tv_nsec == m_status.st_mtim.tv_nsec;
}

bool SafeFileReplace::replaceWith(const char* data, std::size_t size,
                                  const std::function<bool(const QString&)>& verify) {
    return replace(data, size, -1, verify);
}

bool SafeFileReplace::replaceWith(const char* data, std::size_t size, qint64 keptFrom,
                                  const std::function<bool(const QString&)>& verify) {
    if (keptFrom < 0 || keptFrom > targetSize() || m_readFd < 0)
        return fail(QStringLiteral("Failed to write the new file"), EINVAL);
    return replace(data, size, keptFrom, verify);
}

bool SafeFileReplace::replaceHeadWith(const char* data, std::size_t size, qint64 keptFrom,
                                      const HeadCheck& check) {
    return replaceWith(data, size, keptFrom, [&](const QString&) {
        QByteArray head;
        resizeForRead(head, qsizetype(size));
        std::size_t done = 0;
        while (done < size) {
            const ssize_t n = ::pread(m_temporaryFd, head.data() + done, size - done, off_t(done));
            if (n < 0 && errno == EINTR)
                continue;
            if (n <= 0)
                return false;
            done += std::size_t(n);
        }
        return check(head);
    });
}

// Makes the file in `folder` that takes the new bytes, open as m_temporaryFd.
bool SafeFileReplace::createTemporary(const QString& folder) {
    if (const int injected = injectedError(Step::Create))
        return fail(QStringLiteral("Failed to create a temporary file"), injected);
    // A staged output's or a copy's new bytes go into a file without a name, which takes its
    // name only once it is complete. Making a file allocates its inode inside the call, and a named
    // one holds the folder's lock meanwhile, so that every other writer into the output folder
    // waits; without a name nothing waits, and nothing is left behind should the process die.
    int fd = m_flushToDisk && !m_copy ? -1 : openUnnamedIn(folder);
    if (fd < 0) {
        QByteArray pattern = temporaryTemplate(folder);
        fd = ::mkostemps(pattern.data(), 4, O_CLOEXEC);
        if (fd < 0) {
            const int error = errno;
            if (m_copy)
                m_copy->placeFailed("create", error);
            return fail(QStringLiteral("Failed to create a temporary file"), error);
        }
        m_temporary = pattern;
    }
    m_temporaryFd = fd;
    return true;
}

bool SafeFileReplace::replace(const char* data, std::size_t size, qint64 keptFrom,
                              const std::function<bool(const QString&)>& verify) {
    // While a copy is made on this thread, nothing else is replaced on it.
    if (t_copy && (m_copy != t_copy || t_copy->m_used))
        return fail(QStringLiteral("Failed to replace the file"), EPERM);
    if (m_copy)
        m_copy->m_used = true;
    const QString targetName = QFile::decodeName(m_copy ? m_copy->m_destination : m_encodedTarget);
    const QString folder = QFileInfo(targetName).absolutePath();
    sweepLeftovers(folder);

    if (!createTemporary(folder))
        return false;
    const int fd = m_temporaryFd;
    auto closeFd = qScopeGuard([&] {
        if (m_temporaryFd >= 0)
            ::close(m_temporaryFd);
        m_temporaryFd = -1;
    });

    const qint64 kept = keptFrom < 0 ? 0 : targetSize() - keptFrom;
    if (!fillTemporary(fd, data, size, keptFrom, kept) || !verifyAndFlush(fd, verify))
        return false;
    // errno is not the hook's to tell: whatever it logged since may have changed it.
    if (m_copy && m_copy->m_beforePublish && !m_copy->m_beforePublish(fd))
        return fail(QStringLiteral("Failed to set the dates of the new file"), EIO);
    struct stat written {};
    if (::fstat(fd, &written) != 0)
        return fail(QStringLiteral("Failed to examine the new file"), errno);
    // A file without a name stays open until it has one: closing it would free it.
    if (!m_temporary.isEmpty()) {
        m_temporaryFd = -1;
        if (::close(fd) != 0)
            return fail(QStringLiteral("Failed to close the new file"), errno);
    }
    if (written.st_size != off_t(qint64(size) + kept))
        return fail(QStringLiteral("The new file is incomplete"), EIO);
    if (!m_flushToDisk && t_witness)
        t_witness->written(written, m_writtenCrc);
    if (m_flushToDisk && !m_copy && t_witness) {
        // The witness keeps the bytes that are about to go; without them nothing is replaced.
        if (!readUpTo(keptFrom < 0 ? targetSize() : keptFrom))
            return false;
        const QByteArray replaced = keptFrom < 0 ? m_original : m_original.left(keptFrom);
        QString why;
        if (!t_witness->beforeReplace(QFile::decodeName(m_encodedTarget), replaced, keptFrom, data,
                                      size, m_status, &why)) {
            m_errorCode = EIO;
            m_trouble = Trouble::System;
            m_error = m_target + QStringLiteral(": ") + why;
            return false;
        }
    }
    if (!moveIntoPlace(folder))
        return false;
    if (m_copy)
        return true;
    if (m_temporaryFd >= 0) {
        const int closing = std::exchange(m_temporaryFd, -1);
        if (::close(closing) != 0) {
            const int error = errno;
            ::unlink(m_encodedTarget.constData());
            return fail(QStringLiteral("Failed to close the new file"), error);
        }
    }
    return true;
}

bool SafeFileReplace::fillTemporary(int fd, const char* data, std::size_t size, qint64 keptFrom,
                                    qint64 kept) {
    // A witness of a staged file is told its checksum: the new bytes are summed from memory,
    // the target's kept bytes as they are copied, so the file is never read back for it.
    const bool summed = !m_flushToDisk && t_witness;
    m_writtenCrc = summed ? crc32c(data, size) : 0;
    int error = 0;
    const bool bytesWritten = keptFrom < 0
                                  ? writeNewBytes(fd, data, size, &error)
                                  : writeFromMemory(fd, 0, data, size, &error) &&
                                        copyFromTarget(fd, keptFrom, qint64(size), kept, &error,
                                                       summed ? &m_writtenCrc : nullptr);
    if (!bytesWritten)
        return fail(QStringLiteral("Failed to write the new file"), error);

    // The owner first: changing it may clear set-id bits that the mode then restores. A copy
    // of a source that its owner may not write is ours, and its owner may write it.
    const bool keepsOwner = !m_copy || (m_status.st_mode & S_IWUSR);
    if (keepsOwner && ::fchown(fd, m_status.st_uid, m_status.st_gid) != 0 && geteuid() == 0)
        return fail(QStringLiteral("Failed to keep the file's owner"), errno);
    if (::fchmod(fd, (m_status.st_mode & 07777) | (m_copy ? S_IWUSR : 0)) != 0)
        return fail(QStringLiteral("Failed to keep the file's permissions"), errno);
    copyExtendedAttributes(m_encodedTarget.constData(), fd);
    return true;
}

bool SafeFileReplace::verifyAndFlush(int fd, const std::function<bool(const QString&)>& verify) {
    // Start the write-back now, so that the disk works while the copy is being checked; the
    // flush below then only waits for what is left.
    if (m_flushToDisk)
        ::sync_file_range(fd, 0, 0, SYNC_FILE_RANGE_WRITE);
    if (const int injected = injectedError(Step::Verify))
        return fail(QStringLiteral("The new file does not read back"), injected);
    const QByteArray path = m_temporary.isEmpty() ? fdPath(fd) : m_temporary;
    if (!verify(QFile::decodeName(path)))
        return fail(QStringLiteral("The new file does not read back"), EIO);

    if (m_flushToDisk) {
        if (const int injected = injectedError(Step::Flush))
            return fail(QStringLiteral("Failed to flush the new file"), injected);
        if (::fdatasync(fd) != 0)
            return fail(QStringLiteral("Failed to flush the new file"), errno);
    }
    return true;
}

bool SafeFileReplace::moveIntoPlace(const QString& folder) {
    if (const int injected = injectedError(Step::Rename))
        return fail(QStringLiteral("Failed to replace the file"), injected);
    // Someone may have replaced or changed the file while we wrote; their bytes win.
    if (!targetUnchangedSinceRead()) {
        m_trouble = Trouble::Changed;
        return fail(QStringLiteral("The file changed while it was being written"), EBUSY);
    }
    if (m_copy)
        return publishCopy();
    // A file that holds nothing of the user's (a batch's staged output) loses its name first,
    // so that the rename below puts the new file under a free name: renaming over an existing
    // file makes ext4 allocate and start writing the new file's blocks at once, inside the
    // call, which costs more than all the rest of the photo's work. Should the process die in
    // between, the output is absent and the temporary file a leftover for the next sweep.
    if (!m_flushToDisk) {
        if (::unlink(m_encodedTarget.constData()) != 0)
            return fail(QStringLiteral("Failed to replace the file"), errno);
        const bool placed =
            m_temporary.isEmpty()
                ? ::linkat(AT_FDCWD, fdPath(m_temporaryFd).constData(), AT_FDCWD,
                           m_encodedTarget.constData(), AT_SYMLINK_FOLLOW) == 0
                : ::rename(m_temporary.constData(), m_encodedTarget.constData()) == 0;
        if (!placed)
            return fail(QStringLiteral("Failed to replace the file"), errno);
        m_temporary.clear();
        return true;
    }
    const QByteArray aside = linkAside(QFile::encodeName(folder), m_encodedTarget);
    // The folder is not flushed after the rename: a crash right after it may bring back the old
    // file, never a broken one, and that saves a second wait for the disk per photo.
    if (::rename(m_temporary.constData(), m_encodedTarget.constData()) != 0) {
        const int renameError = errno;
        if (!aside.isEmpty())
            ::unlink(aside.constData());
        return fail(QStringLiteral("Failed to replace the file"), renameError);
    }
    m_temporary.clear();
    if (!aside.isEmpty())
        Releaser::instance().release(aside);
    return true;
}

// Gives a finished copy its free name; a name taken meanwhile stays as it is.
bool SafeFileReplace::publishCopy() {
    CopyScope& copy = *m_copy;
    const QByteArray& to = copy.m_destination;
    const bool placed = m_temporary.isEmpty()
                            ? ::linkat(AT_FDCWD, fdPath(m_temporaryFd).constData(), AT_FDCWD,
                                       to.constData(), AT_SYMLINK_FOLLOW) == 0
                            : renameNoReplace(m_temporary, to);
    if (!placed) {
        copy.placeFailed("rename", errno);
        return fail(QStringLiteral("Failed to put the new file in place"), copy.m_placeError);
    }
    m_temporary.clear();
    if (m_temporaryFd >= 0 && ::close(std::exchange(m_temporaryFd, -1)) != 0) {
        const int error = errno;
        ::unlink(to.constData());
        return fail(QStringLiteral("Failed to close the new file"), error);
    }
    copy.m_published = true;
    return true;
}

bool SafeFileReplace::renameNoReplace(const QByteArray& from, const QByteArray& to) {
    if (::renameat2(AT_FDCWD, from.constData(), AT_FDCWD, to.constData(), RENAME_NOREPLACE) == 0)
        return true;
    if (errno != EINVAL && errno != ENOSYS)
        return false;
    // File systems without the no-replace rename: a hard link fails on an existing name.
    if (::link(from.constData(), to.constData()) != 0)
        return false;
    ::unlink(from.constData());
    return true;
}

std::optional<FileStamp> SafeFileReplace::stampOf(const QString& path) {
    struct stat st {};
    if (::stat(QFile::encodeName(path).constData(), &st) != 0)
        return std::nullopt;
    return FileStamp{qint64(st.st_size), modificationTime(st)};
}

bool SafeFileReplace::isTemporaryName(const QString& fileName) {
    return temporaryPattern().match(fileName).hasMatch();
}

} // namespace tagmoor
