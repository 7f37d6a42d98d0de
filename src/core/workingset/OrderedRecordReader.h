#pragma once

#include "workingset/ScanTypes.h"

#include <QFuture>
#include <QString>
#include <QStringList>
#include <QThreadPool>

#include <deque>
#include <functional>
#include <optional>
#include <vector>

namespace tagmoor {

// Reads records on a pool of reader threads and hands them back in the order the files were
// given, so that any number of threads gives the same sequence as one. With one thread the
// record is read on the caller's thread. Used by the window's scan and by `tagmoor-cli read`.
class OrderedRecordReader {
public:
    // Receives each file's result, in the order of read(), on the caller's thread.
    using Sink = std::function<void(const QString& path, std::optional<CGImageProperties>&&)>;

    OrderedRecordReader(RecordLoader loader, int threads, Sink sink);
    ~OrderedRecordReader(); // waits for the reads still running; their results are dropped

    // Queues one file; hands over the results that are ready (at most `maxReadAhead` wait).
    void read(const QString& path);
    // Hands over every result, waiting for the reads still running.
    void finish();

    // Records may be read this far ahead of the one being handed over.
    static constexpr int maxReadAhead = 256;
    // Files go to the reader threads in runs of this many: one hand-over of work and one of
    // results per run rather than per file, which with small photos costs as much as reading.
    // Each hand-over wakes a thread; runs of 32 took a two-thread read of 10,000 small photos
    // from about 9,500 switches between threads to 3,600, and 5% less time.
    static constexpr int filesPerTask = 32;

private:
    using Results = std::vector<std::optional<CGImageProperties>>;
    struct Pending {
        QStringList paths;
        QFuture<Results> future;
    };
    void dispatch();
    void drain(bool all);
    static std::optional<CGImageProperties> load(const RecordLoader& loader, const QString& path);

    RecordLoader m_loader;
    int m_threads;
    Sink m_sink;
    QThreadPool m_pool;
    std::deque<Pending> m_pending;
    qsizetype m_pendingFiles = 0;
    QStringList m_gathering; // the run being gathered, not yet handed to a thread
};

} // namespace tagmoor
