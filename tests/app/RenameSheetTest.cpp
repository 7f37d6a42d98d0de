// The rename sheet as a user works it: what its inputs show is what the run's rule holds, and
// Save asks about overwriting only when nothing says so already.
#include "AppTestSupport.h"
#include "app/workingset/HomeScreen.h"
#include "processing/ProcessingOptions.h"
#include "rename/Rename.h"
#include "workingset/ScanController.h"

#include <QComboBox>
#include <QDialog>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>

using namespace tagmoor;
using namespace tagmoor::test;

class RenameSheetTest : public QObject {
    Q_OBJECT
private slots:
    void everyLabelOfTheSheetIsShown();
    void theFormatOptionTakesTheRowShown();
    void standardFormTakesEveryInputShown();
    void overwritingAskedOnlyWhenNothingSaysSo();

private:
    // The sheet opened over one photo named IMG.jpg.
    QDialog* openSheet(TestApp& t) {
        const QString folder = t.dir(QStringLiteral("photos"));
        QFile::copy(formatsDir() + QStringLiteral("/Reagan.jpg"),
                    folder + QStringLiteral("/IMG.jpg"));
        QFile(folder + QStringLiteral("/IMG.jpg"))
            .setPermissions(QFile::ReadOwner | QFile::WriteOwner);
        t.app->scans().addFromDrop({folder});
        [&] { QTRY_VERIFY_WITH_TIMEOUT(t.scanIdle() && t.set().count() == 1, 20000); }();
        QCoreApplication::processEvents();
        HomeScreen* home = named<HomeScreen>(&t.window(), QStringLiteral("Home"));
        home->window()->show();
        QTest::mouseClick(named<QPushButton>(home, QStringLiteral("btnRename")), Qt::LeftButton);
        return named<QDialog>(home, QStringLiteral("RenameViewController"));
    }
    static void click(QDialog* sheet, const char* option) {
        named<QRadioButton>(sheet, QString::fromLatin1(option))->click();
    }
    // A row picked from the popup, as the user does it.
    static void choose(QDialog* sheet, const char* box, int row) {
        auto* combo = named<QComboBox>(sheet, QString::fromLatin1(box));
        combo->setCurrentIndex(row);
        emit combo->activated(row);
    }
    static void type(QDialog* sheet, const char* field, const QString& text) {
        auto* edit = named<QLineEdit>(sheet, QString::fromLatin1(field));
        edit->clear();
        QTest::keyClicks(edit, text);
    }
    static QString example(QDialog* sheet, const char* label) {
        return named<QLabel>(sheet, QString::fromLatin1(label))->text();
    }
    static bool enabled(QDialog* sheet, const char* control) {
        return named<QWidget>(sheet, QString::fromLatin1(control))->isEnabled();
    }
};

void RenameSheetTest::everyLabelOfTheSheetIsShown() {
    TestApp t;
    QDialog* sheet = openSheet(t);
    const std::pair<const char*, const char*> labels[] = {
        {"lblRename", "Rename"},
        {"lblConfigureSettingsToRename", "Configure Settings to Rename the selected files"},
        {"lblAddText", "Add Text:"},
        {"lblFind", "Find:"},
        {"lblReplaceWidth", "Replace With:"},
        {"lblNameFormat", "Name Format:"},
        {"lblWhere", "Where:"},
        {"lblCustomFormat", "Custom Format:"},
        {"lblStartNumbersAt", "Start numbers at:"},
        {"lblMinNumbersOfDigits", "Min. number of digits:"},
    };
    for (const auto& [name, text] : labels) {
        QLabel* label = named<QLabel>(sheet, QString::fromLatin1(name));
        QVERIFY2(label && label->isVisible(), name);
        QCOMPARE(label->text(), QString::fromLatin1(text));
    }
    QCOMPARE(named<QRadioButton>(sheet, QStringLiteral("btnAddText"))->text(),
             QStringLiteral("Add Text:"));
    QCOMPARE(named<QPushButton>(sheet, QStringLiteral("btnNext"))->text(), QStringLiteral("Save"));
    QCOMPARE(named<QPushButton>(sheet, QStringLiteral("btnClose"))->text(),
             QStringLiteral("Close"));
}

