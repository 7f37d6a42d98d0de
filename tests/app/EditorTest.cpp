// The editor on the real home screen: what several marked photos show, edits and their
// marks, the numeric checks, the GPS reference question, Reset All, and the list's menu.
#include "AppTestSupport.h"
#include "app/batch/ProcessingControls.h"
#include "app/editor/FieldControl.h"
#include "app/editor/MetadataViewController.h"
#include "app/widgets/DesktopActions.h"
#include "app/workingset/HomeScreen.h"
#include "app/workingset/PhotoListViews.h"
#include "app/workingset/TutorialOverlay.h"
#include "editor/MetadataForm.h"
#include "foundation/AppEvents.h"
#include "photolibrary/PhotoLibraryTypes.h"
#include "workingset/ScanController.h"
#include "workingset/WorkingListModel.h"

#include <QAction>
#include <QCheckBox>
#include <QComboBox>
#include <QFrame>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QProcess>
#include <QPushButton>
#include <QSignalSpy>
#include <QTimer>

using namespace tagmoor;
using namespace tagmoor::test;

namespace {

// Copies of one sample, each given an Artist (an empty text removes the tag and the creator's
// XMP and IPTC copies, which the standard form would show in its place).
QStringList photosWithArtists(const QString& dir, const QStringList& artists) {
    QDir().mkpath(dir);
    QStringList paths;
    for (int i = 0; i < artists.size(); ++i) {
        const QString path = dir + QStringLiteral("/photo%1.jpg").arg(i);
        QFile::copy(formatsDir() + QStringLiteral("/Reagan.jpg"), path);
        QFile(path).setPermissions(QFile::ReadOwner | QFile::WriteOwner);
        const QStringList commands =
            artists[i].isEmpty()
                ? QStringList{"-M", "del Exif.Image.Artist",       "-M", "del Xmp.dc.creator",
                              "-M", "del Iptc.Application2.Byline"}
                : QStringList{"-M", QStringLiteral("set Exif.Image.Artist ") + artists[i]};
        if (QProcess::execute(QStringLiteral("exiv2"), commands + QStringList{path}) != 0)
            qWarning() << "exiv2 could not prepare" << path;
        paths << path;
    }
    return paths;
}

} // namespace

class EditorTest : public QObject {
    Q_OBJECT
private slots:
    void severalPhotosShowAgreementOrPlaceholders();
    void libraryOriginalsRefreshThePlaceholdersByForm();
    void typingMarksTheFieldAndResetAllClearsIt();
    void numericFieldsRefuseLettersAndShowTheirLimit();
    void referenceChangeAsksWithItsExactText();
    void unmarkingTheLastPhotoDisablesTheBatchControls();
    void menuRemovalAsksAndNoKeepsTheList();
    void tutorialShowsOnceAndEndsOnSkip();
    void aFailedOpenIsToldToTheUser();
    void valuesFromASidecarAreMarkedUntilEdited();

private:
    HomeScreen* load(TestApp& t, const QStringList& paths) { return loadPhotos(t, paths); }
    QLineEdit* line(HomeScreen* home, Field position) {
        return qobject_cast<QLineEdit*>(
            named<MetadataViewController>(home, QStringLiteral("MetadataViewController"))
                ->control(position)
                ->input());
    }
};

void EditorTest::severalPhotosShowAgreementOrPlaceholders() {
    TestApp t;
    HomeScreen* home = load(t, photosWithArtists(t.dir("differ"), {"Ann", "Bob", "Cy"}));
    QLineEdit* artist = line(home, kArtist);
    QCOMPARE(artist->objectName(), QStringLiteral("txtFieldArtist"));
    QCOMPARE(artist->text(), QString());
    QCOMPARE(artist->placeholderText(), QStringLiteral("Multiple Values"));
    // The table's second line gives the pixel size and the file's real size.
    const QString subtitle = named<PhotoTableView>(home, QStringLiteral("tableView"))
                                 ->model()
                                 ->index(0, 0)
                                 .data(WorkingListModel::SubtitleRole)
                                 .toString();
    QVERIFY2(subtitle.startsWith(QStringLiteral("200 x 130 - ")) &&
                 !subtitle.endsWith(QStringLiteral(" 0 bytes")),
             qPrintable(subtitle));

    TestApp u;
    home = load(u, photosWithArtists(u.dir("none"), {"", "", ""}));
    QCOMPARE(line(home, kArtist)->placeholderText(), QStringLiteral("Empty value in all images"));

    TestApp v;
    home = load(v, photosWithArtists(v.dir("same"), {"Dee", "Dee", "Dee"}));
    QCOMPARE(line(home, kArtist)->text(), QStringLiteral("Dee"));
}

