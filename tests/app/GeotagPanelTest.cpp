// The geotag sheet from the File menu: a track loaded, the photos placed and moved by the clock
// offset, one dragged by hand, the places applied as the photos' edits and written, with the
// run's zone on the dates; ExifTool reads the output.
#include "app/location/GeotagPanel.h"
#include "WindowRunSupport.h"
#include "app/editor/DateConfigurationPanel.h"
#include "app/editor/FieldControl.h"
#include "app/editor/MetadataViewController.h"
#include "app/location/MapView.h"
#include "app/shell/MainWindow.h"
#include "batch/ChangePlan.h"
#include "batch/ListPhotoSource.h"
#include "batch/PhotoPipeline.h"
#include "editor/EditorState.h"
#include "editor/MetadataForm.h"
#include "processing/HomeSession.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QToolButton>

using namespace tagmoor;
using namespace tagmoor::test;

namespace {

// A track due north from 38.70 N 9.10 W, 0.001 degree a minute, from 10:00 to 10:05 UTC.
QString writeTrack(const QString& path) {
    QByteArray body;
    for (int minute = 0; minute <= 5; ++minute)
        body += QStringLiteral("<trkpt lat=\"%1\" lon=\"-9.1\"><time>2024-05-01T10:0%2:00Z"
                               "</time></trkpt>\n")
                    .arg(38.7 + minute * 0.001, 0, 'f', 4)
                    .arg(minute)
                    .toLatin1();
    QFile file(path);
    file.open(QIODevice::WriteOnly);
    file.write("<?xml version=\"1.0\"?>\n<gpx version=\"1.1\" creator=\"test\" "
               "xmlns=\"http://www.topografix.com/GPX/1/1\"><trk><trkseg>\n" +
               body + "</trkseg></trk></gpx>\n");
    return path;
}

// ExifTool's reading of the written photos, by file name.
QHash<QString, QJsonObject> readWritten(const QString& folder) {
    QProcess p;
    p.start(QStringLiteral("exiftool"),
            {"-j", "-n", "-GPSLatitude", "-GPSLongitude", "-GPSTimeStamp",
             "-ExifIFD:OffsetTimeOriginal", "-ExifIFD:DateTimeOriginal", folder});
    p.waitForFinished(60000);
    QHash<QString, QJsonObject> rows;
    for (const QJsonValue& v : QJsonDocument::fromJson(p.readAllStandardOutput()).array())
        rows.insert(QFileInfo(v["SourceFile"].toString()).fileName(), v.toObject());
    return rows;
}

} // namespace

class GeotagPanelTest : public QObject {
    Q_OBJECT
private slots:
    void init() {
        m_home = std::make_unique<QTemporaryDir>();
        qputenv("HOME", QFile::encodeName(m_home->path()));
    }
    void trackPlacesMovesAndWritesThePhotos();

private:
    std::unique_ptr<QTemporaryDir> m_home;
};

