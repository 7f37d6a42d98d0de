// From the window into the file: a position picked on the map in each hemisphere, and a time
// shift of many marked photos with different dates.
#include "WindowRunSupport.h"
#include "app/editor/DateConfigurationPanel.h"
#include "app/editor/FieldControl.h"
#include "app/editor/MetadataViewController.h"
#include "app/location/GeoLocationViewController.h"
#include "editor/MetadataForm.h"
#include "geo/SharedLocation.h"
#include "model/FormFieldTable.h"

#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QToolButton>

using namespace tagmoor;
using namespace tagmoor::test;

namespace {

struct Place {
    const char* name;
    double latitude;
    double longitude;
};

// One place in each quarter of the globe.
const Place kPlaces[] = {
    {"Tokyo", 35.6586, 139.7454},
    {"Lisbon", 38.717, -9.133},
    {"Cape Town", -33.9628, 18.4098},
    {"Buenos Aires", -34.6037, -58.3816},
};

} // namespace

class WrittenFromWindowTest : public QObject {
    Q_OBJECT
private slots:
    void init() {
        // The output folder has to be within the user's home folder.
        m_home = std::make_unique<QTemporaryDir>();
        qputenv("HOME", QFile::encodeName(m_home->path()));
    }
    void pickedPositionReachesTheFormAndTheFileInEachHemisphere();
    void timeShiftMovesEachMarkedPhotosOwnDate();

private:
    std::unique_ptr<QTemporaryDir> m_home;
};

void WrittenFromWindowTest::pickedPositionReachesTheFormAndTheFileInEachHemisphere() {
    for (const ValueForm form : {ValueForm::standard, ValueForm::described}) {
        // The described form writes whole seconds.
        const double tolerance = form == ValueForm::standard ? 1e-6 : 3e-4;
        TestApp t(true, form);
        for (const Place& place : kPlaces) {
            const QString what = QStringLiteral("%1, %2 form")
                                     .arg(QString::fromLatin1(place.name), valueFormName(form));
            const QString folder = m_home->filePath(what);
            // A photo that already has a position (north-west), so that every reference is
            // either kept or changed.
            HomeScreen* home = dropPhotos(
                t, {copySample(folder, QStringLiteral("et-GPS.jpg"), QStringLiteral("a.jpg"))}, 1);
            home->clickShowEditorGPS();
            GeoLocationViewController* picker =
                named<GeoLocationViewController>(home, QStringLiteral("GeoLocation"));
            retype(named<QLineEdit>(picker, QStringLiteral("txtFieldLatitude")),
                   QString::number(place.latitude, 'g', 10));
            retype(named<QLineEdit>(picker, QStringLiteral("txtFieldLongitude")),
                   QString::number(place.longitude, 'g', 10));
            named<QPushButton>(picker, QStringLiteral("btnCancel"))->click();

            const MetadataForm& editor = t.app->homeSession().form();
            QCOMPARE(editor.text(kLatitude).toFloat(), std::fabs(float(place.latitude)));
            QCOMPARE(editor.text(kLongitude).toFloat(), std::fabs(float(place.longitude)));
            QCOMPARE(editor.popupRow(kLatitudeRef), place.latitude < 0 ? 2 : 1);
            QCOMPARE(editor.popupRow(kLongitudeRef), place.longitude < 0 ? 2 : 1);
            // Opened again, the picker stands where it was left.
            home->clickShowEditorGPS();
            QVERIFY2(std::fabs(picker->latitude() - place.latitude) < 1e-4, qPrintable(what));
            QVERIFY2(std::fabs(picker->longitude() - place.longitude) < 1e-4, qPrintable(what));
            named<QPushButton>(picker, QStringLiteral("btnCancel"))->click();

            const QString out = folder + QStringLiteral("/out");
            runInto(t, home, out);
            const auto latitude = fileCoordinate(out + QStringLiteral("/a.jpg"), true);
            const auto longitude = fileCoordinate(out + QStringLiteral("/a.jpg"), false);
            QVERIFY2(latitude && longitude, qPrintable(what));
            QVERIFY2(std::fabs(*latitude - place.latitude) < tolerance,
                     qPrintable(what + QStringLiteral(": latitude %1").arg(*latitude)));
            QVERIFY2(std::fabs(*longitude - place.longitude) < tolerance,
                     qPrintable(what + QStringLiteral(": longitude %1").arg(*longitude)));
            finish(home);
            QTRY_COMPARE(t.set().count(), 0);
        }
    }
}

void WrittenFromWindowTest::timeShiftMovesEachMarkedPhotosOwnDate() {
    TestApp t(true, ValueForm::standard);
    // Eight dates, among them the last half hour of a day and of a year.
    const QStringList dates = {"2004:06:21 23:30:00", "2020:12:31 23:37:53", "2019:02:28 23:00:00",
                               "2024:02:28 23:59:59", "2010:01:01 00:00:00", "2015:07:14 12:34:56",
                               "1999:12:31 10:00:00", "2008:05:08 09:54:28"};
    const QStringList shifted = {
        "2004:06:22 00:30:00", "2021:01:01 00:37:53", "2019:03:01 00:00:00", "2024:02:29 00:59:59",
        "2010:01:01 01:00:00", "2015:07:14 13:34:56", "1999:12:31 11:00:00", "2008:05:08 10:54:28"};
    const QString folder = m_home->filePath(QStringLiteral("Shift"));
    QStringList photos;
    for (qsizetype i = 0; i < dates.size(); ++i) {
        photos << copySample(folder, QStringLiteral("Reagan.jpg"),
                             QStringLiteral("photo%1.jpg").arg(i));
        QVERIFY(modifyWithExiv2(photos.last(), {"set Exif.Photo.DateTimeOriginal " + dates[i]}));
    }
    HomeScreen* home = dropPhotos(t, {folder}, int(photos.size()));
    home->window()->show();
    QVERIFY(QTest::qWaitForWindowExposed(home->window()));

    // The panel of the original date, opened on the eight marked photos: one hour later.
    FieldControl* control =
        named<MetadataViewController>(home, QStringLiteral("MetadataViewController"))
            ->control(Field::DateTimeOriginal);
    QTest::mouseClick(control->dateButton(), Qt::LeftButton);
    DateConfigurationPanel* panel =
        named<MetadataViewController>(home, QStringLiteral("MetadataViewController"))->datePanel();
    QVERIFY(panel && panel->isVisible());
    QTest::mouseClick(panel->modeButton(DateMode::incrementTime), Qt::LeftButton);
    QLineEdit* hours = panel->numberField(DatePart::incrementHour);
    hours->selectAll();
    QTest::keyClicks(hours, QStringLiteral("1"));
    QTest::keyClick(hours, Qt::Key_Return);
    panel->close();
    QTRY_VERIFY(!named<MetadataViewController>(home, QStringLiteral("MetadataViewController"))
                     ->datePanel());

    const QString out = m_home->filePath(QStringLiteral("ShiftOut"));
    runInto(t, home, out);
    for (qsizetype i = 0; i < photos.size(); ++i) {
        const QString written = out + QLatin1Char('/') + QFileInfo(photos[i]).fileName();
        QCOMPARE(exiv2Value(written, "Exif.Photo.DateTimeOriginal"), shifted[i]);
    }
}

TAGMOOR_APP_TEST_MAIN(WrittenFromWindowTest)
#include "WrittenFromWindowTest.moc"
