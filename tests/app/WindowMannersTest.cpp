// How the window behaves as a desktop program: the photo table's columns and sorting, the
// size texts of Get Info and of the file panel, where file panels open and what Enter in
// their name field does, and the tour over the home screen.

#include "AppTestSupport.h"

#include "app/widgets/DialogPrompt.h"
#include "app/widgets/FileInfoDialog.h"
#include "app/widgets/FilePanel.h"
#include "app/workingset/HomeScreen.h"
#include "app/workingset/PhotoItemDelegate.h"
#include "app/workingset/PhotoListViews.h"
#include "app/workingset/ThumbnailProvider.h"
#include "app/workingset/TutorialOverlay.h"
#include "editor/EditorState.h"
#include "editor/MetadataForm.h"
#include "workingset/ScanController.h"
#include "workingset/WorkingListModel.h"

#include <QAbstractProxyModel>
#include <QApplication>
#include <QCheckBox>
#include <QCompleter>
#include <QFileSystemModel>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QLocale>
#include <QMainWindow>
#include <QMenu>
#include <QPushButton>
#include <QTimer>
#include <QToolButton>

using namespace tagmoor;
using namespace tagmoor::test;

namespace {

// Four photos whose sizes, capture dates and cameras all sort differently.
QStringList fourPhotos(const QString& dir) {
    QStringList paths;
    for (const char* name :
         {"Reagan.jpg", "FurnaceCreekInn.jpg", "exiv2-kodak-dc210.jpg", "exiv2-sony-dsc-w7.jpg"}) {
        const QString path = dir + QLatin1Char('/') + QLatin1String(name);
        QFile::copy(formatsDir() + QLatin1Char('/') + QLatin1String(name), path);
        QFile(path).setPermissions(QFile::ReadOwner | QFile::WriteOwner);
        paths << path;
    }
    return paths;
}

// The file names down one column of the table, top to bottom.
QStringList namesDown(const QAbstractItemView* table) {
    QStringList names;
    for (int row = 0; row < table->model()->rowCount(); ++row)
        names << table->model()->index(row, 0).data().toString();
    return names;
}

void clickHeader(QHeaderView* header, int column) {
    QTest::mouseClick(header->viewport(), Qt::LeftButton, {},
                      {header->sectionViewportPosition(column) + 10, header->height() / 2});
}

bool markedInList(TestApp& t, const QString& name) {
    for (const CGImageProperties& record : t.set().workingImages()) {
        if (record.path().endsWith(QLatin1Char('/') + name))
            return record.isSelected;
    }
    return false;
}

} // namespace

class WindowMannersTest : public QObject {
    Q_OBJECT
private slots:
    void tableSortsByItsColumnsAndMarksFollowThePhotos();
    void tableColumnsAreRemembered();
    void sizesReadTheSameInEveryPlace();
    void panelsOpenInPicturesThenWhereTheLastOneWas();
    void typedFolderAndEnterEntersIt();
    void tourStepsThroughItsTipsAndLetsClicksThrough();

private:
    HomeScreen* load(TestApp& t, const QStringList& paths) {
        HomeScreen* home = loadPhotos(t, paths);
        home->window()->resize(1280, 800);
        home->window()->show();
        [&] { QVERIFY(QTest::qWaitForWindowExposed(home->window())); }();
        return home;
    }
    PhotoTableView* showTable(HomeScreen* home) {
        QTest::mouseClick(named<QToolButton>(home, QStringLiteral("segmentTable")), Qt::LeftButton);
        auto* table = named<PhotoTableView>(home, QStringLiteral("tableView"));
        [&] { QTRY_VERIFY(table->isVisible()); }();
        return table;
    }
};

