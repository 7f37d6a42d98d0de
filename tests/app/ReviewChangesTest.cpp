// The new controls of a run in the window: the plan before writing, the carrying of date
// shifts, names from the capture date and the standard form of tags.
#include "AppTestSupport.h"
#include "app/batch/RenameViewController.h"
#include "app/batch/ReviewChangesWindow.h"
#include "app/editor/DateConfigurationPanel.h"
#include "app/editor/FieldControl.h"
#include "app/editor/MetadataViewController.h"
#include "app/shell/PreferencesWindow.h"
#include "app/workingset/HomeScreen.h"
#include "editor/EditorState.h"
#include "editor/MetadataForm.h"
#include "model/FormFieldTable.h"
#include "workingset/ScanController.h"

#include <QCheckBox>
#include <QCryptographicHash>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QTableWidget>
#include <QToolButton>

using namespace tagmoor;
using namespace tagmoor::test;

namespace {

QByteArray folderHash(const QString& dir) {
    QCryptographicHash hash(QCryptographicHash::Sha256);
    for (const QFileInfo& fi : QDir(dir).entryInfoList(QDir::Files, QDir::Name)) {
        QFile f(fi.absoluteFilePath());
        if (f.open(QIODevice::ReadOnly))
            hash.addData(fi.fileName().toUtf8() + f.readAll());
    }
    return hash.result();
}

} // namespace

class ReviewChangesTest : public QObject {
    Q_OBJECT
private slots:
    void reviewListsTheChangesAndTouchesNothing();
    void carryCaptureNamesAndStandardFormAreOneSettingAway();

private:
    HomeScreen* load(TestApp& t, const QStringList& names) {
        const QString folder = t.dir(QStringLiteral("photos"));
        for (const QString& name : names) {
            const QString target = folder + QLatin1Char('/') + name;
            QFile::copy(formatsDir() + QLatin1Char('/') + name, target);
            QFile(target).setPermissions(QFile::ReadOwner | QFile::WriteOwner);
        }
        t.app->scans().addFromDrop({folder});
        [&] { QTRY_VERIFY_WITH_TIMEOUT(t.scanIdle() && t.set().count() == names.size(), 20000); }();
        QCoreApplication::processEvents();
        HomeScreen* home = named<HomeScreen>(&t.window(), QStringLiteral("Home"));
        home->window()->show();
        return home;
    }
};

void ReviewChangesTest::reviewListsTheChangesAndTouchesNothing() {
    TestApp t;
    HomeScreen* home = load(t, {QStringLiteral("Reagan.jpg"), QStringLiteral("et-GPS.jpg")});
    auto* artist = qobject_cast<QLineEdit*>(
        named<MetadataViewController>(home, QStringLiteral("MetadataViewController"))
            ->control(Field::Artist)
            ->input());
    QTest::keyClicks(artist, QStringLiteral("Jane Doe"));
    const QByteArray before = folderHash(t.dir(QStringLiteral("photos")));

    auto* review = home->findChild<QPushButton*>(QStringLiteral("btnReviewChanges"));
    QVERIFY(review && review->isEnabled());
    QCOMPARE(review->text(), QStringLiteral("Review changes..."));
    QTest::mouseClick(review, Qt::LeftButton);
    auto* window = home->findChild<ReviewChangesWindow*>();
    QVERIFY(window && window->isVisible());
    QTRY_VERIFY_WITH_TIMEOUT(window->isReady(), 30000);

    QTableWidget* table = window->table();
    const auto column = [table](int column) {
        QStringList texts;
        for (int row = 0; row < table->rowCount(); ++row)
            texts << table->item(row, column)->text();
        return texts;
    };
    QStringList artistRows;
    for (int row = 0; row < table->rowCount(); ++row) {
        if (table->item(row, 1)->text() == QStringLiteral("Exif.Image.Artist"))
            artistRows << table->item(row, 3)->text();
    }
    QCOMPARE(artistRows, QStringList(2, QStringLiteral("Jane Doe (Ascii)")));
    // At first only what was asked for; the tags the writing brings are counted in one row
    // per photo and shown on request.
    QStringList shownKeys = column(1);
    shownKeys.removeDuplicates();
    QCOMPARE(shownKeys,
             (QStringList{QStringLiteral("Exif.Image.Artist"), QStringLiteral("Other tags")}));
    const int askedRows = table->rowCount();
    named<QCheckBox>(window, QStringLiteral("chkShowAllTags"))->click();
    QVERIFY(table->rowCount() > askedRows);
    QVERIFY(!column(1).contains(QStringLiteral("Other tags")));
    QCOMPARE(column(1).count(QStringLiteral("Exif.Image.Artist")), 2);
    QVERIFY(window->summary()->text().startsWith(QStringLiteral("Would be written: 2 of 2")));
    QCOMPARE(folderHash(t.dir(QStringLiteral("photos"))), before);

    // On to Start Process, whose first question is answered No.
    t.prompt.answerNext(QStringLiteral("NO"));
    QTest::mouseClick(window->findChild<QPushButton*>(QStringLiteral("btnStartFromReview")),
                      Qt::LeftButton);
    QTRY_VERIFY(!t.prompt.alerts.isEmpty());
    QCOMPARE(t.prompt.alerts.first().title,
             QStringLiteral("Are you sure to edit metadata of all the selected images?"));
}

