#include "batch/FileIdentity.h"

#include <QFile>
#include <QFileInfo>

#include <sys/stat.h>

namespace tagmoor {

namespace {

std::optional<FileId> idOf(const QByteArray& native) {
    struct stat st {};
    if (::stat(native.constData(), &st) != 0)
        return std::nullopt;
    return FileId{quint64(st.st_dev), quint64(st.st_ino)};
}

} // namespace

std::optional<FileId> fileIdOf(const QString& path) {
    return idOf(QFile::encodeName(path));
}

std::optional<QString> locationOf(const QString& path) {
    if (path.isEmpty())
        return std::nullopt;
    const int slash = int(path.lastIndexOf(QLatin1Char('/')));
    const QString folder = slash < 0    ? QStringLiteral(".")
                           : slash == 0 ? QStringLiteral("/")
                                        : path.left(slash);
    const auto id = fileIdOf(folder);
    if (!id)
        return std::nullopt;
    return QStringLiteral("%1:%2/").arg(id->device).arg(id->inode) + path.mid(slash + 1);
}

bool entryExists(const QString& path) {
    struct stat st {};
    return ::lstat(QFile::encodeName(path).constData(), &st) == 0;
}

BatchSources::BatchSources(const QStringList& paths) {
    for (const QString& path : paths)
        add(path);
}

void BatchSources::add(const QString& path) {
    if (const auto id = fileIdOf(path))
        m_files.insert(*id);
    if (const auto place = locationOf(path))
        m_locations.insert(*place);
    const QString resolved = QFileInfo(path).canonicalFilePath();
    if (!resolved.isEmpty() && resolved != path) {
        if (const auto place = locationOf(resolved))
            m_locations.insert(*place);
    }
}

bool BatchSources::contains(const QString& path) const {
    if (const auto id = fileIdOf(path); id && m_files.contains(*id))
        return true;
    if (const auto place = locationOf(path); place && m_locations.contains(*place))
        return true;
    const QString resolved = QFileInfo(path).canonicalFilePath();
    if (!resolved.isEmpty() && resolved != path) {
        if (const auto place = locationOf(resolved); place && m_locations.contains(*place))
            return true;
    }
    return false;
}

} // namespace tagmoor
