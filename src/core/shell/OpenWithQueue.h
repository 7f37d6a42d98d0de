#pragma once

#include <QObject>
#include <QStringList>
#include <QTimer>

namespace tagmoor {

class AppEvents;
class Settings;
class WorkingSet;
struct LaunchState;

// Files handed over by the desktop (command line, second launch) on their way to the working
// list. Paths collect in pendingOpenURLs; one second after the last hand-over they move to
// stagedURLs, and the queue waits (re-arming every second) while a scan runs or before the
// launch finished. Files handed over while the welcome window is up are dropped.
class OpenWithQueue : public QObject {
    Q_OBJECT
public:
    OpenWithQueue(WorkingSet& workingSet, Settings& settings, LaunchState& state, AppEvents& events,
                  QObject* parent = nullptr);

    // Receives paths; false when they were dropped (welcome window up).
    bool openFiles(const QStringList& paths);
    // Timer target: stages the pending files, or waits another interval.
    void retriveAllOpenedFiles();

    // One second normally; tests shorten it.
    void setInterval(int ms);
    bool isWaiting() const;

private:
    WorkingSet& m_set;
    Settings& m_settings;
    LaunchState& m_state;
    AppEvents& m_events;
    QTimer m_timer1; // armed by openFiles
    QTimer m_timer;  // re-armed by retriveAllOpenedFiles
};

} // namespace tagmoor
