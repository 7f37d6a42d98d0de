// Drives the real application through the states shown in docs/screenshots and saves a
// picture of the screen at each. Runs on a real X server (the screenshot script starts Xvfb).
//   screenshot_tour OUTPUT_DIR PHOTO...
#include "../../core/geo/TileServer.h"
#include "../../core/photolibrary/LibraryFixtures.h"
#include "../AppTestSupport.h"
#include "app/batch/FinalProcessedVC.h"
#include "app/batch/RenameViewController.h"
#include "app/batch/ReviewChangesWindow.h"
#include "app/editor/DateConfigurationPanel.h"
#include "app/editor/FieldControl.h"
#include "app/editor/MetadataViewController.h"
#include "app/location/GeoLocationViewController.h"
#include "app/location/LocationView.h"
#include "app/location/PreviewViewController.h"
#include "app/photolibrary/AlbumChooser.h"
#include "app/presets/PresetsDetailsViewController.h"
#include "app/presets/PresetsViewController.h"
#include "app/shell/Appearance.h"
#include "app/shell/MainWindow.h"
#include "app/shell/PreferencesWindow.h"
#include "app/shell/RootView.h"
#include "app/shell/Translations.h"
#include "app/widgets/DialogPrompt.h"
#include "app/workingset/AddFilesScreen.h"
#include "app/workingset/HomeEditorBox.h"
#include "app/workingset/HomeScreen.h"
#include "app/workingset/PhotoListViews.h"
#include "app/workingset/PhotoTableModel.h"
#include "app/workingset/TutorialOverlay.h"
#include "model/FormFieldTable.h"
#include "presets/PresetStore.h"
#include "processing/HomeSession.h"
#include "processing/StartProcessChain.h"
#include "workingset/ScanController.h"

#include <QApplication>
#include <QCheckBox>
#include <QElapsedTimer>
#include <QLineEdit>
#include <QListWidget>
#include <QLocale>
#include <QMenu>
#include <QPainter>
#include <QPushButton>
#include <QRadioButton>
#include <QRandomGenerator>
#include <QScreen>
#include <QScrollArea>
#include <QTimer>
#include <QToolButton>

using namespace tagmoor;

