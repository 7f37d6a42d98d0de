#pragma once

#include <QSet>
#include <QString>
#include <QStringList>

#include <optional>

namespace tagmoor {

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

// Whether something, even a dangling link, stands at `path`.
bool entryExists(const QString& path);

// The sources of one run. A file that is the source of another photo of the run is never in
// the way of an output: it is not removed and not written over. A source edited in place gets
// a new file at its name, so both its identity and its place count.
class BatchSources {
public:
    BatchSources() = default;
    explicit BatchSources(const QStringList& paths);
    void add(const QString& path);
    // Whether `path` reaches one of the sources, or the place where one stands.
    bool contains(const QString& path) const;

private:
    QSet<FileId> m_files;
    QSet<QString> m_locations;
};

} // namespace tagmoor
