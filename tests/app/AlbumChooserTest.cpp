// Drives the album chooser in the real window: its three faces, the library panels, the
// album list's check boxes, and the originals that reach the list.

#include "AppTestSupport.h"

#include "../core/photolibrary/LibraryFixtures.h"
#include "app/photolibrary/AlbumChooser.h"
#include "app/shell/RootView.h"
#include "app/widgets/FilePanel.h"
#include "app/workingset/AddFilesScreen.h"
#include "app/workingset/HomeScreen.h"

#include <QCheckBox>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QRadioButton>

using namespace tagmoor;
using namespace tagmoor::test;

namespace {

QString place(const char* sample, const QString& target) {
    QDir().mkpath(QFileInfo(target).absolutePath());
    QFile::copy(formatsDir() + QLatin1Char('/') + QLatin1String(sample), target);
    return target;
}

// A package of the new schema: albums "Trip" (a, b) and "Family" (b, c).
struct Package {
    QString path, a, b, c;
};

Package makePackage(const QString& dir, bool withAlbums = true) {
    Package p;
    p.path = dir + QStringLiteral("/Photos Library.photoslibrary");
    p.a = place("Reagan.jpg", p.path + "/originals/A/a.jpeg");
    p.b = place("FurnaceCreekInn.jpg", p.path + "/originals/B/b.jpeg");
    p.c = place("et-GPS.jpg", p.path + "/originals/C/c.jpeg");
    QString sql = newPackageSchema() + newAssetRow(1, "A", "a.jpeg", "a.jpg", 1) +
                  newAssetRow(2, "B", "b.jpeg", "b.jpg", 1) +
                  newAssetRow(3, "C", "c.jpeg", "c.jpg", 1);
    if (withAlbums)
        sql += newAlbumRows(10, "Trip", {1, 2}) + newAlbumRows(11, "Family", {2, 3});
    const QString error = execSql(p.path + "/database/Photos.sqlite", sql);
    if (!error.isEmpty())
        qWarning() << error;
    return p;
}

QStringList listed(const QListWidget* list) {
    QStringList out;
    for (int i = 0; i < list->count(); ++i)
        out << list->item(i)->text();
    return out;
}

} // namespace

class AlbumChooserTest : public QObject {
    Q_OBJECT
private slots:
    void addScreenChosenAlbumsEnterTheList();
    void homeScreenFacesLeadToTheWholeLibrary();
    void cancelledPanelsAndEmptyLibrariesAddNothing();
};

