#include "batch/FileIdentity.h"

#include "batch/PhotoSource.h"
#include "foundation/CanonicalPath.h"

#include <QFile>
#include <QFileInfo>

#include <sys/stat.h>

#include <algorithm>

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

namespace {

// The entry at `path` itself, a link not followed.
std::optional<struct stat> entryAt(const QString& path) {
    struct stat st {};
    if (::lstat(QFile::encodeName(path).constData(), &st) != 0)
        return std::nullopt;
    return st;
}

} // namespace

std::optional<QString> resolvedLocationOf(const QString& path) {
    const auto entry = entryAt(path);
    return locationOf(entry && S_ISREG(entry->st_mode) ? path : canonicalPathOf(path));
}

bool entryExists(const QString& path) {
    struct stat st {};
    return ::lstat(QFile::encodeName(path).constData(), &st) == 0;
}

namespace {

// A path split as locationOf splits it: the folder that is looked up and the name in it.
struct Place {
    QString folder;
    QStringView name;
};

Place placeOf(const QString& path) {
    const int slash = int(path.lastIndexOf(QLatin1Char('/')));
    return {slash < 0    ? QStringLiteral(".")
            : slash == 0 ? QStringLiteral("/")
                         : path.left(slash),
            QStringView(path).mid(slash + 1)};
}

quint64 nameHash(QStringView name) {
    return quint64(quint32(qHash(name, 0))) << 32;
}

} // namespace

BatchSources::BatchSources(const PhotoSource& photos) : m_photos(&photos) {
    // Photos of one folder come one after another: its identity is asked once for them all.
    QString lastFolder;
    std::optional<FileId> lastFolderId;
    const auto folderId = [&](const QString& folder) {
        if (folder != lastFolder || lastFolder.isNull()) {
            lastFolder = folder;
            lastFolderId = fileIdOf(folder);
        }
        return lastFolderId;
    };
    const int count = photos.count();
    for (int i = 0; i < count; ++i) {
        if (!photos.isSelected(i))
            continue;
        const QString path = photos.pathOf(i);
        if (path.isEmpty())
            continue;
        // A file that is no link stands where its path says: its place is its folder's (that
        // folder reached through links or not) and its name. Only a link is resolved.
        const auto entry = entryAt(path);
        const bool plainFile = entry && S_ISREG(entry->st_mode);
        if (const auto id =
                plainFile ? FileId{quint64(entry->st_dev), quint64(entry->st_ino)} : fileIdOf(path))
            m_inodes[id->device].push_back(id->inode);
        const Place place = placeOf(path);
        if (const auto folder = folderId(place.folder))
            m_places[*folder].push_back(nameHash(place.name) | quint32(i));
        if (plainFile)
            continue;
        const QString resolved = canonicalPathOf(path);
        if (resolved.isEmpty() || resolved == path)
            continue;
        const Place real = placeOf(resolved);
        if (real.name != place.name) {
            if (const auto location = locationOf(resolved))
                m_otherPlaces.insert(*location);
        } else if (const auto folder = fileIdOf(real.folder)) {
            m_places[*folder].push_back(nameHash(real.name) | quint32(i));
        }
    }
    for (auto& inodes : m_inodes)
        std::sort(inodes.begin(), inodes.end());
    for (auto& places : m_places)
        std::sort(places.begin(), places.end());
}

bool BatchSources::standsAt(const QString& path) const {
    if (path.isEmpty())
        return false;
    if (!m_otherPlaces.isEmpty()) {
        if (const auto location = locationOf(path); location && m_otherPlaces.contains(*location))
            return true;
    }
    const Place place = placeOf(path);
    const auto folder = fileIdOf(place.folder);
    if (!folder)
        return false;
    const auto it = m_places.constFind(*folder);
    if (it == m_places.constEnd())
        return false;
    const quint64 hash = nameHash(place.name);
    for (auto at = std::lower_bound(it->begin(), it->end(), hash);
         at != it->end() && (*at & ~quint64(0xffffffff)) == hash; ++at) {
        const QString source = m_photos->pathOf(int(*at & 0xffffffff));
        if (placeOf(source).name == place.name)
            return true;
    }
    return false;
}

bool BatchSources::contains(const QString& path) const {
    if (const auto id = fileIdOf(path)) {
        const auto it = m_inodes.constFind(id->device);
        if (it != m_inodes.constEnd() && std::binary_search(it->begin(), it->end(), id->inode))
            return true;
    }
    if (standsAt(path))
        return true;
    const QString resolved = canonicalPathOf(path);
    return !resolved.isEmpty() && resolved != path && standsAt(resolved);
}

} // namespace tagmoor
