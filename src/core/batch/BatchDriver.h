#pragma once

#include "batch/BatchResult.h"
#include "batch/PhotoPipeline.h"
#include "batch/PhotoSource.h"
#include "foundation/StopControl.h"
#include "metadata/SafeFileReplace.h"
#include "rename/RenameNumbering.h"

#include <functional>
#include <memory>

namespace tagmoor {

class BatchObserver;
class RunJournal;

// Walks a run's photos in list order and hands each selected one to the pipeline.
//
// With more than one thread, names, numbers and output folders are still decided in list
// order, one photo at a time; only the file work overlaps. A photo whose source or output
// path is also a path of a photo in work waits for that one to finish, so that collisions,
// overwrites and skips come out exactly as in a sequential run.
//
// The photos in work are at most a window apart in the list, so that what waits for a slow
// photo to be reported in order stays bounded.
//
// Stop: between photos the driver asks the StopControl; a pause lets the photos in work
// finish and starts no new one until the answer; "YES" ends the run.
class BatchDriver {
public:
    BatchDriver(const PhotoPipeline& pipeline, RenameNumbering& numbering, StopControl& stop,
                BatchObserver* observer = nullptr, int threads = 1);
    ~BatchDriver();

    // Keeps a journal of the run (RunJournal), so that it can be undone: the bytes each photo
    // changed in place had, the files the run made. A photo whose old bytes can't be kept is
    // not changed. Off by default.
    void setJournaled(bool journaled) { m_journaled = journaled; }
    // The id of the last run's journal; empty when it kept none.
    QString journalId() const;

    // Runs to the end of the list or to a stop, and returns the result screen's values.
    BatchResult run(const PhotoSource& photos);

    // Hands each problem to `sink` instead of gathering them in the result: in list order, as
    // soon as every photo before it is done, on the run's thread. A run that skips every one
    // of its photos then holds only the problems of the photos in work.
    void setProblemSink(std::function<void(const PhotoProblem&)> sink) {
        m_problemSink = std::move(sink);
    }

    // Hands the path of each photo that a stop kept the run from reaching to `sink` instead
    // of gathering them in the result, in list order, after every problem.
    void setNotReachedSink(std::function<void(const QString&)> sink) {
        m_notReachedSink = std::move(sink);
    }

private:
    struct RunState;
    struct StartedPhoto;
    // Plans the selected photos in list order and hands each to the pipeline, on a worker when
    // there are several, until the end of the list or a stop. Gives the index it stopped at.
    int startPhotos(RunState& state, BatchResult& result);
    // Plans the next selected photo into `photo`, after the stop question; false once the list
    // or the run has ended.
    bool planNext(RunState& state, BatchResult& result, StartedPhoto& photo);
    void processPhoto(RunState& state, int index, const PhotoPlan& plan,
                      const CGImageProperties& record) const;
    // process() of the pipeline with the journal told of what the photo changed and made.
    PhotoResult processJournaled(RunState& state, const PhotoPlan& plan,
                                 const CGImageProperties& record) const;
    void startJournal(int photos);
    void sweepOutputFolder() const;
    void tellNotReached(const PhotoSource& photos, int from, BatchResult& result) const;

    const PhotoPipeline& m_pipeline;
    RenameNumbering& m_numbering;
    StopControl& m_stop;
    BatchObserver* m_observer;
    int m_threads;
    std::function<void(const PhotoProblem&)> m_problemSink;
    std::function<void(const QString&)> m_notReachedSink;
    bool m_journaled = false;
    std::unique_ptr<RunJournal> m_journal;
    // Refuses every replacement when the journal could not be started.
    std::unique_ptr<SafeFileReplace::Witness> m_refusal;
};

} // namespace tagmoor
