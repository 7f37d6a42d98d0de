#pragma once

#include "app/workingset/ThumbnailCache.h"

#include <QHash>
#include <QObject>
#include <QSet>
#include <QThreadPool>
#include <QTimer>

namespace tagmoor {

// Hands the views their thumbnails. A view asks while it paints; a miss is queued and decoded
// on a small pool of its own, newest request first. While the user scrolls, the queue is
// emptied at each step and nothing starts until the scrolling has paused, so only the rows that
// are on screen at the end are decoded and far requests never cost a decode.
class ThumbnailProvider : public QObject {
    Q_OBJECT
public:
    explicit ThumbnailProvider(QObject* parent = nullptr, qint64 cacheBytes = 96ll * 1024 * 1024);
    ~ThumbnailProvider() override;

    // The cached picture, or a null image after queueing the request.
    QImage thumbnail(const QString& path, int maxSide);
    // The pixel size of the file, once any of its thumbnails has been decoded.
    QSize originalSize(const QString& path) const;
    // The file's size in bytes as seen by the last decode; -1 before.
    qint64 fileSize(const QString& path) const;

    // A view scrolled: forget what was asked and wait for the scrolling to pause.
    void viewScrolled();
    // Drops what was decoded from files that have changed since; checks on a worker.
    void revalidate();
    void clear();

    int pendingCount() const { return int(m_queue.size()); }
    int runningCount() const { return int(m_running.size()); }
    const ThumbnailCache& cache() const { return m_cache; }

    // How long the queue waits after the last scroll step.
    static constexpr int kScrollPauseMs = 120;

signals:
    void thumbnailReady(const QString& path, int maxSide);

private:
    struct Key {
        QString path;
        int maxSide;
        bool operator==(const Key& o) const { return maxSide == o.maxSide && path == o.path; }
    };
    friend size_t qHash(const Key& k, size_t seed) { return qHash(k.path, seed) ^ k.maxSide; }

    void startJobs();

    ThumbnailCache m_cache;
    struct Facts {
        QSize pixels;
        qint64 bytes = -1;
    };
    QHash<QString, Facts> m_facts;
    QList<Key> m_queue;
    QSet<Key> m_running;
    QThreadPool m_pool;
    QTimer m_pause;
};

} // namespace tagmoor
