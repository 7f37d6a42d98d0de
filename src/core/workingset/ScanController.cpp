#include "workingset/ScanController.h"

#include "foundation/AppEvents.h"
#include "foundation/UserPrompt.h"
#include "photolibrary/PhotoLibraryReader.h"
#include "workingset/WorkingSet.h"

#include <QSet>
#include <QTimer>

#include <algorithm>

namespace tagmoor {

ScanController::ScanController(WorkingSet& workingSet, UserPrompt& prompt, AppEvents& events,
                               QObject* parent)
    : QObject(parent), m_set(workingSet), m_prompt(prompt), m_events(events),
      m_selection(workingSet),
      m_libraryReader([](const QUrl& package) { return readWholeLibrary(package.toLocalFile()); }) {
    connect(&m_scanner, &PhotoScanner::countingFinished, this, [this](int totalPhotos) {
        m_set.reserveFor(totalPhotos);
        m_view = ScanProgressView::percentageLook(m_view);
        emit progressViewChanged(m_view);
    });
    connect(&m_scanner, &PhotoScanner::progress, this, [this](const ScanCounters& counters) {
        m_view = ScanProgressView::forItem(counters);
        emit progressViewChanged(m_view);
    });
    m_slices.setSingleShot(true);
    connect(&m_slices, &QTimer::timeout, this, &ScanController::appendSlice);
    connect(&m_scanner, &PhotoScanner::recordsWaiting, this, &ScanController::scheduleSlice);
    connect(&m_scanner, &PhotoScanner::finished, this, &ScanController::scannerFinished);
}

void ScanController::scheduleSlice() {
    if (m_slices.isActive())
        return;
    // A frame after the last slice: the grid and the labels take the new rows at most once a
    // frame, whatever the number of batches that came meanwhile.
    const qint64 since = m_sinceSlice.isValid() ? m_sinceSlice.elapsed() : frameMs;
    m_slices.start(int(std::max<qint64>(0, frameMs - since)));
}

void ScanController::appendSlice() {
    m_sinceSlice.start();
    QElapsedTimer clock;
    clock.start();
    QList<CGImageProperties> records = m_scanner.takeRecords(m_sliceRecords);
    const qsizetype taken = records.size();
    if (taken > 0) {
        m_set.appendImages(std::move(records));
        // The next slice is sized by what this one cost: moving the records in and the work
        // of the views and labels that follow the list. It grows only after a full slice
        // (a short one says nothing of the room left) and moves halfway each time, so one
        // slow or fast turn does not swing it. It never falls below one batch of the scan,
        // a fraction of a millisecond, so that a busy machine cannot hold the list back, nor
        // grows past maxSliceRecords, which bounds the memory a slice holds on its way in.
        const qint64 ns = std::max<qint64>(1, clock.nsecsElapsed());
        const qsizetype fits = qsizetype(taken * (sliceBudgetMs * 1'000'000.0 / double(ns)));
        if (taken == m_sliceRecords || fits < m_sliceRecords)
            m_sliceRecords = std::clamp<qsizetype>((m_sliceRecords + fits) / 2,
                                                   PhotoScanner::maxBatch, maxSliceRecords);
    }
    // The end of the scan (marks, editor, views) is a turn of its own, after the last slice.
    if (m_scanner.waitingRecords() > 0 || (m_finishing && taken > 0))
        scheduleSlice();
    else if (m_finishing)
        onFinished(*std::exchange(m_finishing, std::nullopt));
}

void ScanController::scannerFinished(const ScanResult& result) {
    // The scan put its last records in the queue before it ended; they go in first.
    if (m_scanner.waitingRecords() > 0 || m_slices.isActive()) {
        m_finishing = result;
        scheduleSlice();
        return;
    }
    onFinished(result);
}

bool ScanController::isScanning() const {
    return m_set.isScanning();
}

void ScanController::firstRetriving() {
    retriveImages(true);
}

void ScanController::getOpenWithItems() {
    retriveImages(false);
    m_set.requestRetrieveOnAppear();
}

bool ScanController::homeScreenWillAppear() {
    if (m_set.isScanning())
        return false;
    const bool first = m_set.takeFirstAdding();
    if (m_set.retrieveOnAppear())
        firstRetriving();
    return first;
}

void ScanController::retriveImages(bool isFirst) {
    if (m_set.isScanning())
        return;
    ScanRequest request;
    request.stagedURLs = m_set.stagedURLs();
    const QStringList paths = m_set.imagePaths();
    request.existingPaths = QSet<QString>(paths.begin(), paths.end());
    request.listCountBefore = m_set.count();
    request.isFirst = isFirst;
    request.readerThreads = m_readerThreads;
    request.loader = m_loader;
    request.libraryReader = m_libraryReader;
    request.libraryItems = std::exchange(m_libraryItems, {});
    request.libraryLeftOut = std::exchange(m_libraryLeftOut, {});
    m_set.setScanning(true);
    m_view = ScanProgressView::countingLook();
    emit progressViewChanged(m_view);
    m_scanner.start(std::move(request));
}

void ScanController::clickedStopScanning() {
    if (!m_scanner.isRunning())
        return;
    m_scanner.pause();
    const bool yes = m_prompt.ask(stopScanningQuestion()) == 0;
    m_scanner.resume(yes);
}

void ScanController::onFinished(const ScanResult& result) {
    m_lastResult = result;
    m_set.stagedURLsScanned();
    m_set.setScanning(false);
    m_view = ScanProgressView::finished(m_view);
    // One question at a time: the left-out list follows the end-of-scan alert.
    QList<Alert> alerts;
    int delayMs = 0;
    if (const auto alert = endOfScanAlert(result.flags, m_set.isEmpty())) {
        alerts << alert->alert;
        delayMs = alert->delayMs;
    }
    if (const auto leftOut = leftOutAlert(result.leftOut))
        alerts << *leftOut;
    if (const auto library = libraryAlert(result.missingOriginals, result.libraryNotes))
        alerts << *library;
    showAlertsLater(alerts, delayMs);
    if (m_set.isEmpty()) {
        emit m_events.UpdateVCOTM(RootPage::addFiles);
    } else {
        const SelectionOutcome outcome = m_selection.refresh();
        emit selectionRefreshed(outcome);
        // Originals merged from a library bring the editor up to date once more.
        if (result.mergedLibraryOriginals)
            emit m_events.UpdateMultipleValuesOTM();
        emit reloadViews();
    }
    emit progressViewChanged(m_view);
    emit scanFinished(result);
}

void ScanController::showAlertLater(const TimedAlert& alert) {
    showAlertsLater({alert.alert}, alert.delayMs);
}

void ScanController::showAlertsLater(const QList<Alert>& alerts, int delayMs) {
    if (alerts.isEmpty())
        return;
    QTimer::singleShot(delayMs, this, [this, alerts] {
        for (const Alert& a : alerts) {
            m_prompt.ask(a);
            emit alertShown(a);
        }
    });
}

void ScanController::addFromPanel(PanelScreen screen, const QStringList& chosenPaths) {
    const PanelFilterResult filtered =
        filterPanelChoice(screen, chosenPaths, m_set.stagedURLs(), m_set.workingImages());
    m_set.stageURLs(filtered.staged);
    if (const auto alert = panelAlert(filtered.alreadyAdded, filtered.ignored))
        showAlertLater(*alert);
    if (m_set.stagedURLs().isEmpty())
        return;
    if (screen == PanelScreen::AddScreen) {
        m_set.requestFirstAdding();
        emit m_events.UpdateVCOTM(RootPage::home);
    } else {
        retriveImages(false);
        m_set.requestRetrieveOnAppear();
    }
}

void ScanController::addLibraryItems(PanelScreen screen, const LibraryRead& read) {
    if ((read.items.isEmpty() && read.leftOut.isEmpty()) || m_set.isScanning())
        return;
    m_libraryItems << read.items;
    m_libraryLeftOut << read.leftOut;
    if (screen == PanelScreen::AddScreen) {
        m_set.requestFirstAdding();
        emit m_events.UpdateVCOTM(RootPage::home);
    } else {
        retriveImages(false);
    }
}

void ScanController::addFromDrop(const QStringList& paths) {
    QList<QUrl> urls;
    for (const QString& path : paths)
        urls.append(QUrl::fromLocalFile(path));
    m_set.stageURLs(urls);
    if (m_set.stagedURLs().isEmpty())
        return;
    m_set.requestFirstAdding();
    emit m_events.UpdateVCOTM(RootPage::home);
}

bool ScanController::clickedRemove() {
    m_set.removeMarkedImages();
    return listShrank();
}

bool ScanController::removeSelected() {
    if (m_prompt.ask(removeSelectedQuestion()) != 0)
        return false;
    m_set.removeMarkedImages();
    return listShrank();
}

bool ScanController::removeAll() {
    if (m_prompt.ask(removeAllQuestion()) != 0)
        return false;
    m_set.clearImages();
    return listShrank();
}

bool ScanController::listShrank() {
    emit reloadViews();
    emit selectionRefreshed(m_selection.refresh());
    if (m_set.isEmpty())
        emit m_events.UpdateVCOTM(RootPage::addFiles);
    return true;
}

} // namespace tagmoor
