#include "app/shell/AppDelegate.h"

#include "app/shell/Appearance.h"
#include "app/shell/MainWindow.h"
#include "app/shell/PreferencesWindow.h"
#include "app/shell/WelcomeWindow.h"
#include "app/widgets/FilePanel.h"
#include "app/workingset/ThumbnailProvider.h"
#include "extras/CopiesInStep.h"
#include "foundation/UserPrompt.h"
#include "processing/HomeSession.h"
#include "processing/SidecarSettings.h"
#include "workingset/ScanController.h"
#include "workingset/WorkingListModel.h"

#include <QApplication>
#include <QCoreApplication>
#include <QLoggingCategory>
#include <QScreen>
#include <QTimer>

Q_LOGGING_CATEGORY(lcAppShell, "tagmoor.shell.app")

// The icons live in a resource file of the static screen library, which needs an explicit
// start-up call from outside any namespace.
static void initAppResources() {
    Q_INIT_RESOURCE(resources);
}

namespace tagmoor {

AppDelegate::AppDelegate(UserPrompt& prompt, const Options& options, QObject* parent)
    : QObject(parent), m_prompt(prompt),
      m_shell({version(), options.settingsFile, options.channelName, options.loginExecutable}) {
    initAppResources();
    connect(&updater(), &UpdateChecker::updateFound, this, [this](const AppcastItem& item) {
        const QString shown = item.shortVersion.isEmpty() ? item.version : item.shortVersion;
        m_prompt.tell(
            tr("A new version of Tagmoor is available"),
            tr("Tagmoor %1 can be downloaded from %2.").arg(shown, item.downloadUrl.toString()));
    });
    connect(&updater(), &UpdateChecker::userCheckAnswered, this, &AppDelegate::tellUpdateAnswer);
}

void AppDelegate::tellUpdateAnswer(UpdateChecker::Answer answer) {
    // A newer release is told on its own (updateFound); the user who asked also hears when
    // there is none, or why no check could be made.
    switch (answer) {
    case UpdateChecker::Answer::UpdateAvailable:
        break;
    case UpdateChecker::Answer::UpToDate:
        m_prompt.tell(tr("You're up to date"),
                      tr("Tagmoor %1 is the newest version available.").arg(version()));
        break;
    case UpdateChecker::Answer::Unreachable:
        m_prompt.tell(tr("Could not reach the update server"),
                      tr("Check the network connection and try again later."));
        break;
    case UpdateChecker::Answer::NoSource:
        m_prompt.tell(tr("No update source is set"),
                      tr("Tagmoor has no address to look for new versions at, so it cannot "
                         "check for updates. New versions come the way this one was "
                         "installed."));
        break;
    case UpdateChecker::Answer::RefusedSource:
        m_prompt.tell(tr("The update address is refused"),
                      tr("Tagmoor reads its update feed over https only, so that nobody on the "
                         "way can announce a false release. The address set, \"%1\", does not "
                         "begin with https://.")
                          .arg(settings().updateFeedUrl().value_or(QString())));
        break;
    }
}

void AppDelegate::makeScreens() {
    if (m_mainWindow)
        return;
    m_listModel = new WorkingListModel(workingSet(), this);
    m_scans = new ScanController(workingSet(), m_prompt, events(), this);
    m_thumbnails = new ThumbnailProvider(this);
    m_homeSession = new HomeSession({workingSet(), *m_scans, events(), m_prompt, editorState(),
                                     settings(), processingOptions(), folderAccess(),
                                     renameSettings(), renameNumbering(), presets()},
                                    this);
    // The colours are settled before the first window is made.
    m_appearance = new Appearance(this);
    m_appearance->apply(Appearance::choiceFromName(settings().appearance().value_or(QString())));
    m_mainWindow = std::make_unique<MainWindow>(*this);
    FilePanel::rememberFoldersIn(&settings());

    connect(&events(), &AppEvents::showMainWindowRequested, this, &AppDelegate::showMainWindow);
    // The command line may change the presets while the window is open.
    presets().watchFile(true);
    // Photos may have been changed by other programs while the user was away: pictures of
    // files whose size or modification time moved are decoded again.
    connect(qApp, &QGuiApplication::applicationStateChanged, this, [this](Qt::ApplicationState s) {
        if (s == Qt::ApplicationActive)
            m_thumbnails->revalidate();
    });
}

AppDelegate::~AppDelegate() {
    FilePanel::forgetFolders(&settings());
    delete m_welcome;
    delete m_preferences;
}

WelcomeWindow* AppDelegate::welcomeWindow() const {
    return m_welcome;
}

PreferencesWindow* AppDelegate::preferencesWindow() const {
    return m_preferences;
}

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
    // The window keeps a group's copies in step unless the preference says otherwise; the
    // command line keeps them apart unless asked.
    setCopiesInStep(copiesInStepFrom(settings()));
    makeScreens();
    const StartPlan plan = m_shell.start([this](bool welcome) { showFirstWindow(welcome); });
    for (const QString& event : plan.usageEvents)
        qCDebug(lcAppShell) << "usage event (not sent):" << event;

    // The presets load once the window is up; what went wrong with them is told after that.
    QTimer::singleShot(0, this, [this, openedPaths] {
        m_shell.finishLaunching();
        tellFileProblems();
        if (!openedPaths.isEmpty())
            openFiles(openedPaths);
    });
}

