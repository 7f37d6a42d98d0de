#pragma once

#include "batch/BatchResult.h"
#include "batch/RunValues.h"
#include "model/CGImageProperties.h"

#include <QDialog>

class QLabel;
class QProgressBar;
class QPushButton;
class QStackedWidget;
class QTimer;

namespace tagmoor {

class BatchController;

// The run screen: a window-modal sheet that starts the run, shows the photo in work and the
// progress, offers Stop (the run waits on its condition while the question stands), and a
// second after the end shows the result. Finish hands back to the caller, which empties the list
// and the edits.
class FinalProcessedVC : public QDialog {
    Q_OBJECT
public:
    FinalProcessedVC(BatchController& controller, QWidget* parent = nullptr);

    // viewWillAppear: starts the run once per showing.
    void startRun(const RunValues& values, const QList<CGImageProperties>& workingImages,
                  int threads);

    bool isShowingResult() const;

signals:
    void finishClicked();

protected:
    void reject() override; // Escape does not close a running sheet

private:
    QWidget* makeProcessingView();
    QWidget* makeResultView();
    void showProgress(int processed, int total, const QString& path);
    // The run ended: the counts are filled in, and a second later the result view comes.
    void showResult(const BatchResult& result);
    void hideBoxProcessing();
    void showProblemList();

    BatchController& m_controller;
    QStackedWidget* m_views;
    QProgressBar* m_progress;
    QLabel* m_path;
    QLabel* m_count;
    QPushButton* m_stop;
    QLabel* m_completed;
    QLabel* m_batchCount;
    QLabel* m_processed;
    QLabel* m_skipped;
    QPushButton* m_outputDirectory;
    QLabel* m_saved;
    QLabel* m_problems;
    QLabel* m_notReached;
    QPushButton* m_showProblems;
    QPushButton* m_finish;
    QTimer* m_resultDelay;
    QString m_outputPath;
    QList<PhotoProblem> m_problemList;
    QStringList m_notReachedList;
};

} // namespace tagmoor
