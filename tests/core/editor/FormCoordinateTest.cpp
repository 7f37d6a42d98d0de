// The form's coordinates: degrees beside a reference popup on screen, one signed number in
// the snapshot a run writes.
#include "batch/FormSnapshot.h"
#include "editor/EditorState.h"
#include "editor/MetadataForm.h"
#include "foundation/ScriptedPrompt.h"
#include "foundation/ValueForm.h"
#include "presets/ActualPreset.h"
#include "presets/PresetForm.h"
#include "workingset/WorkingSet.h"

#include <gtest/gtest.h>

namespace tagmoor {
namespace {

constexpr Field kLatitudeField = Field::GPSLatitude;
constexpr Field kLatitudeRef = Field::GPSLatitudeRef;
constexpr Field kLongitudeField = Field::GPSLongitude;
constexpr Field kLongitudeRefField = Field::GPSLongitudeRef;

CGImageProperties withLatitude(PropertyValue degrees, const char* ref) {
    CGImageProperties r = withKeyGroups(makeEmptyRecord(QUrl::fromLocalFile("/p/a.jpg")));
    r.gpsProperties->latitude = degrees;
    r.gpsProperties->latitudeRef = PropertyValue(QString::fromLatin1(ref));
    return r;
}

double latitudeOf(const CGImageProperties& record) {
    return record.gpsProperties->latitude.real().value_or(999);
}

TEST(FormCoordinates, AReferenceThatNamesAHemisphereSignsTheDegrees) {
    const struct {
        PropertyValue degrees;
        const char* ref;
        double expected;
    } cases[] = {
        {PropertyValue(33.9628), "S", -33.9628},
        {PropertyValue(-33.9628), "N", 33.9628},
        {PropertyValue(-33.9628), "", -33.9628},
        {PropertyValue(12.5f), "s", -12.5},
    };
    for (const auto& c : cases) {
        CGImageProperties r = withLatitude(c.degrees, c.ref);
        FormSnapshot::signCoordinates(r);
        EXPECT_DOUBLE_EQ(latitudeOf(r), c.expected) << c.ref;
        EXPECT_EQ(r.gpsProperties->latitude.float32().has_value(), c.degrees.float32().has_value());
    }

    // A preset's western position reaches its run signed, as the form would give it.
    ActualPreset preset;
    preset.properties = withKeyGroups(makeEmptyRecord(std::nullopt));
    preset.properties->gpsProperties->longitude = PropertyValue(9.133f);
    preset.properties->gpsProperties->longitudeRef = PropertyValue(QStringLiteral("W"));
    const PresetRunEdits edits = presetRunEdits(preset);
    EXPECT_NEAR(edits.editedProperties.gpsProperties->longitude.real().value_or(0), -9.133, 1e-5);
    EXPECT_TRUE(edits.fieldEditedFlags.test(Field::GPSLongitude));
}

// A reference chosen anew on the form moves the position the run writes; the same reference
// confirmed moves nothing.
TEST(FormCoordinates, ChosenReferenceDecidesTheWrittenSign) {
    for (const ValueForm valueForm : {ValueForm::standard, ValueForm::described}) {
        ValueFormScope scope(valueForm);
        const PropertyValue south =
            isStandardForm() ? PropertyValue(-34.6037) : PropertyValue(-34.6037f);
        WorkingSet set;
        set.appendImages({withLatitude(south, "S")});
        EditorState state;
        ScriptedPrompt prompt; // every question answered YES
        MetadataForm form(set, state, prompt, true);
        form.updateMetadataInfo(0, false, {0});

        EXPECT_TRUE(form.chooseReferenceRow(kLatitudeRef, 2));
        EXPECT_FALSE(form.hasEdits());
        EXPECT_NEAR(latitudeOf(form.readForm()), -34.6037, 1e-5);

        EXPECT_TRUE(form.chooseReferenceRow(kLatitudeRef, 1));
        EXPECT_TRUE(form.isEdited(kLatitudeRef));
        EXPECT_TRUE(form.isEdited(kLatitudeField));
        EXPECT_NEAR(latitudeOf(form.readForm()), 34.6037, 1e-5);
        EXPECT_NEAR(form.selectedLatitude().value_or(0), 34.6037, 1e-5);
        EXPECT_FALSE(form.isEdited(kLongitudeRefField));
    }
}

} // namespace
} // namespace tagmoor
