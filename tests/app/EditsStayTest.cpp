// Edits stay where the user put them: through the Mode popup, across a new list and Reset All,
// and when a reference is confirmed unchanged. Each in both value forms.
#include "WindowRunSupport.h"
#include "app/batch/ProcessingControls.h"
#include "app/editor/FieldControl.h"
#include "app/editor/MetadataViewController.h"
#include "app/location/GeoLocationViewController.h"
#include "app/location/LocationView.h"
#include "app/location/MapView.h"
#include "app/presets/PresetsViewController.h"
#include "app/shell/RootView.h"
#include "dates/DateField.h"
#include "editor/EditorState.h"
#include "editor/MetadataForm.h"
#include "geo/SharedLocation.h"
#include "presets/PresetStore.h"
#include "processing/ProcessingOptions.h"
#include "rename/Rename.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLineEdit>
#include <QPushButton>

using namespace tagmoor;
using namespace tagmoor::test;

namespace {

const ValueForm kForms[] = {ValueForm::standard, ValueForm::described};

QLineEdit* lineOf(HomeScreen* home, Field position) {
    return qobject_cast<QLineEdit*>(
        named<MetadataViewController>(home, QStringLiteral("MetadataViewController"))
            ->control(position)
            ->input());
}

QComboBox* popupOf(HomeScreen* home, Field position) {
    return qobject_cast<QComboBox*>(
        named<MetadataViewController>(home, QStringLiteral("MetadataViewController"))
            ->control(position)
            ->input());
}

// The picker opened from the home screen, the position typed, Done.
void pickLocation(HomeScreen* home, double latitude, double longitude) {
    home->clickShowEditorGPS();
    GeoLocationViewController* picker =
        named<GeoLocationViewController>(home, QStringLiteral("GeoLocation"));
    QVERIFY(picker && picker->isVisible());
    for (auto [field, value] :
         {std::pair{named<QLineEdit>(picker, QStringLiteral("txtFieldLatitude")), latitude},
          std::pair{named<QLineEdit>(picker, QStringLiteral("txtFieldLongitude")), longitude}}) {
        field->selectAll();
        QTest::keyClick(field, Qt::Key_Backspace);
        QTest::keyClicks(field, QString::number(value, 'g', 10));
    }
    named<QPushButton>(picker, QStringLiteral("btnCancel"))->click();
    QVERIFY(!picker->isVisible());
}

} // namespace

class EditsStayTest : public QObject {
    Q_OBJECT
private slots:
    void init() {
        // The output folder has to be within the user's home folder.
        m_home = std::make_unique<QTemporaryDir>();
        qputenv("HOME", QFile::encodeName(m_home->path()));
    }
    void modePopupKeepsTypedMapAndPresetValues();
    void newListStartsClean();
    void resetAllChoosesTheFirstRowAndClearsTheBoxes();
    void confirmingAnUnchangedReferenceMarksNothing();

private:
    std::unique_ptr<QTemporaryDir> m_home;
};

void EditsStayTest::modePopupKeepsTypedMapAndPresetValues() {
    for (const ValueForm form : kForms) {
        TestApp t(true, form);
        const QString pictures = m_home->filePath(QStringLiteral("Pictures-%1").arg(int(form)));
        HomeScreen* home = dropPhotos(
            t, {copySample(pictures, QStringLiteral("et-GPS.jpg"), QStringLiteral("a.jpg"))}, 1);

        // A preset gives the Copyright; then the Artist is typed and Lisbon chosen on the map.
        PresetStore& presets = t.app->presets();
        const qsizetype studio = presets.addPreset(QStringLiteral("Studio"));
        CGImageProperties values = makeEmptyRecord(std::nullopt);
        values.tiffProperties->copyRight = QStringLiteral("Studio Nine");
        presets.replaceValues(studio, values, OriginalFinalDate{});
        named<PresetsViewController>(home, QStringLiteral("PresetsViewController"))->chooseRow(1);
        QTest::keyClicks(lineOf(home, kArtist), QStringLiteral("Jane Doe"));
        pickLocation(home, 38.717, -9.133);

        MetadataForm& editor = t.app->homeSession().form();
        const auto expectKept = [&](int row) {
            QCOMPARE(named<ProcessingControls>(home)->popup()->currentIndex(), row);
            QCOMPARE(editor.text(kArtist), QStringLiteral("Jane Doe"));
            QCOMPARE(lineOf(home, kArtist)->text(), QStringLiteral("Jane Doe"));
            QCOMPARE(editor.text(kCopyright), QStringLiteral("Studio Nine"));
            QCOMPARE(editor.text(kLatitude), QStringLiteral("38.717"));
            QCOMPARE(editor.text(kLongitude), QStringLiteral("9.133"));
            QCOMPARE(editor.popupRow(kLatitudeRef), 1);  // North
            QCOMPARE(editor.popupRow(kLongitudeRef), 2); // West
            QCOMPARE(popupOf(home, kLongitudeRef)->currentIndex(), 2);
            for (Field position : {kArtist, kCopyright, kLatitude, kLongitude})
                QVERIFY2(editor.isEdited(position), fieldName(position));
        };
        expectKept(0);
        // The same row again, the other editing row, and a round through the cleaning row.
        for (int row : {0, 1, 1, 0, 2, 2, 1, 0}) {
            named<ProcessingControls>(home)->clickedChooseEditingOptions(row);
            if (row != 2)
                expectKept(row);
            if (QTest::currentTestFailed())
                return;
        }

        // The run writes what the user put there.
        const QString out = m_home->filePath(QStringLiteral("Out-%1").arg(int(form)));
        runInto(t, home, out);
        const QString written = out + QStringLiteral("/a.jpg");
        QCOMPARE(exiv2Value(written, "Exif.Image.Artist"), QStringLiteral("Jane Doe"));
        QCOMPARE(exiv2Value(written, "Exif.Image.Copyright"), QStringLiteral("Studio Nine"));
        const auto latitude = fileCoordinate(written, true);
        const auto longitude = fileCoordinate(written, false);
        QVERIFY(latitude && longitude);
        QVERIFY2(std::fabs(*latitude - 38.717) < 3e-4, qPrintable(QString::number(*latitude)));
        QVERIFY2(std::fabs(*longitude + 9.133) < 3e-4, qPrintable(QString::number(*longitude)));
    }
}

