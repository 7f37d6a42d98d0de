#include "app/workingset/ThumbnailCache.h"

#include <QSet>

namespace tagmoor {

ThumbnailCache::ThumbnailCache(qint64 maxBytes) : m_entries(maxBytes) {}

QString ThumbnailCache::key(const QString& path, int maxSide) {
    return QString::number(maxSide) + QLatin1Char('|') + path;
}

const ThumbnailCache::Entry* ThumbnailCache::find(const QString& path, int maxSide) const {
    return m_entries.object(key(path, maxSide));
}

void ThumbnailCache::insert(const QString& path, int maxSide, const Entry& entry) {
    // A failed decode still costs its bookkeeping, so that failures cannot pile up for free.
    const qint64 cost = std::max<qint64>(256, entry.image.sizeInBytes());
    m_entries.insert(key(path, maxSide), new Entry(entry), cost);
}

bool ThumbnailCache::dropIfChanged(const QString& path, qint64 fileSize,
                                   const QDateTime& modified) {
    bool dropped = false;
    const QString suffix = QLatin1Char('|') + path;
    const QList<QString> keys = m_entries.keys();
    for (const QString& k : keys) {
        if (!k.endsWith(suffix))
            continue;
        const Entry* entry = m_entries.object(k);
        if (entry && (entry->fileSize != fileSize || entry->modified != modified))
            dropped = m_entries.remove(k) || dropped;
    }
    return dropped;
}

QStringList ThumbnailCache::paths() const {
    QSet<QString> seen;
    for (const QString& k : m_entries.keys())
        seen.insert(k.section(QLatin1Char('|'), 1));
    return QStringList(seen.begin(), seen.end());
}

} // namespace tagmoor
