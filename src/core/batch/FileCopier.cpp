#include "batch/FileCopier.h"

#include "foundation/PageCopy.h"
#include "metadata/SafeFileReplace.h"

#include <QByteArray>
#include <QFile>
#include <QFileInfo>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace tagmoor {

namespace {

// Where a failure is told: a text and the errno value, each optional.
class Failure {
public:
    Failure(QString* text, int* code) : m_text(text), m_code(code) {
        if (m_code)
            *m_code = 0;
    }
    // A failed call of the system: its name and errno now.
    void system(const char* what) {
        const int error = errno;
        set(QStringLiteral("%1: %2").arg(QLatin1String(what),
                                         QString::fromLocal8Bit(std::strerror(error))),
            error);
    }
    void set(const QString& text, int code = 0) {
        if (m_text)
            *m_text = text;
        if (m_code)
            *m_code = code;
    }

private:
    QString* m_text;
    int* m_code;
};

// Closes a descriptor when the scope ends.
struct Fd {
    int fd = -1;
    explicit Fd(int f) : fd(f) {}
    Fd(const Fd&) = delete;
    Fd& operator=(const Fd&) = delete;
    ~Fd() {
        if (fd >= 0)
            ::close(fd);
    }
    int release() {
        const int f = fd;
        fd = -1;
        return f;
    }
};

bool copyBytes(int in, int out, off_t size, Failure& failure) {
    // copy_file_range lets the kernel move the bytes (or share extents); it is not available
    // between every pair of file systems, so plain reads and writes take over when it fails.
    off_t done = 0;
    while (done < size) {
        const ssize_t n = ::copy_file_range(in, nullptr, out, nullptr, size_t(size - done), 0);
        if (n > 0) {
            done += n;
            continue;
        }
        if (n == 0)
            break;
        if (errno == EINTR)
            continue;
        if (errno != EXDEV && errno != ENOSYS && errno != EINVAL && errno != EOPNOTSUPP) {
            failure.system("copy");
            return false;
        }
        break;
    }
    if (::lseek(in, done, SEEK_SET) < 0 || ::lseek(out, done, SEEK_SET) < 0) {
        failure.system("seek");
        return false;
    }
    QByteArray buffer;
    resizeForRead(buffer, 1 << 20);
    for (;;) {
        const ssize_t n = ::read(in, buffer.data(), size_t(buffer.size()));
        if (n == 0)
            return true;
        if (n < 0) {
            if (errno == EINTR)
                continue;
            failure.system("read");
            return false;
        }
        for (ssize_t off = 0; off < n;) {
            const ssize_t w = ::write(out, buffer.constData() + off, size_t(n - off));
            if (w < 0) {
                if (errno == EINTR)
                    continue;
                failure.system("write");
                return false;
            }
            off += w;
        }
    }
}

// Moves the finished temporary file to the target unless something is there already.
bool moveIntoPlace(const QByteArray& temp, const QByteArray& target, Failure& failure) {
    if (SafeFileReplace::renameNoReplace(temp, target))
        return true;
    failure.system("rename");
    return false;
}

// A fresh hidden name in `folder`, created empty and open; -1 on failure.
int createTemporary(const QString& folder, QByteArray* name, Failure& failure) {
    *name = SafeFileReplace::temporaryTemplate(folder);
    const int fd = ::mkostemps(name->data(), 4, O_CLOEXEC);
    if (fd < 0)
        failure.system("create");
    return fd;
}

// A complete copy of `source` under a fresh hidden name in `folder`; empty on failure.
QByteArray copyToTemporary(const QString& source, const QString& folder, Failure& failure) {
    const QByteArray src = QFile::encodeName(source);
    // Without blocking, and only a regular file: a pipe put in the photo's place is no photo.
    Fd in(::open(src.constData(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
    if (in.fd < 0) {
        failure.system("open source");
        return {};
    }
    struct stat st {};
    if (::fstat(in.fd, &st) != 0 || !S_ISREG(st.st_mode)) {
        failure.set(QStringLiteral("the source is not a regular file"));
        return {};
    }
    QByteArray temp;
    Fd out(createTemporary(folder, &temp, failure));
    if (out.fd < 0)
        return {};
    bool ok = copyBytes(in.fd, out.fd, st.st_size, failure);
    if (ok) {
        // The copy is the run's own: its owner may write it, whatever the source allows.
        ::fchmod(out.fd, (st.st_mode & 07777) | S_IWUSR);
        const struct timespec times[2] = {st.st_atim, st.st_mtim};
        ::futimens(out.fd, times);
        if (::close(out.release()) != 0) {
            failure.system("close");
            ok = false;
        }
    }
    if (!ok) {
        ::unlink(temp.constData());
        return {};
    }
    return temp;
}

} // namespace

QString FileCopier::stage(const QString& source, const QString& folder, QString* error,
                          int* errorCode) {
    Failure failure(error, errorCode);
    SafeFileReplace::sweepLeftovers(folder);
    const QByteArray src = QFile::encodeName(source);
    struct stat st {};
    if (::stat(src.constData(), &st) != 0 || !S_ISREG(st.st_mode)) {
        failure.set(QStringLiteral("the source is not a regular file"));
        return {};
    }
    // A source that its owner may not write is staged as a real copy, so that the copy can be
    // given the write bit without touching the source.
    if (st.st_mode & S_IWUSR) {
        // The link takes a free temporary name itself: no file is made (and removed) for the
        // name first, which would cost the file system an inode each time.
        int error = 0;
        const QByteArray name =
            SafeFileReplace::linkUnderTemporaryName(QFile::encodeName(folder), src, &error);
        if (!name.isEmpty())
            return QFile::decodeName(name);
        // A folder that takes no new name takes no copy either.
        if (error != EXDEV && error != EPERM && error != EMLINK && error != ENOSYS &&
            error != EOPNOTSUPP) {
            errno = error;
            failure.system("create");
            return {};
        }
        // Another file system, or links not allowed: a real copy instead.
    }
    const QByteArray copy = copyToTemporary(source, folder, failure);
    return copy.isEmpty() ? QString() : QFile::decodeName(copy);
}

bool FileCopier::detach(const QString& staged, const QString& source, QString* error,
                        int* errorCode) {
    Failure failure(error, errorCode);
    struct stat a {
    }, b{};
    if (::stat(QFile::encodeName(staged).constData(), &a) != 0 ||
        ::stat(QFile::encodeName(source).constData(), &b) != 0) {
        failure.system("stat");
        return false;
    }
    if (a.st_dev != b.st_dev || a.st_ino != b.st_ino)
        return true;
    const QByteArray copy = copyToTemporary(source, QFileInfo(staged).absolutePath(), failure);
    if (copy.isEmpty())
        return false;
    if (::rename(copy.constData(), QFile::encodeName(staged).constData()) != 0) {
        failure.system("rename");
        ::unlink(copy.constData());
        return false;
    }
    return true;
}

bool FileCopier::publish(const QString& staged, const QString& target, QString* error,
                         int* errorCode) {
    Failure failure(error, errorCode);
    const QByteArray from = QFile::encodeName(staged);
    if (moveIntoPlace(from, QFile::encodeName(target), failure))
        return true;
    ::unlink(from.constData());
    return false;
}

bool FileCopier::copyNoClobber(const QString& source, const QString& target, QString* error,
                               int* errorCode) {
    Failure failure(error, errorCode);
    struct stat st {};
    if (::lstat(QFile::encodeName(target).constData(), &st) == 0) {
        failure.set(QStringLiteral("the target exists"));
        return false;
    }
    const QByteArray temp = copyToTemporary(source, QFileInfo(target).absolutePath(), failure);
    if (temp.isEmpty())
        return false;
    if (moveIntoPlace(temp, QFile::encodeName(target), failure))
        return true;
    ::unlink(temp.constData());
    return false;
}

} // namespace tagmoor
