#include "batch/FileCopier.h"

#include <QByteArray>
#include <QFile>
#include <QFileInfo>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace tagmoor {

namespace {

QString errnoText(const char* what) {
    return QStringLiteral("%1: %2").arg(QLatin1String(what),
                                        QString::fromLocal8Bit(std::strerror(errno)));
}

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

bool copyBytes(int in, int out, off_t size, QString* error) {
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
            *error = errnoText("copy");
            return false;
        }
        break;
    }
    if (::lseek(in, done, SEEK_SET) < 0 || ::lseek(out, done, SEEK_SET) < 0) {
        *error = errnoText("seek");
        return false;
    }
    QByteArray buffer(1 << 20, Qt::Uninitialized);
    for (;;) {
        const ssize_t n = ::read(in, buffer.data(), size_t(buffer.size()));
        if (n == 0)
            return true;
        if (n < 0) {
            if (errno == EINTR)
                continue;
            *error = errnoText("read");
            return false;
        }
        for (ssize_t off = 0; off < n;) {
            const ssize_t w = ::write(out, buffer.constData() + off, size_t(n - off));
            if (w < 0) {
                if (errno == EINTR)
                    continue;
                *error = errnoText("write");
                return false;
            }
            off += w;
        }
    }
}

// Moves the finished temporary file to the target unless something is there already.
bool moveIntoPlace(const QByteArray& temp, const QByteArray& target, QString* error) {
#ifdef SYS_renameat2
    if (::syscall(SYS_renameat2, AT_FDCWD, temp.constData(), AT_FDCWD, target.constData(),
                  1 /* RENAME_NOREPLACE */) == 0)
        return true;
    if (errno != EINVAL && errno != ENOSYS) {
        *error = errnoText("rename");
        return false;
    }
#endif
    // File systems without the no-replace rename: a hard link fails on an existing target.
    if (::link(temp.constData(), target.constData()) != 0) {
        *error = errnoText("link");
        return false;
    }
    ::unlink(temp.constData());
    return true;
}

// A complete copy of `source` under a fresh hidden name in `folder`; empty on failure.
QByteArray copyToTemporary(const QString& source, const QString& folder, QString* error) {
    const QByteArray src = QFile::encodeName(source);
    Fd in(::open(src.constData(), O_RDONLY | O_CLOEXEC));
    if (in.fd < 0) {
        *error = errnoText("open source");
        return {};
    }
    struct stat st {};
    if (::fstat(in.fd, &st) != 0 || !S_ISREG(st.st_mode)) {
        *error = QStringLiteral("the source is not a regular file");
        return {};
    }
    QByteArray temp = QFile::encodeName(folder) + "/.tagmoor-copy-XXXXXX";
    Fd out(::mkostemp(temp.data(), O_CLOEXEC));
    if (out.fd < 0) {
        *error = errnoText("create");
        return {};
    }
    bool ok = copyBytes(in.fd, out.fd, st.st_size, error);
    if (ok) {
        ::fchmod(out.fd, st.st_mode & 07777);
        const struct timespec times[2] = {st.st_atim, st.st_mtim};
        ::futimens(out.fd, times);
        if (::close(out.release()) != 0) {
            *error = errnoText("close");
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

QString FileCopier::stage(const QString& source, const QString& folder, QString* error) {
    QString ignored;
    if (!error)
        error = &ignored;
    const QByteArray src = QFile::encodeName(source);
    struct stat st {};
    if (::stat(src.constData(), &st) != 0 || !S_ISREG(st.st_mode)) {
        *error = QStringLiteral("the source is not a regular file");
        return {};
    }
    // A free name for the link: a fresh temporary file, removed again, then linked.
    for (int attempt = 0; attempt < 8; ++attempt) {
        QByteArray name = QFile::encodeName(folder) + "/.tagmoor-copy-XXXXXX";
        const int fd = ::mkostemp(name.data(), O_CLOEXEC);
        if (fd < 0) {
            *error = errnoText("create");
            return {};
        }
        ::close(fd);
        ::unlink(name.constData());
        if (::link(src.constData(), name.constData()) == 0)
            return QFile::decodeName(name);
        if (errno == EEXIST)
            continue;
        break; // another file system, or links not allowed: a real copy instead
    }
    const QByteArray copy = copyToTemporary(source, folder, error);
    return copy.isEmpty() ? QString() : QFile::decodeName(copy);
}

bool FileCopier::detach(const QString& staged, const QString& source, QString* error) {
    struct stat a {
    }, b{};
    if (::stat(QFile::encodeName(staged).constData(), &a) != 0 ||
        ::stat(QFile::encodeName(source).constData(), &b) != 0) {
        *error = errnoText("stat");
        return false;
    }
    if (a.st_dev != b.st_dev || a.st_ino != b.st_ino)
        return true;
    const QByteArray copy = copyToTemporary(source, QFileInfo(staged).absolutePath(), error);
    if (copy.isEmpty())
        return false;
    if (::rename(copy.constData(), QFile::encodeName(staged).constData()) != 0) {
        *error = errnoText("rename");
        ::unlink(copy.constData());
        return false;
    }
    return true;
}

bool FileCopier::publish(const QString& staged, const QString& target, QString* error) {
    QString ignored;
    if (!error)
        error = &ignored;
    const QByteArray from = QFile::encodeName(staged);
    if (moveIntoPlace(from, QFile::encodeName(target), error))
        return true;
    ::unlink(from.constData());
    return false;
}

bool FileCopier::copyNoClobber(const QString& source, const QString& target, QString* error) {
    QString ignored;
    if (!error)
        error = &ignored;
    struct stat st {};
    if (::lstat(QFile::encodeName(target).constData(), &st) == 0) {
        *error = QStringLiteral("the target exists");
        return false;
    }
    const QByteArray temp = copyToTemporary(source, QFileInfo(target).absolutePath(), error);
    if (temp.isEmpty())
        return false;
    if (moveIntoPlace(temp, QFile::encodeName(target), error))
        return true;
    ::unlink(temp.constData());
    return false;
}

} // namespace tagmoor
