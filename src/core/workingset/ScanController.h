#pragma once

#include "workingset/ListSelection.h"
#include "workingset/PanelFilter.h"
#include "workingset/PhotoScanner.h"
#include "workingset/ScanProgressView.h"
#include "workingset/WorkingSetAlerts.h"

#include <QElapsedTimer>
#include <QObject>
#include <QTimer>

#include <optional>

namespace tagmoor {

class AppEvents;
class UserPrompt;
class WorkingSet;

// The home screen's adding logic without the screen: starts the scan of the staged files,
// keeps the progress view, appends records as they arrive, asks the stop question, shows the
// end-of-scan alert and moves back to the add screen when the list stays empty. The screen
// binds its controls to progressViewChanged and calls the operations below.
class ScanController : public QObject {
    Q_OBJECT
public:
    ScanController(WorkingSet& workingSet, UserPrompt& prompt, AppEvents& events,
                   QObject* parent = nullptr);

    // Both start a scan of stagedURLs; the first for a fresh list, the other for opened files.
    void firstRetriving();
    void getOpenWithItems();
    void retriveImages(bool isFirst);
    // The home screen is about to appear: starts the scan when one is due. True when this
    // is the first appearance for the list (the screen then resets editor, date rules and
    // rename state). Does nothing while a scan runs.
    bool homeScreenWillAppear();

    // The stop button: pauses the scan, asks, and stops on "YES".
    void clickedStopScanning();

    // The file-opening path: with the panel's choice, stage and scan (home screen) or stage
    // and move to the home screen (add screen). Shows the panel alert after its delay.
    void addFromPanel(PanelScreen screen, const QStringList& chosenPaths);
    // The originals of chosen library albums: scanned at once from the home screen, or on
    // the home screen's appearance from the add screen.
    void addLibraryItems(PanelScreen screen, const LibraryRead& read);
    // A drop on the add screen: every path staged without filtering, then as the add screen.
    void addFromDrop(const QStringList& paths);

    // Removal by the button (no question) or the menu (asks first); true when removed.
    bool clickedRemove();
    bool removeSelected();
    bool removeAll();

    const ScanProgressView& progressView() const { return m_view; }
    const ScanResult& lastResult() const { return m_lastResult; }
    bool isScanning() const;
    ListSelection& selection() { return m_selection; }

    // Tuning and seams: the number of reader threads, the record loader and the library reader.
    void setReaderThreads(int n) { m_readerThreads = n; }
    void setRecordLoader(RecordLoader loader) { m_loader = std::move(loader); }
    void setLibraryReader(LibraryReader reader) { m_libraryReader = std::move(reader); }
    PhotoScanner& scanner() { return m_scanner; }

    // The main thread appends the scan's records in slices of about this much of its time,
    // at most one slice a frame, so that the window is served between them however fast the
    // records come and however long the list is.
    static constexpr int sliceBudgetMs = 8;
    static constexpr int frameMs = 16;
    static constexpr int maxSliceRecords = 4096;

signals:
    void progressViewChanged(const tagmoor::ScanProgressView& view);
    // The end of scan ran: alert queued, list refreshed (or back to the add screen).
    void scanFinished(const tagmoor::ScanResult& result);
    // The marks changed in a way the screen must carry out (after a scan or a removal).
    void selectionRefreshed(const tagmoor::SelectionOutcome& outcome);
    // The views should reload (after a scan or a removal).
    void reloadViews();
    // An alert was shown (for screens that log or tests that wait).
    void alertShown(const tagmoor::Alert& alert);

private:
    // Appends the next slice of waiting records; ends the scan once they are all in.
    void appendSlice();
    void scheduleSlice();
    void scannerFinished(const ScanResult& result);
    void onFinished(const ScanResult& result);
    void showAlertLater(const TimedAlert& alert);
    void showAlertsLater(const QList<Alert>& alerts, int delayMs);
    // Tells the views and the selection that photos left the list.
    bool listShrank();

    WorkingSet& m_set;
    UserPrompt& m_prompt;
    AppEvents& m_events;
    ListSelection m_selection;
    PhotoScanner m_scanner;
    ScanProgressView m_view;
    ScanResult m_lastResult;
    int m_readerThreads = 2;
    RecordLoader m_loader;
    LibraryReader m_libraryReader;
    QList<LibraryItem> m_libraryItems;
    QList<LibraryLeftOut> m_libraryLeftOut;
    QTimer m_slices;
    QElapsedTimer m_sinceSlice;
    // How many records fit in one slice, from the time the last slices took.
    qsizetype m_sliceRecords = PhotoScanner::maxBatch;
    // The scan's end, held back until its last records are in the list.
    std::optional<ScanResult> m_finishing;
};

} // namespace tagmoor
