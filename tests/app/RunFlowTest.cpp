// The whole road in the window: photos in, an Artist typed, a date shift and a rename rule,
// Start Process with its questions answered, the run, the result, Finish.
#include "AppTestSupport.h"
#include "app/batch/FinalProcessedVC.h"
#include "app/batch/ProcessingControls.h"
#include "app/batch/RenameViewController.h"
#include "app/editor/FieldControl.h"
#include "app/editor/MetadataViewController.h"
#include "app/shell/RootView.h"
#include "app/widgets/FilePanel.h"
#include "app/workingset/HomeScreen.h"
#include "batch/BatchController.h"
#include "dates/DateField.h"
#include "editor/EditorState.h"
#include "editor/MetadataForm.h"
#include "presets/PresetStore.h"
#include "processing/HomeSession.h"
#include "processing/StartProcessChain.h"
#include "workingset/ScanController.h"

#include <QCheckBox>
#include <QComboBox>
#include <QElapsedTimer>
#include <QLabel>
#include <QLineEdit>
#include <QProcess>
#include <QPushButton>
#include <QRadioButton>

using namespace tagmoor;
using namespace tagmoor::test;

namespace {

const char* const kPhotos[] = {"Reagan.jpg",   "FurnaceCreekInn.jpg", "et-GPS.jpg",
                               "exiv2-gc.jpg", "exiv2-bug444.jpg",    "et-IPTC.jpg"};

QString exiftool(const QString& tag, const QString& path) {
    QProcess p;
    p.start(QStringLiteral("exiftool"), {QStringLiteral("-s3"), QStringLiteral("-") + tag, path});
    p.waitForFinished(30000);
    return QString::fromUtf8(p.readAllStandardOutput()).trimmed();
}

} // namespace

class RunFlowTest : public QObject {
    Q_OBJECT
private slots:
    void init() {
        // The output folder has to be within the user's home folder.
        m_home = std::make_unique<QTemporaryDir>();
        qputenv("HOME", QFile::encodeName(m_home->path()));
    }
    void wholeRoadFromStartProcessToFinish();
    void removeRowWithoutABoxAndNoAtTheConfirmation();
    void stopAnsweredNoGoesOnAndYesEndsTheRun();
    void closingTheWindowDuringARunAsksFirst();

private:
    std::unique_ptr<QTemporaryDir> m_home;

    HomeScreen* loadPhotos(TestApp& t, QStringList* originals = nullptr) {
        const QString folder = m_home->filePath(QStringLiteral("Pictures"));
        QDir().mkpath(folder);
        for (const char* name : kPhotos) {
            const QString target = folder + QLatin1Char('/') + QString::fromLatin1(name);
            QFile::copy(formatsDir() + QLatin1Char('/') + QString::fromLatin1(name), target);
            QFile(target).setPermissions(QFile::ReadOwner | QFile::WriteOwner);
            if (originals)
                *originals << target;
        }
        t.app->scans().addFromDrop({folder});
        [&] { QTRY_VERIFY_WITH_TIMEOUT(t.scanIdle() && t.set().count() == 6, 20000); }();
        QCoreApplication::processEvents();
        return named<HomeScreen>(&t.window(), QStringLiteral("Home"));
    }
};

