// The location picker, the map with tiles from a loopback server, the preview window and the
// home screen's location view, on the real screens.
#include "../core/geo/TileServer.h"
#include "AppTestSupport.h"
#include "app/location/GeoLocationViewController.h"
#include "app/location/LocationView.h"
#include "app/location/MapTypeSegment.h"
#include "app/location/MapView.h"
#include "app/location/PreviewViewController.h"
#include "app/shell/PreferencesWindow.h"
#include "app/workingset/HomeScreen.h"
#include "app/workingset/PhotoListViews.h"
#include "editor/MetadataForm.h"
#include "foundation/AppEvents.h"
#include "geo/SharedLocation.h"
#include "geo/TileLoader.h"
#include "workingset/ScanController.h"

#include <QAbstractButton>
#include <QBuffer>
#include <QButtonGroup>
#include <QCheckBox>
#include <QCompleter>
#include <QDialogButtonBox>
#include <QElapsedTimer>
#include <QLabel>
#include <QLineEdit>
#include <QMouseEvent>
#include <QPushButton>
#include <QScreen>
#include <QSignalSpy>
#include <QStackedWidget>
#include <QStringListModel>
#include <QTimer>

#include <functional>

using namespace tagmoor;
using namespace tagmoor::test;

namespace {

void mouse(QWidget* widget, QEvent::Type type, QPointF at) {
    QMouseEvent event(type, at, widget->mapToGlobal(at), Qt::LeftButton,
                      type == QEvent::MouseButtonRelease ? Qt::NoButton : Qt::LeftButton,
                      Qt::NoModifier);
    QCoreApplication::sendEvent(widget, &event);
}

// Clicks the pin, and then "More Info" in the callout that opens above it.
void openCalloutAndAskForMoreInfo(MapView* map, ScriptedPrompt& prompt) {
    const qsizetype alerts = prompt.alerts.size();
    const QPointF head = map->pinPoint() + QPointF(0, -23);
    mouse(map, QEvent::MouseButtonPress, head);
    mouse(map, QEvent::MouseButtonRelease, head);
    QCOMPARE(prompt.alerts.size(), alerts);
    QWidget* callout = named<QWidget>(map, QStringLiteral("pinCallout"));
    QVERIFY(callout && callout->isVisible());
    QVERIFY(callout->geometry().bottom() < head.y());
    QVERIFY(qAbs(callout->geometry().center().x() - head.x()) <= 2);
    QPushButton* more = named<QPushButton>(callout, QStringLiteral("btnMoreInfo"));
    QCOMPARE(more->text(), QStringLiteral("More Info"));
    QTest::mouseClick(more, Qt::LeftButton);
    QCOMPARE(prompt.alerts.size(), alerts + 1);
    QCOMPARE(prompt.alerts.last(), Alert::ok(QStringLiteral("show details"),
                                             QStringLiteral("Informative text goes here")));
}

// A picker over its own settings, opened at `at` (what the editor hands it).
struct OpenPicker {
    explicit OpenPicker(SharedLocation at) : location(at) { picker.show(); }
    AppEvents events;
    QTemporaryDir dir;
    Settings settings{dir.filePath(QStringLiteral("s.ini"))};
    ScriptedPrompt prompt;
    SharedLocation location;
    GeoLocationViewController picker{events, settings, prompt, location};
};

} // namespace

class LocationTest : public QObject {
    Q_OBJECT
private slots:
    void pickerTakesTypedCoordinatesAsTheyAre();
    void pickerFindsPlacesAndTheDraggedPinMovesOnlyTheFields();
    void pickerKeepsATypedNameOverALateAnswer();
    void closingThePickerFillsTheEditorsGpsFields();
    void everyWayOfClosingThePickerHandsThePositionBackOnce();
    void locationViewStandsOnTheDefaultUnlessOneIsMarked();
    void mapDrawsTilesFromTheServerAndKeepsThemInItsCache();
    void preferencesTurnTilesOffAndEmptyTheirCache();
    void aHugeTileNeitherStallsTheMapNorIsDrawn();
    void previewShowsThePhotoItsFactsAndItsPosition();
    void previewOpensAgainCentredWhereItsMapStood();

private:
    HomeScreen* load(TestApp& t, const QStringList& paths) { return loadPhotos(t, paths); }
};

