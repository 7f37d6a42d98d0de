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

} // namespace
} // namespace tagmoor