void RunFlowTest::wholeRoadFromStartProcessToFinish() {
    TestApp t;
    t.app->settings().setIsPresetSavingSettingInHome(true);
    QStringList originals;
    HomeScreen* home = loadPhotos(t, &originals);
    QCOMPARE(t.window().rootView()->selectedIndex(), 1);

    // The Artist typed into the form, the original date moved by one hour, names numbered.
    auto* artist = qobject_cast<QLineEdit*>(
        named<MetadataViewController>(home, QStringLiteral("MetadataViewController"))
            ->control(Field::Artist)
            ->input());
    QTest::keyClicks(artist, QStringLiteral("Jane Doe"));
    IDOT shift;
    shift.changeHours = 1;
    t.app->homeSession().form().commitDateRule(DateField::dateTimeOriginal, shift, std::nullopt);
    // The rename sheet: add "Trip-" before each name, and no overwriting.
    QTest::mouseClick(named<QPushButton>(home, QStringLiteral("btnRename")), Qt::LeftButton);
    RenameViewController* renamePanel =
        named<RenameViewController>(home, QStringLiteral("RenameViewController"));
    QVERIFY(renamePanel && renamePanel->isVisible());
    named<QRadioButton>(renamePanel, QStringLiteral("btnAddText"))->click();
    QTest::keyClicks(named<QLineEdit>(renamePanel, QStringLiteral("txtFieldAddText")),
                     QStringLiteral("Trip-"));
    QCOMPARE(named<QLabel>(renamePanel, QStringLiteral("lblExampleAddText"))->text().left(14),
             QStringLiteral("Example: Trip-"));
    t.prompt.answerNext(QStringLiteral("Do not Overwrite"),
                        {QStringLiteral("Overwrite"), QStringLiteral("Do not Overwrite")});
    QTest::mouseClick(named<QPushButton>(renamePanel, QStringLiteral("btnNext")), Qt::LeftButton);
    QVERIFY(!renamePanel->isVisible());
    QVERIFY(t.app->renameSettings().is<AddText>());
    t.prompt.alerts.clear();

    const QString out = m_home->filePath(QStringLiteral("Out"));
    QDir().mkpath(out);
    t.prompt.answerNext(QStringLiteral("YES"));
    t.prompt.textAnswers = {{0, QStringLiteral("Holiday"), false}};
    t.prompt.panelAnswers = {{out}};
    // The finished bar stays a second before the result takes its place.
    QElapsedTimer sinceTheEnd;
    connect(&t.app->homeSession().batch(), &BatchController::finished, home,
            [&sinceTheEnd] { sinceTheEnd.start(); });
    QTest::mouseClick(named<QPushButton>(home, QStringLiteral("btnStartProcess")), Qt::LeftButton);
    QTRY_VERIFY_WITH_TIMEOUT(
        named<FinalProcessedVC>(home, QStringLiteral("FinalProcessedVC")) &&
            named<FinalProcessedVC>(home, QStringLiteral("FinalProcessedVC"))->isShowingResult(),
        60000);
    QVERIFY(sinceTheEnd.isValid());
    QVERIFY2(sinceTheEnd.elapsed() >= 950, qPrintable(QString::number(sinceTheEnd.elapsed())));
    QCOMPARE(t.prompt.alerts.at(0).title,
             QStringLiteral("Are you sure to edit metadata of all the selected images?"));
    QCOMPARE(t.prompt.textQuestions.size(), 1);
    // The preset sheet saved the form under the new name, the Artist and the shift with it.
    const ActualPreset& saved = t.app->presets().presets().last();
    QCOMPARE(saved.name.value_or(QString()), QStringLiteral("Holiday"));
    QCOMPARE(saved.properties->tiffProperties->artist.text(), QStringLiteral("Jane Doe"));
    QVERIFY(saved.timeSetting->configurationTimeOriginal.is<IDOT>());
    QCOMPARE(t.prompt.panels.at(0).prompt, QStringLiteral("Choose Destination Folder"));
    FilePanel destinationPanel(nullptr, t.prompt.panels.at(0));
    const auto* message = named<QLabel>(&destinationPanel, QStringLiteral("panelMessage"));
    QVERIFY(message);
    QCOMPARE(message->text(), QStringLiteral("Please select an output folder"));

    FinalProcessedVC* sheet = named<FinalProcessedVC>(home, QStringLiteral("FinalProcessedVC"));
    QCOMPARE(named<QLabel>(sheet, QStringLiteral("lblPhotosSavedSuccessfully"))->text(),
             QStringLiteral("6 Photos saved successfully!"));
    QCOMPARE(named<QLabel>(sheet, QStringLiteral("lblBatchProcessCompleted"))->text(),
             QStringLiteral("Batch Process Completed!"));
    QVERIFY(!named<QLabel>(sheet, QStringLiteral("lblProblems"))->isVisible());

    for (const QString& source : originals) {
        const QString name = QFileInfo(source).fileName();
        const QString output = out + QStringLiteral("/Trip-") + name;
        QVERIFY2(QFileInfo::exists(output), qPrintable(output));
        QCOMPARE(exiftool(QStringLiteral("Artist"), output), QStringLiteral("Jane Doe"));
        const QString before = exiftool(QStringLiteral("DateTimeOriginal"), source);
        const QString after = exiftool(QStringLiteral("DateTimeOriginal"), output);
        if (!before.isEmpty())
            QVERIFY2(before != after, qPrintable(name + ": " + before + " -> " + after));
    }

    QTest::mouseClick(named<QPushButton>(sheet, QStringLiteral("btnFinish")), Qt::LeftButton);
    QTRY_COMPARE(t.window().rootView()->selectedIndex(), 0);
    QCOMPARE(t.set().count(), 0);
    QVERIFY(!t.app->editorState().fieldEditedFlags.hasEdits());
}

void RunFlowTest::removeRowWithoutABoxAndNoAtTheConfirmation() {
    TestApp t;
    HomeScreen* home = loadPhotos(t);
    ProcessingControls& controls = *named<ProcessingControls>(home);
    controls.clickedChooseEditingOptions(2);
    QVERIFY(controls.cleanBox()->isVisibleTo(home));
    QVERIFY(!named<MetadataViewController>(home, QStringLiteral("MetadataViewController"))
                 ->isVisibleTo(home));
    QVERIFY(named<QPushButton>(home, QStringLiteral("btnStartProcess"))->isEnabled());
    QTest::mouseClick(named<QPushButton>(home, QStringLiteral("btnStartProcess")), Qt::LeftButton);
    QCOMPARE(t.prompt.alerts.size(), 1);
    QCOMPARE(t.prompt.alerts[0].title, QStringLiteral("No options selected for removing metadata"));

    // Ticking a box turns Start Process on; the run then asks before it removes anything.
    controls.checkBox(ProcessingOptions::Box::Iptc)->click();
    QVERIFY(named<QPushButton>(home, QStringLiteral("btnStartProcess"))->isEnabled());
    t.prompt.answerNext(QStringLiteral("NO"));
    QTest::mouseClick(named<QPushButton>(home, QStringLiteral("btnStartProcess")), Qt::LeftButton);
    QCOMPARE(t.prompt.alerts.last(), StartProcessChain::removeConfirmation());
    QVERIFY(!named<FinalProcessedVC>(home, QStringLiteral("FinalProcessedVC")));
    QCOMPARE(t.set().count(), 6);
}

