#pragma once

#include <QCache>
#include <QDateTime>
#include <QImage>
#include <QSize>
#include <QString>

namespace tagmoor {

// Decoded thumbnails in memory, priced in bytes and dropped least recently used first. An entry
// remembers the size and modification time of the file it came from, so that a file changed
// on disk can be told from the one that was decoded.
class ThumbnailCache {
public:
    struct Entry {
        QImage image; // null when the file could not be decoded
        QSize originalSize;
        qint64 fileSize = -1;
        QDateTime modified;
    };

    explicit ThumbnailCache(qint64 maxBytes = 96ll * 1024 * 1024);

    const Entry* find(const QString& path, int maxSide) const;
    void insert(const QString& path, int maxSide, const Entry& entry);
    // Drops every size of a file whose facts differ from those given; true when one was dropped.
    bool dropIfChanged(const QString& path, qint64 fileSize, const QDateTime& modified);
    void clear() { m_entries.clear(); }

    qint64 usedBytes() const { return m_entries.totalCost(); }
    qint64 maxBytes() const { return m_entries.maxCost(); }
    QStringList paths() const;

private:
    static QString key(const QString& path, int maxSide);
    QCache<QString, Entry> m_entries;
};

} // namespace tagmoor
