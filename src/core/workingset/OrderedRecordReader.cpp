#include "workingset/OrderedRecordReader.h"

#include "foundation/ThreadPriority.h"
#include "workingset/WorkingSetLog.h"

#include <QUrl>
#include <QtConcurrent>

#include <exception>
#include <utility>

namespace tagmoor {

OrderedRecordReader::OrderedRecordReader(RecordLoader loader, int threads, Sink sink,
                                         ReaderRuns runs)
    : m_loader(std::move(loader)), m_threads(threads), m_sink(std::move(sink)), m_runs(runs) {
    if (m_threads > 1)
        m_pool.setMaxThreadCount(m_threads);
}

OrderedRecordReader::~OrderedRecordReader() {
    m_pool.waitForDone();
}

void OrderedRecordReader::read(const QString& path) {
    if (m_threads <= 1) {
        m_sink(path, load(m_loader, path));
        return;
    }
    m_gathering << path;
    if (m_gathering.size() >= m_runs.filesPerTask)
        dispatch();
    drain(false);
}

void OrderedRecordReader::finish() {
    if (!m_gathering.isEmpty())
        dispatch();
    drain(true);
}

void OrderedRecordReader::dispatch() {
    QStringList paths = std::exchange(m_gathering, {});
    m_pendingFiles += paths.size();
    QFuture<Results> future = QtConcurrent::run(&m_pool, [this, paths] {
        // Readers yield to the event loop and to the caller's thread.
        lowerThisThreadsPriority();
        Results results;
        results.reserve(std::size_t(paths.size()));
        for (const QString& path : paths)
            results.push_back(load(m_loader, path));
        return results;
    });
    m_pending.push_back({std::move(paths), std::move(future)});
}

void OrderedRecordReader::drain(bool all) {
    while (!m_pending.empty()) {
        Pending& head = m_pending.front();
        const bool mustWait = all || m_pendingFiles > m_runs.maxReadAhead;
        if (!mustWait && !head.future.isFinished())
            return;
        Results results = head.future.takeResult();
        const QStringList paths = std::move(head.paths);
        m_pending.pop_front();
        m_pendingFiles -= paths.size();
        for (qsizetype i = 0; i < paths.size(); ++i)
            m_sink(paths[i], std::move(results[std::size_t(i)]));
    }
}

std::optional<CGImageProperties> OrderedRecordReader::load(const RecordLoader& loader,
                                                           const QString& path) {
    try {
        return loader(QUrl::fromLocalFile(path));
    } catch (const std::exception& e) {
        qCWarning(lcWorkingSet) << "Reading" << path << "failed:" << e.what();
    } catch (...) {
        qCWarning(lcWorkingSet) << "Reading" << path << "failed";
    }
    return std::nullopt;
}

} // namespace tagmoor
