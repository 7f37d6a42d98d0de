// The date panel on the real home screen: opened from a date button, a time shift set,
// the live summary in the form's field, and the rule stored when the panel closes.
#include "AppTestSupport.h"
#include "app/editor/DateConfigurationPanel.h"
#include "app/editor/FieldControl.h"
#include "app/editor/MetadataViewController.h"
#include "app/workingset/HomeScreen.h"
#include "dates/DateRuleStore.h"
#include "editor/EditorState.h"
#include "editor/MetadataForm.h"
#include "model/FormFieldTable.h"
#include "workingset/ScanController.h"

#include <QCheckBox>
#include <QLineEdit>
#include <QProcess>
#include <QRadioButton>
#include <QToolButton>

using namespace tagmoor;
using namespace tagmoor::test;

namespace {

// A copy of a sample; `deleteKey` is removed from it when given.
QString samplePhoto(const QString& dir, const QString& deleteKey = {}) {
    QDir().mkpath(dir);
    const QString path = dir + QStringLiteral("/photo.jpg");
    QFile::copy(formatsDir() + QStringLiteral("/Reagan.jpg"), path);
    QFile(path).setPermissions(QFile::ReadOwner | QFile::WriteOwner);
    if (!deleteKey.isEmpty() &&
        QProcess::execute(QStringLiteral("exiv2"),
                          {QStringLiteral("-M"), QStringLiteral("del ") + deleteKey, path}) != 0)
        qWarning() << "exiv2 could not prepare" << path;
    return path;
}

} // namespace

class DatePanelTest : public QObject {
    Q_OBJECT
private slots:
    void timeShiftShowsLiveAndIsStoredOnClose();
    void photoWithoutTheDateOffersOnlyThreeModes();

private:
    HomeScreen* load(TestApp& t, const QString& path) {
        t.app->scans().addFromDrop({path});
        [&] { QTRY_VERIFY_WITH_TIMEOUT(t.scanIdle() && t.set().count() == 1, 20000); }();
        QCoreApplication::processEvents();
        HomeScreen* home = named<HomeScreen>(&t.window(), QStringLiteral("Home"));
        home->window()->show();
        [&] { QVERIFY(QTest::qWaitForWindowExposed(home->window())); }();
        return home;
    }
    DateConfigurationPanel* open(HomeScreen* home, Field position) {
        FieldControl* control =
            named<MetadataViewController>(home, QStringLiteral("MetadataViewController"))
                ->control(position);
        QTest::mouseClick(control->dateButton(), Qt::LeftButton);
        return named<MetadataViewController>(home, QStringLiteral("MetadataViewController"))
            ->datePanel();
    }
};

void DatePanelTest::timeShiftShowsLiveAndIsStoredOnClose() {
    TestApp t;
    HomeScreen* home = load(t, samplePhoto(t.dir("p")));
    const Field position = Field::ModifyDate;
    auto* field = qobject_cast<QLineEdit*>(
        named<MetadataViewController>(home, QStringLiteral("MetadataViewController"))
            ->control(position)
            ->input());
    const QString before = field->text();

    DateConfigurationPanel* panel = open(home, position);
    QVERIFY(panel && panel->isVisible());
    QVERIFY(panel->modeButton(DateMode::keepOriginal)->isChecked());
    QCOMPARE(panel->modeButton(DateMode::incrementTime)->text(),
             QStringLiteral("Increment/Decrement Original Time:"));
    QVERIFY(!panel->numberField(DatePart::incrementHour)->isEnabled());

    QTest::mouseClick(panel->modeButton(DateMode::incrementTime), Qt::LeftButton);
    QVERIFY(!panel->modeButton(DateMode::keepOriginal)->isChecked());
    QLineEdit* hours = panel->numberField(DatePart::incrementHour);
    QVERIFY(hours->isEnabled());
    hours->selectAll();
    QTest::keyClicks(hours, QStringLiteral("-x3"));
    QCOMPARE(hours->text(), QStringLiteral("-3"));
    QTest::keyClick(hours, Qt::Key_Return);
    QTest::mouseClick(panel->stepButton(DatePart::incrementMinute, true), Qt::LeftButton);
    QTest::mouseClick(panel->keepBox(DatePart::incrementSecond), Qt::LeftButton);
    QVERIFY(!panel->numberField(DatePart::incrementSecond)->isEnabled());

    // The field follows while the panel is open; nothing is stored yet.
    QCOMPARE(field->text(), QStringLiteral("Inc/Dec:  Hour: -3  Minute: 1 "));
    QVERIFY(!t.app->editorState().fieldEditedFlags.test(Field::ModifyDate));
    QVERIFY(field->text() != before);

    panel->close();
    QTRY_VERIFY(!named<MetadataViewController>(home, QStringLiteral("MetadataViewController"))
                     ->datePanel());
    const DateTimeConfiguration& rule =
        t.app->editorState().dateStores.editorDates.rules().rule(DateField::modifyDate);
    QVERIFY(rule.is<IDOT>());
    QCOMPARE(rule.as<IDOT>()->changeHours, -3);
    QCOMPARE(rule.as<IDOT>()->changeMinutes, 1);
    QVERIFY(rule.as<IDOT>()->isKeepOriginalSeconds);
    QVERIFY(t.app->editorState().fieldEditedFlags.test(Field::ModifyDate));
    QVERIFY(field->property("edited").toBool());
    QCOMPARE(field->text(), QStringLiteral("Inc/Dec:  Hour: -3  Minute: 1 "));

    // Opened again, the panel shows the stored rule.
    panel = open(home, position);
    QVERIFY(panel->modeButton(DateMode::incrementTime)->isChecked());
    QCOMPARE(panel->numberField(DatePart::incrementHour)->text(), QStringLiteral("-3"));
    QVERIFY(panel->keepBox(DatePart::incrementSecond)->isChecked());
    panel->close();
}

void DatePanelTest::photoWithoutTheDateOffersOnlyThreeModes() {
    TestApp t;
    HomeScreen* home = load(t, samplePhoto(t.dir("p"), QStringLiteral("Exif.Image.DateTime")));
    const Field position = Field::ModifyDate;
    DateConfigurationPanel* panel = open(home, position);
    QVERIFY(panel);
    for (DateMode mode : {DateMode::keepOriginal, DateMode::emptyValue, DateMode::selectDate})
        QVERIFY(panel->modeButton(mode)->isEnabled());
    for (DateMode mode : {DateMode::updateDate, DateMode::incrementDate, DateMode::incrementTime})
        QVERIFY(!panel->modeButton(mode)->isEnabled());

    // Closing without a change leaves the field as it was, unmarked.
    panel->close();
    QVERIFY(!t.app->editorState().fieldEditedFlags.test(Field::ModifyDate));
}

TAGMOOR_APP_TEST_MAIN(DatePanelTest)
#include "DatePanelTest.moc"
