#include "batch/BatchDriver.h"

#include "foundation/CanonicalPath.h"
#include "foundation/ThreadPriority.h"

#include "batch/BatchObserver.h"
#include "batch/FileIdentity.h"
#include "journal/RunJournal.h"
#include "metadata/SafeFileReplace.h"
#include "model/PropertyValue.h"

#include <QFile>
#include <QThreadPool>

#include <algorithm>
#include <atomic>
#include <condition_variable>
#include <map>
#include <mutex>
#include <vector>

#include <sys/stat.h>

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

// A run's problems by list position, so that any number of workers reports them in one order.
class ProblemBook {
public:
    explicit ProblemBook(const std::function<void(const PhotoProblem&)>& sink) : m_sink(sink) {}

    void report(int index, const QString& path, const QString& reason) {
        std::lock_guard lock(m_mutex);
        m_problems.emplace(index, PhotoProblem{path, reason});
    }

    // With a sink, the problems of the photos before `below` go out now: they are all done.
    void handOver(int below) {
        if (!m_sink)
            return;
        std::vector<PhotoProblem> ready;
        {
            std::lock_guard lock(m_mutex);
            while (!m_problems.empty() && m_problems.begin()->first < below) {
                ready.push_back(std::move(m_problems.begin()->second));
                m_problems.erase(m_problems.begin());
            }
        }
        for (const PhotoProblem& problem : ready)
            m_sink(problem);
    }

    // The problems not handed over, in list order; once no worker is left.
    void moveRestInto(QList<PhotoProblem>& list) {
        for (auto& [index, problem] : m_problems)
            list.append(std::move(problem));
        m_problems.clear();
    }

private:
    const std::function<void(const PhotoProblem&)>& m_sink;
    std::mutex m_mutex;
    std::map<int, PhotoProblem> m_problems;
};

int selectedCount(const PhotoSource& photos) {
    int selected = 0;
    for (int i = 0; i < photos.count(); ++i) {
        if (photos.isSelected(i))
            ++selected;
    }
    return selected;
}

} // namespace

// A planned photo: its place in the list, its plan and its record.
struct BatchDriver::StartedPhoto {
    int index = 0;
    PhotoPlan plan;
    CGImageProperties record;
};

// What the photos of one run share while they are in work. The pool comes last, so that it
// waits for its workers before anything they use goes.
struct BatchDriver::RunState {
    RunState(const PhotoSource& list, int threads,
             const std::function<void(const PhotoProblem&)>& problemSink)
        : photos(list), sources(list), inFlight(threads), problems(problemSink) {
        pool.setMaxThreadCount(threads);
    }

    const PhotoSource& photos;
    // The files of all selected photos, so that no photo's output ever takes another's place.
    const BatchSources sources;
    InFlight inFlight;
    ProblemBook problems;
    std::atomic<int> written{0};
    std::atomic<int> withoutEdit{0};
    // The photos' notes by list position.
    std::mutex notesMutex;
    std::map<int, PhotoProblem> notes;
    // The next photo of the list to plan, and whether a stop ended the planning.
    std::mutex planning;
    int next = 0;
    bool ended = false;
    QThreadPool pool;
};

BatchDriver::BatchDriver(const PhotoPipeline& pipeline, RenameNumbering& numbering,
                         StopControl& stop, BatchObserver* observer, int threads)
    : m_pipeline(pipeline), m_numbering(numbering), m_stop(stop), m_observer(observer),
      m_threads(std::max(1, threads)) {}

BatchDriver::~BatchDriver() = default;

QString BatchDriver::journalId() const {
    return m_journal ? m_journal->id() : QString();
}

namespace {

// Stands in for a journal that could not be started: no photo is changed without its undo.
class RefusingWitness : public SafeFileReplace::Witness {
public:
    explicit RefusingWitness(QString why) : m_why(std::move(why)) {}
    bool beforeReplace(const QString&, const QByteArray&, qint64, const char*, std::size_t,
                       const struct stat&, QString* error) override {
        *error = QStringLiteral("the journal of the run could not be written (%1)").arg(m_why);
        return false;
    }

private:
    QString m_why;
};

} // namespace

void BatchDriver::startJournal(int photos) {
    m_journal.reset();
    m_refusal.reset();
    if (!m_journaled)
        return;
    const RunValues& values = m_pipeline.values();
    QString why;
    m_journal = RunJournal::start(
        values.isDestinationPathAsSource,
        values.isDestinationPathAsSource ? QString() : values.destinationFolder.value_or(QString()),
        photos, &why);
    if (!m_journal)
        m_refusal = std::make_unique<RefusingWitness>(why);
}

BatchResult BatchDriver::run(const PhotoSource& photos) {
    BatchResult result;
    result.total = selectedCount(photos);
    startJournal(result.total);
    sweepOutputFolder();
    RunState state(photos, m_threads, m_problemSink);
    const int reached = startPhotos(state, result);
    result.totalProcessedPhotos = state.written.load();
    result.processedWithoutEdit = state.withoutEdit.load();
    state.problems.handOver(photos.count());
    state.problems.moveRestInto(result.problems);
    for (auto& [index, note] : state.notes)
        result.notes.append(std::move(note));
    tellNotReached(photos, reached, result);
    return result;
}

void BatchDriver::sweepOutputFolder() const {
    // What a killed run left in the output folder goes now, whether or not a photo of this
    // run gets as far as writing there.
    const auto& destination = m_pipeline.values().destinationFolder;
    if (!m_pipeline.values().isDestinationPathAsSource && destination && !destination->isEmpty())
        SafeFileReplace::sweepLeftovers(*destination);
}

