// A preset holds the edits beyond the form: they go through every stored form of a preset and
// come back the same, a preset stored before them still loads as it was, and a run that names
// a preset lays its own edits over the preset's.
#include "TestSupport.h"

#include "batch/FormSnapshot.h"
#include "batch/RunValues.h"
#include "exchange/PhotoTemplates.h"
#include "presets/PresetArchive.h"
#include "presets/PresetCheck.h"
#include "presets/PresetDictionary.h"
#include "presets/PresetExtras.h"
#include "presets/PresetJson.h"

namespace tagmoor {
namespace {

ExtraEdits everyExtra() {
    ExtraEdits extras;
    extras.addKeywords = {"Places|Lisbon", "{date:yyyy}"};
    extras.removeKeywords = {"Old"};
    extras.rating = kRejectedRating;
    extras.label = QStringLiteral("Green");
    extras.texts[std::size_t(ExtraText::AltText)] = QStringLiteral("{filename} at dusk");
    extras.texts[std::size_t(ExtraText::CreatorEmail)] = QString(); // removes the tag
    extras.persons = QStringList{"Ana", "Rui"};
    extras.syncCopies = false;
    return extras;
}

ActualPreset presetWith(std::optional<ExtraEdits> extras) {
    ActualPreset preset = makeNewPreset(QStringLiteral("Trip"), 3);
    preset.properties->tiffProperties->artist = QStringLiteral("{camera}");
    preset.extras = std::move(extras);
    return preset;
}

TEST(PresetExtras, GoThroughTheStoredBlockAndTheJsonFileUnchanged) {
    for (const ExtraEdits& extras : {everyExtra(), ExtraEdits{}}) {
        const ActualPreset preset = presetWith(extras);
        const auto archived = decodePresetArchive(encodePresetArchive({preset}));
        ASSERT_TRUE(archived && archived->size() == 1);
        EXPECT_EQ(archived->first().extras, extras);

        QString error;
        const auto json = decodePresetJson(encodePresetJson(preset, &error), &error);
        ASSERT_TRUE(json) << error.toStdString();
        EXPECT_EQ(json->extras, extras);
        EXPECT_EQ(presetRefusal(*json), std::nullopt);
    }
    // The moment of a GPS position belongs to a photo, not to a preset.
    ExtraEdits placed = everyExtra();
    placed.gpsTime = QDateTime(QDate(2024, 1, 2), QTime(3, 4), Qt::UTC);
    EXPECT_EQ(presetExtrasOf(placed), everyExtra());
}

// A preset stored before presets held extras has none, and is stored again byte for byte.
// Stored values of the wrong kind are passed over, not taken for something else.
TEST(PresetExtras, OldPresetsLoadAsTheyWereAndOddValuesArePassedOver) {
    const ActualPreset old = presetWith(std::nullopt);
    const QVariantMap stored = presetToDictionary(old);
    EXPECT_FALSE(stored.contains("extras"));
    const ActualPreset loaded = presetFromDictionary(stored);
    EXPECT_EQ(loaded.extras, std::nullopt);
    EXPECT_EQ(encodePresetArchive({loaded}), encodePresetArchive({old}));

    const auto odd = presetExtrasFromDictionary(
        QVariantMap{{"rating", 9},
                    {"label", 3},
                    {"addKeywords", QVariantList{"a", 2}},
                    {"persons", "Ana"},
                    {"texts", QVariantMap{{"event", "Festa"}, {"altText", 1}}},
                    {"future", true}});
    ASSERT_TRUE(odd);
    ExtraEdits expected;
    expected.texts[std::size_t(ExtraText::Event)] = QStringLiteral("Festa");
    EXPECT_EQ(*odd, expected);
    EXPECT_EQ(presetExtrasFromDictionary(QStringLiteral("no map")), std::nullopt);

    // What a run would refuse never joins the list.
    ActualPreset refused = presetWith(ExtraEdits{});
    refused.extras->label = QStringLiteral("Mauve");
    EXPECT_NE(presetRefusal(refused), std::nullopt);
}

// The edits given with a preset win where they set something; keywords of both are kept,
// unless one side takes back what the other adds.
TEST(PresetExtras, GivenEditsLieOverThePresets) {
    ExtraEdits given;
    given.addKeywords = {"Old", "New"};
    given.removeKeywords = {"Places|Lisbon"};
    given.rating = 4;
    given.texts[std::size_t(ExtraText::Event)] = QStringLiteral("Mine");
    const ExtraEdits out = extrasOverPreset(everyExtra(), given);
    EXPECT_EQ(out.addKeywords, (QStringList{"{date:yyyy}", "Old", "New"}));
    EXPECT_EQ(out.removeKeywords, QStringList{"Places|Lisbon"});
    EXPECT_EQ(out.rating, 4);
    EXPECT_EQ(out.label, "Green");
    EXPECT_EQ(out.texts[std::size_t(ExtraText::Event)], "Mine");
    EXPECT_EQ(out.texts[std::size_t(ExtraText::AltText)], "{filename} at dusk");
    EXPECT_EQ(out.persons, (QStringList{"Ana", "Rui"}));
    EXPECT_EQ(out.syncCopies, false);
    EXPECT_EQ(extrasOverPreset(ExtraEdits{}, given), given);
}

// A preset's template texts are filled in per photo, those beyond the form as well.
TEST(PresetExtras, TemplateTextsAreFilledInPerPhoto) {
    RunValues values;
    values.writeOptions.standardForm = true;
    values.editedProperties = FormSnapshot::empty();
    values.extras = everyExtra();
    PhotoTemplates::addTo(values, {"/p/a.jpg", "/p/b.jpg"});
    ASSERT_EQ(values.photoValues.size(), 1u);
    CGImageProperties photo = withKeyGroups(makeEmptyRecord(QUrl::fromLocalFile("/p/b.jpg")));
    photo.exifProperties->dateTimeOriginal = QDateTime(QDate(2017, 3, 4), QTime(5, 6));
    RunValues own = values;
    values.photoValues.front()->adjust(photo, own);
    EXPECT_EQ(own.extras.texts[std::size_t(ExtraText::AltText)], "b.jpg at dusk");
    EXPECT_EQ(own.extras.addKeywords, (QStringList{"Places|Lisbon", "2017"}));
    EXPECT_EQ(own.extras.texts[std::size_t(ExtraText::CreatorEmail)], "");
}

} // namespace
} // namespace tagmoor
