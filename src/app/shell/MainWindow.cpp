#include "app/shell/MainWindow.h"

#include "app/shell/AppDelegate.h"
#include "app/shell/RootView.h"
#include "app/workingset/HomeMenuActions.h"
#include "app/workingset/HomeScreen.h"
#include "batch/BatchController.h"
#include "foundation/AppEvents.h"
#include "foundation/Settings.h"
#include "processing/HomeSession.h"

#include <QApplication>
#include <QCloseEvent>
#include <QMenuBar>
#include <QMessageBox>

namespace tagmoor {

MainWindow::MainWindow(AppDelegate& app, QWidget* parent)
    : QMainWindow(parent), m_app(app), m_root(new RootView(app, this)) {
    setObjectName(QStringLiteral("mainWindow"));
    setWindowTitle(QStringLiteral("Tagmoor"));
    setCentralWidget(m_root);
    setMinimumSize(960, 620);
    resize(1180, 740);

    QMenu* file = menuBar()->addMenu(tr("&File"));
    QAction* addPhotos = file->addAction(tr("&Add Photos..."));
    addPhotos->setShortcut(QKeySequence::Open);
    connect(addPhotos, &QAction::triggered, m_root, &RootView::addFiles);
    file->addSeparator();
    m_preferences = file->addAction(tr("&Preferences..."));
    m_preferences->setObjectName(QStringLiteral("menuItemPreferences"));
    m_preferences->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_Comma));
    m_preferences->setMenuRole(QAction::PreferencesRole);
    connect(m_preferences, &QAction::triggered, &app, &AppDelegate::showPreferences);
    file->addSeparator();
    QAction* quit = file->addAction(tr("&Quit"));
    quit->setShortcut(QKeySequence::Quit);
    connect(quit, &QAction::triggered, qApp, &QApplication::quit);

    // The home screen's actions, with their keys.
    QMenu* photos = menuBar()->addMenu(tr("&Photos"));
    photos->setObjectName(QStringLiteral("menuPhotos"));
    const HomeMenuActions& home = m_root->home()->menuActions();
    for (QAction* action : home.photoActions()) {
        if (action)
            photos->addAction(action);
        else
            photos->addSeparator();
    }

    QMenu* window = menuBar()->addMenu(tr("&Window"));
    QAction* show = window->addAction(tr("&Tagmoor"));
    show->setObjectName(QStringLiteral("menuItemShow"));
    connect(show, &QAction::triggered, this, &MainWindow::showTM);

    QMenu* help = menuBar()->addMenu(tr("&Help"));
    help->addAction(home.tips());
    help->addSeparator();
    m_checkForUpdates = help->addAction(tr("Check for &Updates..."));
    m_checkForUpdates->setObjectName(QStringLiteral("menuItemCheckForUpdates"));
    connect(m_checkForUpdates, &QAction::triggered, &app, &AppDelegate::checkForUpdate);
    m_about = help->addAction(tr("&About Tagmoor"));
    m_about->setObjectName(QStringLiteral("menuItemAbout"));
    connect(m_about, &QAction::triggered, this, &MainWindow::tappedAbout);

    // While an overlay is up, the entries that would open another one wait for it.
    connect(&app.events(), &AppEvents::HideUnhideTopLayerTM, this, [this](bool isHidden) {
        m_preferences->setEnabled(isHidden);
        m_checkForUpdates->setEnabled(isHidden);
        m_about->setEnabled(isHidden);
    });
}

void MainWindow::showTM() {
    // Not before the welcome window was left.
    if (!m_app.settings().startup().has_value())
        return;
    showNormal();
    raise();
    activateWindow();
}

void MainWindow::closeEvent(QCloseEvent* event) {
    BatchController& batch = m_app.homeSession().batch();
    if (batch.isRunning()) {
        batch.clickedStop();
        if (!batch.stopControl().stopRequested()) {
            event->ignore();
            return;
        }
        // The photos in work finish and nothing half written is left behind.
        batch.waitForFinished();
    }
    m_app.settings().setMainWindowGeometry(saveGeometry());
    event->accept();
    QCoreApplication::quit();
}

void MainWindow::tappedAbout() {
    // Not over another overlay, and not before the welcome window was left.
    if (m_app.settings().isPopUpOrDefault() || !m_app.settings().startup().has_value())
        return;
    QMessageBox::about(this, tr("About Tagmoor"),
                       tr("<h3>Tagmoor %1</h3><p>Edit the metadata of many photos at once.</p>"
                          "<p>World outline: Natural Earth (public domain). Place and region "
                          "names: GeoNames (CC BY 4.0). Map tiles: © OpenStreetMap "
                          "contributors.</p>")
                           .arg(AppDelegate::version()));
}

} // namespace tagmoor