void GeotagPanelTest::trackPlacesMovesAndWritesThePhotos() {
    if (QStandardPaths::findExecutable(QStringLiteral("exiftool")).isEmpty())
        QSKIP("exiftool is not installed");
    TestApp t(true, ValueForm::standard);
    const QString folder = m_home->filePath(QStringLiteral("Trip"));
    // Camera on UTC: a at 10:01, b at 10:03, c after the track ends.
    const QStringList times{"2024:05:01 10:01:00", "2024:05:01 10:03:00", "2024:05:01 12:00:00"};
    const QStringList names{"a.jpg", "b.jpg", "c.jpg"};
    for (int i = 0; i < 3; ++i)
        QVERIFY(modifyWithExiv2(copySample(folder, QStringLiteral("Reagan.jpg"), names[i]),
                                {"set Exif.Photo.DateTimeOriginal " + times[i],
                                 "del Exif.GPSInfo.GPSLatitude", "del Exif.GPSInfo.GPSLongitude"}));
    const QString track = writeTrack(m_home->filePath(QStringLiteral("trip.gpx")));
    HomeScreen* home = dropPhotos(t, {folder}, 3);
    home->window()->show();
    QVERIFY(QTest::qWaitForWindowExposed(home->window()));

    named<QAction>(&t.window(), QStringLiteral("menuItemGeotagFromTrack"))->trigger();
    GeotagPanel* panel = named<GeotagPanel>(&t.window(), QStringLiteral("GeotagPanel"));
    QVERIFY(panel && panel->isVisible());
    retype(named<QLineEdit>(panel, QStringLiteral("txtFieldCameraZone")), QStringLiteral("UTC"));
    t.prompt.panelAnswers = {{track}};
    QTest::mouseClick(named<QPushButton>(panel, QStringLiteral("btnLoadTracks")), Qt::LeftButton);
    QCOMPARE(named<QLabel>(panel, QStringLiteral("lblPlacedCount"))->text(),
             QStringLiteral("2 of 3 photos placed"));
    auto* leftOut = named<QListWidget>(panel, QStringLiteral("listLeftOut"));
    QCOMPARE(leftOut->count(), 1);
    QVERIFY(leftOut->item(0)->text().startsWith(QStringLiteral("c.jpg: taken at ")));

    // The camera was a minute slow: every photo moves a minute on along the track.
    const TrackPlacement& placing = panel->placement();
    const auto indexOf = [&](const QString& name) {
        for (int i = 0; i < placing.count(); ++i)
            if (placing.photo(i).path.endsWith(QLatin1Char('/') + name))
                return i;
        return -1;
    };
    const int a = indexOf(QStringLiteral("a.jpg"));
    const int b = indexOf(QStringLiteral("b.jpg"));
    QVERIFY(a >= 0 && b >= 0);
    QCOMPARE(placing.positionOf(a)->latitude, 38.701);
    retype(named<QLineEdit>(panel, QStringLiteral("txtFieldClockOffset")),
           QStringLiteral("+0:01:00"));
    QVERIFY(std::fabs(placing.positionOf(a)->latitude - 38.702) < 1e-9);
    QVERIFY(std::fabs(placing.positionOf(b)->latitude - 38.704) < 1e-9);

    // b's dot dragged 40 pixels to the east.
    MapView* map = panel->map();
    const QPoint from = map->pointOf(38.704, -9.1).toPoint();
    const QPoint to = from + QPoint(40, 0);
    QTest::mousePress(map, Qt::LeftButton, {}, from);
    QTest::mouseMove(map, from + QPoint(20, 0));
    QTest::mouseMove(map, to);
    QTest::mouseRelease(map, Qt::LeftButton, {}, to);
    QVERIFY(placing.photo(b).moved);
    const PlacedPosition dragged = *placing.positionOf(b);
    QVERIFY(dragged.longitude > -9.1);
    QVERIFY(std::fabs(dragged.longitude - map->positionAt(to).x()) < 1e-9);
    QVERIFY(std::fabs(placing.positionOf(a)->longitude + 9.1) < 1e-9);

    // TAGMOOR_SHOT=FILE keeps a picture of the sheet as it stands (for the documentation).
    if (const QString shot = qEnvironmentVariable("TAGMOOR_SHOT"); !shot.isEmpty())
        panel->grab().save(shot);
    const PlacedPositions placed = placing.placed();
    QTest::mouseClick(named<QPushButton>(panel, QStringLiteral("btnApplyGeotag")), Qt::LeftButton);
    QTRY_VERIFY(!named<GeotagPanel>(&t.window(), QStringLiteral("GeotagPanel")));
    QCOMPARE(t.app->editorState().placedPositions, placed);

    // The run's dates in Kathmandu time, set beside the date rules.
    FieldControl* control =
        named<MetadataViewController>(home, QStringLiteral("MetadataViewController"))
            ->control(Field::DateTimeOriginal);
    QTest::mouseClick(control->dateButton(), Qt::LeftButton);
    DateConfigurationPanel* dates =
        named<MetadataViewController>(home, QStringLiteral("MetadataViewController"))->datePanel();
    QVERIFY(dates);
    retype(dates->zoneField(), QStringLiteral("Asia/Kathmandu"));
    dates->close();

    // Review Changes... lists the places and the offsets among the changes.
    QList<CGImageProperties> records = t.set().workingImages();
    for (CGImageProperties& record : records)
        record.isSelected = true;
    const PhotoPipeline review(t.app->homeSession().reviewValues());
    for (const PhotoChanges& photo : planChanges(review, ListPhotoSource(records), 1)) {
        QStringList keys;
        for (const TagChange& change : photo.changes)
            keys << change.key;
        const bool placedPhoto = !photo.sourcePath.endsWith(QStringLiteral("c.jpg"));
        QCOMPARE(keys.contains(QStringLiteral("Exif.GPSInfo.GPSLatitude")), placedPhoto);
        QVERIFY2(keys.contains(QStringLiteral("Exif.Photo.OffsetTimeOriginal")),
                 qPrintable(keys.join(' ')));
    }

    const QString out = m_home->filePath(QStringLiteral("TripOut"));
    runInto(t, home, out);
    const auto rows = readWritten(out);
    QCOMPARE(rows.size(), 3);
    QVERIFY(std::fabs(rows["a.jpg"]["GPSLatitude"].toDouble() - 38.702) < 1e-6);
    QVERIFY(std::fabs(rows["a.jpg"]["GPSLongitude"].toDouble() + 9.1) < 1e-6);
    QCOMPARE(rows["a.jpg"]["GPSTimeStamp"].toString(), QStringLiteral("10:02:00"));
    QVERIFY(std::fabs(rows["b.jpg"]["GPSLongitude"].toDouble() - dragged.longitude) < 1e-6);
    QVERIFY(!rows["c.jpg"].contains(QStringLiteral("GPSLatitude")));
    for (const QString& name : names) {
        QCOMPARE(rows[name]["OffsetTimeOriginal"].toString(), QStringLiteral("+05:45"));
        QCOMPARE(rows[name]["DateTimeOriginal"].toString(), times[int(names.indexOf(name))]);
    }
}

TAGMOOR_APP_TEST_MAIN(GeotagPanelTest)
#include "GeotagPanelTest.moc"