namespace {

void settle(int ms = 400) {
    QElapsedTimer timer;
    timer.start();
    while (timer.elapsed() < ms)
        QCoreApplication::processEvents(QEventLoop::AllEvents, 20);
}

// The editor rows wholly in view in each picture of the home screen, written beside them.
QStringList g_editorRows;

int visibleEditorRows(QWidget* window) {
    auto* home = window->findChild<HomeScreen*>(QStringLiteral("Home"));
    if (!home || !home->isVisible())
        return -1;
    int rows = 0;
    for (const auto* editor : home->findChildren<MetadataViewController*>())
        rows += editor->isVisible() ? test::rowsInView(editor) : 0;
    return rows;
}

void shoot(const QString& dir, const QString& name, QWidget* window, QWidget* popup = nullptr,
           int settleMs = 400) {
    settle(settleMs);
    if (const int rows = visibleEditorRows(window); rows >= 0)
        g_editorRows << QStringLiteral("%1 %2").arg(name).arg(rows);
    QRect frame = window->frameGeometry();
    if (popup)
        frame |= popup->frameGeometry();
    const QPixmap screen = QGuiApplication::primaryScreen()->grabWindow(0);
    screen.copy(frame.adjusted(-1, -1, 1, 1).intersected(screen.rect()))
        .save(dir + QLatin1Char('/') + name);
}

// A package with a few albums of the user's and a digiKam collection with folders and tags,
// for the album chooser's pictures. The paths of the two databases.
QStringList makeTourLibraries(const QString& dir) {
    const QString package = dir + QStringLiteral("/Photos Library.photoslibrary");
    QString sql = test::newPackageSchema();
    const QStringList titles{"Birthdays 2024", "Family",          "Garden in spring",
                             "Lisbon weekend", "Mountain hiking", "Road trip to the coast",
                             "School concert", "Snow days",       "Wedding of Anna and Tom"};
    for (int i = 0; i < titles.size(); ++i)
        sql += test::newAssetRow(i + 1, "A", QStringLiteral("%1.jpeg").arg(i), "IMG.JPG", 1) +
               test::newAlbumRows(100 + i, titles[i], {i + 1});
    test::execSql(package + QStringLiteral("/database/Photos.sqlite"), sql);
    const QString digiKam = dir + QStringLiteral("/digikam/digikam4.db");
    test::execSql(digiKam, test::digiKamSchema() +
                               "INSERT INTO AlbumRoots VALUES (1, 'Pictures', 0, 1, "
                               "'volumeid:?path=%2Fhome%2Fanna%2FPictures', '/');"
                               "INSERT INTO Albums (id, albumRoot, relativePath) VALUES "
                               "(1, 1, '/'), (2, 1, '/2023/Holidays'), (3, 1, '/2024/Garden'),"
                               "(4, 1, '/2024/Portraits');"
                               "INSERT INTO Tags (id, pid, name) VALUES (1, 0, "
                               "'_Digikam_Internal_Tags_'), (2, 0, 'Family'), (3, 0, 'Friends'),"
                               "(4, 0, 'Favourites');");
    return {package, digiKam};
}

// A tile of a made-up town for the test server: blocks, parks and streets, so that tiles
// drawn over the outline are told apart from it.
QByteArray townTile(int zoom, int x, int y) {
    QImage tile(256, 256, QImage::Format_RGB32);
    tile.fill(QColor(238, 234, 226));
    QPainter painter(&tile);
    painter.setRenderHint(QPainter::Antialiasing);
    QRandomGenerator random(quint32(zoom * 1000003 + x * 7919 + y));
    for (int i = 0; i < 5; ++i) {
        const QRectF park(random.bounded(220), random.bounded(220), 30 + random.bounded(50),
                          25 + random.bounded(40));
        painter.fillRect(park, QColor(200, 228, 190));
    }
    for (int i = 0; i < 6; ++i) {
        const bool across = i % 2 == 0;
        const double at = 20 + random.bounded(216);
        const QLineF street = across ? QLineF(0, at, 256, at + random.bounded(60) - 30)
                                     : QLineF(at, 0, at + random.bounded(60) - 30, 256);
        painter.setPen(QPen(QColor(200, 196, 188), 7));
        painter.drawLine(street);
        painter.setPen(QPen(i == 0 ? QColor(250, 220, 150) : Qt::white, 5));
        painter.drawLine(street);
    }
    painter.end();
    QByteArray png;
    QBuffer buffer(&png);
    buffer.open(QIODevice::WriteOnly);
    tile.save(&buffer, "PNG");
    return png;
}

} // namespace

