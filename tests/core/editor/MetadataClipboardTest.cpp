#include "editor/MetadataClipboard.h"

#include "editor/EditorState.h"
#include "editor/FormPopups.h"
#include "editor/MetadataForm.h"
#include "foundation/ScriptedPrompt.h"
#include "model/FormFieldTable.h"
#include "workingset/WorkingSet.h"

#include <gtest/gtest.h>

namespace tagmoor {
namespace {

CGImageProperties clipPhoto(const QString& name) {
    return withKeyGroups(makeEmptyRecord(QUrl::fromLocalFile("/p/" + name)));
}

struct Session {
    WorkingSet set;
    EditorState state;
    ScriptedPrompt prompt;
    MetadataForm form{set, state, prompt, true};
};

TEST(MetadataClipboard, PastesTheTickedValuesAsEditsOfTheMarkedPhotos) {
    const QDateTime taken(QDate(2019, 7, 14), QTime(9, 30, 0));
    CGImageProperties source = clipPhoto("source.jpg");
    source.tiffProperties->artist = PropertyValue("Ann");
    source.exifProperties->isoSpeedRating = PropertyValue(qint64(200));
    source.exifProperties->flash = PropertyValue(qint64(1));
    source.exifProperties->dateTimeOriginal = PropertyValue(taken);
    source.gpsProperties->latitude = PropertyValue(48.5);
    source.gpsProperties->latitudeRef = PropertyValue("S");

    MetadataClipboard clip;
    clip.copy(source);
    QList<Field> held;
    for (const MetadataClipboard::Entry& e : clip.entries())
        held << e.field;
    // Only what the photo has, in the form's order; nothing of the empty fields.
    EXPECT_EQ(held, (QList<Field>{Field::Artist, Field::DateTimeOriginal, Field::ISO, Field::Flash,
                                  Field::GPSLatitude, Field::GPSLatitudeRef}));
    EXPECT_EQ(clip.entries().front().value, "Ann");
    EXPECT_FALSE(clip.entries().front().label.isEmpty());

    Session s;
    CGImageProperties other = clipPhoto("b.jpg");
    other.tiffProperties->artist = PropertyValue("Bob");
    s.set.appendImages({other, clipPhoto("c.jpg")});
    s.form.updateMetadataInfo(0, true, {0, 1});
    clip.paste(s.form, [](Field f) {
        return f == Field::Artist || f == Field::Flash || f == Field::DateTimeOriginal ||
               f == Field::GPSLatitude || f == Field::GPSLatitudeRef;
    });

    EXPECT_EQ(s.form.text(Field::Artist), "Ann");
    EXPECT_TRUE(s.form.isEdited(Field::Artist));
    EXPECT_EQ(s.form.popupRow(Field::Flash), FormPopups::rowOf(Field::Flash, qint64(1)));
    EXPECT_TRUE(s.form.isEdited(Field::Flash));
    EXPECT_FALSE(s.form.isEdited(Field::ISO)); // not ticked
    EXPECT_EQ(s.form.text(Field::ISO), "");
    // A date becomes a rule that sets that date.
    EXPECT_TRUE(s.form.isEdited(Field::DateTimeOriginal));
    EXPECT_TRUE(s.form.dateRule(DateField::dateTimeOriginal).is<SelectDate>());
    EXPECT_EQ(s.form.dateSlot(DateField::dateTimeOriginal), taken);
    // The coordinate and its hemisphere: no photo on display has one, so nobody is asked.
    EXPECT_TRUE(s.prompt.alerts.isEmpty());
    EXPECT_TRUE(s.form.isEdited(Field::GPSLatitude));
    EXPECT_EQ(FormPopups::referenceOfRow(s.form.popupRow(Field::GPSLatitudeRef)),
              FormPopups::ReferenceRow::southOrWest);
    const CGImageProperties snapshot = s.form.readForm();
    EXPECT_EQ(snapshot.tiffProperties->artist.text(), "Ann");
}

// The photo's rating, label, IPTC texts and people come after its fields; the ticked ones
// replace those of the edits beyond the form, the others stay as they were edited.
TEST(MetadataClipboard, CarriesTheValuesBeyondTheForm) {
    CGImageProperties source = clipPhoto("source.jpg");
    source.tiffProperties->artist = PropertyValue("Ann");
    ExtraValues extras;
    extras.rating = kRejectedRating;
    extras.label = QStringLiteral("Blue");
    extras.texts[std::size_t(ExtraText::AltText)] = QStringLiteral("A red tram");
    extras.texts[std::size_t(ExtraText::Event)] = QString(); // empty: nothing to copy
    extras.persons = {"Ana, the elder", "Rui"};

    MetadataClipboard clip;
    clip.copy(source, extras);
    using Kind = MetadataClipboard::Kind;
    QList<Kind> kinds;
    for (const MetadataClipboard::Entry& e : clip.entries())
        kinds << e.kind;
    ASSERT_EQ(kinds,
              (QList<Kind>{Kind::field, Kind::rating, Kind::label, Kind::text, Kind::persons}));
    EXPECT_EQ(clip.entries()[3].value, "A red tram");

    Session s;
    s.set.appendImages({clipPhoto("b.jpg")});
    s.form.updateMetadataInfo(0, false, {0});
    ExtraEdits edits;
    edits.label = QStringLiteral("Red");
    edits.addKeywords = {"Kept"};
    clip.paste(s.form, edits, {false, true, false, true, true});
    EXPECT_FALSE(s.form.isEdited(Field::Artist));
    EXPECT_EQ(edits.rating, kRejectedRating);
    EXPECT_EQ(edits.label, "Red");
    EXPECT_EQ(edits.texts[std::size_t(ExtraText::AltText)], "A red tram");
    EXPECT_EQ(edits.persons, (QStringList{"Ana, the elder", "Rui"}));
    EXPECT_EQ(edits.addKeywords, QStringList{"Kept"});

    // A copy from a photo without them holds none of them any more.
    clip.copy(source);
    EXPECT_EQ(clip.entries().size(), 1);
}

} // namespace
} // namespace tagmoor