void LocationTest::pickerTakesTypedCoordinatesAsTheyAre() {
    OpenPicker open(SharedLocation{48.8584, 2.2945});
    auto& [events, dir, settings, prompt, location, picker] = open;
    QLineEdit* txtFieldLatitude = named<QLineEdit>(&picker, QStringLiteral("txtFieldLatitude"));
    QLineEdit* txtFieldLongitude = named<QLineEdit>(&picker, QStringLiteral("txtFieldLongitude"));
    QLineEdit* txtFieldName = named<QLineEdit>(&picker, QStringLiteral("txtFieldName"));
    MapView* mapView = named<MapView>(&picker, QStringLiteral("mapView"));
    QButtonGroup* segmentControl =
        named<MapTypeSegment>(&picker, QStringLiteral("segmentControl"))->group();
    QCOMPARE(txtFieldLatitude->text(), QStringLiteral("48.8584"));
    QCOMPARE(txtFieldLongitude->text(), QStringLiteral("2.2945"));
    QCOMPARE(segmentControl->checkedId(), 0);
    QTRY_COMPARE(txtFieldName->text(), QStringLiteral("Paris, France"));
    QCOMPARE(mapView->annotationCount(), 1);

    // No range check: 91 reaches the map and the pin as it is.
    retype(txtFieldLatitude, QStringLiteral("91"));
    QCOMPARE(picker.latitude(), 91.0f);
    QCOMPARE(picker.newRegion().latitude, 91.0);
    QCOMPARE(mapView->annotation()->latitude, 91.0);
    // Typing is not rewritten under the user's fingers.
    QCOMPARE(txtFieldLatitude->text(), QStringLiteral("91"));
    // An emptied field, or one that is no number, gives 0; a number with a tail keeps its number.
    retype(txtFieldLatitude, QString());
    QCOMPARE(picker.latitude(), 0.0f);
    retype(txtFieldLongitude, QStringLiteral("12.5 E"));
    QCOMPARE(picker.longitude(), 12.5f);
    retype(txtFieldLongitude, QStringLiteral("east"));
    QCOMPARE(picker.longitude(), 0.0f);

    // Every move leaves exactly one pin, on the map and in the list.
    for (int segment : {1, 2, 0})
        segmentControl->button(segment)->click();
    QCOMPARE(mapView->annotationCount(), 1);
    QCOMPARE(picker.mapAnnotations().size(), 1);
    QCOMPARE(mapView->mapType(), MapType::standard);
    segmentControl->button(1)->click();
    // Satellite without a tile address says so on the map.
    QVERIFY(!mapView->note().isEmpty());
}