void AlbumChooserTest::addScreenChosenAlbumsEnterTheList() {
    TestApp t;
    const Package p = makePackage(t.dir("lib"));
    AddFilesScreen* add = named<AddFilesScreen>(&t.window(), QStringLiteral("AddFiles"));
    AlbumChooser* chooser = named<AlbumChooser>(add, QStringLiteral("AddAlbumsPhotosLibrary"));

    QTest::mouseClick(named<QPushButton>(add, QStringLiteral("btnAddPhotosLibrary")),
                      Qt::LeftButton);
    QVERIFY(chooser->isVisible());
    QCOMPARE(chooser->face(), AlbumChooser::Face::AddFiles);
    QVERIFY(named<QRadioButton>(chooser, QStringLiteral("btnAddEntireLibAddFilesVC"))->isChecked());

    named<QRadioButton>(chooser, QStringLiteral("btnAddAblumsAddFilesVC"))->click();
    QVERIFY(
        !named<QRadioButton>(chooser, QStringLiteral("btnAddEntireLibAddFilesVC"))->isChecked());
    t.prompt.panelAnswers.append({p.path});
    QTest::mouseClick(named<QPushButton>(chooser, QStringLiteral("btnOkAddFilesVC")),
                      Qt::LeftButton);
    QCOMPARE(t.prompt.panels.last().prompt, QStringLiteral("Select Photos Library"));
    QVERIFY(t.prompt.panels.last().allowedExtensions.contains(QStringLiteral("photoslibrary")));
    FilePanel libraryPanel(nullptr, t.prompt.panels.last());
    const auto* message = named<QLabel>(&libraryPanel, QStringLiteral("panelMessage"));
    QVERIFY(message);
    QCOMPARE(message->text(),
             QStringLiteral("Select Photos Library to choose specific albums from"));
    QCOMPARE(chooser->face(), AlbumChooser::Face::AlbumList);
    QCOMPARE(named<QPushButton>(chooser, QStringLiteral("btnOKAlbumList"))->text(),
             QStringLiteral("OK"));
    QTRY_VERIFY(!chooser->isBusy());
    QCOMPARE(named<QLabel>(chooser, QStringLiteral("lblTitlePhotoLibAlbumList"))->text(),
             QStringLiteral("Library: Photos Library"));
    QCOMPARE(listed(named<QListWidget>(chooser, QStringLiteral("tableView"))),
             (QStringList{"Family", "Trip"}));
    QVERIFY(named<QCheckBox>(chooser, QStringLiteral("btnAllAlbumsList"))->isChecked());

    // Unchecking one album unchecks "All Albums"; checking it again checks it.
    named<QListWidget>(chooser, QStringLiteral("tableView"))->item(0)->setCheckState(Qt::Unchecked);
    QVERIFY(!chooser->albums()[0].isSelected);
    QVERIFY(!named<QCheckBox>(chooser, QStringLiteral("btnAllAlbumsList"))->isChecked());
    named<QListWidget>(chooser, QStringLiteral("tableView"))->item(0)->setCheckState(Qt::Checked);
    QVERIFY(named<QCheckBox>(chooser, QStringLiteral("btnAllAlbumsList"))->isChecked());
    named<QCheckBox>(chooser, QStringLiteral("btnAllAlbumsList"))->click();
    QCOMPARE(named<QListWidget>(chooser, QStringLiteral("tableView"))->item(1)->checkState(),
             Qt::Unchecked);
    named<QListWidget>(chooser, QStringLiteral("tableView"))
        ->item(1)
        ->setCheckState(Qt::Checked); // only "Trip"

    QTest::mouseClick(named<QPushButton>(chooser, QStringLiteral("btnOKAlbumList")),
                      Qt::LeftButton);
    QTRY_VERIFY_WITH_TIMEOUT(t.set().count() == 2 && t.scanIdle(), 10000);
    QVERIFY(!chooser->isVisible());
    QCOMPARE(t.set().imagePaths(), (QStringList{p.a, p.b}));
    QCOMPARE(t.window().rootView()->selectedIndex(), 1);
    QCOMPARE(t.prompt.alerts.size(), 0);
}

void AlbumChooserTest::homeScreenFacesLeadToTheWholeLibrary() {
    TestApp t;
    const Package p = makePackage(t.dir("lib"));
    // A first photo by the usual panel, which puts the home screen up.
    const QString loose = place("et-IPTC.jpg", t.dir("loose") + "/loose.jpg");
    t.prompt.panelAnswers.append({loose});
    QTest::mouseClick(
        named<QPushButton>(named<AddFilesScreen>(&t.window(), QStringLiteral("AddFiles")),
                           QStringLiteral("btnAddPhotos")),
        Qt::LeftButton);
    QTRY_VERIFY_WITH_TIMEOUT(t.set().count() == 1 && t.scanIdle(), 10000);

    HomeScreen* home = named<HomeScreen>(&t.window(), QStringLiteral("Home"));
    QTest::mouseClick(named<QPushButton>(home, QStringLiteral("btnAddMore")), Qt::LeftButton);
    AlbumChooser* chooser = named<AlbumChooser>(home, QStringLiteral("AddAlbumsPhotosLibrary"));
    QVERIFY(chooser->isVisible());
    QCOMPARE(chooser->face(), AlbumChooser::Face::Home);
    QVERIFY(
        named<QRadioButton>(chooser, QStringLiteral("btnAddFoldersnPhotosHomeVC"))->isChecked());
    named<QRadioButton>(chooser, QStringLiteral("btnAddPhotosLibHomeVC"))->click();
    QVERIFY(
        !named<QRadioButton>(chooser, QStringLiteral("btnAddFoldersnPhotosHomeVC"))->isChecked());
    QTest::mouseClick(named<QPushButton>(chooser, QStringLiteral("btnOkHomeVC")), Qt::LeftButton);
    QCOMPARE(chooser->face(), AlbumChooser::Face::AddFiles);

    // The entire library, with the loose photo's twin already in the list.
    t.prompt.panelAnswers.append({p.path});
    QTest::mouseClick(named<QPushButton>(chooser, QStringLiteral("btnOkAddFilesVC")),
                      Qt::LeftButton);
    QCOMPARE(t.prompt.panels.last().prompt, QStringLiteral("Add Photos Library"));
    QTRY_VERIFY_WITH_TIMEOUT(t.set().count() == 4 && t.scanIdle(), 10000);
    QCOMPARE(t.set().imagePaths(), (QStringList{loose, p.a, p.b, p.c}));

    // A second time, all albums: "b" is in both and everything is in the list already.
    QTest::mouseClick(named<QPushButton>(home, QStringLiteral("btnAddMore")), Qt::LeftButton);
    named<QRadioButton>(chooser, QStringLiteral("btnAddPhotosLibHomeVC"))->click();
    QTest::mouseClick(named<QPushButton>(chooser, QStringLiteral("btnOkHomeVC")), Qt::LeftButton);
    named<QRadioButton>(chooser, QStringLiteral("btnAddAblumsAddFilesVC"))->click();
    t.prompt.panelAnswers.append({p.path});
    QTest::mouseClick(named<QPushButton>(chooser, QStringLiteral("btnOkAddFilesVC")),
                      Qt::LeftButton);
    QTRY_VERIFY(!chooser->isBusy());
    QTest::mouseClick(named<QPushButton>(chooser, QStringLiteral("btnOKAlbumList")),
                      Qt::LeftButton);
    QTRY_COMPARE_WITH_TIMEOUT(t.prompt.alerts.size(), 1, 10000);
    QCOMPARE(t.prompt.alerts[0].text,
             QStringLiteral("The selected images are already added to the list"));
    QCOMPARE(t.set().count(), 4);
}

