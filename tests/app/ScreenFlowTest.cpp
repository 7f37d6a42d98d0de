// Drives the real main window: drops, panels, the scan's progress and stop, files opened
// during a scan, and marks across the grid and the table.

#include "AppTestSupport.h"

#include "app/photolibrary/AlbumChooser.h"
#include "app/presets/PresetsDetailsViewController.h"
#include "app/shell/RootView.h"
#include "app/workingset/AddFilesScreen.h"
#include "app/workingset/DropView.h"
#include "app/workingset/HomeScreen.h"
#include "app/workingset/PhotoItemDelegate.h"
#include "app/workingset/PhotoListViews.h"
#include "app/workingset/ScanProgressBox.h"
#include "shell/OpenWithQueue.h"
#include "workingset/ScanController.h"
#include "workingset/WorkingListModel.h"

#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QDropEvent>
#include <QLabel>
#include <QMimeData>
#include <QPushButton>
#include <QToolButton>

#include <thread>

using namespace tagmoor;
using namespace tagmoor::test;

namespace {

void dropPaths(QWidget* target, const QStringList& paths) {
    QMimeData mime;
    QList<QUrl> urls;
    for (const QString& path : paths)
        urls.append(QUrl::fromLocalFile(path));
    mime.setUrls(urls);
    const QPoint pos = target->rect().center();
    QDragEnterEvent enter(pos, Qt::CopyAction, &mime, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(target, &enter);
    QVERIFY(enter.isAccepted());
    QDropEvent drop(QPointF(pos), Qt::CopyAction, &mime, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(target, &drop);
}

void clickCheckBox(QAbstractItemView* view, int row) {
    const QModelIndex index = view->model()->index(row, 0);
    view->scrollTo(index);
    QCoreApplication::processEvents();
    const auto* delegate = qobject_cast<PhotoItemDelegate*>(view->itemDelegate());
    QTest::mouseClick(view->viewport(), Qt::LeftButton, {},
                      delegate->checkBoxRect(view->visualRect(index)).center());
}

bool shownMark(QAbstractItemView* view, int row) {
    return view->model()->index(row, 0).data(Qt::CheckStateRole).toInt() == Qt::Checked;
}

// A record loader that takes its time, so that a test can act while the scan runs.
RecordLoader slowLoader(int ms) {
    return [ms](const QUrl& url) {
        std::this_thread::sleep_for(std::chrono::milliseconds(ms));
        return loadImageProperties(url);
    };
}

struct Told {
    QList<int> indexes;
    bool multiple = false;
    int index = -1;
};

QStringList makeCopies(const QString& dir, int count) {
    QStringList paths;
    const QString source = formatsDir() + QStringLiteral("/Reagan.jpg");
    for (int i = 0; i < count; ++i) {
        const QString path = dir + QStringLiteral("/photo-%1.jpg").arg(i, 3, 10, QLatin1Char('0'));
        QFile::copy(source, path);
        paths.append(path);
    }
    return paths;
}

} // namespace

class ScreenFlowTest : public QObject {
    Q_OBJECT
private slots:
    void droppedFolderLandsOnTheHomeScreen();
    void sameFileTwiceGivesOneEntryAndAnAlert();
    void folderOfTextFilesGoesBackToTheAddScreen();
    void stopAnsweredNoGoesOnAndYesKeepsWhatWasAdded();
    void filesOpenedDuringAScanAreAddedAfterIt();
    void marksSurviveSwitchingBetweenGridAndTable();
    void rootShowsTheChildOfTheIndex();
    void dropIsIgnoredWhileAnOverlayIsUp();
};

void ScreenFlowTest::droppedFolderLandsOnTheHomeScreen() {
    TestApp t;
    QVERIFY(QTest::qWaitForWindowExposed(&t.window()));
    QCOMPARE(t.window().windowTitle(), QStringLiteral("Tagmoor"));
    RootView* root = t.window().rootView();
    QCOMPARE(root->currentChild(),
             static_cast<QWidget*>(named<AddFilesScreen>(&t.window(), QStringLiteral("AddFiles"))));

    const QString folder = t.dir("photos");
    const int expected = readableCount(copySamples(folder));
    QVERIFY(expected > 20);

    dropPaths(named<DropView>(named<AddFilesScreen>(&t.window(), QStringLiteral("AddFiles")),
                              QStringLiteral("dropView")),
              {folder});
    QTRY_COMPARE(root->selectedIndex(), 1);
    QTRY_VERIFY_WITH_TIMEOUT(t.scanIdle() && t.set().count() == expected, 20000);
    HomeScreen* home = named<HomeScreen>(&t.window(), QStringLiteral("Home"));
    QTRY_VERIFY(!named<ScanProgressBox>(home, QStringLiteral("boxLoader"))->isVisible());
    QCOMPARE(named<QLabel>(home, QStringLiteral("lblTotalPhotos"))->text(),
             QStringLiteral("%1 Photos").arg(expected));
    QCOMPARE(named<PhotoGridView>(home, QStringLiteral("collectionView"))->model()->rowCount(),
             expected);
    QCOMPARE(named<PhotoTableView>(home, QStringLiteral("tableView"))->model()->rowCount(),
             expected);
    // Every photo arrives marked, so the batch controls are on and "Select All" is checked.
    QVERIFY(named<QCheckBox>(home, QStringLiteral("btnSelectUnselectAllInInTabColl"))->isChecked());
    QVERIFY(named<QPushButton>(home, QStringLiteral("btnStartProcess"))->isEnabled());
    QVERIFY(named<QPushButton>(home, QStringLiteral("btnAddMore"))->isEnabled());
    QCOMPARE(t.prompt.alerts.size(), 0);
    // The last progress shown counted every file of the folder.
    const QString objects = named<QLabel>(named<ScanProgressBox>(home, QStringLiteral("boxLoader")),
                                          QStringLiteral("lblObjectSelectedScanning"))
                                ->text();
    QVERIFY2(objects.startsWith(QStringLiteral("Objects Selected: ")), qPrintable(objects));
}

void ScreenFlowTest::sameFileTwiceGivesOneEntryAndAnAlert() {
    TestApp t;
    const QString photo = copySamples(t.dir("one")).filter(QStringLiteral("Reagan.jpg")).first();

    t.prompt.panelAnswers.append({photo, photo});
    QTest::mouseClick(
        named<QPushButton>(named<AddFilesScreen>(&t.window(), QStringLiteral("AddFiles")),
                           QStringLiteral("btnAddPhotos")),
        Qt::LeftButton);
    QCOMPARE(t.prompt.panels.size(), 1);
    QCOMPARE(t.prompt.panels[0].prompt, QStringLiteral("Add Photos"));
    QVERIFY(!t.prompt.panels[0].allowedExtensions.contains(QStringLiteral("photoslibrary")));
    QTRY_VERIFY_WITH_TIMEOUT(t.scanIdle() && t.set().count() == 1, 10000);
    QTRY_COMPARE(t.prompt.alerts.size(), 1);
    QCOMPARE(t.prompt.alerts[0].text,
             QStringLiteral("The selected images are already added to the list"));
    QCOMPARE(t.prompt.alerts[0].title, QStringLiteral("Some images cannot be added"));

    // Adding it once more from the home screen is caught against the list.
    HomeScreen* home = named<HomeScreen>(&t.window(), QStringLiteral("Home"));
    t.prompt.panelAnswers.append({photo});
    QTest::mouseClick(named<QPushButton>(home, QStringLiteral("btnAddMore")), Qt::LeftButton);
    QTest::mouseClick(
        named<QPushButton>(named<AlbumChooser>(home, QStringLiteral("AddAlbumsPhotosLibrary")),
                           QStringLiteral("btnOkHomeVC")),
        Qt::LeftButton); // folders and photos
    QVERIFY(t.prompt.panels[1].allowedExtensions.contains(QStringLiteral("photoslibrary")));
    QTRY_COMPARE(t.prompt.alerts.size(), 2);
    QCOMPARE(t.prompt.alerts[1].text,
             QStringLiteral("The selected images are already added to the list"));
    QTRY_VERIFY(t.scanIdle());
    QCOMPARE(t.set().count(), 1);
}

void ScreenFlowTest::folderOfTextFilesGoesBackToTheAddScreen() {
    TestApp t;
    const QString folder = t.dir("notes");
    for (int i = 0; i < 3; ++i)
        writeText(folder + QStringLiteral("/note%1.txt").arg(i), "just words");

    dropPaths(named<DropView>(named<AddFilesScreen>(&t.window(), QStringLiteral("AddFiles")),
                              QStringLiteral("dropView")),
              {folder});
    QTRY_COMPARE(t.prompt.alerts.size(), 1);
    QCOMPARE(t.prompt.alerts[0].title, QStringLiteral("Some items could not be added"));
    QCOMPARE(t.prompt.alerts[0].text,
             QStringLiteral("The items that are not supported could not be added to the list "
                            "for processing."));
    QTRY_COMPARE(t.window().rootView()->selectedIndex(), 0);
    QCOMPARE(t.set().count(), 0);
    QVERIFY(!named<ScanProgressBox>(named<HomeScreen>(&t.window(), QStringLiteral("Home")),
                                    QStringLiteral("boxLoader"))
                 ->isVisible());

    // An empty folder: the other end-of-scan alert, and still the add screen.
    const QString empty = t.dir("empty");
    dropPaths(named<DropView>(named<AddFilesScreen>(&t.window(), QStringLiteral("AddFiles")),
                              QStringLiteral("dropView")),
              {empty});
    QTRY_COMPARE(t.prompt.alerts.size(), 2);
    QCOMPARE(t.prompt.alerts[1].title,
             QStringLiteral("No images were found in the selected folder"));
    QTRY_COMPARE(t.window().rootView()->selectedIndex(), 0);
}

void ScreenFlowTest::stopAnsweredNoGoesOnAndYesKeepsWhatWasAdded() {
    const int total = 60;
    {
        TestApp t;
        t.app->scans().setRecordLoader(slowLoader(15));
        t.app->scans().setReaderThreads(1);
        const QString folder = t.dir("many");
        makeCopies(folder, total);
        dropPaths(named<DropView>(named<AddFilesScreen>(&t.window(), QStringLiteral("AddFiles")),
                                  QStringLiteral("dropView")),
                  {folder});
        HomeScreen* home = named<HomeScreen>(&t.window(), QStringLiteral("Home"));
        QTRY_VERIFY(t.set().count() >= 3);
        QVERIFY(named<ScanProgressBox>(home, QStringLiteral("boxLoader"))->isVisible());
        QVERIFY(!named<QPushButton>(home, QStringLiteral("btnAddMore"))->isEnabled());
        QVERIFY(named<QLabel>(named<ScanProgressBox>(home, QStringLiteral("boxLoader")),
                              QStringLiteral("lblPathScanning"))
                    ->toolTip()
                    .startsWith(QStringLiteral("Path: ")));

        t.prompt.answerNext(QStringLiteral("NO"));
        QTest::mouseClick(
            named<ScanProgressBox>(home, QStringLiteral("boxLoader"))->btnStopScanning(),
            Qt::LeftButton);
        QCOMPARE(t.prompt.alerts.size(), 1);
        QCOMPARE(t.prompt.alerts[0],
                 Alert::yesNo(QStringLiteral("Stop adding images?"),
                              QStringLiteral("Are you sure you want to stop adding the images?")));
        QTRY_VERIFY_WITH_TIMEOUT(t.scanIdle(), 20000);
        QCOMPARE(t.set().count(), total);
    }
    {
        TestApp t;
        t.app->scans().setRecordLoader(slowLoader(15));
        t.app->scans().setReaderThreads(1);
        const QString folder = t.dir("many");
        makeCopies(folder, total);
        dropPaths(named<DropView>(named<AddFilesScreen>(&t.window(), QStringLiteral("AddFiles")),
                                  QStringLiteral("dropView")),
                  {folder});
        HomeScreen* home = named<HomeScreen>(&t.window(), QStringLiteral("Home"));
        QTRY_VERIFY(t.set().count() >= 3);
        t.prompt.answerNext(QStringLiteral("YES"));
        QTest::mouseClick(
            named<ScanProgressBox>(home, QStringLiteral("boxLoader"))->btnStopScanning(),
            Qt::LeftButton);
        QTRY_VERIFY_WITH_TIMEOUT(t.scanIdle(), 20000);
        const int kept = t.set().count();
        QVERIFY2(kept >= 3 && kept < total, qPrintable(QString::number(kept)));
        QVERIFY(t.set().stagedURLs().isEmpty());
        QCOMPARE(t.window().rootView()->selectedIndex(), 1);
        QTRY_VERIFY(!named<ScanProgressBox>(home, QStringLiteral("boxLoader"))->isVisible());
        QCOMPARE(named<QLabel>(home, QStringLiteral("lblTotalPhotos"))->text(),
                 QStringLiteral("%1 Photos").arg(kept));
    }
}

void ScreenFlowTest::filesOpenedDuringAScanAreAddedAfterIt() {
    TestApp t;
    t.app->openWithQueue().setInterval(50);
    t.app->scans().setRecordLoader(slowLoader(15));
    t.app->scans().setReaderThreads(1);
    const QString folder = t.dir("batch");
    makeCopies(folder, 25);
    const QString late = t.dir("late") + QStringLiteral("/late.jpg");
    QVERIFY(QFile::copy(formatsDir() + QStringLiteral("/Reagan.jpg"), late));

    dropPaths(named<DropView>(named<AddFilesScreen>(&t.window(), QStringLiteral("AddFiles")),
                              QStringLiteral("dropView")),
              {folder});
    QTRY_VERIFY(t.set().isScanning() && t.set().count() >= 1);
    t.app->openFiles({late, late});
    QTRY_VERIFY_WITH_TIMEOUT(t.set().count() == 26 && t.scanIdle(), 20000);
    QCOMPARE(t.set().workingImages().last().path(), late);
    QCOMPARE(t.prompt.alerts.size(), 0);
}

void ScreenFlowTest::marksSurviveSwitchingBetweenGridAndTable() {
    TestApp t;
    t.window().resize(1200, 760);
    QVERIFY(QTest::qWaitForWindowExposed(&t.window()));
    const QString folder = t.dir("marks");
    makeCopies(folder, 6);
    dropPaths(named<DropView>(named<AddFilesScreen>(&t.window(), QStringLiteral("AddFiles")),
                              QStringLiteral("dropView")),
              {folder});
    QTRY_VERIFY_WITH_TIMEOUT(t.scanIdle() && t.set().count() == 6, 10000);
    HomeScreen* home = named<HomeScreen>(&t.window(), QStringLiteral("Home"));
    QAbstractItemView* grid = named<PhotoGridView>(home, QStringLiteral("collectionView"));
    QAbstractItemView* table = named<PhotoTableView>(home, QStringLiteral("tableView"));
    QTRY_VERIFY(grid->isVisible());

    QList<Told> told;
    connect(&t.app->events(), &AppEvents::UpdateMetadataInfoOTM, this,
            [&told](const QList<int>& indexes, bool multiple, int index) {
                told.append({indexes, multiple, index});
            });

    clickCheckBox(grid, 2);
    QVERIFY(!t.set().workingImages()[2].isSelected);
    QVERIFY(!shownMark(grid, 2));
    QVERIFY(
        !named<QCheckBox>(home, QStringLiteral("btnSelectUnselectAllInInTabColl"))->isChecked());
    QCOMPARE(told.size(), 1);
    QCOMPARE(told[0].indexes, (QList<int>{0, 1, 3, 4, 5}));
    QVERIFY(told[0].multiple);

    QTest::mouseClick(home->findChild<QToolButton*>(QStringLiteral("segmentTable")),
                      Qt::LeftButton);
    QVERIFY(named<QToolButton>(home, QStringLiteral("segmentTable"))->isChecked());
    QTRY_VERIFY(table->isVisible());
    QVERIFY(!shownMark(table, 2));
    QVERIFY(shownMark(table, 0));
    clickCheckBox(table, 0);
    QVERIFY(!t.set().workingImages()[0].isSelected);

    QTest::mouseClick(home->findChild<QToolButton*>(QStringLiteral("segmentGrid")), Qt::LeftButton);
    QTRY_VERIFY(grid->isVisible());
    QVERIFY(!shownMark(grid, 0) && !shownMark(grid, 2) && shownMark(grid, 1));
    QCOMPARE(t.set().markedCount(), 4);

    // Unmarking all turns the batch controls off; marking all turns them on again.
    QTest::mouseClick(named<QCheckBox>(home, QStringLiteral("btnSelectUnselectAllInInTabColl")),
                      Qt::LeftButton);
    QVERIFY(named<QCheckBox>(home, QStringLiteral("btnSelectUnselectAllInInTabColl"))->isChecked());
    QCOMPARE(t.set().markedCount(), 6);
    QTest::mouseClick(named<QCheckBox>(home, QStringLiteral("btnSelectUnselectAllInInTabColl")),
                      Qt::LeftButton);
    QCOMPARE(t.set().markedCount(), 0);
    QVERIFY(!named<QPushButton>(home, QStringLiteral("btnStartProcess"))->isEnabled());
    QVERIFY(!named<QPushButton>(home, QStringLiteral("btnRemove"))->isEnabled());
    clickCheckBox(grid, 5);
    QVERIFY(named<QPushButton>(home, QStringLiteral("btnStartProcess"))->isEnabled());
    QCOMPARE(told.last().index, 5);
    QVERIFY(!told.last().multiple);
    QCOMPARE(named<QLabel>(home, QStringLiteral("lblImageName"))->text(),
             t.set().workingImages()[5].path());

    // A plain click selects a row for the preview and changes no mark.
    QTest::mouseClick(grid->viewport(), Qt::LeftButton, {},
                      grid->visualRect(grid->model()->index(3, 0)).center() + QPoint(0, 30));
    QCOMPARE(named<QLabel>(home, QStringLiteral("lblImageName"))->text(),
             t.set().workingImages()[3].path());
    QCOMPARE(t.set().markedCount(), 1);

    // Remove takes the marked photo away without a question.
    QTest::mouseClick(named<QPushButton>(home, QStringLiteral("btnRemove")), Qt::LeftButton);
    QCOMPARE(t.set().count(), 5);
    QCOMPARE(t.prompt.alerts.size(), 0);
    QCOMPARE(named<QLabel>(home, QStringLiteral("lblTotalPhotos"))->text(),
             QStringLiteral("5 Photos"));
}

void ScreenFlowTest::rootShowsTheChildOfTheIndex() {
    TestApp t;
    RootView* root = t.window().rootView();
    emit t.app->events().UpdateVCOTM(RootPage::presetsDetails);
    QCOMPARE(root->currentChild(), static_cast<QWidget*>(named<PresetsDetailsViewController>(
                                       root, QStringLiteral("presetsDetails"))));
    emit t.app->events().UpdateVCOTM(RootPage::none);
    QCOMPARE(root->currentChild(), nullptr);
    emit t.app->events().UpdateVCOTM(RootPage::addFiles);
    QCOMPARE(root->currentChild(),
             static_cast<QWidget*>(named<AddFilesScreen>(root, QStringLiteral("AddFiles"))));
}

void ScreenFlowTest::dropIsIgnoredWhileAnOverlayIsUp() {
    TestApp t;
    QVERIFY(QTest::qWaitForWindowExposed(&t.window()));
    const QString photo = copySamples(t.dir("one")).filter(QStringLiteral("Reagan.jpg")).first();
    // Any overlay that comes up disables the entries that would open another one.
    emit t.app->events().HideUnhideTopLayerTM(false);
    for (const char* entry : {"menuItemPreferences", "menuItemCheckForUpdates", "menuItemAbout"})
        QVERIFY(!named<QAction>(&t.window(), QString::fromLatin1(entry))->isEnabled());
    dropPaths(named<DropView>(named<AddFilesScreen>(&t.window(), QStringLiteral("AddFiles")),
                              QStringLiteral("dropView")),
              {photo});
    QTest::qWait(100);
    QVERIFY(t.set().stagedURLs().isEmpty());
    QCOMPARE(t.window().rootView()->selectedIndex(), 0);

    emit t.app->events().HideUnhideTopLayerTM(true);
    QVERIFY(named<QAction>(&t.window(), QStringLiteral("menuItemAbout"))->isEnabled());
    dropPaths(named<DropView>(named<AddFilesScreen>(&t.window(), QStringLiteral("AddFiles")),
                              QStringLiteral("dropView")),
              {photo});
    QTRY_VERIFY_WITH_TIMEOUT(t.scanIdle() && t.set().count() == 1, 10000);
    QCOMPARE(t.window().rootView()->selectedIndex(), 1);
}

TAGMOOR_APP_TEST_MAIN(ScreenFlowTest)
#include "ScreenFlowTest.moc"
