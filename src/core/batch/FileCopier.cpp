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
    return QStringLiteral("%1: %2").arg(QLatin1String(what), QString::fromLocal8Bit(std::strerror(errno)));
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

} // namespace

bool FileCopier::copyNoClobber(const QString& source, const QString& target, QString* error) {
    QString ignored;
    if (!error)
        error = &ignored;
    const QByteArray src = QFile::encodeName(source);
    const QByteArray dst = QFile::encodeName(target);
    struct stat st {};
    if (::lstat(dst.constData(), &st) == 0) {
        *error = QStringLiteral("the target exists");
        return false;
    }
    Fd in(::open(src.constData(), O_RDONLY | O_CLOEXEC));
    if (in.fd < 0) {
        *error = errnoText("open source");
        return false;
    }
    if (::fstat(in.fd, &st) != 0 || !S_ISREG(st.st_mode)) {
        *error = QStringLiteral("the source is not a regular file");
        return false;
    }
    QByteArray temp = QFile::encodeName(QFileInfo(target).absolutePath()) + "/.tagmoor-copy-XXXXXX";
    Fd out(::mkostemp(temp.data(), O_CLOEXEC));
    if (out.fd < 0) {
        *error = errnoText("create");
        return false;
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
    if (ok)
        ok = moveIntoPlace(temp, dst, error);
    if (!ok)
        ::unlink(temp.constData());
    return ok;
}

} // namespace tagmoor
