// The preset menu and the preset panel, driven through their widgets, and a preset made in the
// panel applied by the window's run and by the command line.
#include "AppTestSupport.h"
#include "app/batch/FinalProcessedVC.h"
#include "app/editor/FieldControl.h"
#include "app/editor/MetadataViewController.h"
#include "app/presets/PresetsDetailsViewController.h"
#include "app/presets/PresetsViewController.h"
#include "app/shell/RootView.h"
#include "app/workingset/HomeScreen.h"
#include "dates/DateField.h"
#include "editor/EditorState.h"
#include "editor/MetadataForm.h"
#include "metadata/MetadataTest.h"
#include "model/FormFieldTable.h"
#include "presets/PresetStore.h"
#include "workingset/ScanController.h"

#include <QLineEdit>
#include <QListWidget>
#include <QProcess>
#include <QPushButton>

using namespace tagmoor;
using namespace tagmoor::test;

namespace {

Field fieldNamed(const char* name) {
    return findFormField(QString::fromLatin1(name))->field;
}

// An application whose settings lie where the command line looks for them.
struct PresetApp {
    QTemporaryDir home;
    ScriptedPrompt prompt;
    std::unique_ptr<AppDelegate> app;

    PresetApp() {
        // Output folders have to be within the user's home folder.
        qputenv("HOME", QFile::encodeName(home.path()));
        qputenv("XDG_CONFIG_HOME", QFile::encodeName(home.filePath(QStringLiteral("config"))));
        AppDelegate::Options options;
        options.settingsFile = home.filePath(QStringLiteral("config/Tagmoor/Tagmoor.conf"));
        options.loginExecutable = QStringLiteral("/usr/bin/tagmoor");
        app = std::make_unique<AppDelegate>(prompt, options);
        app->settings().setStartup(true);
        app->start();
        QCoreApplication::processEvents();
    }
    RootView* root() { return app->mainWindow()->rootView(); }
    HomeScreen* home_() { return named<HomeScreen>(app->mainWindow(), QStringLiteral("Home")); }
    PresetsDetailsViewController* panel() {
        return named<PresetsDetailsViewController>(root(), QStringLiteral("presetsDetails"));
    }
    PresetStore& presets() { return app->presets(); }

    QString loadPhotos() {
        const QString folder = home.filePath(QStringLiteral("Pictures"));
        QDir().mkpath(folder);
        for (const char* name : {"et-GPS.jpg", "Reagan.jpg"}) {
            const QString target = folder + QLatin1Char('/') + QString::fromLatin1(name);
            QFile::copy(formatsDir() + QLatin1Char('/') + QString::fromLatin1(name), target);
            QFile(target).setPermissions(QFile::ReadOwner | QFile::WriteOwner);
        }
        app->scans().addFromDrop({folder});
        [&] {
            QTRY_VERIFY_WITH_TIMEOUT(
                !app->workingSet().isScanning() && app->workingSet().count() == 2, 20000);
        }();
        QCoreApplication::processEvents();
        return folder;
    }

    // Opens the panel through a fixed row of the menu, as a click does.
    void openPanelThrough(int row) {
        named<PresetsViewController>(home_(), QStringLiteral("PresetsViewController"))
            ->chooseRow(row);
        QTRY_COMPARE(root()->selectedIndex(), 2);
    }
};

QStringList namesIn(QListWidget* list) {
    QStringList names;
    for (int i = 0; i < list->count(); ++i)
        names << list->item(i)->text();
    return names;
}

DateTimeConfiguration shiftByOneHour() {
    IDOT shift;
    shift.changeHours = 1;
    return shift;
}

} // namespace

class PresetsPanelTest : public QObject {
    Q_OBJECT
private slots:
    void panelAddsRenamesRemovesAndSavesWithItsTexts();
    void menuRowsFillTheFormOrOpenThePanel();
    void aPanelPresetRunsTheSameFromTheWindowAndTheCommandLine();
    void thePanelFollowsTheCommandLineAndSavesIntoThePresetOnDisplay();
};