void RenameSheetTest::theFormatOptionTakesTheRowShown() {
    TestApp t;
    QDialog* sheet = openSheet(t);
    QVERIFY(sheet && sheet->isVisible());
    const Rename& rule = t.app->renameSettings();

    click(sheet, "btnChangeFileNameFormat");
    choose(sheet, "comboBoxNameFormat", 2);
    QCOMPARE(rule.as<ChangeFileNameFormat>()->nameFormatNF.kind, NameFormat::Case::nameAndDate);
    // Another option and back: the popup still shows "Name and Date", and so is the rule.
    click(sheet, "btnKeepOriginal");
    QCOMPARE(named<QComboBox>(sheet, QStringLiteral("comboBoxNameFormat"))->currentText(),
             QStringLiteral("Name and Date"));
    click(sheet, "btnChangeFileNameFormat");
    QVERIFY(rule.is<ChangeFileNameFormat>());
    QCOMPARE(rule.as<ChangeFileNameFormat>()->nameFormatNF.kind, NameFormat::Case::nameAndDate);
    QVERIFY(!enabled(sheet, "txtFieldStartNumberAt"));
    QVERIFY(!enabled(sheet, "comboBoxMinNoDigits"));
    QVERIFY2(example(sheet, "lblExampleFileNameFormat").startsWith(QStringLiteral("Example: 20")),
             qPrintable(example(sheet, "lblExampleFileNameFormat")));

    // A later row applies while the option is on.
    choose(sheet, "comboBoxNameFormat", 1);
    QCOMPARE(rule.as<ChangeFileNameFormat>()->nameFormatNF.kind, NameFormat::Case::nameAndCounter);
    QVERIFY(enabled(sheet, "comboBoxMinNoDigits"));
    QCOMPARE(example(sheet, "lblExampleFileNameFormat"), QStringLiteral("Example: 1IMG.jpg"));
}

void RenameSheetTest::standardFormTakesEveryInputShown() {
    TestApp t(true, ValueForm::standard);
    QDialog* sheet = openSheet(t);
    const Rename& rule = t.app->renameSettings();

    click(sheet, "btnAddText");
    choose(sheet, "comboBoxAddText", 1);
    click(sheet, "btnKeepOriginal");
    click(sheet, "btnAddText");
    type(sheet, "txtFieldAddText", QStringLiteral("-x"));
    QCOMPARE(rule.as<AddText>()->addTextPositionAT, RenamePosition::afterName);
    QCOMPARE(example(sheet, "lblExampleAddText"), QStringLiteral("Example: IMG-x.jpg"));

    click(sheet, "btnChangeFileNameFormat");
    choose(sheet, "comboBoxNameFormat", 1);
    choose(sheet, "comboBoxWhere", 1);
    choose(sheet, "comboBoxMinNoDigits", 3);
    type(sheet, "txtFieldCustomFormat", QStringLiteral("Trip"));
    type(sheet, "txtFieldStartNumberAt", QStringLiteral("7"));
    click(sheet, "btnReplaceText");
    click(sheet, "btnChangeFileNameFormat");
    const ChangeFileNameFormat* format = rule.as<ChangeFileNameFormat>();
    QVERIFY(format);
    QCOMPARE(format->nameFormatNF.kind, NameFormat::Case::nameAndCounter);
    QCOMPARE(format->whereTextPositionNF, RenamePosition::afterName);
    QCOMPARE(format->minNumberDigitsNF, 3);
    QCOMPARE(format->customFormatValueNF, QStringLiteral("Trip"));
    QCOMPARE(format->startNumberAtNF, 7);
    QCOMPARE(example(sheet, "lblExampleFileNameFormat"), QStringLiteral("Example: Trip007.jpg"));
}

void RenameSheetTest::overwritingAskedOnlyWhenNothingSaysSo() {
    TestApp t;
    t.app->settings().setIsOverwriteIfAFileWithASameName(true);
    QDialog* sheet = openSheet(t);
    click(sheet, "btnAddText");
    type(sheet, "txtFieldAddText", QStringLiteral("Trip-"));
    QTest::mouseClick(named<QPushButton>(sheet, QStringLiteral("btnNext")), Qt::LeftButton);
    QVERIFY(!sheet->isVisible());
    QVERIFY(t.prompt.alerts.isEmpty());
    QVERIFY(!t.app->processingOptions().overwriteExisting);

    // With the preference off, Save asks, and "Overwrite" holds for the coming run.
    t.app->settings().setIsOverwriteIfAFileWithASameName(false);
    QTest::mouseClick(named<QPushButton>(&t.window(), QStringLiteral("btnRename")), Qt::LeftButton);
    t.prompt.answerNext(QStringLiteral("Overwrite"),
                        {QStringLiteral("Overwrite"), QStringLiteral("Do not Overwrite")});
    QTest::mouseClick(named<QPushButton>(sheet, QStringLiteral("btnNext")), Qt::LeftButton);
    QVERIFY(!sheet->isVisible());
    QCOMPARE(t.prompt.alerts.size(), 1);
    QCOMPARE(
        t.prompt.alerts.last().title,
        QStringLiteral("Overwrite if a file exists with the same name in the destination folder."));
    QVERIFY(t.app->processingOptions().overwriteExisting);
}

TAGMOOR_APP_TEST_MAIN(RenameSheetTest)
#include "RenameSheetTest.moc"
