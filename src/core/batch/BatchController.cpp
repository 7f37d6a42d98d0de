#include "batch/BatchController.h"

#include "foundation/ThreadPriority.h"

#include "batch/BatchDriver.h"
#include "batch/BatchObserver.h"
#include "batch/ListPhotoSource.h"
#include "dates/DateRuleStore.h"
#include "foundation/UserPrompt.h"
#include "rename/RenameNumbering.h"

#include <QCoreApplication>
#include <QMetaObject>
#include <QtConcurrent/QtConcurrentRun>

namespace tagmoor {

namespace {

// Forwards the driver's progress to the controller's thread without waiting for it.
class SignalObserver : public BatchObserver {
public:
    explicit SignalObserver(BatchController* controller) : m_controller(controller) {}
    void photoStarted(const PhotoPlan& plan) override {
        QMetaObject::invokeMethod(
            m_controller,
            [c = m_controller, p = plan.processed, t = plan.total, s = plan.sourcePath] {
                emit c->progress(p, t, s);
            },
            Qt::QueuedConnection);
    }

private:
    BatchController* m_controller;
};

} // namespace

BatchController::BatchController(UserPrompt& prompt, RenameNumbering& numbering, QObject* parent)
    : QObject(parent), m_prompt(prompt), m_numbering(numbering) {}

BatchController::~BatchController() {
    if (isRunning()) {
        m_stop.answer(true);
        m_future.waitForFinished();
    }
}

bool BatchController::start(const RunValues& values, QList<CGImageProperties> workingImages,
                            int threads) {
    return start(values, std::make_shared<ListPhotoSource>(std::move(workingImages)), threads);
}

bool BatchController::start(const RunValues& values, std::shared_ptr<const PhotoSource> photos,
                            int threads) {
    if (m_isProcessed)
        return false;
    m_isProcessed = true;
    m_stop.reset();
    m_result = BatchResult{};
    m_future = QtConcurrent::run([this, values, photos, threads] {
        lowerThisThreadsPriority();
        const PhotoPipeline pipeline(values);
        SignalObserver observer(this);
        BatchDriver driver(pipeline, m_numbering, m_stop, &observer, threads);
        driver.setJournaled(true);
        const BatchResult result = driver.run(*photos);
        QMetaObject::invokeMethod(
            this,
            [this, result] {
                m_result = result;
                emit finished(result);
            },
            Qt::QueuedConnection);
    });
    return true;
}

bool BatchController::isRunning() const {
    return m_future.isValid() && !m_future.isFinished();
}

void BatchController::clickedStop() {
    if (!isRunning())
        return;
    m_stop.requestPause();
    // The text of stopQuestion, written out so that lupdate finds it.
    m_stop.answer(m_prompt.askYesNo(tr("Do you want to cancel exif details editing?"), QString()));
}

void BatchController::waitForFinished() {
    m_future.waitForFinished();
    // The result travels to this thread as a queued call; deliver it now.
    QCoreApplication::sendPostedEvents(this);
}

void BatchController::clickedFinish(RunValues& live, DateRuleStore& editorDates,
                                    bool storedOverwrite) {
    live.renameSettings = Rename{};
    m_isProcessed = false;
    live.fieldEditedFlags.clearAll();
    live.overwriteExisting = storedOverwrite;
    live.editedProperties = CGImageProperties{};
    editorDates.reset();
    emit finishedAndReset();
}

} // namespace tagmoor