void PresetsPanelTest::panelAddsRenamesRemovesAndSavesWithItsTexts() {
    PresetApp t;
    t.loadPhotos();
    t.openPanelThrough(0); // "New Configuration": a fresh row with its name in edit
    PresetsDetailsViewController* panel = t.panel();
    QListWidget* table = panel->tableView();
    QCOMPARE(namesIn(table), QStringList{"Preset"});
    QVERIFY(panel->isPresetLoaded());
    auto* nameEditor = table->findChild<QLineEdit*>();
    QVERIFY(nameEditor && nameEditor->isVisible());
    nameEditor->selectAll();
    QTest::keyClicks(nameEditor, QStringLiteral("Beach"));
    QTest::keyClick(nameEditor, Qt::Key_Return);
    QTRY_COMPARE(t.presets().presets().at(0).name.value_or(QString()), QStringLiteral("Beach"));

    QTest::mouseClick(panel->btnAdd(), Qt::LeftButton);
    QTest::mouseClick(panel->btnAdd(), Qt::LeftButton);
    QCOMPARE(namesIn(table), (QStringList{"Beach", "Preset", "Preset1"}));
    QCOMPARE(table->currentRow(), 2);

    // A name in other capitals is taken; an empty one is refused; both put the old name back.
    t.prompt.alerts.clear();
    table->setCurrentRow(1);
    table->item(1)->setText(QStringLiteral("bEACH"));
    table->item(1)->setText(QString());
    QCOMPARE(t.prompt.alerts.size(), 2);
    QCOMPARE(t.prompt.alerts[0],
             Alert::ok(QStringLiteral("Preset name already exists"),
                       QStringLiteral("A Preset with same name already exists. Please enter a "
                                      "new Preset name.")));
    QCOMPARE(t.prompt.alerts[1],
             Alert::ok(QStringLiteral("No name specified!"),
                       QStringLiteral("Please enter a Preset name to be saved.")));
    QCOMPARE(namesIn(table), (QStringList{"Beach", "Preset", "Preset1"}));

    // Save stores the panel's form into the selected preset, with its date rules.
    auto* artist = qobject_cast<QLineEdit*>(panel->editor()->control(kArtist)->input());
    QTest::keyClicks(artist, QStringLiteral("Studio Nord"));
    panel->form().commitDateRule(DateField::modifyDate, shiftByOneHour(), std::nullopt);
    t.prompt.alerts.clear();
    QTest::mouseClick(panel->btnSave(), Qt::LeftButton);
    QCOMPARE(t.prompt.alerts.value(0),
             Alert::ok(QStringLiteral("Preset Saved!"),
                       QStringLiteral("The values for the selected preset have been saved.")));
    const ActualPreset& saved = t.presets().presets().at(1);
    QCOMPARE(saved.properties->tiffProperties->artist.text(), QStringLiteral("Studio Nord"));
    QVERIFY(saved.timeSetting->modifyDateAlive);
    QVERIFY2(!t.app->editorState().editorDates().rules().modifyDateAlive,
             "the home form's rules are not the panel's");

    // Choosing another row shows its values; coming back shows the saved ones.
    table->setCurrentRow(0);
    QCOMPARE(artist->text(), QString());
    table->setCurrentRow(1);
    QCOMPARE(artist->text(), QStringLiteral("Studio Nord"));

    // Remove selects the neighbour; the last removal leaves nothing to save or remove.
    QTest::mouseClick(panel->btnRemove(), Qt::LeftButton);
    QCOMPARE(namesIn(table), (QStringList{"Beach", "Preset1"}));
    QCOMPARE(table->currentRow(), 1);
    panel->removePreset();
    panel->removePreset();
    QCOMPARE(table->count(), 0);
    t.prompt.alerts.clear();
    panel->clickedSave();
    panel->removePreset();
    QCOMPARE(t.prompt.alerts.size(), 0);

    // Cancel goes back to the home screen; the store was saved as it changed.
    QTest::mouseClick(panel->btnCancel(), Qt::LeftButton);
    QCOMPARE(t.root()->selectedIndex(), 1);
    t.presets().waitForSaves();
    Settings settings(t.app->settings().fileName());
    PresetStore reloaded(settings);
    reloaded.load();
    QCOMPARE(reloaded.size(), 0);
}

