// The window in German, as a German desktop starts it: the translation the application loads
// reaches the menus, the home screen, the editor, the alerts of the core and Qt's own buttons.
// English, the C locale and languages without a translation load nothing.

#include "AppTestSupport.h"

#include "app/shell/Translations.h"
#include "app/workingset/HomeScreen.h"
#include "workingset/ScanController.h"

#include <QDialog>
#include <QDialogButtonBox>
#include <QLabel>
#include <QMenuBar>
#include <QPushButton>
#include <QRadioButton>

using namespace tagmoor;
using namespace tagmoor::test;

namespace {

QString fileMenuText() {
    return QCoreApplication::translate("tagmoor::MainWindow", "&File");
}

QString cancelButtonText() {
    QDialogButtonBox box(QDialogButtonBox::Cancel);
    return box.button(QDialogButtonBox::Cancel)->text();
}

} // namespace

class TranslationTest : public QObject {
    Q_OBJECT
private slots:
    void englishAndUntranslatedLanguagesLoadNothing();
    void theFirstTranslatedLanguageLoadsUntilItsObjectGoes();
    void theGermanWindowShowsGermanTexts();
};

void TranslationTest::englishAndUntranslatedLanguagesLoadNothing() {
    const QString cancel = cancelButtonText();
    // English before German keeps the sources' texts: the user ranked it first.
    for (const QStringList& languages :
         {QStringList{}, QStringList{"C"}, QStringList{"en-US"}, QStringList{"en-GB", "de-DE"},
          QStringList{"fr-FR", "ja-JP"}}) {
        const Translations translations(languages);
        QVERIFY2(translations.language().isEmpty(), qPrintable(languages.join(',')));
        QCOMPARE(fileMenuText(), QStringLiteral("&File"));
        QCOMPARE(cancelButtonText(), cancel);
    }
}

void TranslationTest::theFirstTranslatedLanguageLoadsUntilItsObjectGoes() {
    const QString cancel = cancelButtonText();
    {
        // Austrian German falls back to German; French, untranslated, is passed over.
        const Translations translations({"fr-FR", "de-AT", "en-US"});
        QCOMPARE(translations.language(), QStringLiteral("de"));
        QCOMPARE(fileMenuText(), QStringLiteral("&Datei"));
        QCOMPARE(cancelButtonText(), QStringLiteral("Abbrechen"));
    }
    QCOMPARE(fileMenuText(), QStringLiteral("&File"));
    QCOMPARE(cancelButtonText(), cancel);
}

void TranslationTest::theGermanWindowShowsGermanTexts() {
    const Translations translations({"de-DE"});
    TestApp t;
    QStringList menus;
    for (const QAction* menu : t.window().menuBar()->actions())
        menus.append(menu->text());
    QCOMPARE(menus, (QStringList{"&Datei", "&Bearbeiten", "F&otos", "&Fenster", "&Hilfe"}));
    QCOMPARE(named<QAction>(&t.window(), QStringLiteral("menuItemPreferences"))->text(),
             QStringLiteral("&Einstellungen..."));

    HomeScreen* home = named<HomeScreen>(&t.window(), QStringLiteral("Home"));
    QCOMPARE(named<QPushButton>(home, QStringLiteral("btnStartProcess"))->text(),
             QStringLiteral("Verarbeitung starten"));
    // The editor's section titles come from the core's table of fields.
    QCOMPARE(named<QLabel>(home, QStringLiteral("lblCameraSettings"))->text(),
             QStringLiteral("Kameraeinstellungen"));

    // An alert of the core, told through the prompt: an empty text to add refuses the rename.
    const QString folder = t.dir(QStringLiteral("photos"));
    QVERIFY(QFile::copy(formatsDir() + QStringLiteral("/Reagan.jpg"),
                        folder + QStringLiteral("/IMG.jpg")));
    QFile(folder + QStringLiteral("/IMG.jpg")).setPermissions(QFile::ReadOwner | QFile::WriteOwner);
    t.app->scans().addFromDrop({folder});
    QTRY_VERIFY_WITH_TIMEOUT(t.scanIdle() && t.set().count() == 1, 20000);
    t.window().show();
    QTest::mouseClick(named<QPushButton>(home, QStringLiteral("btnRename")), Qt::LeftButton);
    auto* sheet = named<QDialog>(home, QStringLiteral("RenameViewController"));
    QVERIFY(sheet);
    named<QRadioButton>(sheet, QStringLiteral("btnAddText"))->click();
    QTest::mouseClick(named<QPushButton>(sheet, QStringLiteral("btnNext")), Qt::LeftButton);
    QVERIFY(!t.prompt.alerts.isEmpty());
    QCOMPARE(t.prompt.alerts.last().title,
             QStringLiteral("Das Textfeld ‚Text hinzufügen‘ ist leer"));
}

TAGMOOR_APP_TEST_MAIN(TranslationTest)
#include "TranslationTest.moc"
