#include "foundation/CanonicalPath.h"

#include <QFile>
#include <QFileInfo>

#include <fcntl.h>
#include <unistd.h>

#include <array>
#include <cstdio>

namespace tagmoor {

QString canonicalPathOf(const QString& path) {
    if (path.isEmpty())
        return {};
    const QByteArray encoded = QFile::encodeName(path);
    const int fd = ::open(encoded.constData(), O_PATH | O_CLOEXEC);
    if (fd < 0)
        return {};
    std::array<char, 32> link{};
    std::snprintf(link.data(), link.size(), "/proc/self/fd/%d", fd);
    QByteArray named(4096, Qt::Uninitialized);
    const ssize_t length = ::readlink(link.data(), named.data(), std::size_t(named.size()));
    ::close(fd);
    // Without /proc, for a name too long, or for a file removed meanwhile (the kernel then
    // adds a note to its name), the usual way answers.
    if (length <= 0 || length >= named.size() || named.at(0) != '/' ||
        QByteArrayView(named.constData(), length).endsWith(" (deleted)"))
        return QFileInfo(path).canonicalFilePath();
    named.truncate(length);
    return QFile::decodeName(named);
}

} // namespace tagmoor