void PresetsPanelTest::menuRowsFillTheFormOrOpenThePanel() {
    PresetApp t;
    t.loadPhotos();
    const qsizetype beach = t.presets().addPreset(QStringLiteral("Beach"));
    CGImageProperties values = makeEmptyRecord(std::nullopt);
    values.tiffProperties->artist = QStringLiteral("Ann Lee");
    values.exifProperties->fNumber = 5.6f;
    OriginalFinalDate rules;
    rules.configurationTimeOriginal = shiftByOneHour();
    rules.dateTimeOriginalAlive = true;
    t.presets().replaceValues(beach, values, rules);
    t.presets().addPreset(QStringLiteral("City"));

    HomeScreen* home = t.home_();
    PresetsViewController* menu =
        named<PresetsViewController>(home, QStringLiteral("PresetsViewController"));
    menu->showAt(named<QPushButton>(home, QStringLiteral("btnStartProcess")));
    QCOMPARE(namesIn(menu->tableView()),
             (QStringList{"New Configuration", "Beach", "City", "Edit Presets..."}));

    // A saved preset fills the home form, flags and date rules with it; no panel opens.
    menu->chooseRow(1);
    QVERIFY(!menu->isVisible());
    MetadataForm& form = t.app->homeSession().form();
    QCOMPARE(form.text(kArtist), QStringLiteral("Ann Lee"));
    QCOMPARE(form.text(kFNumber), QStringLiteral("5.6"));
    const FieldEditedFlags& flags = t.app->editorState().fieldEditedFlags;
    QVERIFY(flags.test(Field::Artist) && flags.test(Field::FNumber) &&
            flags.test(Field::DateTimeOriginal));
    QVERIFY(!flags.test(Field::Copyright));
    QVERIFY(t.app->editorState().editorDates().rules().configurationTimeOriginal.is<IDOT>());
    QTest::qWait(120);
    QCOMPARE(t.root()->selectedIndex(), 1);

    // "Edit Presets..." opens the panel on a saved row without touching the form.
    menu->chooseRow(3);
    QTRY_COMPARE(t.root()->selectedIndex(), 2);
    QCOMPARE(t.panel()->tableView()->count(), 2);
    QVERIFY(t.panel()->tableView()->currentRow() >= 0);
    // The keyboard starts in the name of the preset chosen.
    auto* nameEditor = t.panel()->tableView()->findChild<QLineEdit*>();
    QVERIFY(nameEditor && nameEditor->isVisible());
    QCOMPARE(nameEditor->text(), t.panel()->tableView()->currentItem()->text());
    QCOMPARE(t.panel()->window()->focusWidget(), nameEditor);
    QCOMPARE(t.presets().size(), qsizetype(2)); // no preset added
    QCOMPARE(form.text(kArtist), QStringLiteral("Ann Lee"));
}

