#include "workingset/OrderedRecordReader.h"

#include "foundation/ThreadPriority.h"
#include "workingset/WorkingSetLog.h"

#include <QUrl>
#include <QtConcurrent>

#include <exception>

namespace tagmoor {

OrderedRecordReader::OrderedRecordReader(RecordLoader loader, int threads, Sink sink)
    : m_loader(std::move(loader)), m_threads(threads), m_sink(std::move(sink)) {
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
    m_pending.push_back({path, QtConcurrent::run(&m_pool, [this, path] {
                             // Readers yield to the event loop and to the caller's thread.
                             lowerThisThreadsPriority();
                             return load(m_loader, path);
                         })});
    drain(false);
}

void OrderedRecordReader::finish() {
    drain(true);
}

void OrderedRecordReader::drain(bool all) {
    while (!m_pending.empty()) {
        Pending& head = m_pending.front();
        const bool mustWait = all || int(m_pending.size()) > maxReadAhead;
        if (!mustWait && !head.future.isFinished())
            return;
        std::optional<CGImageProperties> record = head.future.takeResult();
        const QString path = std::move(head.path);
        m_pending.pop_front();
        m_sink(path, std::move(record));
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