void WindowMannersTest::tableSortsByItsColumnsAndMarksFollowThePhotos() {
    TestApp t(true, ValueForm::standard);
    t.app->settings().setTutorialShow(true);
    HomeScreen* home = load(t, fourPhotos(t.dir(QStringLiteral("p"))));
    PhotoTableView* table = showTable(home);
    QHeaderView* header = table->horizontalHeader();
    QVERIFY(header->isVisible());
    QAbstractItemModel* model = table->model();
    QStringList titles;
    for (int column = 0; column < model->columnCount(); ++column)
        titles << model->headerData(column, Qt::Horizontal).toString();
    QCOMPARE(titles,
             (QStringList{"Name", "Edited", "Size", "Dimensions", "Capture Date", "Camera"}));

    // Until a header is clicked the table keeps the list's order.
    QStringList listOrder;
    for (const CGImageProperties& record : t.set().workingImages())
        listOrder << QFileInfo(record.path()).fileName();
    QCOMPARE(namesDown(table), listOrder);

    clickHeader(header, 2);
    QCOMPARE(namesDown(table), (QStringList{"exiv2-sony-dsc-w7.jpg", "exiv2-kodak-dc210.jpg",
                                            "Reagan.jpg", "FurnaceCreekInn.jpg"}));
    QCOMPARE(model->index(2, 2).data().toString(), QStringLiteral("38.4 KB"));
    QCOMPARE(model->index(2, 3).data().toString(), QStringLiteral("200 x 130"));
    QCOMPARE(model->index(3, 5).data().toString(), QStringLiteral("Canon PowerShot S5 IS"));
    QCOMPARE(model->index(2, 5).data().toString(), QStringLiteral("NIKON CORPORATION NIKON D1X"));

    clickHeader(header, 4);
    QCOMPARE(namesDown(table), (QStringList{"exiv2-kodak-dc210.jpg", "Reagan.jpg",
                                            "exiv2-sony-dsc-w7.jpg", "FurnaceCreekInn.jpg"}));
    QCOMPARE(model->index(0, 4).data().toString(), QStringLiteral("26 Oct 2000 16:46:51"));

    // Dates and numbers on screen are written as the user's language writes them; the
    // editor keeps the stored form.
    const QLocale previous;
    QLocale::setDefault(QLocale(QLocale::German, QLocale::Germany));
    QCOMPARE(model->index(0, 4).data().toString(), QStringLiteral("26.10.00 16:46"));
    QCOMPARE(model->index(1, 2).data().toString(), QStringLiteral("38,4 KB"));
    QLocale::setDefault(previous);

    // A box clicked in a sorted table marks the photo of its row; a click on a row shows that
    // photo; the selection stays on its photo when the order changes.
    const QModelIndex reagan = model->index(1, 0);
    table->scrollTo(reagan);
    const auto* delegate = qobject_cast<PhotoItemDelegate*>(table->itemDelegate());
    QTest::mouseClick(table->viewport(), Qt::LeftButton, {},
                      delegate->checkBoxRect(table->visualRect(reagan)).center());
    QVERIFY(!markedInList(t, QStringLiteral("Reagan.jpg")));
    QCOMPARE(t.set().markedCount(), 3);
    const QModelIndex sony = model->index(2, 3);
    QTest::mouseClick(table->viewport(), Qt::LeftButton, {}, table->visualRect(sony).center());
    QVERIFY(named<QLabel>(home, QStringLiteral("lblImageName"))
                ->toolTip()
                .endsWith(QStringLiteral("/exiv2-sony-dsc-w7.jpg")));
    clickHeader(header, 2);
    clickHeader(header, 2); // descending
    QCOMPARE(namesDown(table).first(), QStringLiteral("FurnaceCreekInn.jpg"));
    const QModelIndexList selected = table->selectionModel()->selectedRows();
    QCOMPARE(selected.size(), 1);
    QCOMPARE(selected.first().data().toString(), QStringLiteral("exiv2-sony-dsc-w7.jpg"));

    // A third click gives the list's order back.
    clickHeader(header, 2);
    QCOMPARE(namesDown(table), listOrder);

    // An edit in the editor marks the photos it goes to: the marked ones.
    QTest::keyClicks(named<QLineEdit>(home, QStringLiteral("txtFieldArtist")),
                     QStringLiteral("Jane"));
    int editedRows = 0;
    for (int row = 0; row < model->rowCount(); ++row) {
        const bool edited = !model->index(row, 1).data().toString().isEmpty();
        QCOMPARE(edited, model->index(row, 0).data(Qt::CheckStateRole).toInt() == Qt::Checked);
        editedRows += edited ? 1 : 0;
    }
    QCOMPARE(editedRows, 3);
}

