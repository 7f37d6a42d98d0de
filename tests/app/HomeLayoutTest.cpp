// The home screen as a place to work: the editor gets the height, the side pane's shape is
// kept, and the line above Start Process tells what the run is set to do.
#include "AppTestSupport.h"
#include "app/editor/FieldControl.h"
#include "app/editor/MetadataViewController.h"
#include "app/workingset/HomeScreen.h"
#include "editor/MetadataForm.h"
#include "processing/HomeSession.h"
#include "workingset/ScanController.h"

#include <QAbstractItemView>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QScrollArea>
#include <QSplitter>
#include <QToolButton>

using namespace tagmoor;
using namespace tagmoor::test;

class HomeLayoutTest : public QObject {
    Q_OBJECT
private slots:
    void theEditorGetsTheHeightAndTheShapeIsKept();
    void theSummaryTellsWhatIsSetAndTakesItBack();
    void keysReachTheActionsOfTheMenus();

private:
    HomeScreen* load(TestApp& t, int copies, QSize size) {
        const QString folder = t.dir(QStringLiteral("photos"));
        for (int i = 0; i < copies; ++i) {
            const QString target = folder + QStringLiteral("/photo%1.jpg").arg(i);
            QFile::copy(formatsDir() + QStringLiteral("/Reagan.jpg"), target);
            QFile(target).setPermissions(QFile::ReadOwner | QFile::WriteOwner);
        }
        t.app->scans().addFromDrop({folder});
        [&] { QTRY_VERIFY_WITH_TIMEOUT(t.scanIdle() && t.set().count() == copies, 20000); }();
        t.window().resize(size);
        t.window().show();
        QCoreApplication::processEvents();
        return named<HomeScreen>(&t.window(), QStringLiteral("Home"));
    }

    // The field rows of the shown editor box that lie wholly in its scroll area's view.
    static int visibleRows(HomeScreen* home) {
        return rowsInView(
            named<MetadataViewController>(home, QStringLiteral("MetadataViewController")));
    }
};

void HomeLayoutTest::theEditorGetsTheHeightAndTheShapeIsKept() {
    TestApp t(true, ValueForm::standard);
    HomeScreen* home = load(t, 3, {1280, 800});
    auto* preview = named<QWidget>(home, QStringLiteral("homePreviewPane"));
    auto* fold = named<QToolButton>(home, QStringLiteral("btnFoldPreview"));

    // Every photo marked: no single photo, so no picture, no pin at a default position.
    QCOMPARE(t.set().markedCount(), 3);
    QVERIFY(!preview->isVisible());
    QVERIFY2(visibleRows(home) >= 15, qPrintable(QString::number(visibleRows(home))));

    // A click on a photo puts it on display; folding gives the room back, and is kept.
    QAbstractItemView* view = nullptr;
    for (QAbstractItemView* v : home->findChildren<QAbstractItemView*>())
        if (v->isVisible() && v->model() && v->model()->rowCount() == 3)
            view = v;
    QVERIFY(view);
    emit view->clicked(view->model()->index(0, 0));
    QVERIFY(preview->isVisible());
    const int withPreview = visibleRows(home);
    fold->click();
    QVERIFY(!preview->isVisible());
    QCOMPARE(t.app->settings().homePreviewFolded(), std::optional<bool>(true));
    QCoreApplication::processEvents();
    QVERIFY(visibleRows(home) > withPreview);

    t.window().resize(1440, 900);
    QCoreApplication::processEvents();
    QVERIFY2(visibleRows(home) >= 20, qPrintable(QString::number(visibleRows(home))));

    // The divider moves and its place is stored once the user lets go.
    auto* splitter = named<QSplitter>(home, QStringLiteral("homeSplitter"));
    QVERIFY(splitter->widget(1)->minimumWidth() > 0);
    splitter->setSizes({800, 600});
    emit splitter->splitterMoved(800, 1);
    QTRY_VERIFY(t.app->settings().homeSplitterState().has_value());
    QCOMPARE(*t.app->settings().homeSplitterState(), splitter->saveState());
}

void HomeLayoutTest::theSummaryTellsWhatIsSetAndTakesItBack() {
    TestApp t(true, ValueForm::standard);
    HomeScreen* home = load(t, 2, {1280, 800});
    auto* summary = named<QLabel>(home, QStringLiteral("lblRunSummary"));
    QCOMPARE(summary->text().contains(QStringLiteral("Nothing set for the run yet")), true);

    auto* editor = named<MetadataViewController>(home, QStringLiteral("MetadataViewController"));
    auto* artist = qobject_cast<QLineEdit*>(editor->control(Field::Artist)->input());
    const QString before = artist->text();
    QTest::keyClicks(artist, QStringLiteral("Jane Doe"));
    QVERIFY2(summary->text().contains(QStringLiteral("1 field edited")),
             qPrintable(summary->text()));

    // The item opens its field; its cross takes the edit back, on screen too.
    artist->clearFocus();
    emit summary->linkActivated(QStringLiteral("open:0"));
    QCOMPARE(t.window().focusWidget(), artist);
    emit summary->linkActivated(QStringLiteral("clear:0"));
    QVERIFY(!t.app->homeSession().form().isEdited(Field::Artist));
    QCOMPARE(artist->text(), before);
    QVERIFY(summary->text().contains(QStringLiteral("Nothing set for the run yet")));
}

void HomeLayoutTest::keysReachTheActionsOfTheMenus() {
    TestApp t(true, ValueForm::standard);
    HomeScreen* home = load(t, 2, {1280, 800});
    QApplication::setActiveWindow(&t.window());
    auto* start = named<QAction>(&t.window(), QStringLiteral("actionStartProcess"));
    QCOMPARE(start->shortcut(), QKeySequence(Qt::CTRL | Qt::Key_Return));
    QVERIFY(named<QMenu>(&t.window(), QStringLiteral("menuPhotos"))->actions().contains(start));

    // Type an Artist and start from the keyboard: the first question comes.
    auto* editor = named<MetadataViewController>(home, QStringLiteral("MetadataViewController"));
    QWidget* artist = editor->control(Field::Artist)->input();
    artist->setFocus();
    // Tab goes down the form in the order it is shown.
    QStringList visited;
    for (int i = 0; i < 6; ++i) {
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
        visited << QApplication::focusWidget()->objectName();
    }
    QCOMPARE(visited,
             (QStringList{"txtFieldImageDescription", "txtFieldCopyright", "txtFieldSoftware",
                          "txtViewUserComment", "txtFieldMake", "txtFieldCameraModalName"}));
    artist->setFocus();
    QTest::keyClicks(artist, QStringLiteral("Jane Doe"));
    t.prompt.answerNext(QStringLiteral("NO"));
    QTest::keyClick(artist, Qt::Key_Return, Qt::ControlModifier);
    QTRY_VERIFY(!t.prompt.alerts.isEmpty());
    QCOMPARE(t.prompt.alerts.first().title,
             QStringLiteral("Are you sure to edit metadata of all the selected images?"));

    // Unmark all, and the actions that need marked photos wait; mark all again.
    QTest::keyClick(&t.window(), Qt::Key_A, Qt::ControlModifier | Qt::ShiftModifier);
    QCOMPARE(t.set().markedCount(), 0);
    QVERIFY(!start->isEnabled());
    named<QAction>(&t.window(), QStringLiteral("actionMarkAll"))->trigger();
    QCOMPARE(t.set().markedCount(), 2);
    QVERIFY(start->isEnabled());
}

TAGMOOR_APP_TEST_MAIN(HomeLayoutTest)
#include "HomeLayoutTest.moc"
