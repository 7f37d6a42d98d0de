#pragma once

#include "shell/AppEvents.h"
#include "shell/LaunchState.h"

#include <QObject>
#include <QPointer>
#include <QStringList>

#include <memory>

namespace tagmoor {

class InstanceChannel;
class LoginItem;
class MainWindow;
class OpenWithQueue;
class PreferencesWindow;
class ScanController;
class Settings;
class StartSequence;
class ThumbnailProvider;
class UpdateChecker;
class UserPrompt;
class WelcomeWindow;
class WorkingListModel;
class WorkingSet;

// The application object: owns the core objects the screens share, runs the start sequence,
// and routes files handed over by the desktop into the working list. Tests make one with a
// ScriptedPrompt and a settings file of their own and drive its windows.
class AppDelegate : public QObject {
    Q_OBJECT
public:
    struct Options {
        QString settingsFile;      // empty: the user's settings
        QString loginExecutable;   // empty: this process's executable
        bool scheduleUpdates = true;
    };

    AppDelegate(UserPrompt& prompt, const Options& options, QObject* parent = nullptr);
    ~AppDelegate() override;

    // The start sequence: seeds settings, shows the welcome window or the main window,
    // schedules the update check, then (on the next turn of the event loop) finishes the
    // launch and hands `openedPaths` over as files opened by the desktop.
    void start(const QStringList& openedPaths = {});

    // Files from the desktop: the command line or a second launch.
    void openFiles(const QStringList& paths);
    // Makes the main window visible, once the welcome window was left.
    void showMainWindow();
    void showPreferences();
    void checkForUpdate();
    void autoInstallUpdates();

    Settings& settings() { return *m_settings; }
    LaunchState& launchState() { return m_launchState; }
    AppEvents& events() { return m_events; }
    WorkingSet& workingSet() { return *m_workingSet; }
    WorkingListModel& listModel() { return *m_listModel; }
    ScanController& scans() { return *m_scans; }
    OpenWithQueue& openWithQueue() { return *m_openWith; }
    LoginItem& loginItem() { return *m_loginItem; }
    UpdateChecker& updater() { return *m_updater; }
    ThumbnailProvider& thumbnails() { return *m_thumbnails; }
    StartSequence& startSequence() { return *m_startSequence; }
    UserPrompt& prompt() { return m_prompt; }

    MainWindow* mainWindow() const { return m_mainWindow.get(); }
    WelcomeWindow* welcomeWindow() const;
    PreferencesWindow* preferencesWindow() const;

    static QString version();
    static void centreOnScreen(QWidget* window);

private:
    void welcomeLeft(bool launchAtLogin);

    UserPrompt& m_prompt;
    Options m_options;
    LaunchState m_launchState;
    AppEvents m_events;
    std::unique_ptr<Settings> m_settings;
    std::unique_ptr<LoginItem> m_loginItem;
    std::unique_ptr<StartSequence> m_startSequence;
    WorkingSet* m_workingSet = nullptr;
    WorkingListModel* m_listModel = nullptr;
    ScanController* m_scans = nullptr;
    OpenWithQueue* m_openWith = nullptr;
    UpdateChecker* m_updater = nullptr;
    ThumbnailProvider* m_thumbnails = nullptr;
    std::unique_ptr<MainWindow> m_mainWindow;
    QPointer<WelcomeWindow> m_welcome;
    QPointer<PreferencesWindow> m_preferences;
};

} // namespace tagmoor