void RunFlowTest::stopAnsweredNoGoesOnAndYesEndsTheRun() {
    for (const bool yes : {false, true}) {
        TestApp t;
        // Enough photos that the run is still going when Stop is pressed.
        const QString folder = m_home->filePath(yes ? "ManyYes" : "ManyNo");
        QDir().mkpath(folder);
        for (int i = 0; i < 120; ++i) {
            const QString target =
                folder + QStringLiteral("/photo%1.jpg").arg(i, 3, 10, QChar('0'));
            QFile::copy(formatsDir() + QStringLiteral("/Reagan.jpg"), target);
            QFile(target).setPermissions(QFile::ReadOwner | QFile::WriteOwner);
        }
        t.app->scans().addFromDrop({folder});
        QTRY_VERIFY_WITH_TIMEOUT(t.scanIdle() && t.set().count() == 120, 30000);
        HomeScreen* home = named<HomeScreen>(&t.window(), QStringLiteral("Home"));
        t.app->homeSession().form().editText(Field::Artist, QStringLiteral("Jane Doe"));
        const QString out = m_home->filePath(yes ? "OutYes" : "OutNo");
        QDir().mkpath(out);
        t.prompt.answers = {0, yes ? 0 : 1}; // YES to start; then the stop question
        t.prompt.panelAnswers = {{out}};
        QTest::mouseClick(named<QPushButton>(home, QStringLiteral("btnStartProcess")),
                          Qt::LeftButton);
        QTRY_VERIFY(named<FinalProcessedVC>(home, QStringLiteral("FinalProcessedVC")) &&
                    named<FinalProcessedVC>(home, QStringLiteral("FinalProcessedVC"))->isVisible());
        QTest::mouseClick(
            named<QPushButton>(named<FinalProcessedVC>(home, QStringLiteral("FinalProcessedVC")),
                               QStringLiteral("btnStop")),
            Qt::LeftButton);
        QTRY_VERIFY_WITH_TIMEOUT(
            named<FinalProcessedVC>(home, QStringLiteral("FinalProcessedVC"))->isShowingResult(),
            60000);
        QCOMPARE(t.prompt.alerts.last().title,
                 QStringLiteral("Do you want to cancel exif details editing?"));
        const QString completed =
            named<QLabel>(named<FinalProcessedVC>(home, QStringLiteral("FinalProcessedVC")),
                          QStringLiteral("lblBatchProcessCompleted"))
                ->text();
        QCOMPARE(completed, yes ? QStringLiteral("Batch Process Partially Completed!")
                                : QStringLiteral("Batch Process Completed!"));
        QCOMPARE(QDir(out).entryList(QDir::Files).size() < 120, yes);
    }
}

// Closing the window while a batch runs asks the stop question first; "NO" keeps the window
// open and lets the run write every photo.
void RunFlowTest::closingTheWindowDuringARunAsksFirst() {
    TestApp t;
    const QString folder = m_home->filePath("ManyClose");
    QDir().mkpath(folder);
    for (int i = 0; i < 120; ++i) {
        const QString target = folder + QStringLiteral("/photo%1.jpg").arg(i, 3, 10, QChar('0'));
        QFile::copy(formatsDir() + QStringLiteral("/Reagan.jpg"), target);
        QFile(target).setPermissions(QFile::ReadOwner | QFile::WriteOwner);
    }
    t.app->scans().addFromDrop({folder});
    QTRY_VERIFY_WITH_TIMEOUT(t.scanIdle() && t.set().count() == 120, 30000);
    t.app->homeSession().form().editText(Field::Artist, QStringLiteral("Jane Doe"));
    const QString out = m_home->filePath("OutClose");
    QDir().mkpath(out);
    t.prompt.answers = {0, 1}; // YES to start; NO to the stop question
    t.prompt.panelAnswers = {{out}};
    HomeScreen* home = named<HomeScreen>(&t.window(), QStringLiteral("Home"));
    QTest::mouseClick(named<QPushButton>(home, QStringLiteral("btnStartProcess")), Qt::LeftButton);
    BatchController& batch = t.app->homeSession().batch();
    QTRY_VERIFY(batch.isRunning());
    QVERIFY(!t.window().close());
    QCOMPARE(t.prompt.alerts.last().title,
             QStringLiteral("Do you want to cancel exif details editing?"));
    QVERIFY(t.window().isVisible());
    QTRY_VERIFY_WITH_TIMEOUT(!batch.isRunning(), 60000);
    QCOMPARE(QDir(out).entryList(QDir::Files).size(), 120);
}

TAGMOOR_APP_TEST_MAIN(RunFlowTest)
#include "RunFlowTest.moc"
