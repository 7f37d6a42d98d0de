#include "workingset/WorkingSet.h"

#include "workingset/SupportedExtensions.h"

#include <QSet>
#include <QtConcurrent>

#include <algorithm>

namespace tagmoor {

namespace {
bool isMarked(const CGImageProperties& record) {
    return record.isSelected;
}
} // namespace

WorkingSet::WorkingSet(QObject* parent) : QObject(parent) {}

void WorkingSet::appendImages(const QList<CGImageProperties>& records) {
    appendImages(QList<CGImageProperties>(records));
}

void WorkingSet::appendImages(QList<CGImageProperties>&& records) {
    if (records.isEmpty())
        return;
    const int first = count();
    const int last = first + int(records.size()) - 1;
    emit imagesAboutToBeAppended(first, last);
    m_markedCount += int(std::count_if(records.cbegin(), records.cend(), isMarked));
    // Moved only when `records` is not shared; a shared list is copied, as it must be.
    m_workingImages.append(std::move(records));
    emit imagesAppended(first, last);
}

void WorkingSet::reserveFor(int extra) {
    if (extra > 0)
        m_workingImages.reserve(m_workingImages.size() + extra);
}

int WorkingSet::removeImagesWithUrls(const QList<QUrl>& urls) {
    const QSet<QUrl> gone(urls.begin(), urls.end());
    return removeImagesIf([&gone](const CGImageProperties& record) {
        return record.url && gone.contains(*record.url);
    });
}

int WorkingSet::removeMarkedImages() {
    return removeImagesIf(isMarked);
}

int WorkingSet::removeImagesIf(const std::function<bool(const CGImageProperties&)>& goes) {
    const int removed = int(std::count_if(m_workingImages.cbegin(), m_workingImages.cend(), goes));
    if (removed == 0)
        return 0;
    emit imagesAboutToBeReset();
    // Records are moved, never copied. Freeing the values of many records takes long, so the
    // records that go (or, when most go, the old list) are freed on a pool thread; the extra
    // room this needs is the smaller of what goes and what stays.
    QList<CGImageProperties> released;
    if (removed * 2 >= count()) {
        QList<CGImageProperties> kept;
        kept.reserve(count() - removed);
        for (CGImageProperties& record : m_workingImages) {
            if (!goes(record))
                kept.append(std::move(record));
        }
        released.swap(m_workingImages);
        m_workingImages.swap(kept);
    } else {
        released.reserve(removed);
        qsizetype to = 0;
        for (qsizetype from = 0; from < m_workingImages.size(); ++from) {
            CGImageProperties& record = m_workingImages[from];
            if (goes(record))
                released.append(std::move(record));
            else if (to++ != from)
                m_workingImages[to - 1] = std::move(record);
        }
        m_workingImages.resize(to);
    }
    m_markedCount = int(std::count_if(m_workingImages.cbegin(), m_workingImages.cend(), isMarked));
    releaseLater(std::move(released));
    emit imagesReset();
    return removed;
}

void WorkingSet::clearImages() {
    if (m_workingImages.isEmpty())
        return;
    emit imagesAboutToBeReset();
    QList<CGImageProperties> released;
    released.swap(m_workingImages);
    m_markedCount = 0;
    releaseLater(std::move(released));
    emit imagesReset();
}

bool WorkingSet::setSelected(int row, bool selected) {
    if (row < 0 || row >= count())
        return false;
    if (m_workingImages[row].isSelected != selected) {
        m_workingImages[row].isSelected = selected;
        m_markedCount += selected ? 1 : -1;
        emit selectionChanged(row, row);
    }
    return true;
}

void WorkingSet::setAllSelected(bool selected) {
    for (CGImageProperties& record : m_workingImages)
        record.isSelected = selected;
    m_markedCount = selected ? count() : 0;
    if (!m_workingImages.isEmpty())
        emit selectionChanged(0, count() - 1);
}

void WorkingSet::markOnly(const QList<int>& rows) {
    for (CGImageProperties& record : m_workingImages)
        record.isSelected = false;
    m_markedCount = 0;
    for (const int row : rows) {
        if (row >= 0 && row < count() && !m_workingImages[row].isSelected) {
            m_workingImages[row].isSelected = true;
            ++m_markedCount;
        }
    }
    if (!m_workingImages.isEmpty())
        emit selectionChanged(0, count() - 1);
}

bool WorkingSet::replaceImage(int row, const CGImageProperties& record) {
    if (row < 0 || row >= count())
        return false;
    m_markedCount += int(record.isSelected) - int(m_workingImages[row].isSelected);
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
    addPendingOpenURLs({url});
}

void WorkingSet::addPendingOpenURLs(const QList<QUrl>& urls) {
    bool added = false;
    for (const QUrl& url : urls) {
        if (m_pendingOpenSet.contains(url))
            continue;
        m_pendingOpenSet.insert(url);
        m_pendingOpenURLs.append(url);
        added = true;
    }
    if (added)
        emit stagingChanged();
}

void WorkingSet::stagePendingOpenURLs() {
    if (m_pendingOpenURLs.isEmpty())
        return;
    QSet<QUrl> staged(m_stagedURLs.cbegin(), m_stagedURLs.cend());
    for (const QUrl& url : std::as_const(m_pendingOpenURLs)) {
        if (!staged.contains(url)) {
            staged.insert(url);
            m_stagedURLs.append(url);
        }
    }
    m_pendingOpenURLs.clear();
    m_pendingOpenSet.clear();
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
    return m_markedCount;
}

void WorkingSet::releaseLater(QList<CGImageProperties>&& records) {
    if (records.size() < 1024)
        return; // freed here, at once
    m_releasing.removeIf([](const QFuture<void>& f) { return f.isFinished(); });
    m_releasing.append(QtConcurrent::run([gone = std::move(records)]() mutable { gone.clear(); }));
}

void WorkingSet::waitForReleases() {
    for (QFuture<void>& f : m_releasing)
        f.waitForFinished();
    m_releasing.clear();
}

WorkingSet::~WorkingSet() {
    waitForReleases();
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