// Originals merged from a library bring the editor up to date once more at the end of the
// scan: the described form then says "Multiple Values" on every empty field, the standard form
// keeps saying that a field is empty in every photo.
void EditorTest::libraryOriginalsRefreshThePlaceholdersByForm() {
    for (const ValueForm form : {ValueForm::described, ValueForm::standard}) {
        TestApp t(true, form);
        LibraryRead read;
        for (const QString& path : photosWithArtists(t.dir("library"), {"", ""}))
            read.items << LibraryItem{path, std::nullopt};
        QSignalSpy refreshed(&t.app->events(), &AppEvents::UpdateMultipleValuesOTM);
        t.app->scans().addLibraryItems(PanelScreen::AddScreen, read);
        QTRY_VERIFY_WITH_TIMEOUT(t.scanIdle() && t.set().count() == 2, 20000);
        QCoreApplication::processEvents();
        QCOMPARE(refreshed.count(), 1);
        auto* artist = named<HomeScreen>(&t.window(), QStringLiteral("Home"))
                           ->findChild<QLineEdit*>(QStringLiteral("txtFieldArtist"));
        QVERIFY(artist);
        QCOMPARE(artist->placeholderText(), form == ValueForm::described
                                                ? QStringLiteral("Multiple Values")
                                                : QStringLiteral("Empty value in all images"));
    }
}

void EditorTest::typingMarksTheFieldAndResetAllClearsIt() {
    TestApp t;
    HomeScreen* home = load(t, photosWithArtists(t.dir("p"), {"Ann", "Bob", "Cy"}));
    QLineEdit* artist = line(home, kArtist);
    QVERIFY(artist->isEnabled());
    QTest::keyClicks(artist, QStringLiteral("Jane Doe"));
    QVERIFY(t.app->editorState().fieldEditedFlags.test(Field::Artist));
    QVERIFY(artist->property("edited").toBool());
    QVERIFY(t.app->homeSession().form().hasEdits());
    QCOMPARE(t.app->homeSession().form().readForm().tiffProperties->artist.text(),
             QStringLiteral("Jane Doe"));

    QTest::mouseClick(named<QPushButton>(home, QStringLiteral("btnResetAll")), Qt::LeftButton);
    QVERIFY(!t.app->homeSession().form().hasEdits());
    QCOMPARE(artist->text(), QString());
    QVERIFY(!artist->property("edited").toBool());
    QCOMPARE(artist->placeholderText(), QStringLiteral("Multiple Values"));
}

void EditorTest::numericFieldsRefuseLettersAndShowTheirLimit() {
    TestApp t;
    HomeScreen* home = load(t, photosWithArtists(t.dir("p"), {"Ann"}));
    home->window()->show();
    QVERIFY(QTest::qWaitForWindowExposed(home->window()));
    QLineEdit* iso = line(home, kIso);
    iso->clear();
    QTest::keyClicks(iso, QStringLiteral("a"));
    QCOMPARE(iso->text(), QString());
    QTest::keyClicks(iso, QStringLiteral("70000"));
    QCOMPARE(iso->text(), QStringLiteral("7000"));
    QFrame* popover = named<MetadataViewController>(home, QStringLiteral("MetadataViewController"))
                          ->popoverDetails();
    QVERIFY(popover->isVisible());
    QCOMPARE(named<MetadataViewController>(home, QStringLiteral("MetadataViewController"))
                 ->popoverMessage()
                 ->text(),
             QStringLiteral("Value can not be greater than 65535.0"));
}

void EditorTest::referenceChangeAsksWithItsExactText() {
    TestApp t;
    const QString photo = copySamples(t.dir("gps")).filter(QStringLiteral("et-GPS.jpg")).first();
    HomeScreen* home = load(t, {photo});
    QVERIFY(!line(home, Field::GPSLongitude)->text().isEmpty());
    auto* ref = qobject_cast<QComboBox*>(
        named<MetadataViewController>(home, QStringLiteral("MetadataViewController"))
            ->control(kLongitudeRef)
            ->input());
    const int before = ref->currentIndex();
    const int other = before == 1 ? 2 : 1;
    t.prompt.answerNext(QStringLiteral("NO"));
    ref->setCurrentIndex(other);
    emit ref->activated(other);
    QCOMPARE(t.prompt.alerts.size(), 1);
    QCOMPARE(t.prompt.alerts[0].title, QStringLiteral("Location coordinates will change"));
    QCOMPARE(t.prompt.alerts[0].text,
             QStringLiteral("Changing the value of GPS Longitude Ref. will change the current "
                            "selected location. You may edit the correct location using 'Edit "
                            "Location' from the right pane. Are you sure you want to continue?"));
    QCOMPARE(t.prompt.alerts[0].buttons, (QStringList{"YES", "NO"}));
    QCOMPARE(ref->currentIndex(), before);
    QVERIFY(!t.app->homeSession().form().hasEdits());
}