void ReviewChangesTest::carryCaptureNamesAndStandardFormAreOneSettingAway() {
    TestApp t;
    HomeScreen* home = load(t, {QStringLiteral("Reagan.jpg")});

    FieldControl* date =
        named<MetadataViewController>(home, QStringLiteral("MetadataViewController"))
            ->control(Field::ModifyDate);
    QTest::mouseClick(date->dateButton(), Qt::LeftButton);
    DateConfigurationPanel* panel =
        named<MetadataViewController>(home, QStringLiteral("MetadataViewController"))->datePanel();
    QVERIFY(panel && panel->carryBox());
    QCOMPARE(panel->carryBox()->text(), QStringLiteral("Carry into days, months and years"));
    QVERIFY(!panel->carryBox()->isChecked());
    panel->carryBox()->click();
    QVERIFY(t.app->editorState().carryShifts);
    panel->close();

    QTest::mouseClick(named<QPushButton>(home, QStringLiteral("btnRename")), Qt::LeftButton);
    RenameViewController* rename =
        named<RenameViewController>(home, QStringLiteral("RenameViewController"));
    QRadioButton* capture = named<QRadioButton>(rename, QStringLiteral("btnCaptureDateName"));
    auto* pattern = named<QLineEdit>(rename, QStringLiteral("txtFieldCapturePattern"));
    auto* save = named<QPushButton>(rename, QStringLiteral("btnNext"));
    QCOMPARE(capture->text(), QStringLiteral("Name From the Capture Date:"));
    QVERIFY(!pattern->isEnabled());
    capture->click();
    QVERIFY(pattern->isEnabled());
    QTest::keyClicks(pattern, QStringLiteral("'fixed'"));
    QTest::mouseClick(save, Qt::LeftButton); // a pattern without a date field is refused
    QVERIFY(rename->isVisible());
    QCOMPARE(t.prompt.alerts.last().title, QStringLiteral("The date pattern can not make names"));
    pattern->clear();
    QTest::keyClicks(pattern, QStringLiteral("yyyy-MM-dd_HHmmss"));
    QVERIFY(named<QLabel>(rename, QStringLiteral("lblExampleCaptureDate"))
                ->text()
                .startsWith(QStringLiteral("Example: 20")));
    const int asked = int(t.prompt.alerts.size());
    QTest::mouseClick(save, Qt::LeftButton); // counted names need no overwrite question
    QVERIFY(!rename->isVisible());
    QCOMPARE(int(t.prompt.alerts.size()), asked);
    QVERIFY(t.app->renameSettings().is<CaptureDateName>());
    QCOMPARE(t.app->renameSettings().as<CaptureDateName>()->captureDatePatternCD,
             QStringLiteral("yyyy-MM-dd_HHmmss"));

    t.app->showPreferences();
    PreferencesWindow* preferences = t.app->preferencesWindow();
    QCheckBox* standard =
        named<QCheckBox>(preferences, QStringLiteral("btnWriteTagsInStandardForm"));
    QCOMPARE(standard->text(), QStringLiteral("Write tags in their standard form"));
    QVERIFY(!standard->isChecked());
    standard->click();
    QCOMPARE(t.app->settings().valueForm(), std::optional<ValueForm>(ValueForm::standard));
    QCOMPARE(valueForm(), ValueForm::standard);
    standard->click();
    QCOMPARE(valueForm(), ValueForm::described);
}

TAGMOOR_APP_TEST_MAIN(ReviewChangesTest)
#include "ReviewChangesTest.moc"
