#include "TestSupport.h"
#include "foundation/AppEvents.h"
#include "workingset/FileSizeText.h"
#include "workingset/ListSelection.h"
#include "workingset/PanelFilter.h"
#include "workingset/ScanFixture.h"
#include "workingset/ScanProgressView.h"
#include "workingset/SupportedExtensions.h"
#include "workingset/WorkingListModel.h"
#include "workingset/WorkingSet.h"
#include "workingset/WorkingSetAlerts.h"

#include <QLocale>
#include <QTemporaryDir>

namespace tagmoor {
namespace {

CGImageProperties record(const QString& path, bool marked = true) {
    CGImageProperties r = makeEmptyRecord(QUrl::fromLocalFile(path));
    r.isSelected = marked;
    return r;
}

TEST(WorkingList, ExtensionListsAndPanelRequests) {
    EXPECT_EQ(supportedExtensions().size(), 39);
    EXPECT_EQ(panelExtensions().size(), 38);
    EXPECT_EQ(supportedExtensions().first(), "jpeg");
    EXPECT_EQ(supportedExtensions().last(), "photoslibrary");
    EXPECT_FALSE(panelExtensions().contains("photoslibrary"));
    EXPECT_TRUE(hasSupportedExtension("/a/B.NEF"));
    EXPECT_FALSE(hasSupportedExtension("/a/b.heic"));
    EXPECT_FALSE(hasSupportedExtension("/a/jpg"));
    EXPECT_TRUE(isPhotoLibraryPackage("/a/P.photoslibrary"));
    EXPECT_FALSE(isPhotoLibraryPackage("/a/P.PhotosLibrary"));
    EXPECT_TRUE(isPhotoLibraryPackage("/a/P.photoslibrary/"));

    const OpenPanelRequest add = addPhotosPanelRequest(PanelScreen::AddScreen);
    const OpenPanelRequest home = addPhotosPanelRequest(PanelScreen::HomeScreen);
    EXPECT_EQ(add.prompt, "Add Photos");
    EXPECT_EQ(add.allowedExtensions, panelExtensions());
    EXPECT_EQ(home.allowedExtensions, supportedExtensions());
    EXPECT_TRUE(add.canChooseDirectories && add.allowsMultipleSelection);
    EXPECT_FALSE(add.showsHiddenFiles);
}

TEST(WorkingList, PanelChoiceIsFilteredByCaseInsensitivePathAndType) {
    QTemporaryDir tmp;
    const QString jpg = test::makeFile(tmp.path() + "/A.jpg");
    const QString txt = test::makeFile(tmp.path() + "/notes.txt");
    const QString missingTxt = tmp.path() + "/gone.txt";
    const QList<CGImageProperties> list{record(jpg)};

    // The add screen does not look at the list; missing paths and folders always pass.
    PanelFilterResult add = filterPanelChoice(
        PanelScreen::AddScreen, {jpg, txt, missingTxt, tmp.path(), jpg.toLower()}, {}, list);
    EXPECT_EQ(add.staged, (QList<QUrl>{QUrl::fromLocalFile(jpg), QUrl::fromLocalFile(missingTxt),
                                       QUrl::fromLocalFile(tmp.path())}));
    EXPECT_TRUE(add.ignored);
    EXPECT_TRUE(add.alreadyAdded) << "the same path twice in one choice";

    PanelFilterResult home = filterPanelChoice(PanelScreen::HomeScreen, {jpg.toUpper()}, {}, list);
    EXPECT_TRUE(home.staged.isEmpty());
    EXPECT_TRUE(home.alreadyAdded);
    EXPECT_FALSE(home.ignored);

    EXPECT_EQ(panelAlert(true, false)->alert, alertAlreadyAdded());
    EXPECT_EQ(panelAlert(false, true)->alert, alertIgnoreFilesAdded());
    EXPECT_EQ(panelAlert(true, true)->alert, alertAlreadyAddedAndBeIgnore());
    EXPECT_EQ(panelAlert(true, true)->delayMs, 500);
    EXPECT_FALSE(panelAlert(false, false));

    EXPECT_TRUE(folderPanelEnables(tmp.path()));
    EXPECT_FALSE(folderPanelEnables(jpg));
    EXPECT_FALSE(folderPanelEnables(missingTxt));
    EXPECT_TRUE(homeFolderPanelEnables("/home/ann/", "/home/ann"));
    EXPECT_FALSE(homeFolderPanelEnables("/home/ann/Pictures", "/home/ann"));
}

TEST(WorkingList, EndOfScanAlertFollowsItsPriorities) {
    struct Row {
        bool unsupported, already, empty, listEmpty;
        QString title;
        int delay;
    };
    const QString cannot = "Some images cannot be added";
    const QList<Row> rows{
        {true, true, true, true, cannot, 100},
        {false, true, true, false, cannot, 100},
        {true, false, true, true, "Some items could not be added", 0},
        {true, false, true, false, cannot, 0},
        {false, false, true, true, "No images were found in the selected folder", 0},
        {false, false, false, true, {}, 0},
    };
    for (const Row& row : rows) {
        const auto alert =
            endOfScanAlert(ScanFlags{row.unsupported, row.already, row.empty}, row.listEmpty);
        if (row.title.isEmpty()) {
            EXPECT_FALSE(alert);
            continue;
        }
        ASSERT_TRUE(alert);
        EXPECT_EQ(alert->alert.title, row.title);
        EXPECT_EQ(alert->alert.buttons, QStringList{"OK"});
        EXPECT_EQ(alert->delayMs, row.delay);
    }
    EXPECT_EQ(endOfScanAlert({true, true, false}, false)->alert, alertAlreadyAddedAndBeIgnore());
    EXPECT_EQ(endOfScanAlert({false, true, false}, true)->alert, alertAlreadyAdded());
}

TEST(WorkingList, StagingChangesOnlyThroughItsMethodsAndSaysSo) {
    WorkingSet set;
    int changes = 0;
    QObject::connect(&set, &WorkingSet::stagingChanged, [&] { ++changes; });
    const QUrl a = QUrl::fromLocalFile("/p/a.jpg");
    const QUrl b = QUrl::fromLocalFile("/p/b.jpg");

    set.addPendingOpenURL(a);
    set.addPendingOpenURL(a);
    set.addPendingOpenURL(b);
    EXPECT_EQ(set.pendingOpenURLs(), (QList<QUrl>{a, b}));
    EXPECT_EQ(changes, 2);

    set.stageURLs({b});
    set.stagePendingOpenURLs();
    EXPECT_EQ(set.stagedURLs(), (QList<QUrl>{b, a})) << "a staged file is not staged twice";
    EXPECT_TRUE(set.pendingOpenURLs().isEmpty());

    set.requestFirstAdding();
    EXPECT_TRUE(set.retrieveOnAppear());
    EXPECT_TRUE(set.takeFirstAdding());
    EXPECT_FALSE(set.takeFirstAdding()) << "the first appearance is used up once";
    EXPECT_TRUE(set.retrieveOnAppear());

    const int before = changes;
    set.stagedURLsScanned();
    EXPECT_TRUE(set.stagedURLs().isEmpty());
    EXPECT_FALSE(set.retrieveOnAppear());
    EXPECT_EQ(changes, before + 1);
    set.stagedURLsScanned();
    EXPECT_EQ(changes, before + 1) << "nothing changed, nothing said";
}

TEST(WorkingList, ReplacingARecordTellsTheViews) {
    WorkingSet set;
    set.appendImages({record("/p/a.jpg"), record("/p/b.jpg")});
    QList<int> changed;
    QObject::connect(&set, &WorkingSet::imagesChanged,
                     [&](int first, int last) { changed << first << last; });
    CGImageProperties again = record("/p/b2.jpg", false);
    EXPECT_TRUE(set.replaceImage(1, again));
    EXPECT_FALSE(set.replaceImage(2, again));
    EXPECT_EQ(changed, (QList<int>{1, 1}));
    EXPECT_EQ(set.workingImages().at(1).url, again.url);
    EXPECT_EQ(set.markedCount(), 1);
}

// Removing keeps the order of the records that stay and their marks, whether few or most go
// (the two take different ways), and the kept count of marked photos follows every change.
TEST(WorkingList, RemovalKeepsOrderAndTheMarkedCount) {
    for (const int step : {7, 1, 2}) { // every 7th goes; all go; every other goes
        WorkingSet set;
        QList<CGImageProperties> records;
        for (int i = 0; i < 3000; ++i)
            records << record(QString("/p/%1.jpg").arg(i), i % 3 != 0);
        set.appendImages(records);
        QList<QUrl> gone;
        int expectedMarked = 0;
        QStringList expectedPaths;
        for (int i = 0; i < 3000; ++i) {
            if (i % step == 0)
                gone << QUrl::fromLocalFile(QString("/p/%1.jpg").arg(i));
            else {
                expectedPaths << QString("/p/%1.jpg").arg(i);
                expectedMarked += i % 3 != 0;
            }
        }
        EXPECT_EQ(set.removeImagesWithUrls(gone), gone.size());
        EXPECT_EQ(set.imagePaths(), expectedPaths) << step;
        EXPECT_EQ(set.markedCount(), expectedMarked) << step;
        EXPECT_EQ(set.markedCount(), set.markedIndices().size());
        if (!set.isEmpty()) {
            const bool wasMarked = set.workingImages()[0].isSelected;
            set.setSelected(0, !wasMarked);
            EXPECT_EQ(set.markedCount(), expectedMarked + (wasMarked ? -1 : 1));
            set.replaceImage(0, record("/p/new.jpg", wasMarked));
            EXPECT_EQ(set.markedCount(), expectedMarked);
        }
        set.setAllSelected(true);
        EXPECT_EQ(set.markedCount(), set.count());
        set.clearImages();
        EXPECT_EQ(set.markedCount(), 0);
        set.waitForReleases();
    }
}

TEST(WorkingList, ProgressTextsAndSizeTexts) {
    const ScanProgressView counting = ScanProgressView::countingLook();
    EXPECT_EQ(counting.percentText, "0%");
    EXPECT_EQ(counting.pathText, "Path: Analysing objects...");
    EXPECT_EQ(counting.imagesSelectedText, "0 Images Selected");
    EXPECT_EQ(counting.objectsSelectedText, "Objects Selected: 0 / 0");
    EXPECT_TRUE(counting.spinnerVisible && counting.boxLoaderVisible);
    EXPECT_FALSE(counting.loaderVisible || counting.addMoreEnabled);

    const ScanProgressView item = ScanProgressView::forItem({3, 2, 7, "/p/x.jpg"});
    EXPECT_EQ(item.percentText, "67%");
    EXPECT_DOUBLE_EQ(item.loaderValue, 0.67);
    EXPECT_EQ(item.pathText, "Path: /p/x.jpg");
    EXPECT_EQ(item.imagesSelectedText, "7 Images Selected");
    EXPECT_EQ(item.objectsSelectedText, "Objects Selected: 2 / 3");
    EXPECT_TRUE(item.loaderVisible);
    EXPECT_FALSE(item.spinnerVisible);

    EXPECT_EQ(fileSizeText(0), "0 bytes");
    EXPECT_EQ(fileSizeText(999), "999 bytes");
    EXPECT_EQ(fileSizeText(1999), "1.0 KB");
    EXPECT_EQ(fileSizeText(999999), "999.0 KB");
    EXPECT_EQ(fileSizeText(1500000), "1.5 MB");
    EXPECT_EQ(fileSizeText(2345678901ULL), "2.3 GB");
}

// The standard form shows the true size rounded, and moves to the next unit when the rounded
// value would read 1000.
TEST(WorkingList, StandardSizeTextIsTheRoundedTrueValue) {
    ValueFormScope scope(ValueForm::standard);
    EXPECT_EQ(fileSizeText(999), "999 bytes");
    EXPECT_EQ(fileSizeText(1000), "1.0 KB");
    EXPECT_EQ(fileSizeText(1999), "2.0 KB");
    EXPECT_EQ(fileSizeText(912863), "912.9 KB");
    EXPECT_EQ(fileSizeText(999949), "999.9 KB");
    EXPECT_EQ(fileSizeText(999999), "1.0 MB");
    EXPECT_EQ(fileSizeText(1260000), "1.3 MB");
    EXPECT_EQ(fileSizeText(2345678901ULL), "2.3 GB");
    EXPECT_EQ(fileSizeText(4321000000000ULL), "4,321.0 GB");
    CGImageProperties r = record("/p/one.jpg");
    r.pixelWidth = qint64(4000);
    r.pixelHeight = qint64(3000);
    r.fileSize = quint64(912863);
    EXPECT_EQ(WorkingListModel::subtitle(r), "4000 x 3000 - 912.9 KB");
}

// On screen, numbers are written as the user's language writes them.
TEST(WorkingList, ScreenNumbersFollowTheLocale) {
    ValueFormScope scope(ValueForm::standard);
    const QLocale previous;
    QLocale::setDefault(QLocale(QLocale::German, QLocale::Germany));
    EXPECT_EQ(fileSizeText(912863), "912,9 KB");
    EXPECT_EQ(fileSizeText(4321000000000ULL), "4.321,0 GB");
    const ScanProgressView item = ScanProgressView::forItem({2500, 1200, 1500, "/p/x.jpg"});
    EXPECT_EQ(item.imagesSelectedText, "1.500 Images Selected");
    EXPECT_EQ(item.objectsSelectedText, "Objects Selected: 1.200 / 2.500");
    QLocale::setDefault(previous);
}

TEST(WorkingList, ModelShowsRecordsAndItsCheckBoxIsTheMark) {
    WorkingSet set;
    WorkingListModel model(set);
    int inserted = 0;
    QObject::connect(&model, &QAbstractItemModel::rowsInserted, [&] { ++inserted; });
    CGImageProperties r = record("/p/one.jpg");
    r.pixelWidth = qint64(4000);
    r.pixelHeight = 3000.0;
    r.fileSize = quint64(1234567);
    set.appendImages({r, record("/p/two.png", false)});
    EXPECT_EQ(inserted, 1);
    ASSERT_EQ(model.rowCount(), 2);
    const QModelIndex first = model.index(0);
    EXPECT_EQ(model.data(first, Qt::DisplayRole).toString(), "one.jpg");
    EXPECT_EQ(model.data(first, WorkingListModel::SubtitleRole).toString(), "4000 x 3000 - 1.2 MB");
    EXPECT_EQ(model.data(model.index(1), WorkingListModel::SubtitleRole).toString(),
              "0 x 0 - 0 bytes");
    EXPECT_EQ(model.data(first, WorkingListModel::PathRole).toString(), "/p/one.jpg");
    EXPECT_EQ(model.data(first, Qt::CheckStateRole).toInt(), int(Qt::Checked));
    EXPECT_TRUE(model.flags(first) & Qt::ItemIsUserCheckable);

    int changed = 0;
    QObject::connect(&model, &QAbstractItemModel::dataChanged, [&] { ++changed; });
    EXPECT_TRUE(model.setData(model.index(1), int(Qt::Checked), Qt::CheckStateRole));
    EXPECT_TRUE(set.workingImages()[1].isSelected);
    EXPECT_EQ(changed, 1);
    EXPECT_FALSE(model.setData(model.index(1), QStringLiteral("x"), Qt::DisplayRole));
    EXPECT_FALSE(model.data(model.index(5), Qt::DisplayRole).isValid());
}

TEST(WorkingList, MarkingDrivesButtonsEditorAndSelectAll) {
    WorkingSet set;
    ListSelection sel(set);
    EXPECT_TRUE(sel.checkBoxClicked(0, true).ignored) << "empty list";
    set.appendImages({record("/p/a.jpg"), record("/p/b.jpg"), record("/p/c.jpg")});
    EXPECT_TRUE(sel.checkBoxClicked(7, true).ignored);
    EXPECT_TRUE(sel.selectAllState());

    SelectionOutcome o = sel.checkBoxClicked(1, false);
    EXPECT_EQ(o.marked, (QList<int>{0, 2}));
    EXPECT_TRUE(o.geocodeDefaultAndClearPreview);
    EXPECT_EQ(*o.metadataInfo, (MetadataInfo{{0, 2}, true, 1}));
    EXPECT_FALSE(o.selectAllOn);
    EXPECT_EQ(o.editorAction, SelectionOutcome::EditorAction::None);

    o = sel.checkBoxClicked(0, false);
    EXPECT_EQ(o.showRecord, 2);
    EXPECT_EQ(*o.metadataInfo, (MetadataInfo{{2}, false, 2}));
    EXPECT_EQ(o.editorAction, SelectionOutcome::EditorAction::None)
        << "one left after an unmark: the editor is not reloaded";

    o = sel.checkBoxClicked(2, false);
    EXPECT_TRUE(o.marked.isEmpty());
    EXPECT_EQ(o.editorAction, SelectionOutcome::EditorAction::RestoreEmpty);
    EXPECT_EQ(o.buttons, buttonStatesFor(0));
    EXPECT_FALSE(o.buttons.batchControlsEnabled);
    EXPECT_FALSE(o.metadataInfo);

    o = sel.checkBoxClicked(1, true);
    EXPECT_EQ(o.editorAction, SelectionOutcome::EditorAction::LoadSingleRecord);
    EXPECT_TRUE(o.buttons.batchControlsEnabled);
    EXPECT_EQ(o.showRecord, 1);

    o = sel.setAllMarked(true);
    EXPECT_TRUE(o.selectAllOn);
    EXPECT_EQ(set.markedCount(), 3);
    o = sel.setAllMarked(false);
    EXPECT_EQ(set.markedCount(), 0);
    EXPECT_FALSE(o.selectAllOn);
}

TEST(WorkingList, RemovalAsksOnlyFromTheMenuAndAnEmptyListGoesBack) {
    test::ScanFixture f;
    f.set.appendImages({record("/p/a.jpg"), record("/p/b.jpg", false), record("/p/c.jpg")});

    f.prompt.answerNext("NO");
    EXPECT_FALSE(f.controller.removeSelected());
    EXPECT_EQ(f.set.count(), 3);
    EXPECT_EQ(f.prompt.alerts.last(), removeSelectedQuestion());

    EXPECT_TRUE(f.controller.clickedRemove());
    EXPECT_EQ(f.prompt.alerts.size(), 1) << "the button asks nothing";
    EXPECT_EQ(f.listedPaths(), QStringList{"/p/b.jpg"});
    EXPECT_TRUE(f.screens.isEmpty());

    // Nothing marked: "Remove All" still empties the list and returns to the add screen.
    f.prompt.answerNext("YES");
    EXPECT_TRUE(f.controller.removeAll());
    EXPECT_EQ(f.prompt.alerts.last(), removeAllQuestion());
    EXPECT_TRUE(f.set.isEmpty());
    EXPECT_EQ(f.screens, QList<int>{0});
}

} // namespace
} // namespace tagmoor
