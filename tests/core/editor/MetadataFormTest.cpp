#include "editor/MetadataForm.h"
#include "IcuZoneScope.h"
#include "editor/DateSummary.h"
#include "editor/EditorState.h"
#include "editor/FieldInput.h"
#include "editor/FormPopups.h"
#include "editor/FormSections.h"
#include "editor/SelectionMerge.h"
#include "foundation/ScriptedPrompt.h"
#include "model/FormFieldTable.h"
#include "workingset/WorkingSet.h"

#include <QCoreApplication>

#include <gtest/gtest.h>

#include <set>

#include <vector>

namespace tagmoor {
namespace {

constexpr Field kArtist = Field::Artist;
constexpr Field kCopyright = Field::Copyright;
constexpr Field kIso = Field::ISO;
constexpr Field kFNumber = Field::FNumber;
constexpr Field kFlash = Field::Flash;
constexpr Field kLatitude = Field::GPSLatitude;
constexpr Field kLongitude = Field::GPSLongitude;
constexpr Field kLongitudeRef = Field::GPSLongitudeRef;

CGImageProperties photo(const QString& name, const QString& artist = {}) {
    CGImageProperties r = makeEmptyRecord(QUrl::fromLocalFile("/p/" + name));
    r = withKeyGroups(r);
    if (!artist.isEmpty())
        r.tiffProperties->artist = PropertyValue(artist);
    return r;
}

TEST(FieldInput, FiltersLimitsAndCommas) {
    struct Case {
        Field field;
        QString typed;
        QString text;
        QString message;
    };
    const QString over1024 = "Value can not be greater than 1024.0";
    const QString over65535 = "Value can not be greater than 65535.0";
    const Case cases[] = {
        {kFNumber, "1025", "102", over1024},
        {kFNumber, "999999", "1024", over1024}, // still over after one character: the limit
        {kFNumber, "5.6", "5.6", {}},
        {kFNumber, "12,5", "125", {}},   // commas go in a limited field
        {kFNumber, "1.2.3", "1.23", {}}, // the second dot goes
        {kLatitude, "91", "91", {}},     // no check against 90 at this level
        {kLatitude, "70000", "7000", over65535},
        {kIso, "12a", "12", {}},
        {kIso, "a", "", {}},
        {kIso, "1.5", "15", {}}, // integers keep no dot
        {kIso, "70000", "7000", over65535},
        {kArtist, "a,b.c", "a,b.c", {}}, // text fields are not checked
    };
    for (const Case& c : cases) {
        const FieldInputResult r = checkFieldInput(c.field, c.typed);
        EXPECT_EQ(r.text, c.text) << c.typed.toStdString();
        EXPECT_EQ(r.limitMessage.value_or(QString()), c.message) << c.typed.toStdString();
    }
}

TEST(SelectionMerge, AgreementPlaceholdersAndOrder) {
    CGImageProperties a = photo("a.jpg", "Ann");
    CGImageProperties b = photo("b.jpg", "Bob");
    CGImageProperties c = photo("c.jpg", "Ann");
    for (CGImageProperties* r : {&a, &b, &c}) {
        r->tiffProperties->copyRight = PropertyValue("Same");
        r->exifProperties->isoSpeedRating = PropertyValue(qint64(0)); // a zero is no value
    }
    a.exifProperties->flash = PropertyValue(qint64(1));
    c.exifProperties->flash = PropertyValue(qint64(1));

    const MergedSelection m = mergeSelection({&a, &b, &c});
    EXPECT_FALSE(m.record.tiffProperties->artist.isPresent());
    EXPECT_EQ(m.placeholders[kArtist], Placeholder::MultipleValues);
    EXPECT_EQ(m.record.tiffProperties->copyRight.text(), "Same");
    EXPECT_EQ(m.placeholders[kIso], Placeholder::EmptyInAllImages);
    EXPECT_EQ(m.placeholders[kFlash], Placeholder::MultipleValues);
    EXPECT_FALSE(m.record.exifProperties->flash.isPresent()) << "a popup that differs shows row 0";

    // The outcome does not depend on which photo comes first.
    const MergedSelection other = mergeSelection({&b, &c, &a});
    for (const FormField& field : formFields())
        EXPECT_EQ(other.placeholders[field.field], m.placeholders[field.field]) << field.control;
}

// A selection long enough to be compared in parts: a single photo that differs, wherever it
// stands, decides the field.
TEST(SelectionMerge, LongSelectionsAreDecidedByAnyPhoto) {
    std::vector<CGImageProperties> photos;
    for (int i = 0; i < 20000; ++i) {
        photos.push_back(photo(QString("%1.jpg").arg(i), "Ann"));
        photos.back().tiffProperties->copyRight = PropertyValue("Same");
    }
    photos[19999].tiffProperties->artist = PropertyValue("Bob");
    photos[9000].exifProperties->isoSpeedRating = PropertyValue(qint64(200));
    QList<const CGImageProperties*> selected;
    for (const CGImageProperties& p : photos)
        selected << &p;
    const MergedSelection m = mergeSelection(selected);
    EXPECT_FALSE(m.record.tiffProperties->artist.isPresent());
    EXPECT_EQ(m.record.tiffProperties->copyRight.text(), "Same");
    EXPECT_EQ(m.placeholders[kIso], Placeholder::MultipleValues);
    EXPECT_EQ(m.placeholders[kFNumber], Placeholder::EmptyInAllImages);
}

TEST(DateSummary, TextsOfEachMode) {
    test::IcuZoneScope zone(u"UTC");
    EXPECT_EQ(dateSummary(DateTimeConfiguration{}, std::nullopt), "Keep Original");
    EXPECT_EQ(dateSummary(EmptyValue{}, std::nullopt), "Empty Value");

    EXPECT_EQ(dateSummary(IDOD{-2, 0, 1, false, true, false}, std::nullopt),
              "Inc/Dec:  Day: -2  Year: 1 ");
    EXPECT_EQ(dateSummary(IDOD{0, 0, 0, true, true, true}, std::nullopt), "Keep Original");

    UpdateDate update;
    update.changeDays = 5;
    update.isKeepOriginalMonths = true;
    update.isKeepOriginalYears = true;
    update.isKeepOriginalTime = true;
    EXPECT_EQ(dateSummary(update, std::nullopt), "Update:  Day: 5  Time: Keep Original");
    update.isKeepOriginalTime = false;
    const QDateTime slot(QDate(2021, 5, 6), QTime(22, 7, 9), Qt::UTC);
    EXPECT_EQ(dateSummary(update, slot), "Update:  Day: 5  Time: 10:07:09 PM ");
}

struct FormFixture {
    WorkingSet set;
    EditorState state;
    ScriptedPrompt prompt;
    MetadataForm form{set, state, prompt, true};

