// The form's coordinates: degrees beside a reference popup on screen, one signed number in
// the snapshot a run writes; and the editing mode left and taken up again.
#include "batch/FormSnapshot.h"
#include "editor/EditorState.h"
#include "editor/MetadataForm.h"
#include "editor/PresetForm.h"
#include "foundation/ScriptedPrompt.h"
#include "foundation/ValueForm.h"
#include "presets/ActualPreset.h"
#include "workingset/WorkingSet.h"

#include <gtest/gtest.h>

namespace tagmoor {
namespace {

constexpr int kArtist = 0;
constexpr int kFlash = 16;
constexpr int kLatitude = 31;
constexpr int kLatitudeRef = 32;
constexpr int kLongitude = 33;
constexpr int kLongitudeRef = 34;

// A photo at the given signed position, as the reader of the form gives it.
CGImageProperties photoAt(double latitude, double longitude) {
    CGImageProperties r = withKeyGroups(makeEmptyRecord(QUrl::fromLocalFile("/p/a.jpg")));
    GPSProperties& gps = *r.gpsProperties;
    if (isStandardForm()) {
        gps.latitude = PropertyValue(latitude);
        gps.longitude = PropertyValue(longitude);
    } else {
        gps.latitude = PropertyValue(float(latitude));
        gps.longitude = PropertyValue(float(longitude));
    }
    gps.latitudeRef = PropertyValue(QString(latitude < 0 ? "S" : "N"));
    gps.longitudeRef = PropertyValue(QString(longitude < 0 ? "W" : "E"));
    return r;
}

struct FormFixture {
    WorkingSet set;
    EditorState state;
    ScriptedPrompt prompt;
    MetadataForm form{set, state, prompt, true};