void WindowMannersTest::tableColumnsAreRemembered() {
    TestApp t;
    t.app->settings().setTutorialShow(true);
    HomeScreen* home = load(t, fourPhotos(t.dir(QStringLiteral("p"))));
    PhotoTableView* table = showTable(home);
    QHeaderView* header = table->horizontalHeader();

    // The header's menu hides a column; the name column cannot be hidden.
    emit header->customContextMenuRequested({20, 5});
    auto* menu = named<QMenu>(table, QStringLiteral("tableColumnsMenu"));
    QVERIFY(menu);
    QAction* camera = nullptr;
    for (QAction* action : menu->actions()) {
        if (action->text() == QStringLiteral("Camera"))
            camera = action;
        if (action->text() == QStringLiteral("Name"))
            QVERIFY(!action->isEnabled());
    }
    QVERIFY(camera && camera->isChecked());
    camera->trigger();
    menu->close();
    QVERIFY(header->isSectionHidden(5));
    header->resizeSection(3, 173);
    header->moveSection(header->visualIndex(4), 0);
    clickHeader(header, 2);
    QTRY_VERIFY(t.app->settings().photoTableColumns().has_value());

    // The next start's table comes up as this one was left.
    WorkingListModel list(t.set());
    ThumbnailProvider thumbnails;
    PhotoTableView next(thumbnails);
    next.setListModel(list);
    QVERIFY(!next.horizontalHeader()->isSectionHidden(5));
    next.rememberColumnsIn(t.app->settings());
    QHeaderView* restored = next.horizontalHeader();
    QVERIFY(restored->isSectionHidden(5));
    QCOMPARE(restored->sectionSize(3), 173);
    QCOMPARE(restored->visualIndex(4), 0);
    QCOMPARE(restored->sortIndicatorSection(), 2);
    QCOMPARE(next.model()->index(0, 0).data().toString(), QStringLiteral("exiv2-sony-dsc-w7.jpg"));
}

void WindowMannersTest::sizesReadTheSameInEveryPlace() {
    ValueFormScope scope(ValueForm::standard);
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("big.jpg"));
    writeText(path, QByteArray(912863, 'x'));

    FileInfoDialog info(path, {});
    QStringList texts;
    for (const QLabel* label : info.findChildren<QLabel*>())
        texts << label->text();
    QVERIFY2(texts.contains(QStringLiteral("912.9 KB (912863 bytes)")) ||
                 texts.contains(QStringLiteral("912.9 KB (912,863 bytes)")),
             qPrintable(texts.join(QLatin1Char('|'))));

    // The file panel's size column, and no grip in the panel's corner.
    OpenPanelRequest request;
    request.directory = dir.path();
    request.allowedExtensions = {QStringLiteral("jpg")};
    FilePanel panel(nullptr, request);
    QVERIFY(!panel.isSizeGripEnabled());
    QAbstractProxyModel* shown = panel.proxyModel();
    const auto* files = qobject_cast<const QFileSystemModel*>(shown->sourceModel());
    QVERIFY(files);
    QTRY_COMPARE(shown->mapFromSource(files->index(path)).siblingAtColumn(1).data().toString(),
                 QStringLiteral("912.9 KB"));
}

void WindowMannersTest::panelsOpenInPicturesThenWhereTheLastOneWas() {
    QTemporaryDir home;
    const QByteArray oldHome = qgetenv("HOME");
    qputenv("HOME", QFile::encodeName(home.path()));
    const OpenPanelRequest request; // files and folders, no place of its own

    QCOMPARE(FilePanel(nullptr, request).directory().absolutePath(), home.path());
    QDir(home.path()).mkpath(QStringLiteral("Pictures"));
    const QString pictures = home.filePath(QStringLiteral("Pictures"));
    QCOMPARE(FilePanel(nullptr, request).directory().absolutePath(), pictures);

    // An accepted panel leaves its folder for the next one; a request's own folder is kept to.
    Settings settings(home.filePath(QStringLiteral("settings.ini")));
    FilePanel::rememberFoldersIn(&settings);
    const QString trip = home.filePath(QStringLiteral("Trip"));
    QDir().mkpath(trip);
    writeText(trip + QStringLiteral("/a.jpg"), "x");
    {
        FilePanel panel(nullptr, request);
        panel.setDirectory(trip);
        panel.selectFile(trip + QStringLiteral("/a.jpg"));
        panel.accept();
        QCOMPARE(panel.chosenPaths(), QStringList{trip + QStringLiteral("/a.jpg")});
    }
    QCOMPARE(settings.lastPanelFolder(), std::optional<QString>(trip));
    QCOMPARE(FilePanel(nullptr, request).directory().absolutePath(), trip);
    OpenPanelRequest own;
    own.directory = home.path();
    QCOMPARE(FilePanel(nullptr, own).directory().absolutePath(), home.path());
    // A remembered folder that is gone gives way to Pictures.
    QDir(trip).removeRecursively();
    QCOMPARE(FilePanel(nullptr, request).directory().absolutePath(), pictures);

    FilePanel::forgetFolders(&settings);
    qputenv("HOME", oldHome);
}

