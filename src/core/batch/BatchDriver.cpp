#include "batch/BatchDriver.h"

#include "foundation/ThreadPriority.h"

#include "batch/BatchObserver.h"
#include "metadata/SafeFileReplace.h"

#include <QThreadPool>

#include <algorithm>
#include <atomic>
#include <condition_variable>
#include <map>
#include <mutex>
#include <vector>

namespace tagmoor {

namespace {

// How far in the list a photo may be from the first one still in work.
constexpr int kWindow = 1024;

// The photos handed to workers and not yet done, with the paths each one touches.
class InFlight {
public:
    explicit InFlight(int limit) : m_limit(limit) {}

    // Waits for a free worker and for every photo in work that shares a path with `plan`.
    void admit(int index, const PhotoPlan& plan) {
        std::unique_lock lock(m_mutex);
        m_changed.wait(lock, [&] {
            if (int(m_paths.size()) >= m_limit)
                return false;
            if (!m_paths.empty() && index - m_paths.begin()->first >= kWindow)
                return false;
            return std::none_of(m_paths.begin(), m_paths.end(),
                                [&](const auto& entry) { return sharesPath(entry.second, plan); });
        });
        m_paths.emplace(index, plan);
    }

    void done(int index) {
        {
            std::lock_guard lock(m_mutex);
            m_paths.erase(index);
        }
        m_changed.notify_all();
    }

    // The first photo of the list still in work, or `otherwise` when none is.
    int first(int otherwise) {
        std::lock_guard lock(m_mutex);
        return m_paths.empty() ? otherwise : m_paths.begin()->first;
    }

    void waitAll() {
        std::unique_lock lock(m_mutex);
        m_changed.wait(lock, [&] { return m_paths.empty(); });
    }

private:
    // By text and by place: two texts may reach one folder through a link or a mount.
    static bool sharesPath(const PhotoPlan& a, const PhotoPlan& b) {
        if (!a.hasUrl || !b.hasUrl)
            return false;
        if (a.finalPath == b.finalPath || a.finalPath == b.sourcePath ||
            a.sourcePath == b.finalPath || a.sourcePath == b.sourcePath)
            return true;
        const auto same = [](const QString& x, const QString& y) { return !x.isEmpty() && x == y; };
        return same(a.finalLocation, b.finalLocation) || same(a.finalLocation, b.sourceLocation) ||
               same(a.sourceLocation, b.finalLocation) || same(a.sourceLocation, b.sourceLocation);
    }

    const int m_limit;
    std::mutex m_mutex;
    std::condition_variable m_changed;
    std::map<int, PhotoPlan> m_paths;
};

} // namespace

BatchDriver::BatchDriver(const PhotoPipeline& pipeline, RenameNumbering& numbering,
                         StopControl& stop, BatchObserver* observer, int threads)
    : m_pipeline(pipeline), m_numbering(numbering), m_stop(stop), m_observer(observer),
      m_threads(std::max(1, threads)) {}

BatchResult BatchDriver::run(const PhotoSource& photos) {
    BatchResult result;
    const int count = photos.count();
    for (int i = 0; i < count; ++i) {
        if (photos.isSelected(i))
            ++result.total;
    }
    // What a killed run left in the output folder goes now, whether or not a photo of this
    // run gets as far as writing there.
    const auto& destination = m_pipeline.values().destinationFolder;
    if (!m_pipeline.values().isDestinationPathAsSource && destination && !destination->isEmpty())
        SafeFileReplace::sweepLeftovers(*destination);

    // The files of all selected photos, so that no photo's output ever takes another's place.
    const BatchSources sources(photos);

    std::atomic<int> written{0};
    // The standard form calls only the photos that carry the edit saved; the described form
    // every photo that has an output.
    const bool standardForm = m_pipeline.values().writeOptions.standardForm;
    std::atomic<int> withoutEdit{0};
    InFlight inFlight(m_threads);
    QThreadPool pool;
    pool.setMaxThreadCount(m_threads);
    // Problems by list position, so that any number of workers reports them in one order.
    std::mutex problemsMutex;
    std::map<int, PhotoProblem> problems;
    const auto report = [&](int index, const QString& path, const QString& reason) {
        std::lock_guard lock(problemsMutex);
        problems.emplace(index, PhotoProblem{path, reason});
    };
    // With a sink, the problems of the photos before `below` go out now: they are all done.
    const auto handOver = [&](int below) {
        if (!m_problemSink)
            return;
        std::vector<PhotoProblem> ready;
        {
            std::lock_guard lock(problemsMutex);
            while (!problems.empty() && problems.begin()->first < below) {
                ready.push_back(std::move(problems.begin()->second));
                problems.erase(problems.begin());
            }
        }
        for (const PhotoProblem& problem : ready)
            m_problemSink(problem);
    };

    auto work = [&](int index, const PhotoPlan& plan, const CGImageProperties& record) {
        const PhotoResult outcome = m_pipeline.process(plan, record, &sources);
        if (isCounted(outcome.outcome))
            ++written;
        if (standardForm && isCounted(outcome.outcome) && !outcome.carriesEdit())
            ++withoutEdit;
        if (!outcome.problem.isEmpty())
            report(index, plan.hasUrl ? plan.sourcePath : photos.pathOf(index), outcome.problem);
        if (m_observer)
            m_observer->photoDone(plan, outcome.outcome);
    };

    int i = 0;
    for (; i < count; ++i) {
        if (m_stop.waitBetweenPhotos()) {
            result.stopped = true;
            break;
        }
        if (!photos.isSelected(i))
            continue;
        ++result.processed;
        CGImageProperties record = photos.record(i);
        // A skipped photo uses up its number too.
        PhotoPlan plan =
            m_pipeline.plan(record, result.processed, result.total, m_numbering.take());
        if (plan.outputDirectoryValue)
            result.outputDirectoryValue = *plan.outputDirectoryValue;
        if (m_observer)
            m_observer->photoStarted(plan);
        if (m_threads == 1) {
            work(i, plan, record);
        } else {
            inFlight.admit(i, plan);
            pool.start([&, i, plan = std::move(plan), record = std::move(record)] {
                lowerThisThreadsPriority();
                work(i, plan, record);
                inFlight.done(i);
            });
        }
        // A worker reports a photo's problem before it leaves the photos in work.
        handOver(inFlight.first(i + 1));
    }
    inFlight.waitAll();
    pool.waitForDone();
    result.totalProcessedPhotos = written.load();
    result.processedWithoutEdit = withoutEdit.load();
    handOver(count);
    for (auto& [index, problem] : problems)
        result.problems.append(std::move(problem));
    // After a stop, the photos not reached are told too, apart from those that failed:
    // nothing leaves a run unsaid.
    for (; i < count; ++i) {
        if (!photos.isSelected(i))
            continue;
        ++result.notReachedCount;
        if (m_notReachedSink)
            m_notReachedSink(photos.pathOf(i));
        else
            result.notReached.append(photos.pathOf(i));
    }
    return result;
}

} // namespace tagmoor