void EditsStayTest::newListStartsClean() {
    for (const ValueForm form : kForms) {
        TestApp t(true, form);
        const QString pictures = m_home->filePath(QStringLiteral("New-%1").arg(int(form)));
        const QStringList photos = {
            copySample(pictures, QStringLiteral("Reagan.jpg"), QStringLiteral("a.jpg")),
            copySample(pictures, QStringLiteral("et-IPTC.jpg"), QStringLiteral("b.jpg"))};
        EditorState& state = t.app->editorState();
        MetadataForm* editor = nullptr;
        HomeScreen* home = nullptr;
        const auto editEverything = [&] {
            home = dropPhotos(t, photos, 2);
            editor = &t.app->homeSession().form();
            editor->editText(kArtist, QStringLiteral("Old Artist"));
            IDOT shift;
            shift.changeHours = 1;
            editor->commitDateRule(DateField::dateTimeOriginal, shift, std::nullopt);
            t.app->renameSettings() = AddText{QStringLiteral("Old-")};
            pickLocation(home, -33.9628, 18.4098);
            named<ProcessingControls>(home)->clickedChooseEditingOptions(1);
            QVERIFY(editor->hasEdits());
        };
        const auto expectClean = [&](const char* after) {
            home = dropPhotos(t, photos, 2);
            QVERIFY2(!state.fieldEditedFlags.hasEdits(), after);
            QVERIFY2(editor->text(kArtist).isEmpty(), after);
            for (DateField field : allDateFields)
                QVERIFY2(!state.editorDates().rules().alive(field), after);
            QVERIFY2(t.app->renameSettings() == Rename{}, after);
            QVERIFY2(t.app->processingOptions().row() == 0, after);
            QVERIFY2(named<ProcessingControls>(home)->popup()->currentIndex() == 0, after);
            // Neither the picker nor the location view starts from the last list's pin.
            QVERIFY2(!editor->selectedLatitude(), after);
            QVERIFY2(t.app->homeSession().location().latitude() == 0, after);
            QVERIFY2(named<LocationView>(home, QStringLiteral("locationView"))
                             ->mapView()
                             ->annotation()
                             ->latitude == 0,
                     after);
            // And a run of the new list finds nothing to write.
            t.prompt.alerts.clear();
            t.prompt.answerNext(QStringLiteral("NO"));
            QTest::mouseClick(named<QPushButton>(home, QStringLiteral("btnStartProcess")),
                              Qt::LeftButton);
            QVERIFY2(!t.prompt.alerts.isEmpty() &&
                         t.prompt.alerts.first().title ==
                             QStringLiteral("No Changes in Metadata found"),
                     after);
        };

        editEverything();
        t.prompt.answerNext(QStringLiteral("YES"));
        QVERIFY(t.app->scans().removeAll());
        QTRY_COMPARE(t.window().rootView()->selectedIndex(), 0);
        expectClean("Remove All");
        if (QTest::currentTestFailed())
            return;

        editEverything();
        home->clickedSelectUnselectAll(true);
        home->clickedRemove();
        QCOMPARE(t.set().count(), 0);
        expectClean("removing the last photos");
        if (QTest::currentTestFailed())
            return;

        editEverything();
        named<ProcessingControls>(home)->clickedChooseEditingOptions(0);
        runInto(t, home, m_home->filePath(QStringLiteral("NewOut-%1").arg(int(form))));
        finish(home);
        QTRY_COMPARE(t.window().rootView()->selectedIndex(), 0);
        expectClean("Finish");
        if (QTest::currentTestFailed())
            return;
    }
}

