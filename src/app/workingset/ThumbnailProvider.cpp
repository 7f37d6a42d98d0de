#include "app/workingset/ThumbnailProvider.h"

#include "foundation/WorkerThreads.h"
#include "workingset/ThumbnailLoader.h"

#include <QFileInfo>
#include <QFutureWatcher>
#include <QtConcurrent>

namespace tagmoor {

ThumbnailProvider::ThumbnailProvider(QObject* parent, qint64 cacheBytes)
    : QObject(parent), m_cache(cacheBytes) {
    m_pool.setMaxThreadCount(workerThreadCount());
    m_pause.setSingleShot(true);
    m_pause.setInterval(kScrollPauseMs);
    connect(&m_pause, &QTimer::timeout, this, &ThumbnailProvider::startJobs);
}

ThumbnailProvider::~ThumbnailProvider() {
    m_queue.clear();
    m_pool.waitForDone();
}

QImage ThumbnailProvider::thumbnail(const QString& path, int maxSide) {
    if (const auto* entry = m_cache.find(path, maxSide))
        return entry->image;
    const Key key{path, maxSide};
    if (m_running.contains(key))
        return {};
    m_queue.removeOne(key);
    m_queue.append(key);
    if (!m_pause.isActive())
        QTimer::singleShot(0, this, &ThumbnailProvider::startJobs);
    return {};
}

QSize ThumbnailProvider::originalSize(const QString& path) const {
    return m_facts.value(path).pixels;
}

qint64 ThumbnailProvider::fileSize(const QString& path) const {
    return m_facts.value(path).bytes;
}

void ThumbnailProvider::viewScrolled() {
    m_queue.clear();
    m_pause.start();
}

void ThumbnailProvider::clear() {
    m_queue.clear();
    m_cache.clear();
    m_facts.clear();
}

void ThumbnailProvider::startJobs() {
    if (m_pause.isActive())
        return;
    while (!m_queue.isEmpty() && m_running.size() < m_pool.maxThreadCount()) {
        const Key key = m_queue.takeLast();
        if (m_cache.find(key.path, key.maxSide))
            continue;
        m_running.insert(key);
        auto* watcher = new QFutureWatcher<ThumbnailResult>(this);
        connect(watcher, &QFutureWatcher<ThumbnailResult>::finished, this, [this, watcher, key] {
            const ThumbnailResult result = watcher->result();
            watcher->deleteLater();
            m_running.remove(key);
            m_cache.insert(key.path, key.maxSide,
                           {result.image, result.originalSize, result.fileSize, result.modified});
            if (result.originalSize.isValid())
                m_facts.insert(key.path, {result.originalSize, result.fileSize});
            emit thumbnailReady(key.path, key.maxSide);
            startJobs();
        });
        watcher->setFuture(QtConcurrent::run(&m_pool, &ThumbnailLoader::load,
                                             ThumbnailRequest{key.path, key.maxSide}));
    }
}

void ThumbnailProvider::revalidate() {
    const QStringList paths = m_cache.paths();
    if (paths.isEmpty())
        return;
    struct Fact {
        QString path;
        qint64 size;
        QDateTime modified;
    };
    auto* watcher = new QFutureWatcher<QList<Fact>>(this);
    connect(watcher, &QFutureWatcher<QList<Fact>>::finished, this, [this, watcher] {
        for (const Fact& fact : watcher->result()) {
            if (m_cache.dropIfChanged(fact.path, fact.size, fact.modified))
                emit thumbnailReady(fact.path, 0);
        }
        watcher->deleteLater();
    });
    watcher->setFuture(QtConcurrent::run(&m_pool, [paths] {
        QList<Fact> facts;
        for (const QString& path : paths) {
            const QFileInfo info(path);
            facts.append({path, info.exists() ? info.size() : -1,
                          info.exists() ? info.lastModified() : QDateTime()});
        }
        return facts;
    }));
}

} // namespace tagmoor