void LocationTest::pickerFindsPlacesAndTheDraggedPinMovesOnlyTheFields() {
    OpenPicker open(SharedLocation{0, 0});
    auto& [events, dir, settings, prompt, location, picker] = open;
    QLineEdit* txtFieldLatitude = named<QLineEdit>(&picker, QStringLiteral("txtFieldLatitude"));
    QLineEdit* txtFieldLongitude = named<QLineEdit>(&picker, QStringLiteral("txtFieldLongitude"));
    QLineEdit* txtFieldName = named<QLineEdit>(&picker, QStringLiteral("txtFieldName"));
    MapView* mapView = named<MapView>(&picker, QStringLiteral("mapView"));
    picker.resize(720, 560);
    QVERIFY(QTest::qWaitForWindowExposed(&picker));

    QTest::keyClicks(txtFieldName, QStringLiteral("Zurich"));
    QTRY_COMPARE(txtFieldLatitude->text().left(5), QStringLiteral("47.36"));
    QCOMPARE(txtFieldLongitude->text().left(4), QStringLiteral("8.55"));
    QCOMPARE(mapView->annotationCount(), 1);
    // A name that matches nothing leaves the position where it was.
    txtFieldName->setText(QStringLiteral("Qxzqxz"));
    picker.controlTextDidChange(txtFieldName);
    QTest::qWait(50);
    QCOMPARE(txtFieldLatitude->text().left(5), QStringLiteral("47.36"));

    // Dragging the pin: new fields and a new name, the same region.
    const MapRegion before = mapView->region();
    const MapRegion newRegionBefore = picker.newRegion();
    const QPointF head = mapView->pinPoint() + QPointF(0, -23);
    mouse(mapView, QEvent::MouseButtonPress, head);
    mouse(mapView, QEvent::MouseMove, head + QPointF(40, 30));
    mouse(mapView, QEvent::MouseMove, head + QPointF(80, 60));
    mouse(mapView, QEvent::MouseButtonRelease, head + QPointF(80, 60));
    QVERIFY(picker.latitude() < 47.36f);
    QVERIFY(picker.longitude() > 8.56f);
    QCOMPARE(txtFieldLatitude->text().toFloat(), picker.latitude());
    QCOMPARE(mapView->region().latitude, before.latitude);
    QCOMPARE(mapView->region().longitude, before.longitude);
    QCOMPARE(picker.newRegion().latitude, newRegionBefore.latitude);
    QCOMPARE(mapView->annotationCount(), 1);
    QTRY_VERIFY(txtFieldName->text().endsWith(QStringLiteral("Switzerland")));

    // Clicking the pin without moving it opens its callout, whose "More Info" shows the fixed
    // details sheet; a click elsewhere on the map closes it.
    openCalloutAndAskForMoreInfo(mapView, prompt);
    if (QTest::currentTestFailed())
        return;
    const QPointF away = mapView->pinPoint() + QPointF(-120, 60);
    mouse(mapView, QEvent::MouseButtonPress, away);
    mouse(mapView, QEvent::MouseButtonRelease, away);
    QVERIFY(!named<QWidget>(mapView, QStringLiteral("pinCallout"))->isVisible());
}

void LocationTest::pickerKeepsATypedNameOverALateAnswer() {
    OpenPicker open(SharedLocation{48.8584, 2.2945});
    auto& [events, dir, settings, prompt, location, picker] = open;
    QLineEdit* txtFieldLatitude = named<QLineEdit>(&picker, QStringLiteral("txtFieldLatitude"));
    QLineEdit* txtFieldLongitude = named<QLineEdit>(&picker, QStringLiteral("txtFieldLongitude"));
    QLineEdit* txtFieldName = named<QLineEdit>(&picker, QStringLiteral("txtFieldName"));
    // The opening asked for the name of the Paris position; the user types before it is told.
    QTest::keyClicks(txtFieldName, QStringLiteral("Paris, Tex"));
    QTRY_VERIFY(qAbs(picker.latitude() - 33.66f) < 0.05f);
    QTest::qWait(50);
    QCOMPARE(txtFieldName->text(), QStringLiteral("Paris, Tex"));
    QVERIFY(qAbs(picker.longitude() + 95.55f) < 0.05f);

    // The places of a name are offered with their regions; taking one goes there.
    retype(txtFieldName, QStringLiteral("Paris"));
    const auto* places = qobject_cast<QStringListModel*>(txtFieldName->completer()->model());
    QTRY_VERIFY(places->stringList().size() > 1);
    QCOMPARE(places->stringList().first(), QStringLiteral("Paris, Île-de-France, France"));
    QVERIFY(places->stringList().contains(QStringLiteral("Paris, Texas, United States")));
    QCOMPARE(txtFieldLatitude->text().left(5), QStringLiteral("48.85"));
    emit txtFieldName->completer()->activated(QStringLiteral("Paris, Texas, United States"));
    QTRY_VERIFY(qAbs(picker.latitude() - 33.66f) < 0.05f);
    QCOMPARE(txtFieldName->text(), QStringLiteral("Paris, Texas, United States"));

    // A position typed after the name is asked anew, and its answer names it.
    retype(txtFieldLatitude, QStringLiteral("-33.9628"));
    retype(txtFieldLongitude, QStringLiteral("18.4098"));
    QTRY_COMPARE(txtFieldName->text(), QStringLiteral("Cape Town, South Africa"));
}

