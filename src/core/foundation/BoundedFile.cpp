#include "foundation/BoundedFile.h"

#include "foundation/PageCopy.h"

#include <QFile>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

namespace tagmoor {

namespace {

QString sizeText(qint64 bytes) {
    if (bytes >= 1024 * 1024 && bytes % (1024 * 1024) == 0)
        return QStringLiteral("%1 MB").arg(bytes / (1024 * 1024));
    if (bytes >= 1024 && bytes % 1024 == 0)
        return QStringLiteral("%1 KB").arg(bytes / 1024);
    return QStringLiteral("%1 bytes").arg(bytes);
}

BoundedRead failed(BoundedRead::Status status, QString error) {
    BoundedRead r;
    r.status = status;
    r.error = std::move(error);
    return r;
}

class Fd {
public:
    explicit Fd(int fd) : m_fd(fd) {}
    ~Fd() {
        if (m_fd >= 0)
            ::close(m_fd);
    }
    Fd(const Fd&) = delete;
    Fd& operator=(const Fd&) = delete;
    int get() const { return m_fd; }

private:
    int m_fd;
};

} // namespace

BoundedRead readBoundedFile(const QString& path, qint64 maxBytes) {
    // O_NONBLOCK: opening a FIFO for reading would otherwise wait for a writer for ever.
    Fd fd(
        ::open(QFile::encodeName(path).constData(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY));
    if (fd.get() < 0) {
        const int err = errno;
        return failed(err == ENOENT ? BoundedRead::Status::Missing
                                    : BoundedRead::Status::Unreadable,
                      QString::fromLocal8Bit(std::strerror(err)));
    }
    struct stat st {};
    if (::fstat(fd.get(), &st) != 0)
        return failed(BoundedRead::Status::Unreadable,
                      QString::fromLocal8Bit(std::strerror(errno)));
    if (!S_ISREG(st.st_mode))
        return failed(BoundedRead::Status::NotRegular, QStringLiteral("not a regular file"));
    const auto tooLarge = [&] {
        return failed(BoundedRead::Status::TooLarge,
                      QStringLiteral("larger than %1").arg(sizeText(maxBytes)));
    };
    if (st.st_size > maxBytes)
        return tooLarge();
    // The file may grow while it is read: one byte past the bound tells that it did.
    BoundedRead r;
    resizeForRead(r.bytes, qsizetype(st.st_size) + 1);
    qint64 have = 0;
    for (;;) {
        if (have == r.bytes.size()) {
            if (have > maxBytes)
                return tooLarge();
            resizeForRead(r.bytes, qsizetype(std::min<qint64>(maxBytes + 1, have * 2 + 4096)));
        }
        const ssize_t got =
            ::read(fd.get(), r.bytes.data() + have, std::size_t(r.bytes.size() - have));
        if (got < 0 && errno == EINTR)
            continue;
        if (got < 0)
            return failed(BoundedRead::Status::Unreadable,
                          QString::fromLocal8Bit(std::strerror(errno)));
        if (got == 0)
            break;
        have += got;
    }
    if (have > maxBytes)
        return tooLarge();
    r.bytes.truncate(qsizetype(have));
    r.status = BoundedRead::Status::Ok;
    return r;
}

} // namespace tagmoor
