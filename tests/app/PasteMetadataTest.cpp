// Edit > Copy Metadata and Paste Metadata..., File > Export Metadata... and Import Metadata...
// in the main window, and the box that lists the values to tick.

#include "AppTestSupport.h"

#include "app/widgets/TickListDialog.h"
#include "app/workingset/HomeScreen.h"
#include "processing/HomeSession.h"
#include "workingset/ScanController.h"

#include <QAction>
#include <QLineEdit>
#include <QListWidget>
#include <QMenuBar>
#include <QPushButton>
#include <QSet>

using namespace tagmoor;
using namespace tagmoor::test;

class PasteMetadataTest : public QObject {
    Q_OBJECT
private slots:
    void theEntriesSitInTheirMenusWithKeysOfTheirOwn();
    void copyThenPasteFromTheMenusEditsTheMarkedPhotos();
    void theTickBoxListAnswersWhatWasTicked();
    void importFromTheMenuMarksTheMatchedPhotos();

private:
    HomeScreen* load(TestApp& t, const QStringList& paths) { return loadPhotos(t, paths); }
    QAction* action(TestApp& t, const char* name) {
        return t.window().findChild<QAction*>(QString::fromLatin1(name));
    }
};

// Copy and Paste stand in the Edit menu, Export and Import in the File menu; no two entries of
// the window share a key.
void PasteMetadataTest::theEntriesSitInTheirMenusWithKeysOfTheirOwn() {
    TestApp t;
    QHash<QString, QStringList> menus;
    for (QAction* top : t.window().menuBar()->actions()) {
        for (QAction* entry : top->menu()->actions())
            menus[top->text()] << entry->objectName();
    }
    QVERIFY(menus.value("&Edit").contains("actionCopyMetadata"));
    QVERIFY(menus.value("&Edit").contains("actionPasteMetadata"));
    QVERIFY(menus.value("&File").contains("actionExportMetadata"));
    QVERIFY(menus.value("&File").contains("actionImportMetadata"));
    QCOMPARE(action(t, "actionCopyMetadata")->shortcut(), QKeySequence("Ctrl+Shift+C"));
    QCOMPARE(action(t, "actionPasteMetadata")->shortcut(), QKeySequence("Ctrl+Shift+V"));

    QSet<QKeySequence> keys;
    for (QAction* entry : t.window().findChildren<QAction*>()) {
        if (entry->shortcut().isEmpty())
            continue;
        QVERIFY2(!keys.contains(entry->shortcut()),
                 qPrintable(entry->shortcut().toString() + " twice"));
        keys.insert(entry->shortcut());
    }
    // With no photos the list's entries wait for some.
    QVERIFY(!action(t, "actionPasteMetadata")->isEnabled());
}

// The values of the photo on display go onto the other photo as edits, shown in its editor
// and in the review's values; nothing is written until Start Process.
void PasteMetadataTest::copyThenPasteFromTheMenusEditsTheMarkedPhotos() {
    TestApp t(true, ValueForm::standard);
    const QStringList photos = copySamples(t.dir("photos")).filter("et-GPS.jpg") +
                               copySamples(t.dir("other")).filter("Reagan.jpg");
    QCOMPARE(photos.size(), 2);
    const auto bytesOf = [](const QString& path) {
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    };
    const QByteArray before = bytesOf(photos[1]);
    HomeScreen* home = load(t, photos);
    HomeSession& session = t.app->homeSession();
    home->clickedSelectUnselectAll(false);
    home->clickedCheckBox(0, true);
    QVERIFY(action(t, "actionCopyMetadata")->isEnabled());
    action(t, "actionCopyMetadata")->trigger();
    QVERIFY(!session.clipboard().isEmpty());

    home->clickedCheckBox(0, false);
    home->clickedCheckBox(1, true);
    const auto& entries = session.clipboard().entries();
    QList<bool> onlyArtist;
    for (const auto& entry : entries)
        onlyArtist << (entry.kind == MetadataClipboard::Kind::field &&
                       entry.field == Field::Artist);
    QVERIFY(onlyArtist.contains(true));
    t.prompt.tickAnswers = {{0, onlyArtist}};
    action(t, "actionPasteMetadata")->trigger();
    QCOMPARE(t.prompt.tickQuestions.size(), 1);
    QCOMPARE(t.prompt.tickQuestions[0].items.size(), entries.size());
    QCOMPARE(session.form().text(Field::Artist), QStringLiteral("Ian Britton"));
    QVERIFY(session.form().isEdited(Field::Artist));
    QVERIFY(!session.form().isEdited(Field::Copyright));
    auto* artist = named<QLineEdit>(home, QStringLiteral("txtFieldArtist"));
    QCOMPARE(artist->text(), QStringLiteral("Ian Britton"));
    QCOMPARE(bytesOf(photos[1]), before);
}

// The real box: all ticked when it opens, "Tick None" and a click on a row, the first button.
void PasteMetadataTest::theTickBoxListAnswersWhatWasTicked() {
    TickListDialog box(nullptr, {Alert{"Paste Metadata", "Ticked values", {"Paste", "Cancel"}},
                                 {"Artist: Ann", "Copyright: me", "Rating: 3"}});
    QCOMPARE(box.answer().ticked, (QList<bool>{true, true, true}));
    named<QPushButton>(&box, QStringLiteral("btnTickNone"))->click();
    auto* list = named<QListWidget>(&box, QStringLiteral("tickList"));
    emit list->itemClicked(list->item(2));
    QCOMPARE(box.answer().ticked, (QList<bool>{false, false, true}));
    QCOMPARE(box.answer().button, 1); // closed without a button: the last one
    for (QPushButton* button : box.findChildren<QPushButton*>()) {
        if (button->text() == QStringLiteral("Paste"))
            button->click();
    }
    QCOMPARE(box.answer().button, 0);
    named<QPushButton>(&box, QStringLiteral("btnTickAll"))->click();
    QCOMPARE(box.answer().ticked, (QList<bool>{true, true, true}));
}

// A table whose rows name the photos by file name: both come up marked, the summary tells.
void PasteMetadataTest::importFromTheMenuMarksTheMatchedPhotos() {
    TestApp t(true, ValueForm::standard);
    const QStringList photos = copySamples(t.dir("photos")).filter(".jpg").mid(0, 3);
    HomeScreen* home = load(t, photos);
    home->clickedSelectUnselectAll(false);
    const QString table = t.home.filePath("table.csv");
    writeText(table, "SourceFile,Artist,Nonsense\n/x/" + QFileInfo(photos[0]).fileName().toUtf8() +
                         ",Ann,1\n/x/" + QFileInfo(photos[2]).fileName().toUtf8() + ",Bob,2\n");
    t.prompt.panelAnswers = {{table}};
    action(t, "actionImportMetadata")->trigger();
    QTRY_COMPARE(t.prompt.alerts.size(), 1);
    QCOMPARE(t.set().markedIndices(), (QList<int>{0, 2}));
    QVERIFY(t.prompt.alerts[0].text.contains(QStringLiteral("Nonsense")));
    QVERIFY(action(t, "actionPasteMetadata")->isEnabled());
}

TAGMOOR_APP_TEST_MAIN(PasteMetadataTest)
#include "PasteMetadataTest.moc"