void EditorTest::unmarkingTheLastPhotoDisablesTheBatchControls() {
    TestApp t;
    HomeScreen* home = load(t, photosWithArtists(t.dir("p"), {"Ann", "Bob"}));
    home->clickedCheckBox(0, false);
    QVERIFY(named<QPushButton>(home, QStringLiteral("btnStartProcess"))->isEnabled());
    home->clickedCheckBox(1, false);
    QList<QWidget*> batchControls;
    for (const char* name : {"btnRemove", "btnExif", "btnIPTC", "btnXMP", "btnShowEditorGPS",
                             "btnResetAll", "btnRename", "btnPreset", "btnReviewChanges",
                             "btnStartProcess", "btnPopUpChooseEditingOptions"})
        batchControls.append(named<QWidget>(home, QString::fromLatin1(name)));
    for (int box = 0; box < 5; ++box)
        batchControls.append(
            named<ProcessingControls>(home)->checkBox(ProcessingOptions::Box(box)));
    for (QWidget* control : batchControls) {
        QVERIFY(control);
        QVERIFY2(!control->isEnabled(), qPrintable(control->objectName()));
    }
    QVERIFY(!line(home, kArtist)->isEnabled());
    QCOMPARE(line(home, kArtist)->text(), QString());
}

void EditorTest::menuRemovalAsksAndNoKeepsTheList() {
    TestApp t;
    HomeScreen* home = load(t, photosWithArtists(t.dir("p"), {"Ann", "Bob"}));
    QMenu* menu = home->buildContextMenu(0, home);
    QStringList titles;
    for (QAction* action : menu->actions())
        if (!action->isSeparator())
            titles << action->text();
    QCOMPARE(titles, (QStringList{"Add More Images", "Remove All Selected", "Remove All",
                                  "Show Metadata", "Mark/Unmark All", "Get Info",
                                  "Open with Default Application", "Show in File Manager"}));
    t.prompt.answerNext(QStringLiteral("NO"));
    menu->actions().at(2)->trigger(); // Remove All Selected
    QCOMPARE(t.prompt.alerts.size(), 1);
    QCOMPARE(t.prompt.alerts[0].title, QStringLiteral("Remove all the selected images?"));
    QCOMPARE(t.set().count(), 2);

    // "Add More Images" is the open panel of this screen itself, with no choice of sources
    // before it.
    t.prompt.panelAnswers = {photosWithArtists(t.dir("more"), {"Cy"})};
    menu->actions().at(0)->trigger();
    QCOMPARE(t.prompt.panels.size(), 1);
    QCOMPARE(t.prompt.panels[0].prompt, QStringLiteral("Add Photos"));
    QVERIFY(t.prompt.panels[0].canChooseFiles && t.prompt.panels[0].canChooseDirectories);
    QVERIFY(t.prompt.panels[0].allowedExtensions.contains(QStringLiteral("photoslibrary")));
    QTRY_VERIFY_WITH_TIMEOUT(t.scanIdle() && t.set().count() == 3, 20000);
    delete menu;
}