void WindowMannersTest::typedFolderAndEnterEntersIt() {
    QTemporaryDir dir;
    const QString holidays = dir.filePath(QStringLiteral("Holidays"));
    QDir().mkpath(holidays);
    writeText(holidays + QStringLiteral("/a.jpg"), "x");
    QMainWindow window;
    window.setCentralWidget(new QWidget);
    window.resize(600, 400);
    window.show();
    DialogPrompt prompt(&window);
    OpenPanelRequest request;
    request.allowedExtensions = {QStringLiteral("jpg")};
    request.directory = dir.path();

    QString shownAfterEnter;
    bool stayedOpen = false;
    QTimer::singleShot(0, [&] {
        auto* panel = qobject_cast<FilePanel*>(QApplication::activeModalWidget());
        QVERIFY(panel);
        auto* name = panel->findChild<QLineEdit*>(QStringLiteral("fileNameEdit"));
        const auto typeAndEnter = [name](const QString& text) {
            name->setFocus();
            QTest::keyClicks(name, text);
            if (QWidget* completions = name->completer() ? name->completer()->popup() : nullptr)
                completions->hide();
            QTest::keyClick(name, Qt::Key_Return);
        };
        typeAndEnter(holidays);
        stayedOpen = panel->isVisible();
        shownAfterEnter = panel->directory().absolutePath();
        // The path of the folder shown is where the panel is already: no word, no choice.
        typeAndEnter(holidays);
        stayedOpen = stayedOpen && panel->isVisible() &&
                     !QApplication::activeModalWidget()->inherits("QMessageBox");
        // In the folder, a photo typed by name is taken as before.
        typeAndEnter(QStringLiteral("a.jpg"));
    });
    // A panel left open by a failed step must not hold the test for ever.
    QTimer::singleShot(10000, [] {
        if (auto* panel = qobject_cast<FilePanel*>(QApplication::activeModalWidget()))
            panel->reject();
    });
    const QStringList chosen = prompt.openPanel(request);
    QVERIFY(stayedOpen);
    QCOMPARE(shownAfterEnter, holidays);
    QCOMPARE(chosen, QStringList{holidays + QStringLiteral("/a.jpg")});
}

void WindowMannersTest::tourStepsThroughItsTipsAndLetsClicksThrough() {
    TestApp t;
    HomeScreen* home = load(t, fourPhotos(t.dir(QStringLiteral("p"))));
    auto* tour = named<TutorialOverlay>(home, QStringLiteral("boxTutorial"));
    QTRY_VERIFY(tour->isVisibleTo(home));
    auto* step = named<QLabel>(tour, QStringLiteral("lblTutorialStep"));
    auto* next = named<QPushButton>(tour, QStringLiteral("btnTutorialNext"));
    auto* back = named<QPushButton>(tour, QStringLiteral("btnTutorialBack"));
    QVERIFY(step && next && back);
    QCOMPARE(step->text(), QStringLiteral("Tip 1 of 7"));
    QVERIFY(!back->isEnabled());

    QTest::mouseClick(next, Qt::LeftButton);
    QCOMPARE(step->text(), QStringLiteral("Tip 2 of 7"));
    // The user leads now: the tour no longer moves on by itself.
    QVERIFY(!named<QTimer>(tour, QStringLiteral("timerTutorial"))->isActive());
    QTest::mouseClick(back, Qt::LeftButton);
    QCOMPARE(step->text(), QStringLiteral("Tip 1 of 7"));

    // A click on the window beside the tip reaches the control there and leaves the tour up.
    auto* selectAll = named<QCheckBox>(home, QStringLiteral("btnSelectUnselectAllInInTabColl"));
    QWidget* window = home->window();
    const QPoint onBox = selectAll->mapTo(window, selectAll->rect().center());
    QWidget* under = window->childAt(onBox);
    QCOMPARE(under, selectAll);
    QTest::mouseClick(under, Qt::LeftButton, {}, under->mapFrom(window, onBox));
    QCOMPARE(t.set().markedCount(), 0);
    QVERIFY(tour->isVisibleTo(home));
    QCOMPARE(step->text(), QStringLiteral("Tip 1 of 7"));

    for (int i = 1; i < TutorialOverlay::kSteps; ++i)
        QTest::mouseClick(next, Qt::LeftButton);
    QCOMPARE(step->text(), QStringLiteral("Tip 7 of 7"));
    QCOMPARE(next->text(), QStringLiteral("Done"));
    QTest::mouseClick(next, Qt::LeftButton);
    QVERIFY(!tour->isVisibleTo(home));

    // Skip Intro ends it at once.
    tour->showTutorial();
    QTest::mouseClick(named<QPushButton>(tour, QStringLiteral("btnSkipIntro")), Qt::LeftButton);
    QVERIFY(!tour->isVisibleTo(home));
}

TAGMOOR_APP_TEST_MAIN(WindowMannersTest)
#include "WindowMannersTest.moc"
