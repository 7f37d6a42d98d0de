#pragma once

#include <QHash>
#include <QSet>
#include <QString>
#include <QStringList>

#include <optional>
#include <vector>

namespace tagmoor {

class PhotoSource;

// Which file a path reaches: the device and inode of what it resolves to. Two texts may reach
// one file (a link to a folder, a bind mount, a hard link), so paths are compared by identity,
// never by their text.
struct FileId {
    quint64 device = 0;
    quint64 inode = 0;
    bool operator==(const FileId&) const = default;
};

inline size_t qHash(const FileId& id, size_t seed = 0) {
    return qHashMulti(seed, id.device, id.inode);
}

// The identity of the file that `path` resolves to; nothing when it does not exist.
std::optional<FileId> fileIdOf(const QString& path);

// Where a name stands: the identity of its folder and the name, as a text ("dev:ino/name").
// Two paths that reach one place give one location, whether or not a file is there; a link
// at the path itself is not followed. Nothing when the folder does not exist.
std::optional<QString> locationOf(const QString& path);

// Where the file that `path` resolves to stands: locationOf() of its canonical path. Only a
// link at the path itself is resolved for it; links among its folders lead to the same folder.
std::optional<QString> resolvedLocationOf(const QString& path);

// Whether something, even a dangling link, stands at `path`.
bool entryExists(const QString& path);

// The sources of one run. A file that is the source of another photo of the run is never in
// the way of an output: it is not removed and not written over. A source edited in place gets
// a new file at its name, so both its identity and its place count.
//
// Kept for every photo of a long run, so kept small: per source its inode (by device) and,
// by the identity of its folder, a hash of its name with the photo's number; a hash that
// matches is confirmed against the photo's path. About 16 bytes a photo.
class BatchSources {
public:
    BatchSources() = default;
    // The files of the selected photos of `photos` as they are now. `photos` must outlive
    // the set: names are confirmed against its paths.
    explicit BatchSources(const PhotoSource& photos);
    // Whether `path` reaches one of the sources, or the place where one stands.
    bool contains(const QString& path) const;

private:
    bool standsAt(const QString& path) const;

    const PhotoSource* m_photos = nullptr;
    // Inodes of the sources by device, sorted.
    QHash<quint64, std::vector<quint64>> m_inodes;
    // Per folder (by identity): the hash of a source's name in the high half, the photo's
    // number in the low half; sorted.
    QHash<FileId, std::vector<quint64>> m_places;
    // The places of sources that are links to a file of another name, as locationOf gives
    // them; such links are few.
    QSet<QString> m_otherPlaces;
};
} // namespace tagmoor