void LocationTest::closingThePickerFillsTheEditorsGpsFields() {
    TestApp t;
    const QString dir = t.dir(QStringLiteral("gps"));
    QFile::copy(formatsDir() + QStringLiteral("/et-GPS.jpg"), dir + QStringLiteral("/a.jpg"));
    HomeScreen* home = load(t, {dir + QStringLiteral("/a.jpg")});
    // The one marked photo's place, with its pin.
    QVERIFY(
        named<LocationView>(home, QStringLiteral("locationView"))->mapView()->isVisibleTo(home));
    QCOMPARE(
        named<LocationView>(home, QStringLiteral("locationView"))->mapView()->annotationCount(), 1);
    // Named by its region and country.
    QTRY_COMPARE(named<QLabel>(named<LocationView>(home, QStringLiteral("locationView")),
                               QStringLiteral("lblLocation"))
                     ->text(),
                 QStringLiteral("England, United Kingdom"));
    const SharedLocation photo = t.app->homeSession().location();
    QVERIFY(qAbs(photo.latitude() - 54.99) < 0.01 && qAbs(photo.longitude() + 1.92) < 0.01);

    home->clickShowEditorGPS();
    GeoLocationViewController* picker =
        named<GeoLocationViewController>(home, QStringLiteral("GeoLocation"));
    QVERIFY(picker && picker->isVisible());
    QCOMPARE(picker->latitude(), float(photo.latitude()));
    QCOMPARE(picker->longitude(), float(photo.longitude()));

    QSignalSpy told(&t.app->events(), &AppEvents::UpdateLocationFromGeoLocationOTM);
    retype(named<QLineEdit>(picker, QStringLiteral("txtFieldLatitude")),
           QStringLiteral("-33.9628"));
    retype(named<QLineEdit>(picker, QStringLiteral("txtFieldLongitude")),
           QStringLiteral("18.4098"));
    named<QPushButton>(picker, QStringLiteral("btnCancel"))->click();
    QCOMPARE(told.size(), 1);
    QVERIFY(!picker->isVisible());

    const MetadataForm& form = t.app->homeSession().form();
    QCOMPARE(form.text(kLatitude), QStringLiteral("33.9628"));
    QCOMPARE(form.popupRow(kLatitudeRef), 2); // South
    QCOMPARE(form.text(kLongitude), QStringLiteral("18.4098"));
    QCOMPARE(form.popupRow(kLongitudeRef), 1); // East
    QVERIFY(form.isEdited(kLatitude));
    QVERIFY(form.isEdited(kLatitudeRef));
    QVERIFY(form.hasEdits());
    QTRY_COMPARE(named<QLabel>(named<LocationView>(home, QStringLiteral("locationView")),
                               QStringLiteral("lblLocation"))
                     ->text(),
                 QStringLiteral("Cape Town, South Africa"));
}

// Esc in a field or on the sheet, the window's close box and Done all close the picker as
// Done does: the position goes to the shared location, and the editor is told once.
void LocationTest::everyWayOfClosingThePickerHandsThePositionBackOnce() {
    OpenPicker open(SharedLocation{0, 0});
    auto& [events, dir, settings, prompt, location, picker] = open;
    QSignalSpy told(&events, &AppEvents::UpdateLocationFromGeoLocationOTM);
    QLineEdit* txtFieldLatitude = named<QLineEdit>(&picker, QStringLiteral("txtFieldLatitude"));
    QLineEdit* txtFieldLongitude = named<QLineEdit>(&picker, QStringLiteral("txtFieldLongitude"));
    const std::function<void()> closings[] = {
        [&] { QTest::keyClick(txtFieldLatitude, Qt::Key_Escape); },
        [&] { QTest::keyClick(&picker, Qt::Key_Escape); },
        [&] { picker.close(); },
        [&] { named<QPushButton>(&picker, QStringLiteral("btnCancel"))->click(); },
    };
    double latitude = 10;
    for (const auto& closeThePicker : closings) {
        if (!picker.isVisible())
            picker.show();
        retype(txtFieldLatitude, QString::number(latitude));
        retype(txtFieldLongitude, QStringLiteral("-20.5"));
        const qsizetype before = told.size();
        closeThePicker();
        QVERIFY(!picker.isVisible());
        QCOMPARE(told.size(), before + 1);
        QCOMPARE(location.latitude(), latitude);
        QCOMPARE(location.longitude(), -20.5);
        latitude += 1;
    }
    // A closed picker hands nothing back again.
    picker.reject();
    picker.accept();
    QCOMPARE(told.size(), 4);
}

