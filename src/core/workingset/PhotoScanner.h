#pragma once

#include "workingset/RecordQueue.h"
#include "workingset/ScanTypes.h"

#include <QObject>
#include <QThread>

#include <memory>

namespace tagmoor {

// Runs one scan of staged files on a worker thread: a counting pass, the library pass, then
// an adding pass that reads the records (on `readerThreads` readers) and hands them over in
// order. The list ends exactly as a one-file-at-a-time scan leaves it. The object lives on
// the thread that starts it; its signals arrive there.
class PhotoScanner : public QObject {
    Q_OBJECT
public:
    explicit PhotoScanner(QObject* parent = nullptr);
    ~PhotoScanner() override; // stops and joins a running scan

    // Starts a scan; false when one is running already.
    bool start(ScanRequest request);
    bool isRunning() const;

    // The stop question is on screen: the scan waits before its next item.
    void pause();
    // The question was answered; `stop` true ends the scan at the next item.
    void resume(bool stop);
    // Waits for the worker to end (tests, shutdown). False on timeout.
    bool wait(int timeoutMs = -1);

    // Moves out up to `max` of the records read so far, in list order, to append to
    // workingImages. Records of a scan are all waiting here when finished() arrives.
    QList<CGImageProperties> takeRecords(qsizetype max);
    qsizetype waitingRecords() const;

    // Coalescing period of progress updates (about 30 a second).
    static constexpr int progressIntervalMs = 33;
    // Records are put in the queue in batches of at most this many (or at each progress
    // update).
    static constexpr int maxBatch = 256;

    // The pause and stop state shared with the worker (defined in the .cpp).
    struct Shared;

signals:
    // The counting is done: switch to the percentage look.
    void countingFinished(int totalPhotos);
    // Coalesced; the last one before finished() carries the final counters.
    void progress(const tagmoor::ScanCounters& counters);
    // Records wait for takeRecords(). Sent once until they have all been taken, not per
    // batch, so that a main thread that falls behind is not sent a pile of calls.
    void recordsWaiting();
    // After the last record was put in the queue.
    void finished(const tagmoor::ScanResult& result);

private:
    std::shared_ptr<Shared> m_shared;
    QThread* m_thread = nullptr;
};

} // namespace tagmoor