void EditorTest::tutorialShowsOnceAndEndsOnSkip() {
    TestApp t;
    QVERIFY(!t.app->settings().tutorialShow().has_value());
    HomeScreen* home = load(t, photosWithArtists(t.dir("p"), {"Ann"}));
    QTRY_VERIFY(named<TutorialOverlay>(home, QStringLiteral("boxTutorial"))->isVisibleTo(home));
    QCOMPARE(named<TutorialOverlay>(home, QStringLiteral("boxTutorial"))->tutorialStep(), 1);
    QCOMPARE(t.app->settings().tutorialShow(), std::optional<bool>(true));
    named<QTimer>(named<TutorialOverlay>(home, QStringLiteral("boxTutorial")),
                  QStringLiteral("timerTutorial"))
        ->start(20); // the tour moves on by itself
    QTRY_VERIFY(named<TutorialOverlay>(home, QStringLiteral("boxTutorial"))->tutorialStep() >= 2);
    named<TutorialOverlay>(home, QStringLiteral("boxTutorial"))->clickedHideTutorial();
    QVERIFY(!named<TutorialOverlay>(home, QStringLiteral("boxTutorial"))->isVisibleTo(home));

    // A later scan does not bring the tour back.
    t.app->scans().addFromDrop(photosWithArtists(t.dir("more"), {"Bob"}));
    QTRY_VERIFY_WITH_TIMEOUT(t.scanIdle() && t.set().count() == 2, 20000);
    QVERIFY(!named<TutorialOverlay>(home, QStringLiteral("boxTutorial"))->isVisibleTo(home));
}

void EditorTest::aFailedOpenIsToldToTheUser() {
    ScriptedPrompt prompt;
    DesktopActions desktop(prompt);
    desktop.setOpener(QStringLiteral("false")); // an opener that finds no application
    QSignalSpy finished(&desktop, &DesktopActions::openFinished);
    desktop.openInDefaultApplication(QStringLiteral("/photos/a.jpg"));
    QVERIFY(finished.wait(5000));
    QCOMPARE(finished.at(0).at(1).toBool(), false);
    QCOMPARE(prompt.alerts.size(), 1);
    QCOMPARE(prompt.alerts[0].title, QStringLiteral("The photo could not be opened"));

    desktop.setOpener(QStringLiteral("/nonexistent/opener"));
    desktop.openInDefaultApplication(QStringLiteral("/photos/a.jpg"));
    QTRY_COMPARE(prompt.alerts.size(), 2);
}

// A value read from a photo's XMP sidecar carries a mark that names the sidecar; the photo's
// own values carry none, and an edit takes the mark away.
void EditorTest::valuesFromASidecarAreMarkedUntilEdited() {
    TestApp t(true, ValueForm::standard);
    const QStringList paths = photosWithArtists(t.dir("side"), {"Ann", "Bob"});
    QFile sidecar(paths[0] + QStringLiteral(".xmp"));
    QVERIFY(sidecar.open(QIODevice::WriteOnly));
    sidecar.write("<x:xmpmeta xmlns:x=\"adobe:ns:meta/\"><rdf:RDF "
                  "xmlns:rdf=\"http://www.w3.org/1999/02/22-rdf-syntax-ns#\"><rdf:Description "
                  "rdf:about=\"\" xmlns:dc=\"http://purl.org/dc/elements/1.1/\"><dc:creator>"
                  "<rdf:Seq><rdf:li>Sid</rdf:li></rdf:Seq></dc:creator></rdf:Description>"
                  "</rdf:RDF></x:xmpmeta>");
    sidecar.close();
    HomeScreen* home = load(t, paths);
    auto* controller =
        named<MetadataViewController>(home, QStringLiteral("MetadataViewController"));
    FieldControl* artist = controller->control(kArtist);
    QVERIFY(artist->showsSidecarSource());
    QCOMPARE(artist->sourceText(),
             QStringLiteral("From the XMP sidecar of one of the marked photos"));
    QVERIFY(!controller->control(kIso)->showsSidecarSource());

    MetadataForm& form = t.app->homeSession().form();
    form.updateMetadataInfo(1, false, {1});
    QCOMPARE(line(home, kArtist)->text(), QStringLiteral("Bob"));
    QVERIFY(!artist->showsSidecarSource());
    form.updateMetadataInfo(0, false, {0});
    QCOMPARE(line(home, kArtist)->text(), QStringLiteral("Sid"));
    QVERIFY(artist->showsSidecarSource());
    QCOMPARE(artist->sourceText(), QStringLiteral("From the XMP sidecar photo0.jpg.xmp"));
    auto* mark =
        line(home, kArtist)->findChild<QAction*>(QStringLiteral("txtFieldArtistSidecarSource"));
    QVERIFY(mark && mark->isVisible());
    QCOMPARE(mark->toolTip(), artist->sourceText());
    QVERIFY(line(home, kArtist)->accessibleDescription().endsWith(artist->sourceText()));

    QTest::keyClicks(line(home, kArtist), QStringLiteral("e"));
    QVERIFY(!artist->showsSidecarSource());
    QVERIFY(!mark->isVisible());
}

TAGMOOR_APP_TEST_MAIN(EditorTest)
#include "EditorTest.moc"