void LocationTest::locationViewStandsOnTheDefaultUnlessOneIsMarked() {
    TestApp t;
    const QString dir = t.dir(QStringLiteral("several"));
    const QString withGps = dir + QStringLiteral("/a.jpg");
    const QString without = dir + QStringLiteral("/b.jpg");
    QFile::copy(formatsDir() + QStringLiteral("/et-GPS.jpg"), withGps);
    QFile::copy(formatsDir() + QStringLiteral("/Reagan.jpg"), without);
    const SharedLocation capeTown{-33.9628, 18.4098};
    const SharedLocation tokyo{35.6586, 139.7454};
    t.app->homeSession().location() = capeTown;
    HomeScreen* home = load(t, {withGps, without});
    const int a = t.set().workingImages().at(0).url->toLocalFile() == withGps ? 0 : 1;
    const int b = 1 - a;
    LocationView* view = named<LocationView>(home, QStringLiteral("locationView"));
    auto pinLatitude = [view] { return view->mapView()->annotation()->latitude; };

    // Both arrive marked: the view stands on the default coordinate and names its region.
    QVERIFY(view->mapView()->isVisibleTo(home));
    QCOMPARE(pinLatitude(), capeTown.latitude());
    QTRY_COMPARE(named<QLabel>(named<LocationView>(home, QStringLiteral("locationView")),
                               QStringLiteral("lblLocation"))
                     ->text(),
                 QStringLiteral("Western Cape, South Africa"));

    // The one marked photo has no position: the view keeps what it showed. With none marked
    // the default is back.
    home->clickedCheckBox(a, false);
    QCOMPARE(named<QLabel>(named<LocationView>(home, QStringLiteral("locationView")),
                           QStringLiteral("lblLocation"))
                 ->text(),
             QStringLiteral("Western Cape, South Africa"));
    QVERIFY(view->mapView()->isVisibleTo(home));
    QCOMPARE(pinLatitude(), capeTown.latitude());
    t.app->homeSession().location() = tokyo;
    home->clickedCheckBox(b, false);
    QVERIFY(view->mapView()->isVisibleTo(home));
    QCOMPARE(pinLatitude(), tokyo.latitude());
    QTRY_COMPARE(named<QLabel>(named<LocationView>(home, QStringLiteral("locationView")),
                               QStringLiteral("lblLocation"))
                     ->text(),
                 QStringLiteral("Tokyo, Japan"));
}

void LocationTest::mapDrawsTilesFromTheServerAndKeepsThemInItsCache() {
    TileServer server;
    QTemporaryDir cache;
    QTemporaryDir dir;
    Settings settings(dir.filePath(QStringLiteral("s.ini")));
    settings.setMapTileUrl(MapType::standard, server.urlTemplate());
    int firstRequests = 0;
    int drawnFirst = 0;
    {
        MapView map;
        map.configureTiles(settings, cache.path());
        map.resize(512, 384);
        map.setRegion({47.37, 8.54, 1, 1});
        // Every tile in view has come once nothing is on its way after a paint.
        QTRY_VERIFY((map.grab(), map.networkTilesDrawn() >= 6 &&
                                     map.tileLoader(MapType::standard)->inFlight() == 0));
        map.grab();
        drawnFirst = map.networkTilesDrawn();
        firstRequests = server.requests();
        QCOMPARE(firstRequests, drawnFirst);
        QCOMPARE(map.tileLoader(MapType::standard)->urlTemplate(), server.urlTemplate());
    }
    QVERIFY(server.userAgent().startsWith("Tagmoor/"));
    QVERIFY(server.maxOpenConnections() <= TileLoader::kMaxConnections);

    // A new map over the same cache draws the same tiles without asking the server.
    MapView again;
    again.configureTiles(settings, cache.path());
    again.resize(512, 384);
    again.setRegion({47.37, 8.54, 1, 1});
    QTRY_VERIFY((again.grab(), again.networkTilesDrawn() == drawnFirst));
    QCOMPARE(server.requests(), firstRequests);

    // Offline: the server is gone; a map elsewhere draws its outline at once.
    server.close();
    MapView offline;
    offline.configureTiles(settings, cache.path());
    offline.resize(512, 384);
    offline.setRegion({-33.9, 18.4, 1, 1});
    QElapsedTimer clock;
    clock.start();
    offline.grab();
    QVERIFY(clock.elapsed() < 2000);
    QCOMPARE(offline.networkTilesDrawn(), 0);
}

