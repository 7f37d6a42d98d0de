#pragma once

#include "editor/EditorState.h"
#include "foundation/AppEvents.h"
#include "foundation/Settings.h"
#include "presets/PresetStore.h"
#include "processing/FolderAccess.h"
#include "processing/ProcessingOptions.h"
#include "rename/Rename.h"
#include "rename/RenameNumbering.h"
#include "shell/InstanceChannel.h"
#include "shell/LaunchState.h"
#include "shell/LoginItem.h"
#include "shell/OpenWithQueue.h"
#include "shell/StartSequence.h"
#include "shell/UpdateChecker.h"
#include "workingset/WorkingSet.h"

#include <QDir>
#include <QObject>

#include <memory>

namespace tagmoor {

// The process-wide objects of the application, made once and wired together: settings,
// events, the working set, the launch state, the file-opening queue, the channel to later
// launches, the login item and the updater. The application's main() makes one and hands
// references to the screens; tests make their own with a scratch settings file.
class ApplicationShell : public QObject {
    Q_OBJECT
public:
    struct Options {
        QString version;      // the short version string
        QString settingsFile; // empty: the user's settings
        QString channelName;  // empty: the per-user name
        QString executable;   // for the login item; empty: this process
    };

    explicit ApplicationShell(Options options, QObject* parent = nullptr);

    // Becomes the running instance, or hands `paths` to the one already running. False when
    // they were handed over: this process should then quit. Without a working channel the
    // process runs on its own.
    bool claimInstance(const QStringList& paths);

    // The start sequence; schedules the update check the plan asks for. `showFirstWindow`
    // shows the welcome or the main window at its step of the sequence.
    StartPlan start(const StartSequence::ShowFirstWindow& showFirstWindow = {});
    // Loads the presets; opened files may then be added.
    void finishLaunching();
    // Paths given on this process's command line or by a later launch.
    bool openFiles(const QStringList& paths) { return m_openWith.openFiles(paths); }

    Settings& settings() { return m_settings; }
    AppEvents& events() { return m_events; }
    WorkingSet& workingSet() { return m_workingSet; }
    // The edit flags, date rules and photo on display that the editor writes and a run reads.
    EditorState& editorState() { return m_editorState; }
    // The values a run is settled from: the mode and clean boxes, the folder grants, the
    // rename rule and its running number (never reset while the process lives).
    ProcessingOptions& processingOptions() { return m_processingOptions; }
    FolderAccess& folderAccess() { return m_folderAccess; }
    Rename& renameSettings() { return m_renameSettings; }
    RenameNumbering& renameNumbering() { return m_renameNumbering; }
    // The saved presets, loaded when the launch finishes (a launch that only hands its files
    // to the running instance never reads them).
    PresetStore& presets() { return *m_presets; }
    LaunchState& launchState() { return m_launchState; }
    LoginItem& loginItem() { return m_loginItem; }
    StartSequence& startSequence() { return m_start; }
    OpenWithQueue& openWithQueue() { return m_openWith; }
    UpdateChecker& updater() { return m_updater; }
    InstanceChannel& channel() { return m_channel; }

private:
    std::unique_ptr<Settings> makeSettings(const QString& file);

    std::unique_ptr<Settings> m_settingsOwner;
    Settings& m_settings;
    AppEvents m_events;
    WorkingSet m_workingSet;
    EditorState m_editorState;
    ProcessingOptions m_processingOptions;
    FolderAccess m_folderAccess{QDir::homePath()};
    Rename m_renameSettings;
    RenameNumbering m_renameNumbering;
    LaunchState m_launchState;
    LoginItem m_loginItem;
    StartSequence m_start;
    OpenWithQueue m_openWith;
    UpdateChecker m_updater;
    InstanceChannel m_channel;
    std::unique_ptr<PresetStore> m_presets;
};

} // namespace tagmoor