void PresetsPanelTest::aPanelPresetRunsTheSameFromTheWindowAndTheCommandLine() {
    PresetApp t;
    t.app->settings().setIsPresetSavingSettingInHome(false); // no offer to save a preset
    const QString pictures = t.loadPhotos();

    t.openPanelThrough(0);
    PresetsDetailsViewController* panel = t.panel();
    auto* nameEditor = panel->tableView()->findChild<QLineEdit*>();
    QVERIFY(nameEditor);
    nameEditor->selectAll();
    QTest::keyClicks(nameEditor, QStringLiteral("Trip"));
    QTest::keyClick(nameEditor, Qt::Key_Return);
    QTRY_COMPARE(t.presets().presets().at(0).name.value_or(QString()), QStringLiteral("Trip"));
    QTest::keyClicks(qobject_cast<QLineEdit*>(panel->editor()->control(kArtist)->input()),
                     QStringLiteral("Jane Doe"));
    QTest::keyClicks(qobject_cast<QLineEdit*>(panel->editor()->control(kFNumber)->input()),
                     QStringLiteral("2.8"));
    panel->clickedEditor(1); // the IPTC fields
    const Field city = fieldNamed("City");
    QTest::keyClicks(qobject_cast<QLineEdit*>(panel->editor()->control(city)->input()),
                     QStringLiteral("Paris"));
    panel->clickedEditor(0);
    panel->form().commitDateRule(DateField::dateTimeOriginal, shiftByOneHour(), std::nullopt);
    panel->clickedSave();
    panel->clickedCancel();
    t.presets().waitForSaves();

    // The window: the preset from the menu, then Start Process into a folder.
    HomeScreen* home = t.home_();
    named<PresetsViewController>(home, QStringLiteral("PresetsViewController"))->chooseRow(1);
    const QString windowOut = t.home.filePath(QStringLiteral("Window"));
    QDir().mkpath(windowOut);
    t.prompt.alerts.clear();
    t.prompt.answerNext(QStringLiteral("YES"));
    t.prompt.panelAnswers = {{windowOut}};
    QTest::mouseClick(named<QPushButton>(home, QStringLiteral("btnStartProcess")), Qt::LeftButton);
    QTRY_VERIFY_WITH_TIMEOUT(
        named<FinalProcessedVC>(home, QStringLiteral("FinalProcessedVC")) &&
            named<FinalProcessedVC>(home, QStringLiteral("FinalProcessedVC"))->isShowingResult(),
        60000);
    QCOMPARE(t.prompt.alerts.value(0).title,
             QStringLiteral("Are you sure to edit metadata of all the selected images?"));

    // The command line, with the same store and the same (default) form, keeping the copies of
    // a value in step as the window does by default.
    const QString cliOut = t.home.filePath(QStringLiteral("Cli"));
    QProcess cli;
    cli.start(QStringLiteral(TAGMOOR_CLI),
              {QStringLiteral("apply"), QStringLiteral("--preset"), QStringLiteral("Trip"),
               QStringLiteral("--sync-copies"), QStringLiteral("on"), QStringLiteral("--out"),
               cliOut, pictures});
    QVERIFY(cli.waitForFinished(60000));
    QVERIFY2(cli.exitCode() == 0, cli.readAllStandardError().constData());

    for (const char* name : {"et-GPS.jpg", "Reagan.jpg"}) {
        const QString fromWindow = windowOut + QLatin1Char('/') + QLatin1String(name);
        const QString fromCli = cliOut + QLatin1Char('/') + QLatin1String(name);
        const auto windowTags = MetadataTest().readAllPropertiesFrom(fromWindow);
        const auto cliTags = MetadataTest().readAllPropertiesFrom(fromCli);
        QVERIFY(windowTags && cliTags);
        QCOMPARE(*cliTags, *windowTags);
        const QVariantMap exif = windowTags->value(QStringLiteral("exif")).toMap();
        QCOMPARE(exif.value(QStringLiteral("Exif.Image.Artist")).toString(),
                 QStringLiteral("Jane Doe"));
        // The creator's IPTC copy follows the edit.
        QCOMPARE(windowTags->value(QStringLiteral("iptc"))
                     .toMap()
                     .value(QStringLiteral("Iptc.Application2.Byline"))
                     .toString(),
                 QStringLiteral("Jane Doe"));
        QCOMPARE(windowTags->value(QStringLiteral("iptc"))
                     .toMap()
                     .value(QStringLiteral("Iptc.Application2.City"))
                     .toString(),
                 QStringLiteral("Paris"));
    }
}

// The command line removes the preset above the one on display while the user types into
// the panel's form: the table follows, the typed values stay, and Save puts them into the
// preset on display; the removal stays done after the window's save.
void PresetsPanelTest::thePanelFollowsTheCommandLineAndSavesIntoThePresetOnDisplay() {
    PresetApp t;
    t.loadPhotos();
    t.presets().addPreset(QStringLiteral("First"));
    t.presets().addPreset(QStringLiteral("Target"));
    t.presets().waitForSaves();
    t.openPanelThrough(int(t.presets().size()) + 1); // "Edit Presets..."
    PresetsDetailsViewController* panel = t.panel();
    QListWidget* table = panel->tableView();
    table->setCurrentRow(1);
    auto* artist = qobject_cast<QLineEdit*>(panel->editor()->control(kArtist)->input());
    QTest::keyClicks(artist, QStringLiteral("Typed, not saved yet"));

    QProcess cli;
    cli.start(QStringLiteral(TAGMOOR_CLI),
              {QStringLiteral("presets"), QStringLiteral("remove"), QStringLiteral("First")});
    QVERIFY(cli.waitForFinished(60000));
    QVERIFY2(cli.exitCode() == 0, cli.readAllStandardError().constData());
    QTRY_COMPARE(namesIn(table), QStringList{"Target"});
    QCOMPARE(table->currentItem()->text(), QStringLiteral("Target"));
    QCOMPARE(artist->text(), QStringLiteral("Typed, not saved yet"));

    QTest::mouseClick(panel->btnSave(), Qt::LeftButton);
    t.presets().waitForSaves();
    Settings settings(t.app->settings().fileName());
    PresetStore reloaded(settings);
    reloaded.load();
    QCOMPARE(reloaded.size(), 1);
    QCOMPARE(reloaded.presets().at(0).name.value_or(QString()), QStringLiteral("Target"));
    QCOMPARE(reloaded.presets().at(0).properties->tiffProperties->artist.text(),
             QStringLiteral("Typed, not saved yet"));
}

TAGMOOR_APP_TEST_MAIN(PresetsPanelTest)
#include "PresetsPanelTest.moc"