// Unticking "Load map tiles from the internet" leaves every map with its outline and asks
// the server nothing more; ticking it brings the tiles back. "Clear map cache" empties the
// cache on disk and the tiles the maps hold, so the next ones come from the server again.
void LocationTest::preferencesTurnTilesOffAndEmptyTheirCache() {
    TileServer server;
    TestApp t;
    Settings& settings = t.app->settings();
    QCOMPARE(settings.loadMapTilesFromInternet().value_or(true), true);
    settings.setMapTileUrl(MapType::standard, server.urlTemplate());
    MapView map;
    map.configureTiles(settings); // the user's cache folder, which Preferences empties
    map.resize(512, 384);
    map.setRegion({47.37, 8.54, 1, 1});
    QTRY_VERIFY((map.grab(), map.networkTilesDrawn() >= 6 &&
                                 map.tileLoader(MapType::standard)->inFlight() == 0));

    t.app->showPreferences();
    PreferencesWindow* prefs = t.app->preferencesWindow();
    QCheckBox* tiles = prefs->findChild<QCheckBox*>(QStringLiteral("btnLoadMapTiles"));
    QPushButton* clear = prefs->findChild<QPushButton*>(QStringLiteral("btnClearMapCache"));
    QVERIFY(tiles && clear);
    QVERIFY(tiles->isChecked());
    QCOMPARE(tiles->text(), QStringLiteral("Load map tiles from the internet"));
    QCOMPARE(clear->text(), QStringLiteral("Clear map cache"));

    QTest::mouseClick(tiles, Qt::LeftButton);
    QCOMPARE(settings.loadMapTilesFromInternet(), std::optional<bool>(false));
    const int asked = server.requests();
    map.setRegion({-33.9, 18.4, 1, 1});
    map.grab();
    QTest::qWait(200);
    map.grab();
    QCOMPARE(map.networkTilesDrawn(), 0);
    QCOMPARE(server.requests(), asked);
    QVERIFY(map.note().contains(QStringLiteral("turned off")));

    QTest::mouseClick(tiles, Qt::LeftButton);
    map.setRegion({47.37, 8.54, 1, 1});
    QTRY_VERIFY((map.grab(), map.networkTilesDrawn() >= 6));
    QCOMPARE(server.requests(), asked); // the tiles came from the cache

    QTest::mouseClick(clear, Qt::LeftButton);
    QVERIFY(!QFileInfo::exists(TileLoader::defaultCacheFolder() + QStringLiteral("/data8")));
    map.grab();
    QCOMPARE(map.networkTilesDrawn(), 0); // the tiles in memory went with the cache
    QTRY_VERIFY((map.grab(), map.networkTilesDrawn() >= 6));
    QVERIFY(server.requests() > asked);
}

// Tiles of 4096 pixels a side (a server gone wrong, or one that wants to harm): none is
// decoded or drawn, none is asked for again on the next repaint, and the map's thread never
// stops for long.
void LocationTest::aHugeTileNeitherStallsTheMapNorIsDrawn() {
    QImage huge(4096, 4096, QImage::Format_RGB32);
    huge.fill(Qt::darkGreen);
    QByteArray png;
    {
        QBuffer buffer(&png);
        buffer.open(QIODevice::WriteOnly);
        huge.save(&buffer, "PNG");
    }
    huge = QImage();
    TileServer server;
    server.setTileMaker([&png](int, int, int) { return png; });
    QTemporaryDir dir;
    Settings settings(dir.filePath(QStringLiteral("s.ini")));
    settings.setMapTileUrl(MapType::standard, server.urlTemplate());
    MapView map;
    map.configureTiles(settings, dir.filePath(QStringLiteral("cache")));
    map.resize(512, 384);
    map.setRegion({47.37, 8.54, 1, 1});

    QElapsedTimer sinceLast;
    qint64 longestGap = 0;
    QTimer beat;
    beat.setInterval(5);
    QObject::connect(&beat, &QTimer::timeout,
                     [&] { longestGap = std::max(longestGap, sinceLast.restart()); });
    sinceLast.start();
    beat.start();
    QTRY_VERIFY(
        (map.grab(), server.requests() >= 6 && map.tileLoader(MapType::standard)->inFlight() == 0));
    QTest::qWait(300);
    beat.stop();
    const int sent = map.tileLoader(MapType::standard)->requestsSent();
    map.grab();
    QCOMPARE(map.networkTilesDrawn(), 0);
    QTest::qWait(100);
    map.grab();
    QCOMPARE(map.tileLoader(MapType::standard)->requestsSent(),
             sent); // not asked again on a repaint
    QVERIFY2(longestGap < 1000, qPrintable(QStringLiteral("%1 ms").arg(longestGap)));
}

