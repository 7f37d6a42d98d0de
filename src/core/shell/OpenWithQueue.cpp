#include "shell/OpenWithQueue.h"

#include "foundation/AppEvents.h"
#include "foundation/Settings.h"
#include "shell/LaunchState.h"
#include "workingset/WorkingSet.h"

#include <QFileInfo>
#include <QUrl>

namespace tagmoor {

OpenWithQueue::OpenWithQueue(WorkingSet& workingSet, Settings& settings, LaunchState& state,
                             AppEvents& events, QObject* parent)
    : QObject(parent), m_set(workingSet), m_settings(settings), m_state(state), m_events(events) {
    for (QTimer* t : {&m_timer1, &m_timer}) {
        t->setSingleShot(true);
        t->setInterval(1000);
        connect(t, &QTimer::timeout, this, &OpenWithQueue::retriveAllOpenedFiles);
    }
}

void OpenWithQueue::setInterval(int ms) {
    m_timer1.setInterval(ms);
    m_timer.setInterval(ms);
}

bool OpenWithQueue::isWaiting() const {
    return m_timer1.isActive() || m_timer.isActive();
}

bool OpenWithQueue::openFiles(const QStringList& paths) {
    m_timer1.stop();
    // Files opened while the welcome window is up are dropped on purpose.
    if (!m_settings.startup().has_value())
        return false;
    emit m_events.showMainWindowRequested();
    QList<QUrl> urls;
    urls.reserve(paths.size());
    for (const QString& path : paths)
        urls.append(QUrl::fromLocalFile(QFileInfo(path).absoluteFilePath()));
    m_set.addPendingOpenURLs(urls);
    if (!m_set.pendingOpenURLs().isEmpty())
        m_timer1.start();
    return true;
}

void OpenWithQueue::retriveAllOpenedFiles() {
    m_timer.stop();
    if (m_set.isScanning() || !m_state.launchFinished) {
        m_timer.start();
        return;
    }
    m_set.stagePendingOpenURLs();
    if (m_set.stagedURLs().isEmpty())
        return;
    if (m_set.isEmpty()) {
        m_set.requestFirstAdding();
        emit m_events.UpdateVCOTM(RootPage::home);
    } else {
        emit m_events.OpenWithItemsOTM();
    }
}

} // namespace tagmoor
