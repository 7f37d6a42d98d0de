#pragma once

#include "model/CGImageProperties.h"

#include <QList>
#include <QObject>
#include <QStringList>
#include <QUrl>

namespace tagmoor {

// The working list and the lists that feed it, shared by the add screen, the home screen,
// the scan and the file-opening queue. Lives on the main thread: every writer calls it
// there (the scan hands its records over through signals), so it needs no lock.
class WorkingSet : public QObject {
    Q_OBJECT
public:
    explicit WorkingSet(QObject* parent = nullptr);

    // The records, in the order of adding.
    const QList<CGImageProperties>& workingImages() const { return m_workingImages; }
    QList<CGImageProperties>& workingImagesForEdit() { return m_workingImages; }
    int count() const { return int(m_workingImages.size()); }
    bool isEmpty() const { return m_workingImages.isEmpty(); }

    void appendImages(const QList<CGImageProperties>& records);
    // Makes room for `extra` more records, so that a long scan does not move the whole
    // list on the main thread each time it grows.
    void reserveFor(int extra);
    // Keeps the records whose url is not among `urls`; the number removed.
    int removeImagesWithUrls(const QList<QUrl>& urls);
    void clearImages();
    // Sets isSelected of one record; false when the row is outside the list.
    bool setSelected(int row, bool selected);
    void setAllSelected(bool selected);
    // Tells views that records changed in place (after a batch rewrote them, say).
    void notifyImagesChanged(int first, int last);

    // Indices of marked records, ascending.
    QList<int> markedIndices() const;
    int markedCount() const;
    // The local paths of all records, for duplicate tests.
    QStringList imagePaths() const;

    // What the next scan adds.
    QList<QUrl> stagedURLs;
    // Files handed over by the system, waiting for the next add.
    QList<QUrl> pendingOpenURLs;

    bool isScanning() const { return m_isScanning; }
    void setScanning(bool on);
    // The home screen starts a scan when it next appears.
    bool retrieveOnAppear = false;
    // The next appearance of the home screen is the first one for this list.
    bool isFirstAdding = false;

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

private:
    QList<CGImageProperties> m_workingImages;
    bool m_isScanning = false;
};

} // namespace tagmoor