void LocationTest::previewShowsThePhotoItsFactsAndItsPosition() {
    TestApp t;
    const QString dir = t.dir(QStringLiteral("preview"));
    QFile::copy(formatsDir() + QStringLiteral("/et-GPS.jpg"), dir + QStringLiteral("/a.jpg"));
    QFile::copy(formatsDir() + QStringLiteral("/Reagan.jpg"), dir + QStringLiteral("/b.jpg"));
    HomeScreen* home = load(t, {dir + QStringLiteral("/a.jpg"), dir + QStringLiteral("/b.jpg")});

    QAbstractItemView* grid = named<PhotoGridView>(home, QStringLiteral("collectionView"));
    emit grid->doubleClicked(grid->model()->index(0, 0));
    PreviewViewController* preview =
        named<PreviewViewController>(home, QStringLiteral("PreviewViewController"));
    QVERIFY(preview && preview->isVisible());
    QCOMPARE(preview->windowTitle(), QStringLiteral("Tagmoor - Preview"));
    QCOMPARE(named<QLabel>(preview, QStringLiteral("lblName"))->text(), QStringLiteral("a.jpg"));
    QCOMPARE(named<QLabel>(preview, QStringLiteral("lblPath"))->text(),
             dir + QStringLiteral("/a.jpg"));
    QVERIFY(
        named<QLabel>(preview, QStringLiteral("lblSize"))->text().endsWith(QStringLiteral(" KB")));
    QTRY_VERIFY(named<QLabel>(preview, QStringLiteral("imgView"))->pixmap().width() > 0);
    QVERIFY(std::max(named<QLabel>(preview, QStringLiteral("imgView"))->pixmap().width(),
                     named<QLabel>(preview, QStringLiteral("imgView"))->pixmap().height()) <=
            PreviewViewController::kPictureSide * preview->devicePixelRatioF());
    QVERIFY(qAbs(preview->latitude() - 54.99f) < 0.01f);
    MapView* mapView = named<MapView>(preview, QStringLiteral("mapView"));
    QCOMPARE(mapView->annotationCount(), 1);
    QVERIFY(named<QLabel>(preview, QStringLiteral("lblValueGPSLatitude"))
                ->text()
                .startsWith(QStringLiteral("54.9")));

    // The pin is dragged as the picker's is: the preview's position moves, the map, the photo
    // and the form stay; another map type keeps the pin where it was dropped.
    const CGImageProperties record = t.set().workingImages().at(0);
    const MapRegion region = mapView->region();
    const QPointF head = mapView->pinPoint() + QPointF(0, -23);
    mouse(mapView, QEvent::MouseButtonPress, head);
    mouse(mapView, QEvent::MouseMove, head + QPointF(30, 20));
    mouse(mapView, QEvent::MouseButtonRelease, head + QPointF(30, 20));
    const float latitude = preview->latitude();
    QVERIFY(latitude < 54.98f);
    QCOMPARE(mapView->region().latitude, region.latitude);
    named<MapTypeSegment>(preview, QStringLiteral("segmentControlGPS"))
        ->group()
        ->button(1)
        ->click();
    QCOMPARE(float(mapView->annotation()->latitude), latitude);
    QVERIFY(named<QLabel>(preview, QStringLiteral("lblValueGPSLatitude"))
                ->text()
                .startsWith(QStringLiteral("54.9")));
    QCOMPARE(t.set().workingImages().at(0).gpsProperties, record.gpsProperties);
    QVERIFY(!t.app->homeSession().form().hasEdits());
    openCalloutAndAskForMoreInfo(mapView, t.prompt);
    if (QTest::currentTestFailed())
        return;

    // The second photo has no position: the map stays where the first one left it.
    home->openPreview(1);
    QCOMPARE(named<PreviewViewController>(home, QStringLiteral("PreviewViewController")), preview);
    QCOMPARE(named<QLabel>(preview, QStringLiteral("lblName"))->text(), QStringLiteral("b.jpg"));
    QCOMPARE(preview->latitude(), latitude);
    QCOMPARE(named<QLabel>(preview, QStringLiteral("lblValueGPSLatitude"))->text(), QString());
    preview->clickedTab(2);
    QCOMPARE(named<QStackedWidget>(preview, QStringLiteral("scrollView"))->currentIndex(), 2);

    QCOMPARE(PreviewViewController::dimensionsText(4000, 3000), QStringLiteral("4000.0 x 3000.0"));
    QCOMPARE(PreviewViewController::dimensionsText(200.5, 130), QStringLiteral("200.5 x 130.0"));
    preview->close();
}