void AlbumChooserTest::cancelledPanelsAndEmptyLibrariesAddNothing() {
    TestApp t;
    AddFilesScreen* add = named<AddFilesScreen>(&t.window(), QStringLiteral("AddFiles"));
    AlbumChooser* chooser = named<AlbumChooser>(add, QStringLiteral("AddAlbumsPhotosLibrary"));

    // A cancelled panel in the album path opens no list.
    QTest::mouseClick(named<QPushButton>(add, QStringLiteral("btnAddPhotosLibrary")),
                      Qt::LeftButton);
    named<QRadioButton>(chooser, QStringLiteral("btnAddAblumsAddFilesVC"))->click();
    QTest::mouseClick(named<QPushButton>(chooser, QStringLiteral("btnOkAddFilesVC")),
                      Qt::LeftButton);
    QVERIFY(!chooser->isVisible());
    QCOMPARE(chooser->face(), AlbumChooser::Face::AddFiles);

    // A library without albums shows so; "OK" then adds nothing and stays on this screen.
    const Package bare = makePackage(t.dir("bare"), false);
    QTest::mouseClick(named<QPushButton>(add, QStringLiteral("btnAddPhotosLibrary")),
                      Qt::LeftButton);
    t.prompt.panelAnswers.append({bare.path});
    QTest::mouseClick(named<QPushButton>(chooser, QStringLiteral("btnOkAddFilesVC")),
                      Qt::LeftButton);
    QTRY_VERIFY(!chooser->isBusy());
    QCOMPARE(named<QListWidget>(chooser, QStringLiteral("tableView"))->count(), 0);
    QCOMPARE(named<QLabel>(chooser, QStringLiteral("lblAlbumListStatus"))->text(),
             QStringLiteral("This library has no albums."));
    QTest::mouseClick(named<QPushButton>(chooser, QStringLiteral("btnOKAlbumList")),
                      Qt::LeftButton);
    QTest::qWait(200);
    QCOMPARE(t.set().count(), 0);
    QCOMPARE(t.window().rootView()->selectedIndex(), 0);

    // A folder that is no library: the list says why.
    QTest::mouseClick(named<QPushButton>(add, QStringLiteral("btnAddPhotosLibrary")),
                      Qt::LeftButton);
    t.prompt.panelAnswers.append({t.dir("plain")});
    QTest::mouseClick(named<QPushButton>(chooser, QStringLiteral("btnOkAddFilesVC")),
                      Qt::LeftButton);
    QTRY_VERIFY(!chooser->isBusy());
    QVERIFY(named<QLabel>(chooser, QStringLiteral("lblAlbumListStatus"))
                ->text()
                .contains(QStringLiteral("not a photo library")));
    QTest::mouseClick(chooser->findChild<QPushButton*>(QStringLiteral("btnCancelAlbumList")),
                      Qt::LeftButton);
    QVERIFY(!chooser->isVisible());
    QCOMPARE(t.set().count(), 0);
}

TAGMOOR_APP_TEST_MAIN(AlbumChooserTest)
#include "AlbumChooserTest.moc"