int BatchDriver::startPhotos(RunState& state, BatchResult& result) {
    StartedPhoto photo;
    if (m_threads == 1) {
        while (planNext(state, result, photo)) {
            processPhoto(state, photo.index, photo.plan, photo.record);
            state.problems.handOver(photo.index + 1);
        }
        return state.next;
    }
    // Each worker plans its next photo itself as soon as it is free: no photo waits in a
    // queue, and no thread wakes another between two photos.
    for (int worker = 0; worker < m_threads; ++worker) {
        state.pool.start([this, &state, &result] {
            lowerThisThreadsPriority();
            StartedPhoto next;
            while (planNext(state, result, next)) {
                processPhoto(state, next.index, next.plan, next.record);
                state.inFlight.done(next.index);
            }
        });
    }
    state.pool.waitForDone();
    return state.next;
}

bool BatchDriver::planNext(RunState& state, BatchResult& result, StartedPhoto& photo) {
    // One photo is planned at a time, in list order: its number, its output name and the
    // stop question all follow the list, whichever worker asks.
    const std::lock_guard lock(state.planning);
    const PhotoSource& photos = state.photos;
    for (; !state.ended && state.next < photos.count(); ++state.next) {
        if (m_stop.waitBetweenPhotos()) {
            result.stopped = true;
            state.ended = true;
            break;
        }
        const int i = state.next;
        if (!photos.isSelected(i))
            continue;
        ++result.processed;
        photo.index = i;
        photo.record = photos.recordForRun(i);
        // A skipped photo uses up its number too.
        photo.plan =
            m_pipeline.plan(photo.record, result.processed, result.total, m_numbering.take());
        if (photo.plan.outputDirectoryValue)
            result.outputDirectoryValue = *photo.plan.outputDirectoryValue;
        if (m_observer)
            m_observer->photoStarted(photo.plan);
        ++state.next;
        if (m_threads > 1) {
            state.inFlight.admit(i, photo.plan);
            // A worker reports a photo's problem before it leaves the photos in work.
            state.problems.handOver(state.inFlight.first(i + 1));
        }
        return true;
    }
    return false;
}

void BatchDriver::processPhoto(RunState& state, int index, const PhotoPlan& plan,
                               const CGImageProperties& record) const {
    // What the photo's edit reads of it is dropped with the photo: its values are not shared
    // with other photos'.
    const UnsharedValues readForThisPhoto;
    const PhotoResult outcome = m_journaled ? processJournaled(state, plan, record)
                                            : m_pipeline.process(plan, record, &state.sources);
    if (isCounted(outcome.outcome))
        ++state.written;
    // The standard form calls only the photos that carry the edit saved; the described form
    // every photo that has an output.
    const bool standardForm = m_pipeline.values().writeOptions.standardForm;
    if (standardForm && isCounted(outcome.outcome) && !outcome.carriesEdit())
        ++state.withoutEdit;
    if (!outcome.problem.isEmpty())
        state.problems.report(index, plan.hasUrl ? plan.sourcePath : state.photos.pathOf(index),
                              outcome.problem);
    if (!outcome.note.isEmpty()) {
        const std::lock_guard lock(state.notesMutex);
        state.notes.emplace(index, PhotoProblem{plan.sourcePath, outcome.note});
    }
    if (m_observer)
        m_observer->photoDone(plan, outcome.outcome);
}

PhotoResult BatchDriver::processJournaled(RunState& state, const PhotoPlan& plan,
                                          const CGImageProperties& record) const {
    if (!plan.hasUrl)
        return m_pipeline.process(plan, record, &state.sources);
    // The photo's output and its sidecar: what stood there before, to tell what the run made.
    const PhotoPipeline::PhotoFiles files = m_pipeline.photoFiles(plan);
    const QString& sidecarPath = files.sidecar.to;
    const QStringList outputs = {plan.finalPath, sidecarPath};
    const std::vector<std::optional<FileId>> before = {
        files.target, sidecarPath.isEmpty() ? std::nullopt : fileIdOf(sidecarPath)};
    const auto& sourceId = files.source;

    SafeFileReplace::Witness* witness =
        m_journal ? static_cast<SafeFileReplace::Witness*>(m_journal.get()) : m_refusal.get();
    PhotoResult outcome;
    {
        const SafeFileReplace::WitnessScope scope(witness);
        outcome = m_pipeline.process(plan, record, &state.sources, &files);
    }
    if (!m_journal)
        return outcome;
    const QStringList replaced = m_journal->settleReplaced();
    for (std::size_t i = 0; i < std::size_t(outputs.size()); ++i) {
        const QString& path = outputs.at(qsizetype(i));
        if (path.isEmpty())
            continue;
        struct stat st {};
        if (::stat(QFile::encodeName(path).constData(), &st) != 0)
            continue;
        const FileId now{quint64(st.st_dev), quint64(st.st_ino)};
        // A file the run replaced in place is journaled with its old bytes, not as made. The
        // replaced files are named by their canonical paths, which an output's path most often
        // is already.
        if (now == sourceId || now == before[i] ||
            (!replaced.isEmpty() &&
             (replaced.contains(path) || replaced.contains(canonicalPathOf(path)))))
            continue;
        m_journal->recordCreated(path, st);
    }
    return outcome;
}

void BatchDriver::tellNotReached(const PhotoSource& photos, int from, BatchResult& result) const {
    // After a stop, the photos not reached are told too, apart from those that failed:
    // nothing leaves a run unsaid.
    for (int i = from; i < photos.count(); ++i) {
        if (!photos.isSelected(i))
            continue;
        ++result.notReachedCount;
        if (m_notReachedSink)
            m_notReachedSink(photos.pathOf(i));
        else
            result.notReached.append(photos.pathOf(i));
    }
}

} // namespace tagmoor