// Closed by Esc and opened again for a photo without a position, the preview keeps the map of
// the photo before; it opens centred on the main window each time and has a Close button.
void LocationTest::previewOpensAgainCentredWhereItsMapStood() {
    TestApp t;
    const QString dir = t.dir(QStringLiteral("preview"));
    QFile::copy(formatsDir() + QStringLiteral("/et-GPS.jpg"), dir + QStringLiteral("/a.jpg"));
    QFile::copy(formatsDir() + QStringLiteral("/Reagan.jpg"), dir + QStringLiteral("/b.jpg"));
    HomeScreen* home = load(t, {dir + QStringLiteral("/a.jpg"), dir + QStringLiteral("/b.jpg")});
    const int a = t.set().workingImages().at(0).url->fileName() == QStringLiteral("a.jpg") ? 0 : 1;
    // The main window in the middle of the screen, so that the preview has room around it.
    QRect frame = t.window().frameGeometry();
    frame.moveCenter(t.window().screen()->availableGeometry().center());
    t.window().move(frame.topLeft());
    auto centredOnTheWindow = [&t](QWidget* preview) {
        const QPoint off = preview->frameGeometry().center() - t.window().frameGeometry().center();
        return off.manhattanLength() <= 4;
    };

    home->openPreview(a);
    auto* preview = named<PreviewViewController>(home, QStringLiteral("PreviewViewController"));
    QVERIFY(preview->isVisible());
    QVERIFY(centredOnTheWindow(preview));
    const float latitude = preview->latitude();
    const float longitude = preview->longitude();
    QVERIFY(qAbs(latitude - 54.99f) < 0.01f);
    const QString dimensions = named<QLabel>(preview, QStringLiteral("lblDimensions"))->text();
    QVERIFY(!dimensions.isEmpty());
    QTest::keyClick(preview, Qt::Key_Escape);
    QVERIFY(!preview->isVisible());
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);

    home->openPreview(1 - a);
    preview = named<PreviewViewController>(home, QStringLiteral("PreviewViewController"));
    QVERIFY(preview->isVisible());
    QCOMPARE(named<QLabel>(preview, QStringLiteral("lblName"))->text(), QStringLiteral("b.jpg"));
    QCOMPARE(preview->latitude(), latitude);
    QCOMPARE(preview->longitude(), longitude);
    QCOMPARE(float(named<MapView>(preview, QStringLiteral("mapView"))->annotation()->latitude),
             latitude);
    QVERIFY(!named<QLabel>(preview, QStringLiteral("lblDimensions"))->text().isEmpty());

    // Moved away and closed by its button, it comes back centred.
    preview->move(0, 0);
    auto* buttons = named<QDialogButtonBox>(preview, QStringLiteral("buttonBox"));
    QVERIFY(buttons);
    QPushButton* close = buttons->button(QDialogButtonBox::Close);
    QCOMPARE(close->text(), QStringLiteral("Close"));
    close->click();
    QVERIFY(!preview->isVisible());
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    home->openPreview(a);
    preview = named<PreviewViewController>(home, QStringLiteral("PreviewViewController"));
    QVERIFY(centredOnTheWindow(preview));
    preview->close();
}

TAGMOOR_APP_TEST_MAIN(LocationTest)
#include "LocationTest.moc"
