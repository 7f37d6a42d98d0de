#pragma once

#include "batch/PhotoOutcome.h"
#include "batch/PhotoPlan.h"

namespace tagmoor {

// Progress of a run, called on the run's own thread or on its workers: photoStarted for one
// photo at a time and in list order, photoDone as each photo ends. An observer must not
// block: the application forwards the calls to its main thread.
class BatchObserver {
public:
    virtual ~BatchObserver() = default;
    // A photo is about to be worked on: `processed` of `total`, and its source path.
    virtual void photoStarted(const PhotoPlan& plan) { (void)plan; }
    // A photo is done.
    virtual void photoDone(const PhotoPlan& plan, PhotoOutcome outcome) {
        (void)plan;
        (void)outcome;
    }
};

} // namespace tagmoor
