#pragma once

#include "model/CGImageProperties.h"

#include <QFuture>
#include <QList>
#include <QObject>
#include <QSet>
#include <QStringList>
#include <QUrl>

#include <functional>

namespace tagmoor {

// The working list and the lists that feed it, shared by the add screen, the home screen,
// the scan and the file-opening queue. Lives on the main thread: every writer calls it
// there (the scan's records are moved in there, a slice at a time), so it needs no lock.
class WorkingSet : public QObject {
    Q_OBJECT
public:
    explicit WorkingSet(QObject* parent = nullptr);
    ~WorkingSet() override;

    // The records, in the order of adding.
    const QList<CGImageProperties>& workingImages() const { return m_workingImages; }
    int count() const { return int(m_workingImages.size()); }
    bool isEmpty() const { return m_workingImages.isEmpty(); }

    void appendImages(const QList<CGImageProperties>& records);
    // The same, moving the records in (a scan's records, which are not kept elsewhere).
    void appendImages(QList<CGImageProperties>&& records);
    // Makes room for `extra` more records, so that a long scan does not move the whole
    // list on the main thread each time it grows.
    void reserveFor(int extra);
    // Keeps the records whose url is not among `urls`; the number removed.
    int removeImagesWithUrls(const QList<QUrl>& urls);
    // Keeps the records that are not marked; the number removed.
    int removeMarkedImages();
    void clearImages();
    // Puts a new version of one record in its place (after a batch rewrote the file, say);
    // false when the row is outside the list.
    bool replaceImage(int row, const CGImageProperties& record);
    // Sets isSelected of one record; false when the row is outside the list.
    bool setSelected(int row, bool selected);
    void setAllSelected(bool selected);
    // Marks the rows of `rows` and unmarks every other, with one selectionChanged for the
    // list; rows outside the list are passed over.
    void markOnly(const QList<int>& rows);

    // Indices of marked records, ascending.
    QList<int> markedIndices() const;
    int markedCount() const; // kept as the list changes, not counted
    // Waits until the records of a removal, freed on a pool thread, are gone.
    void waitForReleases();
    // The local paths of all records, for duplicate tests.
    QStringList imagePaths() const;

    // What the next scan adds, in the order of staging.
    const QList<QUrl>& stagedURLs() const { return m_stagedURLs; }
    void stageURLs(const QList<QUrl>& urls);
    // Files handed over by the system, waiting for the next add; each is kept once.
    const QList<QUrl>& pendingOpenURLs() const { return m_pendingOpenURLs; }
    void addPendingOpenURL(const QUrl& url);
    // Adds the URLs not waiting yet, in their order, and tells the change once. Duplicates are
    // found through a hash set, so a hand-over of many thousands of files costs linear time.
    void addPendingOpenURLs(const QList<QUrl>& urls);
    // Moves the waiting files to the staged ones, passing over those staged already.
    void stagePendingOpenURLs();

    // The home screen starts a scan of the staged files when it next appears.
    bool retrieveOnAppear() const { return m_retrieveOnAppear; }
    void requestRetrieveOnAppear();
    // The next appearance of the home screen is the first one for this list: staged files
    // are scanned then, and the screen starts from a clean view.
    bool isFirstAdding() const { return m_isFirstAdding; }
    void requestFirstAdding();
    // True once for a requested first appearance; the request is used up.
    bool takeFirstAdding();
    // A scan took the staged files: nothing waits for the home screen any more.
    void stagedURLsScanned();

    bool isScanning() const { return m_isScanning; }
    void setScanning(bool on);

    static const QStringList& supportedExtensions();
    static const QStringList& panelExtensions();

signals:
    void imagesAboutToBeAppended(int first, int last);
    void imagesAppended(int first, int last);
    void imagesAboutToBeReset();
    void imagesReset();
    void selectionChanged(int first, int last);
    void imagesChanged(int first, int last);
    void scanningChanged(bool scanning);
    // The staged or waiting files, or what waits for the home screen, changed.
    void stagingChanged();

private:
    int removeImagesIf(const std::function<bool(const CGImageProperties&)>& goes);
    void releaseLater(QList<CGImageProperties>&& records);

    QList<CGImageProperties> m_workingImages;
    int m_markedCount = 0;
    QList<QFuture<void>> m_releasing;
    QList<QUrl> m_stagedURLs;
    QList<QUrl> m_pendingOpenURLs;
    QSet<QUrl> m_pendingOpenSet; // the same URLs as m_pendingOpenURLs
    bool m_isScanning = false;
    bool m_retrieveOnAppear = false;
    bool m_isFirstAdding = false;
};

} // namespace tagmoor
