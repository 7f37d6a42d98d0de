#include "shell/AppDelegate.h"

#include "shell/LoginItem.h"
#include "shell/MainWindow.h"
#include "shell/OpenWithQueue.h"
#include "shell/PreferencesWindow.h"
#include "shell/Settings.h"
#include "shell/StartSequence.h"
#include "shell/UpdateChecker.h"
#include "shell/UserPrompt.h"
#include "shell/WelcomeWindow.h"
#include "workingset/ScanController.h"
#include "workingset/ThumbnailProvider.h"
#include "workingset/WorkingListModel.h"
#include "workingset/WorkingSet.h"

#include <QApplication>
#include <QCoreApplication>
#include <QFileInfo>
#include <QLoggingCategory>
#include <QScreen>
#include <QTimer>

Q_LOGGING_CATEGORY(lcAppShell, "tagmoor.shell.app")

// The icons live in a resource file of the static screen library, which needs an explicit
// start-up call from outside any namespace.
static void initAppResources() { Q_INIT_RESOURCE(resources); }

namespace tagmoor {

AppDelegate::AppDelegate(UserPrompt& prompt, const Options& options, QObject* parent)
    : QObject(parent), m_prompt(prompt), m_options(options) {
    initAppResources();
    m_settings = options.settingsFile.isEmpty() ? std::make_unique<Settings>()
                                                : std::make_unique<Settings>(options.settingsFile);
    m_loginItem = std::make_unique<LoginItem>(options.loginExecutable);
    m_startSequence =
        std::make_unique<StartSequence>(*m_settings, *m_loginItem, m_launchState, version());
    m_workingSet = new WorkingSet(this);
    m_listModel = new WorkingListModel(*m_workingSet, this);
    m_scans = new ScanController(*m_workingSet, m_prompt, m_events, this);
    m_openWith = new OpenWithQueue(*m_workingSet, *m_settings, m_launchState, m_events, this);
    m_updater = new UpdateChecker(*m_settings, version(), this);
    m_thumbnails = new ThumbnailProvider(this);
    m_mainWindow = std::make_unique<MainWindow>(*this);

    connect(&m_events, &AppEvents::showMainWindowRequested, this, &AppDelegate::showMainWindow);
    connect(m_updater, &UpdateChecker::updateFound, this, [this](const AppcastItem& item) {
        const QString shown = item.shortVersion.isEmpty() ? item.version : item.shortVersion;
        m_prompt.tell(QStringLiteral("A new version of Tagmoor is available"),
                      QStringLiteral("Tagmoor %1 can be downloaded from %2.")
                          .arg(shown, item.downloadUrl.toString()));
    });
}

AppDelegate::~AppDelegate() {
    delete m_welcome;
    delete m_preferences;
}

WelcomeWindow* AppDelegate::welcomeWindow() const { return m_welcome; }

PreferencesWindow* AppDelegate::preferencesWindow() const { return m_preferences; }

QString AppDelegate::version() {
    const QString v = QCoreApplication::applicationVersion();
    return v.isEmpty() ? QStringLiteral(TAGMOOR_VERSION) : v;
}

void AppDelegate::centreOnScreen(QWidget* window) {
    QScreen* screen = window->screen() ? window->screen() : QGuiApplication::primaryScreen();
    if (!screen)
        return; // no screen: shown where it stands
    const QRect area = screen->availableGeometry();
    const QSize size = window->frameGeometry().size();
    window->move(area.x() + int((area.width() - size.width()) * 0.5),
                 area.y() + int((area.height() - size.height()) * 0.5));
}

void AppDelegate::start(const QStringList& openedPaths) {
    const StartPlan plan = m_startSequence->applicationWillFinishLaunching();
    for (const QString& event : plan.usageEvents)
        qCDebug(lcAppShell) << "usage event (not sent):" << event;

    if (plan.showWelcomeWindow) {
        m_welcome = new WelcomeWindow();
        connect(m_welcome, &WelcomeWindow::left, this, &AppDelegate::welcomeLeft);
        m_welcome->adjustSize();
        centreOnScreen(m_welcome);
        m_welcome->show();
    } else {
        centreOnScreen(m_mainWindow.get());
        m_mainWindow->show();
    }

    if (m_options.scheduleUpdates) {
        if (plan.updateAction == StartPlan::UpdateAction::CheckForUpdate)
            QTimer::singleShot(plan.updateDelayMs, this, &AppDelegate::checkForUpdate);
        else if (plan.updateAction == StartPlan::UpdateAction::AutoInstallUpdates)
            QTimer::singleShot(plan.updateDelayMs, this, &AppDelegate::autoInstallUpdates);
    }

    QTimer::singleShot(0, this, [this, openedPaths] {
        m_startSequence->applicationDidFinishLaunching();
        if (!openedPaths.isEmpty())
            openFiles(openedPaths);
    });
}

void AppDelegate::openFiles(const QStringList& paths) {
    QStringList absolute;
    for (const QString& path : paths)
        absolute.append(QFileInfo(path).absoluteFilePath());
    if (absolute.isEmpty()) {
        showMainWindow(); // a second launch without files brings the window forward
        return;
    }
    m_openWith->openFiles(absolute);
}

void AppDelegate::showMainWindow() {
    if (!m_settings->startup().has_value())
        return;
    if (!m_mainWindow->isVisible())
        centreOnScreen(m_mainWindow.get());
    m_mainWindow->showNormal();
    m_mainWindow->raise();
    m_mainWindow->activateWindow();
}

void AppDelegate::welcomeLeft(bool launchAtLogin) {
    m_startSequence->welcomeLeft(launchAtLogin);
    if (m_welcome)
        m_welcome->deleteLater();
    centreOnScreen(m_mainWindow.get());
    m_mainWindow->show();
}

void AppDelegate::showPreferences() {
    if (!m_preferences)
        m_preferences = new PreferencesWindow(*m_settings, *m_loginItem, m_launchState);
    m_preferences->reload();
    m_preferences->show();
    m_preferences->raise();
    m_preferences->activateWindow();
}

void AppDelegate::checkForUpdate() { m_updater->checkForUpdate(); }

void AppDelegate::autoInstallUpdates() { m_updater->autoInstallUpdates(); }

} // namespace tagmoor