    explicit FormFixture(const CGImageProperties& photo) {
        set.appendImages({photo});
        form.updateMetadataInfo(0, false, {0});
    }
    double snapshot(bool latitude) const {
        const CGImageProperties record = form.readForm();
        const GPSProperties& gps = *record.gpsProperties;
        return (latitude ? gps.latitude : gps.longitude).real().value_or(999);
    }
};

TEST(FormCoordinates, ReferencesSignTheDegreesOfTheSnapshot) {
    struct Case {
        PropertyValue degrees;
        const char* ref;
        double expected;
    } cases[] = {
        {PropertyValue(33.9628), "S", -33.9628},  {PropertyValue(-33.9628), "S", -33.9628},
        {PropertyValue(-33.9628), "N", 33.9628},  {PropertyValue(-33.9628), "", -33.9628},
        {PropertyValue(33.9628), "NIL", 33.9628}, {PropertyValue(12.5f), "s", -12.5},
    };
    for (const Case& c : cases) {
        CGImageProperties r = withKeyGroups(makeEmptyRecord(std::nullopt));
        r.gpsProperties->latitude = c.degrees;
        r.gpsProperties->latitudeRef = PropertyValue(QString(c.ref));
        FormSnapshot::signCoordinates(r);
        EXPECT_DOUBLE_EQ(r.gpsProperties->latitude.real().value_or(0), c.expected) << c.ref;
        // The number keeps its kind: a float stays a float.
        EXPECT_EQ(r.gpsProperties->latitude.float32().has_value(), c.degrees.float32().has_value());
    }
    CGImageProperties west = withKeyGroups(makeEmptyRecord(std::nullopt));
    west.gpsProperties->longitude = PropertyValue(9.133);
    west.gpsProperties->longitudeRef = PropertyValue(QStringLiteral("W"));
    FormSnapshot::signCoordinates(west);
    EXPECT_DOUBLE_EQ(west.gpsProperties->longitude.real().value_or(0), -9.133);
}

// What the picker hands over, what a photo shows and what the user chooses all reach the
// snapshot with the sign of the position on screen.
TEST(FormCoordinates, PickerPhotoAndChosenReferencesAgreeInEachForm) {
    for (const ValueForm valueForm : {ValueForm::standard, ValueForm::described}) {
        ValueFormScope scope(valueForm);
        {
            FormFixture f(photoAt(54.9896, -1.9141));
            f.form.takeLocation(38.717, -9.133);
            EXPECT_EQ(f.form.text(kLongitude), "9.133");
            EXPECT_EQ(f.form.popupRow(kLongitudeRef), 2);
            EXPECT_NEAR(f.snapshot(true), 38.717, 1e-5);
            EXPECT_NEAR(f.snapshot(false), -9.133, 1e-5);
            // The picker reopens where it was left.
            EXPECT_NEAR(f.form.selectedLongitude().value_or(0), -9.133, 1e-5);
        }
        {
            // A southern, western photo confirmed as it is: no edit, the same position.
            FormFixture f(photoAt(-34.6037, -58.3816));
            f.prompt.answerNext("YES");
            f.prompt.answerNext("YES");
            EXPECT_TRUE(f.form.chooseReferenceRow(kLatitudeRef, 2));
            EXPECT_TRUE(f.form.chooseReferenceRow(kLongitudeRef, 2));
            EXPECT_FALSE(f.form.hasEdits());
            EXPECT_NEAR(f.snapshot(true), -34.6037, 1e-5);

            // North chosen instead: the latitude is an edit, written north.
            f.prompt.answerNext("YES");
            EXPECT_TRUE(f.form.chooseReferenceRow(kLatitudeRef, 1));
            EXPECT_TRUE(f.form.isEdited(kLatitudeRef));
            EXPECT_TRUE(f.form.isEdited(kLatitude));
            EXPECT_NEAR(f.snapshot(true), 34.6037, 1e-5);
            EXPECT_FALSE(f.form.isEdited(kLongitude));
        }
    }
}

// A preset's position reaches a run with the sign of its reference, as the form would give it.
TEST(FormCoordinates, PresetRunsSignTheirPosition) {
    ActualPreset preset;
    CGImageProperties values = withKeyGroups(makeEmptyRecord(std::nullopt));
    values.gpsProperties->longitude = PropertyValue(9.133f);
    values.gpsProperties->longitudeRef = PropertyValue(QStringLiteral("W"));
    preset.properties = values;
    const PresetRunEdits edits = presetRunEdits(preset);
    EXPECT_NEAR(edits.editedProperties.gpsProperties->longitude.real().value_or(0), -9.133, 1e-5);
    EXPECT_TRUE(edits.fieldEditedFlags.test(kLongitude));
}

// The cleaning row holds the controls as the user left them; choosing an editing row again,
// or the cleaning row twice, changes nothing.
TEST(FormCoordinates, EditingModeIsLeftAndTakenUpOnce) {
    FormFixture f(photoAt(54.9896, -1.9141));
    f.form.editText(kArtist, "Zoe");
    f.form.choosePopupRow(kFlash, 3);
    f.form.takeLocation(-33.9628, 18.4098);
    const auto expectEdits = [&] {
        EXPECT_EQ(f.form.text(kArtist), "Zoe");
        EXPECT_EQ(f.form.popupRow(kFlash), 3);
        EXPECT_EQ(f.form.text(kLatitude), "33.9628");
        EXPECT_EQ(f.form.popupRow(kLatitudeRef), 2);
        EXPECT_EQ(f.form.popupRow(kLongitudeRef), 1);
    };
    f.form.returnToEditingMode();
    expectEdits();
    f.form.leaveEditingMode();
    f.form.leaveEditingMode();
    EXPECT_EQ(f.form.text(kArtist), "");
    EXPECT_TRUE(f.form.isEditingLeft());
    f.form.returnToEditingMode();
    expectEdits();
    f.form.returnToEditingMode();
    expectEdits();
    EXPECT_NEAR(f.snapshot(true), -33.9628, 1e-5);

    // Fields the user left alone show the photo again, its western reference with them.
    FormFixture g(photoAt(54.9896, -1.9141));
    g.form.editText(kArtist, "Zoe");
    g.form.leaveEditingMode();
    g.form.returnToEditingMode();
    EXPECT_EQ(g.form.text(kArtist), "Zoe");
    EXPECT_EQ(g.form.popupRow(kLongitudeRef), 2);
    EXPECT_NEAR(g.snapshot(false), -1.9141, 1e-5);
}

} // namespace
} // namespace tagmoor
