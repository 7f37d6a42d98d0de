#pragma once

#include "shell/ApplicationShell.h"

#include <QObject>
#include <QPointer>
#include <QStringList>

#include <memory>

namespace tagmoor {

class Appearance;

class HomeSession;
class MainWindow;
class PreferencesWindow;
class ScanController;
class ThumbnailProvider;
class UserPrompt;
class WelcomeWindow;
class WorkingListModel;

// The application object: the core's application shell plus what the screens add to it (the
// list model, the scan controller, the thumbnails, the home screen's session), and the
// windows. It carries out the start plan and routes files handed over by the desktop. Tests
// make one with a ScriptedPrompt and a settings file of their own and drive its windows.
class AppDelegate : public QObject {
    Q_OBJECT
public:
    struct Options {
        QString settingsFile;    // empty: the user's settings
        QString loginExecutable; // empty: this process's executable
        QString channelName;     // empty: the per-user name
    };

    AppDelegate(UserPrompt& prompt, const Options& options, QObject* parent = nullptr);
    ~AppDelegate() override;

    // The start sequence: makes the screens, seeds settings, shows the welcome window or the
    // main window, schedules the update check, then (on the next turn of the event loop) loads
    // the presets and hands `openedPaths` over as files opened by the desktop. The screens'
    // accessors are valid from here on.
    void start(const QStringList& openedPaths = {});

    // Files from the desktop: the command line or a second launch.
    void openFiles(const QStringList& paths);
    // Makes the main window visible, once the welcome window was left.
    void showMainWindow();
    void showPreferences();
    void checkForUpdate();
    void autoInstallUpdates();

    ApplicationShell& shell() { return m_shell; }
    Settings& settings() { return m_shell.settings(); }
    LaunchState& launchState() { return m_shell.launchState(); }
    AppEvents& events() { return m_shell.events(); }
    WorkingSet& workingSet() { return m_shell.workingSet(); }
    EditorState& editorState() { return m_shell.editorState(); }
    ProcessingOptions& processingOptions() { return m_shell.processingOptions(); }
    FolderAccess& folderAccess() { return m_shell.folderAccess(); }
    Rename& renameSettings() { return m_shell.renameSettings(); }
    RenameNumbering& renameNumbering() { return m_shell.renameNumbering(); }
    PresetStore& presets() { return m_shell.presets(); }
    OpenWithQueue& openWithQueue() { return m_shell.openWithQueue(); }
    LoginItem& loginItem() { return m_shell.loginItem(); }
    UpdateChecker& updater() { return m_shell.updater(); }
    WorkingListModel& listModel() { return *m_listModel; }
    ScanController& scans() { return *m_scans; }
    ThumbnailProvider& thumbnails() { return *m_thumbnails; }
    // The home screen's form, Start Process chain, run and shared position.
    HomeSession& homeSession() { return *m_homeSession; }
    UserPrompt& prompt() { return m_prompt; }

    MainWindow* mainWindow() const { return m_mainWindow.get(); }
    WelcomeWindow* welcomeWindow() const;
    PreferencesWindow* preferencesWindow() const;

    static QString version();
    static void centreOnScreen(QWidget* window);

private:
    // The list model, scans, thumbnails, home session and main window: made when the start
    // begins, so that a launch that hands its files to a running instance makes none of them.
    void makeScreens();
    void showFirstWindow(bool welcome);
    void placeMainWindow();
    void tellUpdateAnswer(UpdateChecker::Answer answer);
    void welcomeLeft(bool launchAtLogin);
    // Tells the user, once each, what went wrong with the files Tagmoor keeps: a damaged
    // settings or presets file kept aside, settings or presets that cannot be written, and
    // something in the way of the channel between launches.
    void tellFileProblems();

    UserPrompt& m_prompt;
    ApplicationShell m_shell;
    WorkingListModel* m_listModel = nullptr;
    ScanController* m_scans = nullptr;
    ThumbnailProvider* m_thumbnails = nullptr;
    HomeSession* m_homeSession = nullptr;
    std::unique_ptr<MainWindow> m_mainWindow;
    QPointer<WelcomeWindow> m_welcome;
    QPointer<PreferencesWindow> m_preferences;
    Appearance* m_appearance = nullptr;
};

} // namespace tagmoor
