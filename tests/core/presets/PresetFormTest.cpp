// A preset shown in the main form gives the run the same values, flags and date rules as
// presetRunEdits, which the command line uses; the panel's form shows it without edits.
#include "presets/PresetForm.h"
#include "editor/EditorState.h"
#include "editor/MetadataForm.h"
#include "foundation/ScriptedPrompt.h"
#include "model/FormFieldTable.h"
#include "workingset/WorkingSet.h"

#include <gtest/gtest.h>

namespace tagmoor {
namespace {

Field at(const char* name) {
    return findFormField(QString::fromLatin1(name))->field;
}

TEST(PresetForm, TheMainFormAndTheCommandLineGetTheSameEdits) {
    ActualPreset preset = makeNewPreset(QStringLiteral("Trip"), 0);
    CGImageProperties& values = *preset.properties;
    values.tiffProperties->artist = QStringLiteral("Jane Doe");
    values.tiffProperties->copyRight = QString(); // an empty text is no value
    values.exifProperties->fNumber = 2.8f;
    values.exifProperties->isoSpeedRating = qint64(400);
    *formField(at("FocalLength")).keyRow().field(values) = PropertyValue(0.0f); // nor a zero
    values.tiffProperties->orientation = qint64(6);
    OriginalFinalDate& rules = *preset.timeSetting;
    rules.dateTimeOriginal = QDateTime(QDate(2020, 1, 2), QTime(3, 4, 5), Qt::UTC);
    rules.configurationTimeOriginal = SelectDate{rules.dateTimeOriginal};
    rules.dateTimeOriginalAlive = true;
    rules.configurationModifyDate = EmptyValue{}; // untouched: no edit

    WorkingSet set;
    EditorState state;
    ScriptedPrompt prompt;
    MetadataForm form(set, state, prompt, true);
    // What was typed before the preset is not part of the run.
    form.editText(at("Copyright"), QStringLiteral("old"));
    form.editText(at("City"), QStringLiteral("Lyon"));
    ASSERT_TRUE(state.fieldEditedFlags.test(Field::City));

    form.showPreset(values, rules);
    const PresetRunEdits edits = presetRunEdits(preset);
    EXPECT_EQ(form.readForm(), edits.editedProperties);
    EXPECT_EQ(state.fieldEditedFlags, edits.fieldEditedFlags);
    EXPECT_EQ(state.editorDates().rules(), edits.editorDates);
    for (const char* name : {"Artist", "FNumber", "ISO", "Orientation", "DateTimeOriginal"})
        EXPECT_TRUE(edits.fieldEditedFlags.test(findFormField(QString::fromLatin1(name))->field))
            << name;
    for (const char* name : {"Copyright", "City", "FocalLength", "ModifyDate"})
        EXPECT_FALSE(edits.fieldEditedFlags.test(findFormField(QString::fromLatin1(name))->field))
            << name;
    EXPECT_EQ(form.text(at("City")), QString());
    EXPECT_EQ(edits.editedProperties.exifProperties->fNumber.float32(), 2.8f);

    // The panel's form shows the values, keeps the rules in its own store and marks nothing.
    state.fieldEditedFlags.clearAll();
    state.editorDates().reset();
    MetadataForm panel(set, state, prompt, false);
    panel.showPreset(values, rules);
    EXPECT_EQ(panel.text(at("Artist")), QStringLiteral("Jane Doe"));
    EXPECT_FALSE(panel.text(at("DateTimeOriginal")).isEmpty());
    EXPECT_FALSE(state.fieldEditedFlags.hasEdits());
    EXPECT_EQ(state.dateStores.presetDates.rules(), rules);
    EXPECT_FALSE(state.editorDates().rules().dateTimeOriginalAlive);
    EXPECT_EQ(panel.readForm().tiffProperties->artist, values.tiffProperties->artist);

    // What a form with one field typed saves edits that field only, not the zeros and empty
    // texts that its other controls read back as.
    MetadataForm fresh(set, state, prompt, false);
    fresh.editText(at("Artist"), QStringLiteral("Ann"));
    const ActualPreset saved{0, QStringLiteral("S"), presetValuesOf(fresh), OriginalFinalDate{}};
    FieldEditedFlags only;
    only.set(Field::Artist);
    EXPECT_EQ(presetRunEdits(saved).fieldEditedFlags, only);
}

} // namespace
} // namespace tagmoor