void EditsStayTest::resetAllChoosesTheFirstRowAndClearsTheBoxes() {
    for (const ValueForm form : kForms) {
        TestApp t(true, form);
        const QString pictures = m_home->filePath(QStringLiteral("Reset-%1").arg(int(form)));
        HomeScreen* home = dropPhotos(
            t, {copySample(pictures, QStringLiteral("Reagan.jpg"), QStringLiteral("a.jpg"))}, 1);
        ProcessingControls& controls = *named<ProcessingControls>(home);
        ProcessingOptions& options = t.app->processingOptions();
        t.app->homeSession().form().editText(kArtist, QStringLiteral("Someone"));
        controls.clickedChooseEditingOptions(2);
        controls.checkBox(ProcessingOptions::Box::Exif)->click();
        QVERIFY(options.clean().cleanExif && options.clean().cleanGPS);
        // A rename rule with its one-run "Overwrite", and a position picked on the map.
        AddText trip;
        trip.addTextValueAT = QStringLiteral("Trip-");
        t.app->renameSettings() = trip;
        options.overwriteExisting = true;
        t.app->homeSession().location().set(48.85, 2.35);

        QTest::mouseClick(named<QPushButton>(home, QStringLiteral("btnResetAll")), Qt::LeftButton);
        // As when the list is new, the rename rule and the picked position are let go.
        QVERIFY(t.app->renameSettings().is<KeepOriginalName>());
        QVERIFY(!options.overwriteExisting);
        QCOMPARE(t.app->homeSession().location().latitude(), 0.0);
        QCOMPARE(options.row(), 0);
        QCOMPARE(controls.popup()->currentIndex(), 0);
        QVERIFY(named<MetadataViewController>(home, QStringLiteral("MetadataViewController"))
                    ->isVisibleTo(home));
        QVERIFY(!controls.cleanBox()->isVisibleTo(home));
        QVERIFY(!t.app->homeSession().form().hasEdits());
        QVERIFY(named<QPushButton>(home, QStringLiteral("btnStartProcess"))->isEnabled());
        // The boxes are off, and so are the values behind them: ticking IPTC alone now
        // removes IPTC alone.
        QVERIFY(!options.clean().any());
        controls.clickedChooseEditingOptions(2);
        controls.checkBox(ProcessingOptions::Box::Iptc)->click();
        QVERIFY(options.clean().cleanIPTC);
        QVERIFY(!options.clean().cleanExif && !options.clean().cleanGPS &&
                !options.clean().cleanComment && !options.clean().cleanXMP);
    }
}

void EditsStayTest::confirmingAnUnchangedReferenceMarksNothing() {
    for (const ValueForm form : kForms) {
        TestApp t(true, form);
        const QString pictures = m_home->filePath(QStringLiteral("Ref-%1").arg(int(form)));
        // North-west as the sample has it, and the same photo moved south of the equator.
        const QString northWest =
            copySample(pictures, QStringLiteral("et-GPS.jpg"), QStringLiteral("a.jpg"));
        const QString southWest =
            copySample(pictures, QStringLiteral("et-GPS.jpg"), QStringLiteral("b.jpg"));
        QVERIFY(modifyWithExiv2(southWest, {QStringLiteral("set Exif.GPSInfo.GPSLatitudeRef S")}));
        HomeScreen* home = dropPhotos(t, {northWest, southWest}, 2);
        MetadataForm& editor = t.app->homeSession().form();
        for (int row = 0; row < 2; ++row) {
            home->clickedSelectUnselectAll(false);
            home->clickedCheckBox(row, true);
            const bool south = t.set().workingImages().at(row).path() == southWest;
            for (const Field reference : {kLatitudeRef, kLongitudeRef}) {
                QComboBox* popup = popupOf(home, reference);
                const int shown = popup->currentIndex();
                QCOMPARE(shown, reference == kLatitudeRef && !south ? 1 : 2);
                t.prompt.answerNext(QStringLiteral("YES"));
                emit popup->activated(shown);
                QCOMPARE(editor.popupRow(reference), shown);
            }
            for (Field position : {kLatitude, kLatitudeRef, kLongitude, kLongitudeRef})
                QVERIFY2(!editor.isEdited(position), fieldName(position));
            QVERIFY(!editor.hasEdits());
        }
    }
}

TAGMOOR_APP_TEST_MAIN(EditsStayTest)
#include "EditsStayTest.moc"