int main(int argc, char** argv) {
    initializeMetadataLibrary();
    QApplication application(argc, argv);
    const Translations translations(QLocale::system().uiLanguages());
    if (argc < 3) {
        qCritical("usage: screenshot_tour OUTPUT_DIR PHOTO...");
        return 2;
    }
    const QString out = QString::fromLocal8Bit(argv[1]);
    QStringList photos;
    for (int i = 2; i < argc; ++i)
        photos << QString::fromLocal8Bit(argv[i]);

    // The program as users meet it: the standard form.
    test::TestApp t(true, ValueForm::standard);
    // TOUR_SIZE=WIDTHxHEIGHT and TOUR_APPEARANCE=dark take the pictures at another size or in
    // the dark palette.
    Appearance appearance;
    if (qEnvironmentVariable("TOUR_APPEARANCE") == QLatin1String("dark"))
        appearance.apply(Appearance::Choice::Dark);
    const QStringList size =
        qEnvironmentVariable("TOUR_SIZE", QStringLiteral("1280x800")).split(QLatin1Char('x'));
    QWidget* window = &t.window();
    window->resize(size.value(0).toInt(), size.value(1).toInt());
    window->move(0, 0);
    settle(800);

    // The album chooser on the add screen, then the albums of a package and of a collection.
    QTemporaryDir libraries;
    const QStringList libraryPaths = makeTourLibraries(libraries.path());
    AddFilesScreen* addScreen =
        test::named<AddFilesScreen>(&t.window(), QStringLiteral("AddFiles"));
    AlbumChooser* chooser =
        test::named<AlbumChooser>(addScreen, QStringLiteral("AddAlbumsPhotosLibrary"));
    addScreen->clickedAddPhotosLibrary();
    shoot(out, QStringLiteral("chooser-add-screen.png"), window, chooser);
    const QStringList albumShots{"chooser-albums.png", "chooser-albums-digikam.png"};
    for (int i = 0; i < albumShots.size(); ++i) {
        chooser->showAlbumList(
            libraryPaths[i],
            test::named<QPushButton>(addScreen, QStringLiteral("btnAddPhotosLibrary")));
        while (chooser->isBusy())
            settle(20);
        if (i == 0)
            chooser->clickedCheckAlbum(2, false);
        shoot(out, albumShots[i], window, chooser);
    }
    chooser->clickedCancel();

    t.app->scans().addFromDrop(photos);
    while (!t.scanIdle() || t.set().count() == 0)
        settle(100);
    settle(1500);
    HomeScreen* home = test::named<HomeScreen>(&t.window(), QStringLiteral("Home"));
    // The tour of the screen comes up after the first scan.
    shoot(out, QStringLiteral("tutorial.png"), window);
    test::named<TutorialOverlay>(home, QStringLiteral("boxTutorial"))->clickedHideTutorial();
    home->clickedAddMore();
    shoot(out, QStringLiteral("chooser-home-screen.png"), window,
          test::named<AlbumChooser>(home, QStringLiteral("AddAlbumsPhotosLibrary")));
    test::named<AlbumChooser>(home, QStringLiteral("AddAlbumsPhotosLibrary"))->clickedCancel();

    shoot(out, QStringLiteral("editor-several.png"), window);
    home->clickedEditorTab(1);
    shoot(out, QStringLiteral("editor-iptc.png"), window);
    home->clickedEditorTab(2);
    shoot(out, QStringLiteral("editor-xmp.png"), window);
    // The keywords of the marked photos are read on a worker thread.
    home->clickedEditorTab(HomeEditorBox::kKeywordsTab);
    shoot(out, QStringLiteral("editor-keywords.png"), window, nullptr, 2500);
    home->clickedEditorTab(0);

    // One photo marked, with an Artist typed: its values and the edited mark.
    home->clickedSelectUnselectAll(false);
    int row = 0;
    for (int i = 0; i < t.set().count(); ++i)
        if (t.set().workingImages().at(i).path().endsWith(QStringLiteral("/Reagan.jpg")))
            row = i;
    home->clickedCheckBox(row, true);
    settle();
    auto* artist = qobject_cast<QLineEdit*>(
        test::named<MetadataViewController>(home, QStringLiteral("MetadataViewController"))
            ->control(Field::Artist)
            ->input());
    artist->setFocus();
    artist->selectAll();
    QTest::keyClicks(artist, QStringLiteral("Jane Doe"));
    shoot(out, QStringLiteral("editor-one.png"), window);

    // The same list as a table, newest capture first: the edited mark beside the marked photo.
    home->clickedSegmentCollectionnTableView(1);
    auto* table = test::named<PhotoTableView>(home, QStringLiteral("tableView"));
    table->sortByColumn(int(PhotoColumn::CaptureDate), Qt::DescendingOrder);
    shoot(out, QStringLiteral("table-view.png"), window);
    table->sortByColumn(-1, Qt::AscendingOrder);
    home->clickedSegmentCollectionnTableView(0);

    // The date panel of that photo, shifting its original time by two hours.
    FieldControl* date =
        test::named<MetadataViewController>(home, QStringLiteral("MetadataViewController"))
            ->control(Field::DateTimeOriginal);
    test::named<MetadataViewController>(home, QStringLiteral("MetadataViewController"))
        ->findChild<QScrollArea*>(QStringLiteral("scrollViewMetadataForm"))
        ->ensureWidgetVisible(date);
    date->dateButton()->click();
    settle();
    DateConfigurationPanel* panel =
        test::named<MetadataViewController>(home, QStringLiteral("MetadataViewController"))
            ->datePanel();
    panel->modeButton(DateMode::incrementTime)->click();
    QLineEdit* hours = panel->numberField(DatePart::incrementHour);
    hours->setFocus();
    hours->selectAll();
    QTest::keyClicks(hours, QStringLiteral("2"));
    QTest::keyClick(hours, Qt::Key_Tab);
    shoot(out, QStringLiteral("date-panel.png"), window, panel);
    panel->carryBox()->click();
    shoot(out, QStringLiteral("date-panel-carry.png"), window, panel);
    panel->carryBox()->click();
    panel->close();

    // The list's menu over the first photo.
    home->clickedSelectUnselectAll(true);
    settle();
    QAbstractItemView* grid = test::named<PhotoGridView>(home, QStringLiteral("collectionView"));
    const QRect item = grid->visualRect(grid->model()->index(0, 0));
    QMenu* menu = home->buildContextMenu(0, home);
    menu->popup(grid->viewport()->mapToGlobal(item.center()));
    shoot(out, QStringLiteral("context-menu.png"), window);
    menu->close();
    settle();

    // The rename sheet, adding a text before each name.
    home->clickedRename();
    RenameViewController* rename =
        test::named<RenameViewController>(home, QStringLiteral("RenameViewController"));
    test::named<QRadioButton>(rename, QStringLiteral("btnAddText"))->click();
    QTest::keyClicks(test::named<QLineEdit>(rename, QStringLiteral("txtFieldAddText")),
                     QStringLiteral("Iceland-"));
    shoot(out, QStringLiteral("rename-panel.png"), window);
    QTest::mouseClick(test::named<QPushButton>(rename, QStringLiteral("btnClose")), Qt::LeftButton);
    settle();

    // The place of one marked photo, the picker offline and with tiles, and the preview.
    t.app->settings().setMapTileUrl(MapType::standard, QString());
    test::named<LocationView>(home, QStringLiteral("locationView"))
        ->mapView()
        ->setTileTemplate(MapType::standard, QString());
    home->clickedSelectUnselectAll(false);
    int gpsRow = 0;
    for (int i = 0; i < t.set().count(); ++i)
        if (t.set().workingImages().at(i).path().endsWith(QStringLiteral("/FurnaceCreekInn.jpg")))
            gpsRow = i;
    home->clickedCheckBox(gpsRow, true);
    settle(800);
    shoot(out, QStringLiteral("home-location.png"), window);
    home->clickShowEditorGPS();
    GeoLocationViewController* picker =
        test::named<GeoLocationViewController>(home, QStringLiteral("GeoLocation"));
    test::named<MapView>(picker, QStringLiteral("mapView"))->zoomOut();
    test::named<MapView>(picker, QStringLiteral("mapView"))->zoomOut();
    test::named<MapView>(picker, QStringLiteral("mapView"))->zoomOut();
    shoot(out, QStringLiteral("location-picker-offline.png"), window, picker, 900);
    picker->clickedCancel();
    settle();
    test::TileServer tiles;
    tiles.setTileMaker(townTile);
    QTemporaryDir tileCache;
    test::named<MapView>(picker, QStringLiteral("mapView"))
        ->setTileTemplate(MapType::standard, tiles.urlTemplate(), tileCache.path());
    home->clickShowEditorGPS();
    settle();
    const QString photoLatitude =
        test::named<QLineEdit>(picker, QStringLiteral("txtFieldLatitude"))->text();
    const QString photoLongitude =
        test::named<QLineEdit>(picker, QStringLiteral("txtFieldLongitude"))->text();
    test::named<QLineEdit>(picker, QStringLiteral("txtFieldName"))->clear();
    QTest::keyClicks(test::named<QLineEdit>(picker, QStringLiteral("txtFieldName")),
                     QStringLiteral("Zurich"));
    settle(300);
    test::named<MapView>(picker, QStringLiteral("mapView"))->setZoom(13);
    shoot(out, QStringLiteral("location-picker-tiles.png"), window, picker, 1500);
    // Every closing hands the position back: the photo's own goes back, so that the pictures
    // after this one show the same edits.
    for (const auto& [name, text] : {std::pair{"txtFieldLatitude", photoLatitude},
                                     std::pair{"txtFieldLongitude", photoLongitude}}) {
        QLineEdit* field = test::named<QLineEdit>(picker, QString::fromLatin1(name));
        field->clear();
        QTest::keyClicks(field, text);
    }
    picker->clickedCancel();
    settle();
    home->openPreview(gpsRow);
    PreviewViewController* preview =
        test::named<PreviewViewController>(home, QStringLiteral("PreviewViewController"));
    test::named<MapView>(preview, QStringLiteral("mapView"))->zoomOut();
    test::named<MapView>(preview, QStringLiteral("mapView"))->zoomOut();
    test::named<MapView>(preview, QStringLiteral("mapView"))->showCallout();
    shoot(out, QStringLiteral("preview-window.png"), preview, nullptr, 1200);
    preview->close();
    home->clickedSelectUnselectAll(true);
    settle();

    // The rename sheet's names from the capture date.
    home->clickedRename();
    test::named<QRadioButton>(rename, QStringLiteral("btnCaptureDateName"))->click();
    QTest::keyClicks(test::named<QLineEdit>(rename, QStringLiteral("txtFieldCapturePattern")),
                     QStringLiteral("yyyyMMdd-HHmmss"));
    shoot(out, QStringLiteral("rename-capture-date.png"), window);
    QTest::mouseClick(test::named<QPushButton>(rename, QStringLiteral("btnClose")), Qt::LeftButton);
    settle();

    // The plan of a run over ten marked photos, with the Artist typed.
    home->clickedSelectUnselectAll(false);
    for (int i = 0; i < 10 && i < t.set().count(); ++i)
        home->clickedCheckBox(i, true);
    settle();
    artist->setFocus();
    artist->selectAll();
    QTest::keyClicks(artist, QStringLiteral("Jane Doe"));
    home->findChild<QPushButton*>(QStringLiteral("btnReviewChanges"))->click();
    auto* review = home->findChild<ReviewChangesWindow*>();
    while (!review->isReady())
        settle(50);
    shoot(out, QStringLiteral("review-changes.png"), window, review);
    review->close();
    home->clickedSelectUnselectAll(true);
    settle();

    // The preference of the standard form.
    t.app->showPreferences();
    PreferencesWindow* preferences = t.app->preferencesWindow();
    test::named<QCheckBox>(preferences, QStringLiteral("btnWriteTagsInStandardForm"))->setFocus();
    shoot(out, QStringLiteral("preferences-standard-form.png"), preferences);
    // The map tiles' switch and their cache.
    test::named<QCheckBox>(preferences, QStringLiteral("btnLoadMapTiles"))->setFocus();
    shoot(out, QStringLiteral("preferences-map-tiles.png"), preferences);
    preferences->close();
    settle();

    // The questions of Start Process as the application shows them.
    DialogPrompt dialogs(window);
    const auto shootModal = [&](const QString& name, auto&& show) {
        QTimer::singleShot(700, [&] {
            shoot(out, name, window);
            if (QWidget* modal = QApplication::activeModalWidget())
                modal->close();
        });
        show();
        settle(200);
    };
    const std::pair<QString, Alert> alerts[] = {
        {"alert-confirm-edit.png", StartProcessChain::editConfirmation()},
        {"alert-no-changes.png", StartProcessChain::noChangesQuestion()},
        {"alert-confirm-clear.png", StartProcessChain::clearConfirmation()},
        {"alert-confirm-remove.png", StartProcessChain::removeConfirmation()},
        {"alert-no-options.png", StartProcessChain::noOptionsAlert()},
        {"alert-no-photos.png", StartProcessChain::noPhotosAlert()},
        {"alert-outside-home.png", StartProcessChain::outsideHomeAlert()},
        {"alert-access-required.png", StartProcessChain::accessRequiredAlert()},
        {"alert-overwrite.png", StartProcessChain::overwriteQuestion()},
        {"alert-invalid-preset-name.png", StartProcessChain::invalidPresetNameAlert()},
        {"alert-preset-name-taken.png", StartProcessChain::presetNameTakenAlert()},
    };
    for (const auto& [name, alert] : alerts)
        shootModal(name, [&, a = alert] { dialogs.ask(a); });
    shootModal(QStringLiteral("preset-sheet.png"), [&] {
        dialogs.askForText(StartProcessChain::presetSheet(QStringLiteral("Preset 1")));
    });
    // Paste Metadata... with the values of the photo on display, and what an import tells.
    HomeSession& session = t.app->homeSession();
    home->clickedSelectUnselectAll(false);
    // A camera photo, so that the list shows what a copy holds.
    int source = 0;
    for (int i = 0; i < t.set().imagePaths().size(); ++i)
        if (t.set().imagePaths()[i].endsWith(QStringLiteral("FurnaceCreekInn.jpg")))
            source = i;
    home->clickedCheckBox(source, true);
    session.copyMetadata();
    home->clickedSelectUnselectAll(true);
    shootModal(QStringLiteral("paste-metadata.png"),
               [&] { dialogs.askToTick(session.pasteQuestion()); });
    const QStringList listed = t.set().imagePaths();
    QByteArray tableText = "SourceFile,Artist,City,Rating Stars\n";
    for (int i = 0; i < std::min<qsizetype>(listed.size(), 12); ++i)
        tableText +=
            "/Volumes/Card/" + QFileInfo(listed[i]).fileName().toUtf8() + ",Jane Doe,Reykjavik,4\n";
    tableText += "/Volumes/Card/IMG_9001.jpg,Jane Doe,Vik,3\n";
    const QString tablePath = QDir::temp().filePath(QStringLiteral("tour-metadata.csv"));
    test::writeText(tablePath, tableText);
    shootModal(QStringLiteral("import-metadata.png"), [&] {
        dialogs.ask(ListExchange::importAlert(importTableForList(tablePath, listed)));
    });
    QFile::remove(tablePath);
    OpenPanelRequest folderPanel = StartProcessChain::destinationPanel(true);
    folderPanel.directory = QDir::homePath();
    shootModal(QStringLiteral("folder-panel.png"),
               [&] { dialogs.openPanelWithAccessory(folderPanel); });

    // Three saved presets: the menu under "Presets..." and the panel that manages them.
    struct Saved {
        const char* name;
        const char* artist;
        const char* city;
        float fNumber;
    };
    for (const Saved& p : {Saved{"Beach Holiday", "Jane Doe", "Biarritz", 8.0f},
                           Saved{"Studio Portraits", "Studio Nord", "Hamburg", 2.8f},
                           Saved{"Family Archive", "The Lee Family", "Lyon", 0.0f}}) {
        PresetStore& store = t.app->presets();
        const qsizetype at = store.addPreset(QString::fromUtf8(p.name));
        CGImageProperties values = *store.presets().at(at).properties;
        values.tiffProperties->artist = QString::fromUtf8(p.artist);
        values.tiffProperties->copyRight =
            QStringLiteral("(c) 2024 ") + QString::fromUtf8(p.artist);
        values.iptcProperties->city = QString::fromUtf8(p.city);
        if (p.fNumber > 0)
            values.exifProperties->fNumber = p.fNumber;
        OriginalFinalDate rules;
        IDOT shift;
        shift.changeHours = 1;
        rules.configurationTimeOriginal = shift;
        rules.dateTimeOriginalAlive = p.fNumber > 0;
        store.replaceValues(at, values, rules);
    }
    PresetsViewController* presetsMenu =
        test::named<PresetsViewController>(home, QStringLiteral("PresetsViewController"));
    presetsMenu->showAt(home->findChild<QPushButton*>(QStringLiteral("btnPreset")));
    shoot(out, QStringLiteral("presets-menu.png"), window, presetsMenu);
    presetsMenu->chooseRow(int(t.app->presets().size()) + 1); // "Edit Presets..."
    while (t.window().rootView()->selectedIndex() != 2)
        settle(20);
    PresetsDetailsViewController* presetsPanel = test::named<PresetsDetailsViewController>(
        t.window().rootView(), QStringLiteral("presetsDetails"));
    presetsPanel->tableView()->setCurrentRow(1);
    shoot(out, QStringLiteral("presets-panel.png"), window);
    presetsPanel->clickedCancel();
    settle(200);

    // A run into a folder of the home folder: the sheet while it runs, and its result.
    const QString target = QDir::home().filePath(QStringLiteral("Edited"));
    QDir().mkpath(target);
    t.prompt.answers = {0};
    t.prompt.panelAnswers = {{target}};
    home->clickedStartProcess();
    while (!test::named<FinalProcessedVC>(home, QStringLiteral("FinalProcessedVC")))
        settle(20);
    settle(60);
    shoot(out, QStringLiteral("run-progress.png"), window, nullptr, 0);
    while (
        !test::named<FinalProcessedVC>(home, QStringLiteral("FinalProcessedVC"))->isShowingResult())
        settle(50);
    shoot(out, QStringLiteral("run-result.png"), window);
    QFile rows(out + QStringLiteral("/editor-rows.txt"));
    if (rows.open(QIODevice::WriteOnly | QIODevice::Text))
        rows.write(g_editorRows.join(QLatin1Char('\n')).toUtf8() + '\n');
    return 0;
}
