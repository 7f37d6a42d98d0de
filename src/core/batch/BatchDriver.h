#pragma once

#include "batch/BatchResult.h"
#include "batch/PhotoPipeline.h"
#include "batch/PhotoSource.h"
#include "batch/StopControl.h"
#include "rename/RenameNumbering.h"

namespace tagmoor {

class BatchObserver;

// Walks a run's photos in list order and hands each selected one to the pipeline.
//
// With more than one thread, names, numbers and output folders are still decided in list
// order, one photo at a time; only the file work overlaps. A photo whose source or output
// path is also a path of a photo in work waits for that one to finish, so that collisions,
// overwrites and skips come out exactly as in a sequential run.
//
// Stop: between photos the driver asks the StopControl; a pause lets the photos in work
// finish and starts no new one until the answer; "YES" ends the run.
class BatchDriver {
public:
    BatchDriver(const PhotoPipeline& pipeline, RenameNumbering& numbering, StopControl& stop,
                BatchObserver* observer = nullptr, int threads = 1);

    // Runs to the end of the list or to a stop, and returns the result screen's values.
    BatchResult run(const PhotoSource& photos);

private:
    const PhotoPipeline& m_pipeline;
    RenameNumbering& m_numbering;
    StopControl& m_stop;
    BatchObserver* m_observer;
    int m_threads;
};

} // namespace tagmoor