void AppDelegate::showFirstWindow(bool welcome) {
    if (welcome) {
        m_welcome = new WelcomeWindow();
        connect(m_welcome, &WelcomeWindow::left, this, &AppDelegate::welcomeLeft);
        m_welcome->adjustSize();
        centreOnScreen(m_welcome);
        m_welcome->show();
    } else {
        placeMainWindow();
        m_mainWindow->show();
    }
}

void AppDelegate::placeMainWindow() {
    // Where the user left it. The first time (or when that place is gone) most of the screen,
    // centred: the editor's rows grow with the screen.
    const std::optional<QByteArray> geometry = settings().mainWindowGeometry();
    if (geometry && m_mainWindow->restoreGeometry(*geometry))
        return;
    if (const QScreen* screen = m_mainWindow->screen()) {
        const QSize room = screen->availableGeometry().size();
        m_mainWindow->resize(QSize(int(room.width() * 0.92), int(room.height() * 0.92))
                                 .expandedTo(m_mainWindow->minimumSize())
                                 .boundedTo(room.expandedTo(m_mainWindow->minimumSize())));
    }
    centreOnScreen(m_mainWindow.get());
}

void AppDelegate::tellFileProblems() {
    settings().setProblemHandler([this](const Settings::Problem& problem) {
        if (problem.kind == Settings::Problem::Kind::KeptAside)
            m_prompt.tell(tr("The settings could not be read"),
                          tr("The settings file was damaged. It is kept as %1, and Tagmoor "
                             "starts with its default settings.")
                              .arg(problem.path));
        else
            m_prompt.tell(tr("The settings cannot be saved"),
                          tr("Tagmoor cannot write its settings to %1. Changes last until "
                             "Tagmoor quits; check that the folder can be written.")
                              .arg(problem.path));
    });

    const PresetStore::LoadReport& load = presets().lastLoad();
    if (load.damaged) {
        m_prompt.tell(tr("The saved presets could not be read"),
                      load.keptAs.isEmpty()
                          ? tr("The presets file was damaged, and the list of presets starts "
                               "empty.")
                          : tr("The presets file was damaged. It is kept as %1, and the list "
                               "of presets starts empty.")
                                .arg(load.keptAs));
    } else if (!load.refused.isEmpty()) {
        QStringList which;
        for (const RefusedPreset& refused : load.refused)
            which << (refused.name.isEmpty()
                          ? tr("preset %1 (%2)").arg(refused.position + 1).arg(refused.reason)
                          : tr("\"%1\" (%2)").arg(refused.name, refused.reason));
        m_prompt.tell(tr("Some presets were left out"),
                      tr("These saved presets could not be used and were left out: %1. The "
                         "presets file as it was is kept as %2.")
                          .arg(which.join(QStringLiteral("; ")), load.keptAs));
    }
    // A failing save is told once; the next one that works starts the count anew.
    connect(&presets(), &PresetStore::saveFinished, this, [this, told = false](bool ok) mutable {
        if (ok || told) {
            told = told && !ok;
            return;
        }
        told = true;
        m_prompt.tell(tr("The presets cannot be saved"),
                      tr("Tagmoor cannot write its presets to %1. Changes to the presets last "
                         "until Tagmoor quits; check that the folder can be written.")
                          .arg(presets().fileName()));
    });

    const QString blocked = m_shell.channel().blockedPath();
    if (!blocked.isEmpty())
        m_prompt.tell(tr("Tagmoor runs on its own"),
                      tr("%1 stands where Tagmoor keeps the channel between its launches, and "
                         "it is not Tagmoor's: it is left as it is. Photos opened while "
                         "Tagmoor runs open in a new window instead of this one.")
                          .arg(blocked));
}

void AppDelegate::openFiles(const QStringList& paths) {
    m_shell.openFiles(paths);
}

void AppDelegate::showMainWindow() {
    if (!settings().startup().has_value())
        return;
    if (!m_mainWindow->isVisible())
        placeMainWindow();
    m_mainWindow->showNormal();
    m_mainWindow->raise();
    m_mainWindow->activateWindow();
}

void AppDelegate::welcomeLeft(bool launchAtLogin) {
    m_shell.startSequence().welcomeLeft(launchAtLogin);
    if (m_welcome)
        m_welcome->deleteLater();
    placeMainWindow();
    m_mainWindow->show();
}

void AppDelegate::showPreferences() {
    if (!m_preferences) {
        m_preferences = new PreferencesWindow(settings(), loginItem(), launchState());
        connect(m_preferences, &PreferencesWindow::appearanceChosen, this,
                [this](const QString& name) {
                    settings().setAppearance(name);
                    m_appearance->apply(Appearance::choiceFromName(name));
                });
        m_preferences->adjustSize();
        // Over the main window, where the user looks, when it is up.
        if (m_mainWindow && m_mainWindow->isVisible()) {
            const QRect over = m_mainWindow->frameGeometry();
            m_preferences->move(over.center() - m_preferences->rect().center());
        } else {
            centreOnScreen(m_preferences);
        }
    }
    m_preferences->reload();
    m_preferences->show();
    m_preferences->raise();
    m_preferences->activateWindow();
}

void AppDelegate::checkForUpdate() {
    updater().checkAskedByUser();
}

void AppDelegate::autoInstallUpdates() {
    updater().autoInstallUpdates();
}

} // namespace tagmoor
