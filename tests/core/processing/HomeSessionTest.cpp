#include "processing/HomeSession.h"
#include "TestSupport.h"
#include "batch/AskedKeys.h"
#include "batch/PhotoPipeline.h"
#include "editor/EditorState.h"
#include "foundation/AppEvents.h"
#include "foundation/ScriptedPrompt.h"
#include "foundation/Settings.h"
#include "metadata/PropertyLoading.h"
#include "presets/PresetStore.h"
#include "processing/FolderAccess.h"
#include "processing/ProcessingOptions.h"
#include "rename/RenameNumbering.h"
#include "workingset/ScanController.h"
#include "workingset/WorkingSet.h"

#include "exchange/CsvTable.h"
#include "presets/PresetExtras.h"

#include <QSignalSpy>
#include <QTemporaryDir>

namespace tagmoor {
namespace {

struct SessionFixture {
    QTemporaryDir home;
    WorkingSet set;
    ScriptedPrompt prompt;
    AppEvents events;
    ScanController scans{set, prompt, events};
    EditorState state;
    Settings settings{home.filePath("settings.ini")};
    ProcessingOptions options;
    FolderAccess folders{home.path()};
    Rename rename;
    RenameNumbering numbering;
    PresetStore presets{settings};
    HomeSession session{{set, scans, events, prompt, state, settings, options, folders, rename,
                         numbering, presets}};
    QString photos = home.filePath("photos");
    QString out = home.filePath("out");

