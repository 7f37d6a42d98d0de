#include "app/shell/MainWindow.h"

#include "app/location/GeotagPanel.h"
#include "app/shell/AppDelegate.h"
#include "app/shell/RootView.h"
#include "app/workingset/HomeMenuActions.h"
#include "app/workingset/HomeScreen.h"
#include "batch/BatchController.h"
#include "foundation/AppEvents.h"
#include "foundation/Settings.h"
#include "foundation/UserPrompt.h"
#include "journal/RunJournal.h"
#include "processing/HomeSession.h"

#include <QApplication>
#include <QCloseEvent>
#include <QFutureWatcher>
#include <QLocale>
#include <QMenuBar>
#include <QMessageBox>
#include <QtConcurrent/QtConcurrentRun>

#include <algorithm>

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
    QAction* geotag = file->addAction(tr("&Geotag from Track..."));
    geotag->setObjectName(QStringLiteral("menuItemGeotagFromTrack"));
    connect(geotag, &QAction::triggered, this, [this] {
        GeotagPanel::openFor(m_app.workingSet(), m_app.homeSession(), m_app.prompt(),
                             m_app.settings(), this);
    });
    const HomeMenuActions& home = m_root->home()->menuActions();
    file->addSeparator();
    file->addActions(home.fileActions());
    file->addSeparator();
    m_undoBatch = file->addAction(tr("&Undo Last Batch..."));
    m_undoBatch->setObjectName(QStringLiteral("menuItemUndoLastBatch"));
    connect(m_undoBatch, &QAction::triggered, this, &MainWindow::undoLastBatch);
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

    QMenu* edit = menuBar()->addMenu(tr("&Edit"));
    edit->setObjectName(QStringLiteral("menuEdit"));
    edit->addActions(home.editActions());

    // The home screen's actions, with their keys.
    QMenu* photos = menuBar()->addMenu(tr("&Photos"));
    photos->setObjectName(QStringLiteral("menuPhotos"));
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

void MainWindow::undoLastBatch() {
    const QList<JournalRun> runs = RunJournal::runs();
    const auto newest =
        std::find_if(runs.begin(), runs.end(), [](const JournalRun& run) { return !run.undone; });
    const QString title = tr("Undo Last Batch");
    if (newest == runs.end()) {
        m_app.prompt().ask(Alert::ok(title, tr("There is no batch to undo.")));
        return;
    }
    if (m_app.homeSession().batch().isRunning()) {
        m_app.prompt().ask(Alert::ok(title, tr("A batch is running. Undo it when it is done.")));
        return;
    }
    QStringList lines;
    for (const JournalRun& run : runs) {
        const QString where = run.inPlace ? tr("in place") : run.folder;
        lines << tr("%1, %2, photos: %3%4")
                     .arg(QLocale().toString(run.when.toLocalTime(), QLocale::ShortFormat), where,
                          QString::number(run.photos), run.undone ? tr(" (undone)") : QString());
    }
    const QString text =
        tr("Undo the batch of %1? Its photos get their old metadata back and the "
           "files it made are removed.\n\nPast batches, newest first:\n%2")
            .arg(QLocale().toString(newest->when.toLocalTime(), QLocale::ShortFormat),
                 lines.join(QLatin1Char('\n')));
    if (m_app.prompt().ask(Alert::yesNo(title, text)) != 0)
        return;
    m_undoBatch->setEnabled(false);
    auto* watcher = new QFutureWatcher<UndoReport>(this);
    connect(watcher, &QFutureWatcher<UndoReport>::finished, this, [this, watcher, title] {
        watcher->deleteLater();
        m_undoBatch->setEnabled(true);
        const UndoReport report = watcher->result();
        QString told = tr("Files restored or removed: %1.").arg(report.restored.size());
        if (!report.leftAlone.isEmpty()) {
            QStringList left;
            for (const LeftAlone& file : report.leftAlone)
                left << tr("%1: %2").arg(file.path, file.reason);
            told += QLatin1Char(' ') +
                    tr("These files were left as they are:\n%1").arg(left.join(QLatin1Char('\n')));
        }
        m_app.prompt().ask(Alert::ok(title, told));
    });
    const QString id = newest->id;
    watcher->setFuture(QtConcurrent::run([id] { return RunJournal::undo(id); }));
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
                          "names: GeoNames (CC BY 4.0). Time zones: @photostructure/tz-lookup "
                          "(CC0). Map tiles: © OpenStreetMap contributors.</p>")
                           .arg(AppDelegate::version()));
}

} // namespace tagmoor
