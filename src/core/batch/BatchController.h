#pragma once

#include "batch/BatchResult.h"
#include "batch/BatchSummary.h"
#include "batch/RunValues.h"
#include "foundation/StopControl.h"
#include "model/CGImageProperties.h"

#include <QFuture>
#include <QList>
#include <QObject>

#include <memory>

namespace tagmoor {

class DateRuleStore;
class PhotoSource;
class RenameNumbering;
class UserPrompt;

// The run screen's logic without the screen: starts a run on a worker thread, reports its
// progress as signals on the thread the controller lives in, asks the stop question through
// UserPrompt, and resets the edit state at Finish. Screens and the command line drive it;
// tests answer its question with ScriptedPrompt.
class BatchController : public QObject {
    Q_OBJECT
public:
    // The stop question as the sources hold it; the one asked is its translation.
    static inline const QString stopQuestion =
        QStringLiteral("Do you want to cancel exif details editing?");

    BatchController(UserPrompt& prompt, RenameNumbering& numbering, QObject* parent = nullptr);
    ~BatchController() override;

    // Starts a run over the selected photos of `photos` unless one was started on this
    // showing of the screen already (then false). `threads` > 1 overlaps the file work.
    bool start(const RunValues& values, std::shared_ptr<const PhotoSource> photos, int threads = 1);
    bool start(const RunValues& values, QList<CGImageProperties> workingImages, int threads = 1);

    bool isProcessed() const { return m_isProcessed; }
    bool isRunning() const;

    // Stop pressed: the photos in work finish, then the run waits for the answer to the stop
    // question; "YES" ends it, "NO" lets it go on.
    void clickedStop();

    // Blocks until the run has ended; for the command line and tests.
    void waitForFinished();

    const BatchResult& result() const { return m_result; }
    BatchSummary summary() const { return BatchSummary::of(m_result); }

    // Finish: the rename rule back to its default, every edit flag and date rule cleared, the
    // form snapshot emptied, overwriting back to the stored preference. The working list is
    // emptied by whoever listens to finishedAndReset().
    void clickedFinish(RunValues& live, DateRuleStore& editorDates, bool storedOverwrite);

    StopControl& stopControl() { return m_stop; }

signals:
    // A photo is about to be worked on: progress is processed / total.
    void progress(int processed, int total, const QString& sourcePath);
    // The run has ended, finished or stopped.
    void finished(const tagmoor::BatchResult& result);
    // Finish has reset the edit state; the list and the screens are to be emptied.
    void finishedAndReset();

private:
    UserPrompt& m_prompt;
    RenameNumbering& m_numbering;
    StopControl m_stop;
    bool m_isProcessed = false;
    BatchResult m_result;
    QFuture<void> m_future;
};

} // namespace tagmoor