    void showAll() {
        QList<int> all;
        for (int i = 0; i < set.count(); ++i)
            all << i;
        form.updateMetadataInfo(0, all.size() > 1, all);
    }
};

TEST(MetadataForm, ShowsMergeAndTracksEditsAgainstEveryMarkedPhoto) {
    FormFixture f;
    f.set.appendImages({photo("a.jpg", "Ann"), photo("b.jpg", "Bob"), photo("c.jpg", "Cy")});
    f.showAll();
    EXPECT_EQ(f.form.text(kArtist), "");
    EXPECT_EQ(f.form.placeholderText(kArtist), "Multiple Values");
    EXPECT_EQ(f.form.placeholderText(kCopyright), "Empty value in all images");
    EXPECT_FALSE(f.form.hasEdits());

    f.form.editText(kArtist, "Dee");
    EXPECT_TRUE(f.form.isEdited(kArtist));
    EXPECT_TRUE(f.form.hasEdits());

    // Marking one photo keeps what was typed: the run writes it to every marked photo.
    f.form.updateMetadataInfo(1, false, {1});
    EXPECT_EQ(f.form.text(kArtist), "Dee");
    f.form.editText(kArtist, "Bob"); // the photo's own value again: no edit
    EXPECT_FALSE(f.form.isEdited(kArtist));

    f.form.editText(kFNumber, "1025");
    EXPECT_EQ(f.form.text(kFNumber), "102");
    f.form.choosePopupRow(kFlash, 2);
    EXPECT_TRUE(f.form.isEdited(kFlash));
    f.form.choosePopupRow(kFlash, 0);
    EXPECT_FALSE(f.form.isEdited(kFlash));

    const CGImageProperties snapshot = f.form.readForm();
    EXPECT_EQ(snapshot.tiffProperties->artist.text(), "Bob");
    EXPECT_EQ(snapshot.exifProperties->fNumber.float32(), 102.0f);

    f.form.resetAll();
    EXPECT_FALSE(f.form.hasEdits());
    for (const FormField& field : formFields())
        EXPECT_TRUE(f.form.text(field.field).isEmpty()) << field.control;
}

// A long marked list may be merged over several turns of the event loop: the result is the
// merge of all of them, what is typed meanwhile stays, and a newer choice is never overwritten
// by the older merge.
TEST(MetadataForm, LongSelectionsShowTheirMergeAndYieldToANewerChoice) {
    FormFixture f;
    QList<CGImageProperties> photos;
    for (int i = 0; i < 20000; ++i) {
        photos << photo(QString("%1.jpg").arg(i), "Ann");
        photos.back().tiffProperties->copyRight = PropertyValue("Same");
    }
    photos[15000].tiffProperties->artist = PropertyValue("Bob");
    f.set.appendImages(photos);
    int resets = 0;
    QObject::connect(&f.form, &MetadataForm::formReset, [&] { ++resets; });
    const auto settle = [] {
        for (int turn = 0; turn < 1000; ++turn)
            QCoreApplication::processEvents();
    };

    f.showAll();
    f.form.editText(kIso, "800");
    settle();
    EXPECT_EQ(resets, 1);
    EXPECT_EQ(f.form.placeholderText(kArtist), "Multiple Values");
    EXPECT_EQ(f.form.text(kCopyright), "Same");
    EXPECT_EQ(f.form.text(kIso), "800");
    EXPECT_TRUE(f.form.isMultipleSelected());

    f.showAll();
    f.form.updateMetadataInfo(15000, false, {15000});
    settle();
    EXPECT_EQ(f.form.text(kArtist), "Bob");
    EXPECT_FALSE(f.form.isMultipleSelected());
}

TEST(MetadataForm, CleaningModeKeepsTheTypedTextsForTheWayBack) {
    FormFixture f;
    f.set.appendImages({photo("a.jpg", "Ann")});
    f.form.updateMetadataInfo(0, false, {0});
    f.form.editText(kArtist, "Zoe");
    f.form.choosePopupRow(kFlash, 3);
    f.form.leaveEditingMode();
    EXPECT_EQ(f.form.text(kArtist), "");
    EXPECT_EQ(f.form.popupRow(kFlash), 0);
    EXPECT_TRUE(f.form.hasEdits()) << "leaving the mode keeps the flags";
    f.form.returnToEditingMode();
    EXPECT_EQ(f.form.text(kArtist), "Zoe");
    EXPECT_EQ(f.form.popupRow(kFlash), 3);
    EXPECT_EQ(f.form.text(kCopyright), "") << "only edited fields come back";
}

TEST(MetadataForm, ReferenceChangeAsksWhenThePhotoHasTheCoordinate) {
    FormFixture f;
    CGImageProperties p = photo("a.jpg");
    p.gpsProperties->longitude = PropertyValue(12.5f);
    f.set.appendImages({p});
    f.form.updateMetadataInfo(0, false, {0});
    EXPECT_EQ(f.form.text(kLongitude), "12.5");

    f.prompt.answerNext("NO");
    EXPECT_FALSE(f.form.chooseReferenceRow(kLongitudeRef, 2));
    ASSERT_EQ(f.prompt.alerts.size(), 1);
    EXPECT_EQ(f.prompt.alerts[0].title, "Location coordinates will change");
    EXPECT_EQ(f.prompt.alerts[0].text,
              "Changing the value of GPS Longitude Ref. will change the current selected "
              "location. You may edit the correct location using 'Edit Location' from the right "
              "pane. Are you sure you want to continue?");
    EXPECT_EQ(f.prompt.alerts[0].buttons, (QStringList{"YES", "NO"}));
    EXPECT_EQ(f.form.popupRow(kLongitudeRef), 0);
    EXPECT_FALSE(f.form.hasEdits()) << "NO changes nothing";

    f.prompt.answerNext("YES");
    EXPECT_TRUE(f.form.chooseReferenceRow(kLongitudeRef, 2));
    EXPECT_TRUE(f.form.isEdited(kLongitudeRef));

    // A photo without the coordinate is not asked about.
    FormFixture g;
    g.set.appendImages({photo("b.jpg")});
    g.form.updateMetadataInfo(0, false, {0});
    EXPECT_TRUE(g.form.chooseReferenceRow(kLongitudeRef, 1));
    EXPECT_TRUE(g.prompt.alerts.isEmpty());
}

TEST(MetadataForm, DateRulesShowTheirSummaryAndCountAsEdits) {
    FormFixture f;
    f.set.appendImages({photo("a.jpg")});
    f.form.updateMetadataInfo(0, false, {0});
    DateTimeConfiguration keep; // touched but keeping the original still counts
    f.form.commitDateRule(DateField::createDateXMP, keep, std::nullopt);
    EXPECT_FALSE(f.form.hasEdits()) << "an untouched store stays untouched";
    const DateTimeConfiguration empty = EmptyValue{};
    f.form.commitDateRule(DateField::createDateXMP, empty, std::nullopt);
    EXPECT_TRUE(f.form.isEdited(Field::CreateDateXMP));
    EXPECT_EQ(f.form.text(Field::CreateDateXMP), "Empty Value");
}

// The rows that stand for no value and for the signs of the GPS references; any other row of a
// reference popup is blank.
TEST(FormPopups, TheBlankRowAndTheReferenceRows) {
    using FormPopups::ReferenceRow;
    for (const FormField& field : formFields()) {
        if (field.kind != FormKind::Popup)
            continue;
        EXPECT_FALSE(FormPopups::valueOfRow(field.field, FormPopups::kBlankRow)) << field.control;
        EXPECT_EQ(FormPopups::rowOf(field.field, PropertyValue()), FormPopups::kBlankRow)
            << field.control;
    }
    EXPECT_EQ(FormPopups::referenceOfRow(-1), ReferenceRow::blank);
    EXPECT_EQ(FormPopups::referenceOfRow(3), ReferenceRow::blank);
    for (const ReferenceRow r :
         {ReferenceRow::blank, ReferenceRow::northOrEast, ReferenceRow::southOrWest})
        EXPECT_EQ(FormPopups::referenceOfRow(FormPopups::rowOfReference(r)), r);
    const auto letter = [](Field field, ReferenceRow r) {
        return FormPopups::valueOfRow(field, FormPopups::rowOfReference(r))->text();
    };
    EXPECT_EQ(letter(Field::GPSLatitudeRef, ReferenceRow::northOrEast), "N");
    EXPECT_EQ(letter(Field::GPSLatitudeRef, ReferenceRow::southOrWest), "S");
    EXPECT_EQ(letter(Field::GPSLongitudeRef, ReferenceRow::northOrEast), "E");
    EXPECT_EQ(letter(Field::GPSLongitudeRef, ReferenceRow::southOrWest), "W");
}

TEST(FormLayout, SectionsHoldEveryFieldOnceAndPopupsHaveRows) {
    std::set<Field> seen;
    for (const FormSection& section : formSections()) {
        for (const FormLine& line : section.lines) {
            EXPECT_TRUE(seen.insert(line.field).second) << fieldName(line.field);
            EXPECT_FALSE(labelOf(line.field).isEmpty());
        }
    }
    EXPECT_EQ(seen.size(), formFields().size());
    for (const FormField& field : formFields()) {
        EXPECT_EQ(field.kind == FormKind::Popup, FormPopups::isPopup(field.field)) << field.control;
        if (field.kind == FormKind::Popup) {
            EXPECT_GT(FormPopups::rowTexts(field.field).size(), 1) << field.control;
        }
    }
}

} // namespace
} // namespace tagmoor