    SessionFixture() {
        QDir().mkpath(photos);
        QDir().mkpath(out);
        settings.setIsPresetSavingSettingInHome(false);
        for (const char* name : {"Reagan.jpg", "et-GPS.jpg"}) {
            const QString copy =
                test::copySample(test::formatsDir() + "/" + QString::fromLatin1(name), photos);
            set.appendImages({*loadImageProperties(QUrl::fromLocalFile(copy))});
        }
        session.form().updateMetadataInfo(0, true, {0, 1});
    }
};

// Finish takes off the cover the chain left over the run, empties the list and, with it, lets
// go of everything the last list had: edits, rename rule, mode and picked position. Removing
// only some photos keeps them.
TEST(HomeSession, FinishLetsGoOfTheLastListAndItsCover) {
    SessionFixture f;
    f.session.form().editText(Field::Artist, "Jane Doe");
    f.options.chooseRow(1);
    f.rename = AddText{QStringLiteral("trip")};
    f.session.location().set(10, 20);
    QSignalSpy started(&f.session, &HomeSession::newListStarted);
    f.set.setSelected(0, false);
    f.set.removeMarkedImages();
    ASSERT_EQ(f.set.count(), 1);
    f.set.setAllSelected(true);
    EXPECT_TRUE(started.isEmpty());
    EXPECT_TRUE(f.session.form().hasEdits()) << "a list that is not empty keeps its edits";

    QStringList cover;
    QObject::connect(&f.session.chain(), &StartProcessChain::coverChanged, &f.session,
                     [&](bool on) { cover << (on ? "on" : "off"); });
    QSignalSpy ready(&f.session.chain(), &StartProcessChain::runReady);
    f.prompt.panelAnswers = {{f.out}};
    f.session.startProcess();
    ASSERT_TRUE(ready.wait(5000));
    EXPECT_EQ(cover.last(), "on");

    QList<RootPage> pages;
    QObject::connect(&f.events, &AppEvents::UpdateVCOTM, &f.session,
                     [&](RootPage page) { pages << page; });
    QSignalSpy after(&f.events, &AppEvents::AfterFinishOTM);
    cover.clear();
    f.session.finishRun();
    EXPECT_EQ(cover, QStringList{"off"});
    EXPECT_TRUE(f.set.isEmpty());
    EXPECT_EQ(pages, QList<RootPage>{RootPage::addFiles});
    EXPECT_EQ(after.size(), 1);
    EXPECT_EQ(started.size(), 1);
    EXPECT_FALSE(f.session.form().hasEdits());
    EXPECT_EQ(f.options.mode(), ProcessingMode::keepUnedited);
    EXPECT_EQ(f.rename, Rename{});
    EXPECT_EQ(f.session.location().latitude(), 0);
    EXPECT_EQ(f.session.location().longitude(), 0);
}

// The shared position: a photo with a position hands it over, one without leaves it; the
// picker starts from the form's position only when both of its parts are set, and its answer
// becomes the form's GPS edits.
TEST(HomeSession, TheSharedPositionGoesBetweenPhotoPickerAndForm) {
    SessionFixture f;
    const CGImageProperties& without = f.set.workingImages().at(0);
    const CGImageProperties& with = f.set.workingImages().at(1);
    f.session.location().set(1, 2);
    f.session.locationPickerOpening();
    EXPECT_EQ(f.session.location().latitude(), 1) << "a form without a position leaves it";
    EXPECT_FALSE(f.session.takePositionOf(without));
    EXPECT_EQ(f.session.location().latitude(), 1);
    const auto position = f.session.takePositionOf(with);
    ASSERT_TRUE(position);
    EXPECT_NEAR(position->latitude(), 54.99, 0.01);
    EXPECT_NEAR(f.session.location().longitude(), -1.92, 0.01);

    f.session.location().set(-33.9628, 18.4098);
    f.session.takePickedLocation();
    EXPECT_TRUE(f.session.form().hasEdits());
    f.session.location().set(0, 0);
    f.session.locationPickerOpening();
    EXPECT_NEAR(f.session.location().latitude(), -33.9628, 1e-4);
    EXPECT_NEAR(f.session.location().longitude(), 18.4098, 1e-4);
}

// The line above Start Process names each thing the run is set to do, and each item is taken
// back on its own: the form shows the photos' own values again and the run leaves them.
TEST(HomeSession, TheSummaryNamesEachThingSetAndEachItemClearsOnItsOwn) {
    SessionFixture f;
    MetadataForm& form = f.session.form();
    form.updateMetadataInfo(1, false, {1});
    const QString artistBefore = form.text(Field::Artist);
    const QString latitudeBefore = form.text(Field::GPSLatitude);
    const QString dateBefore = form.text(Field::DateTimeOriginal);
    EXPECT_TRUE(f.session.summary().isEmpty());

    f.presets.addPreset(QStringLiteral("Holiday"));
    emit f.events.PresetsDetailsOTM({PresetMenuRow::savedPreset, 0});
    EXPECT_TRUE(f.session.summary().isEmpty()) << "a preset that put nothing in the form";
    form.editText(Field::Artist, QStringLiteral("Jane Doe"));
    form.editText(Field::Copyright, QStringLiteral("(c) Jane"));
    f.state.editorDates().commitPanel(DateField::dateTimeOriginal,
                                      DateTimeConfiguration(IDOT{1, 0, 0}), std::nullopt);
    form.refreshDateSummaries();
    f.rename = CaptureDateName{QStringLiteral("yyyy-MM-dd")};
    form.takeLocation(38.7223, -9.1393);

    const auto texts = [&f] {
        QStringList t;
        for (const RunSummaryItem& item : f.session.summary())
            t << item.text;
        return t;
    };
    EXPECT_EQ(texts(),
              (QStringList{"2 fields edited", "DateTimeOriginal +1 h", "rename: capture date",
                           "location: 38.7223, -9.1393", "preset: Holiday"}));
    const auto item = [&f](RunSummaryItem::Kind kind) {
        for (const RunSummaryItem& i : f.session.summary())
            if (i.kind == kind)
                return i;
        ADD_FAILURE() << "no item of that kind";
        return RunSummaryItem{};
    };

    QSignalSpy changed(&f.session, &HomeSession::summaryChanged);
    f.session.clearSummaryItem(item(RunSummaryItem::Kind::date));
    EXPECT_FALSE(f.state.editorDates().rules().alive(DateField::dateTimeOriginal));
    EXPECT_FALSE(form.isEdited(Field::DateTimeOriginal));
    EXPECT_EQ(form.text(Field::DateTimeOriginal), dateBefore);
    EXPECT_FALSE(changed.isEmpty());

    f.session.clearSummaryItem(item(RunSummaryItem::Kind::fields));
    EXPECT_FALSE(form.isEdited(Field::Artist));
    EXPECT_EQ(form.text(Field::Artist), artistBefore);
    EXPECT_TRUE(form.isEdited(Field::GPSLatitude)) << "the position is an item of its own";

    f.session.clearSummaryItem(item(RunSummaryItem::Kind::location));
    EXPECT_FALSE(form.isEdited(Field::GPSLatitude));
    EXPECT_EQ(form.text(Field::GPSLatitude), latitudeBefore);
    EXPECT_EQ(texts(), (QStringList{"rename: capture date"}))
        << "no edit left: the preset's name goes with its values";

    f.session.clearSummaryItem(item(RunSummaryItem::Kind::rename));
    EXPECT_TRUE(f.rename.is<KeepOriginalName>());
    EXPECT_TRUE(f.session.summary().isEmpty());

    // The review's first view: the asked keys only, unless the mode clears tags.
    form.editText(Field::Artist, QStringLiteral("Jane Doe"));
    RunValues values = f.session.reviewValues();
    EXPECT_EQ(askedKeys(values), std::optional<QSet<QString>>({"Exif.Image.Artist"}));
    values.processingMode = ProcessingMode::clearUnedited;
    EXPECT_EQ(askedKeys(values), std::nullopt);
}

// In the standard form the review's values fill in a text's placeholders for each marked photo,
// as the run will; the counter counts the marked photos only.
TEST(HomeSession, ReviewFillsInPlaceholdersPerMarkedPhoto) {
    const ValueFormScope scope(ValueForm::standard);
    SessionFixture f;
    f.set.setSelected(0, false);
    f.session.form().updateMetadataInfo(1, false, {1});
    f.session.form().editText(Field::Artist, QStringLiteral("{counter} {filename}"));
    const PhotoPipeline pipeline(f.session.reviewValues());
    const KeyRow& artist = formField(Field::Artist).keyRow();
    EXPECT_EQ(pipeline.fieldEditsFor(f.set.workingImages()[1]).values.at(artist).text(),
              "1 et-GPS.jpg");
}

// Copy from the photo on display, paste onto the marked ones: the ticked values become edits,
// and the summary names them.
TEST(HomeSession, CopiesThePhotoOnDisplayAndPastesTheTickedValues) {
    SessionFixture f;
    f.session.form().updateMetadataInfo(1, false, {1});
    ASSERT_TRUE(f.session.copyMetadata());
    EXPECT_FALSE(f.session.clipboard().isEmpty());

    f.session.form().updateMetadataInfo(0, false, {0});
    QSignalSpy summary(&f.session, &HomeSession::summaryChanged);
    QList<bool> ticked;
    for (const MetadataClipboard::Entry& entry : f.session.clipboard().entries())
        ticked << (entry.kind == MetadataClipboard::Kind::field && entry.field == Field::Artist);
    f.session.pasteMetadata(ticked);
    EXPECT_EQ(f.session.form().text(Field::Artist), "Ian Britton");
    EXPECT_TRUE(f.session.form().isEdited(Field::Artist));
    EXPECT_FALSE(f.session.form().isEdited(Field::Copyright));
    EXPECT_FALSE(summary.isEmpty());
    EXPECT_FALSE(f.session.summary().isEmpty());
}

// The edits of the Keywords & More tab: named in the summary and cleared item by item, taken by
// the review and by the run (with the edit question, not the no-changes one, when they are the
// only edits), and let go of by Reset All and by a new list.
TEST(HomeSession, TheEditsBeyondTheFormReachTheRunAndGoWithTheList) {
    SessionFixture f;
    const auto texts = [&f] {
        QStringList t;
        for (const RunSummaryItem& item : f.session.summary())
            t << item.text;
        return t;
    };
    const auto clear = [&f](RunSummaryItem::Kind kind) {
        for (const RunSummaryItem& item : f.session.summary())
            if (item.kind == kind)
                return f.session.clearSummaryItem(item);
        ADD_FAILURE() << "no item of that kind";
    };
    ExtraEdits edits;
    edits.addKeywords = QStringList{"Places|Lisbon", "Tram"};
    edits.removeKeywords = QStringList{"Old"};
    edits.label = QStringLiteral("Red");
    edits.texts[std::size_t(ExtraText::Event)] = QStringLiteral("Festa");
    edits.persons = QStringList{"Ana"};
    QSignalSpy changed(&f.session, &HomeSession::summaryChanged);
    f.session.setExtraEdits(edits);
    f.session.setRating(kRejectedRating);
    EXPECT_EQ(changed.size(), 2);
    EXPECT_EQ(texts(), (QStringList{QString::fromUtf8("keywords: +2 \u22121"), "rating: rejected",
                                    "label: Red", "2 IPTC texts"}));
    f.session.setRating(3);
    EXPECT_TRUE(texts().contains("rating: 3"));
    edits.rating = 3;
    EXPECT_EQ(f.session.reviewValues().extras, edits);

    clear(RunSummaryItem::Kind::label);
    clear(RunSummaryItem::Kind::texts);
    EXPECT_EQ(texts(), (QStringList{QString::fromUtf8("keywords: +2 \u22121"), "rating: 3"}));
    clear(RunSummaryItem::Kind::keywords);
    EXPECT_EQ(texts(), QStringList{"rating: 3"});
    EXPECT_EQ(f.session.extraEdits().rating, 3);

    QSignalSpy ready(&f.session.chain(), &StartProcessChain::runReady);
    f.prompt.panelAnswers = {{f.out}};
    f.session.startProcess();
    ASSERT_TRUE(ready.wait(5000));
    ASSERT_FALSE(f.prompt.alerts.isEmpty());
    EXPECT_EQ(f.prompt.alerts.first().title,
              "Are you sure to edit metadata of all the selected images?");
    EXPECT_EQ(ready.first().first().value<RunValues>().extras.rating, 3);
    f.session.chain().runClosed();

    f.session.resetAll();
    EXPECT_EQ(f.session.extraEdits(), ExtraEdits{});
    f.session.setRating(5);
    f.set.clearImages();
    EXPECT_EQ(f.session.extraEdits(), ExtraEdits{}) << "a new list starts without them";
    EXPECT_TRUE(f.session.summary().isEmpty());
}

// Paste Metadata... lists every value copied, "label: value", all ticked; only the ticked ones
// become edits. Cancel, or nothing ticked, changes nothing; with nothing copied it says so.
TEST(HomeSession, PasteAsksWhichValuesAndTakesOnlyThoseTicked) {
    SessionFixture f;
    EXPECT_FALSE(f.session.askAndPasteMetadata());
    ASSERT_EQ(f.prompt.alerts.size(), 1);
    EXPECT_TRUE(f.prompt.tickQuestions.isEmpty());

    f.session.form().updateMetadataInfo(1, false, {1});
    ASSERT_TRUE(f.session.copyMetadata());
    const auto& entries = f.session.clipboard().entries();
    f.session.form().updateMetadataInfo(0, true, {0, 1});
    const auto artist = std::find_if(entries.begin(), entries.end(), [](const auto& e) {
        return e.kind == MetadataClipboard::Kind::field && e.field == Field::Artist;
    });
    ASSERT_NE(artist, entries.end());
    QList<bool> onlyArtist(entries.size(), false);
    onlyArtist[artist - entries.begin()] = true;

    f.prompt.tickAnswers = {{1, QList<bool>(entries.size(), true)}, {0, {}}, {0, onlyArtist}};
    EXPECT_FALSE(f.session.askAndPasteMetadata()) << "cancelled";
    EXPECT_FALSE(f.session.askAndPasteMetadata()) << "nothing ticked";
    EXPECT_FALSE(f.session.form().hasEdits());
    EXPECT_TRUE(f.session.askAndPasteMetadata());
    ASSERT_EQ(f.prompt.tickQuestions.size(), 3);
    const TickQuestion& asked = f.prompt.tickQuestions.last();
    ASSERT_EQ(asked.items.size(), entries.size());
    EXPECT_EQ(asked.items[artist - entries.begin()], artist->label + ": Ian Britton");
    EXPECT_TRUE(asked.alert.text.contains("marked photos: 2")) << asked.alert.text.toStdString();
    EXPECT_EQ(f.session.form().text(Field::Artist), "Ian Britton");
    for (const MetadataClipboard::Entry& entry : entries) {
        if (entry.kind == MetadataClipboard::Kind::field) {
            EXPECT_EQ(f.session.form().isEdited(entry.field), entry.field == Field::Artist)
                << entry.label.toStdString();
        }
    }
}

// Import Metadata...: the rows of a table become edits of the photos they name, by path or by
// file name; those photos come up marked, the review shows each its own row, a run takes the
// rows, and the summary names the table until it is taken back or the list goes.
TEST(HomeSession, ImportedRowsBecomeEditsOfTheirPhotos) {
    const ValueFormScope scope(ValueForm::standard);
    SessionFixture f;
    f.set.setAllSelected(false);
    const QString table = f.home.filePath("table.csv");
    const QString second = f.set.workingImages()[1].path();
    ASSERT_TRUE(test::writeBytes(table, "SourceFile,Artist,Mood\n"
                                        "/elsewhere/Reagan.jpg,Row One,x\n" +
                                            second.toUtf8() + ",Row Two,\nother.jpg,Row Three,\n"));
    f.prompt.panelAnswers = {{table}};
    QSignalSpy imported(&f.session.exchange(), &ListExchange::imported);
    ASSERT_TRUE(f.session.exchange().importMetadata());
    ASSERT_TRUE(imported.wait(10000));
    EXPECT_EQ(f.set.markedIndices(), (QList<int>{0, 1}));
    ASSERT_EQ(f.prompt.alerts.size(), 1);
    const QString told = f.prompt.alerts.first().text;
    EXPECT_TRUE(told.contains("Rows read: 3. Photos matched: 2.")) << told.toStdString();
    EXPECT_TRUE(told.contains("other.jpg") && told.contains("Mood"));

    const PhotoPipeline pipeline(f.session.reviewValues());
    const KeyRow& artist = formField(Field::Artist).keyRow();
    EXPECT_EQ(pipeline.fieldEditsFor(f.set.workingImages()[0]).values.at(artist).text(), "Row One");
    EXPECT_EQ(pipeline.fieldEditsFor(f.set.workingImages()[1]).values.at(artist).text(), "Row Two");
    const auto tableItem = [&f]() -> std::optional<RunSummaryItem> {
        for (const RunSummaryItem& item : f.session.summary())
            if (item.kind == RunSummaryItem::Kind::table)
                return item;
        return std::nullopt;
    };
    ASSERT_TRUE(tableItem());

    // The imported rows alone are an edit: the run asks to edit, not whether to go on
    // without changes, and carries them.
    QSignalSpy ready(&f.session.chain(), &StartProcessChain::runReady);
    f.prompt.panelAnswers = {{f.out}};
    f.session.startProcess();
    ASSERT_TRUE(ready.wait(5000));
    EXPECT_EQ(f.prompt.alerts[1].title,
              "Are you sure to edit metadata of all the selected images?");
    EXPECT_FALSE(ready.first().first().value<RunValues>().photoValues.empty());
    f.session.chain().runClosed();

    f.session.clearSummaryItem(*tableItem());
    EXPECT_FALSE(tableItem());
    EXPECT_TRUE(f.session.reviewValues().photoValues.empty());
}

// Export Metadata...: the marked photos, or all when none is marked, in a table the import
// reads back; a cancelled panel writes nothing.
TEST(HomeSession, ExportWritesTheMarkedPhotosOrAll) {
    SessionFixture f;
    EXPECT_FALSE(f.session.exchange().exportMetadata());
    const QString path = f.home.filePath("out.csv");
    const auto exported = [&f, &path] {
        f.prompt.saveAnswers = {path};
        QSignalSpy done(&f.session.exchange(), &ListExchange::exported);
        EXPECT_TRUE(f.session.exchange().exportMetadata());
        EXPECT_TRUE(done.wait(10000));
        EXPECT_EQ(done.value(0).value(0).toBool(), true);
        QString error;
        return CsvTable::parse(test::readBytes(path), &error).value_or(CsvTable{});
    };
    f.set.setSelected(0, false);
    CsvTable one = exported();
    ASSERT_EQ(one.rows.size(), 1);
    EXPECT_EQ(one.header.first(), "SourceFile");
    EXPECT_EQ(one.rows[0][0], f.set.workingImages()[1].path());
    EXPECT_TRUE(one.header.contains("Artist"));
    f.set.setAllSelected(false);
    EXPECT_EQ(exported().rows.size(), 2);
    EXPECT_EQ(f.prompt.savePanels.size(), 3);
}

// A preset saved from the window keeps the edits of the Keywords & More tab; choosing it puts
// them back, and a preset without any leaves the tab as it is.
TEST(HomeSession, PresetsCarryTheEditsBeyondTheForm) {
    SessionFixture f;
    ExtraEdits edits;
    edits.addKeywords = {"Tram"};
    edits.rating = 2;
    edits.texts[std::size_t(ExtraText::AltText)] = QStringLiteral("{filename}");
    const qsizetype with = f.presets.addPreset("With");
    f.presets.replaceExtras(with, presetExtrasOf(edits));
    const qsizetype without = f.presets.addPreset("Without");
    f.presets.replaceExtras(without, ExtraEdits{});
    EXPECT_EQ(f.presets.presets()[without].extras, std::nullopt);

    emit f.events.PresetsDetailsOTM({PresetMenuRow::savedPreset, with});
    EXPECT_EQ(f.session.extraEdits(), edits);
    f.session.setRating(5);
    emit f.events.PresetsDetailsOTM({PresetMenuRow::savedPreset, without});
    EXPECT_EQ(f.session.extraEdits().rating, 5);
}

} // namespace
} // namespace tagmoor
