#include "workingset/WorkingSet.h"

#include "workingset/SupportedExtensions.h"

#include <QSet>

namespace tagmoor {

WorkingSet::WorkingSet(QObject* parent) : QObject(parent) {}

void WorkingSet::appendImages(const QList<CGImageProperties>& records) {
    if (records.isEmpty())
        return;
    const int first = count();
    const int last = first + int(records.size()) - 1;
    emit imagesAboutToBeAppended(first, last);
    m_workingImages.append(records);
    emit imagesAppended(first, last);
}

void WorkingSet::reserveFor(int extra) {
    if (extra > 0)
        m_workingImages.reserve(m_workingImages.size() + extra);
}

int WorkingSet::removeImagesWithUrls(const QList<QUrl>& urls) {
    const QSet<QUrl> gone(urls.begin(), urls.end());
    QList<CGImageProperties> kept;
    kept.reserve(m_workingImages.size());
    for (const CGImageProperties& record : m_workingImages) {
        if (!record.url || !gone.contains(*record.url))
            kept.append(record);
    }
    const int removed = count() - int(kept.size());
    if (removed == 0)
        return 0;
    emit imagesAboutToBeReset();
    m_workingImages = std::move(kept);
    emit imagesReset();
    return removed;
}

void WorkingSet::clearImages() {
    if (m_workingImages.isEmpty())
        return;
    emit imagesAboutToBeReset();
    m_workingImages.clear();
    emit imagesReset();
}

bool WorkingSet::setSelected(int row, bool selected) {
    if (row < 0 || row >= count())
        return false;
    if (m_workingImages[row].isSelected != selected) {
        m_workingImages[row].isSelected = selected;
        emit selectionChanged(row, row);
    }
    return true;
}

void WorkingSet::setAllSelected(bool selected) {
    for (CGImageProperties& record : m_workingImages)
        record.isSelected = selected;
    if (!m_workingImages.isEmpty())
        emit selectionChanged(0, count() - 1);
}

bool WorkingSet::replaceImage(int row, const CGImageProperties& record) {
    if (row < 0 || row >= count())
        return false;
    m_workingImages[row] = record;
    emit imagesChanged(row, row);
    return true;
}

void WorkingSet::stageURLs(const QList<QUrl>& urls) {
    if (urls.isEmpty())
        return;
    m_stagedURLs.append(urls);
    emit stagingChanged();
}

void WorkingSet::addPendingOpenURL(const QUrl& url) {
    if (m_pendingOpenURLs.contains(url))
        return;
    m_pendingOpenURLs.append(url);
    emit stagingChanged();
}

void WorkingSet::stagePendingOpenURLs() {
    if (m_pendingOpenURLs.isEmpty())
        return;
    for (const QUrl& url : std::as_const(m_pendingOpenURLs)) {
        if (!m_stagedURLs.contains(url))
            m_stagedURLs.append(url);
    }
    m_pendingOpenURLs.clear();
    emit stagingChanged();
}

void WorkingSet::requestRetrieveOnAppear() {
    if (m_retrieveOnAppear)
        return;
    m_retrieveOnAppear = true;
    emit stagingChanged();
}

void WorkingSet::requestFirstAdding() {
    if (m_retrieveOnAppear && m_isFirstAdding)
        return;
    m_retrieveOnAppear = true;
    m_isFirstAdding = true;
    emit stagingChanged();
}

bool WorkingSet::takeFirstAdding() {
    if (!m_isFirstAdding)
        return false;
    m_isFirstAdding = false;
    emit stagingChanged();
    return true;
}

void WorkingSet::stagedURLsScanned() {
    if (m_stagedURLs.isEmpty() && !m_retrieveOnAppear)
        return;
    m_stagedURLs.clear();
    m_retrieveOnAppear = false;
    emit stagingChanged();
}

QList<int> WorkingSet::markedIndices() const {
    QList<int> out;
    for (int i = 0; i < count(); ++i) {
        if (m_workingImages[i].isSelected)
            out.append(i);
    }
    return out;
}

int WorkingSet::markedCount() const {
    return int(std::count_if(m_workingImages.begin(), m_workingImages.end(),
                             [](const CGImageProperties& r) { return r.isSelected; }));
}

QStringList WorkingSet::imagePaths() const {
    QStringList out;
    out.reserve(m_workingImages.size());
    for (const CGImageProperties& record : m_workingImages)
        out.append(record.path());
    return out;
}

void WorkingSet::setScanning(bool on) {
    if (m_isScanning == on)
        return;
    m_isScanning = on;
    emit scanningChanged(on);
}

const QStringList& WorkingSet::supportedExtensions() {
    return tagmoor::supportedExtensions();
}
const QStringList& WorkingSet::panelExtensions() {
    return tagmoor::panelExtensions();
}

} // namespace tagmoor
