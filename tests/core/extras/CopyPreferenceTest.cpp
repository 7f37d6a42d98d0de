#include "../metadata/ExivFixture.h"

#include "extras/CopiesInStep.h"
#include "metadata/ExtraTags.h"
#include "metadata/PropertyLoading.h"
#include "model/KeyTable.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace tagmoor::test {
namespace {

std::optional<QString> rowText(const MetadataFieldSet& set, const char* key) {
    return set.at(*findKeyRow(QLatin1String(key))).text();
}

// A photo whose copies disagree or are missing: the caption only in XMP and (older) IPTC,
// the creator in Exif and IPTC, the city only in XMP.
QString photoWithCopies(const QString& path) {
    return jpegWithTags(path, [](Exiv2::Image& img) {
        Exiv2::LangAltValue description("lang=x-default XMP caption");
        img.xmpData().add(Exiv2::XmpKey("Xmp.dc.description"), &description);
        addIptc(img.iptcData(), "Iptc.Application2.Caption", "IPTC caption");
        addExif(img.exifData(), "Exif.Image.Artist", Exiv2::asciiString, "Exif name");
        addIptc(img.iptcData(), "Iptc.Application2.Byline", "IPTC name");
        img.xmpData()["Xmp.photoshop.City"] = "Lisbon";
    });
}

// With the copies in step the standard form shows one value per group, the one a reader
// prefers (Exif, then XMP, then IPTC); otherwise, and in the described form, each tag as it is.
TEST(CopyPreferenceTest, TheStandardFormShowsThePreferredCopyInEveryFieldOfItsGroup) {
    QTemporaryDir dir;
    const QString photo = photoWithCopies(dir.filePath(QStringLiteral("copies.jpg")));
    {
        ValueFormScope scope(ValueForm::standard);
        EXPECT_FALSE(rowText(readMetadataFieldSet(photo), "Exif.Image.ImageDescription"));
        CopiesInStepScope inStep(true);
        const MetadataFieldSet set = readMetadataFieldSet(photo);
        EXPECT_EQ(rowText(set, "Exif.Image.ImageDescription"), QStringLiteral("XMP caption"));
        EXPECT_EQ(rowText(set, "Iptc.Application2.Caption"), QStringLiteral("XMP caption"));
        EXPECT_EQ(rowText(set, "Exif.Image.Artist"), QStringLiteral("Exif name"));
        EXPECT_EQ(rowText(set, "Iptc.Application2.Byline"), QStringLiteral("Exif name"));
        EXPECT_EQ(rowText(set, "Iptc.Application2.City"), QStringLiteral("Lisbon"));
        EXPECT_FALSE(rowText(set, "Exif.Image.Copyright"));
    }
    ValueFormScope scope(ValueForm::described);
    CopiesInStepScope inStep(true);
    const MetadataFieldSet set = readMetadataFieldSet(photo);
    EXPECT_FALSE(rowText(set, "Exif.Image.ImageDescription"));
    EXPECT_EQ(rowText(set, "Iptc.Application2.Caption"), QStringLiteral("IPTC caption"));
    EXPECT_EQ(rowText(set, "Iptc.Application2.Byline"), QStringLiteral("IPTC name"));
    EXPECT_FALSE(rowText(set, "Iptc.Application2.City"));

    // The values beyond the form come with the photo too.
    const std::optional<ExtraValues> extras = readExtraValuesOf(photo);
    ASSERT_TRUE(extras);
    EXPECT_FALSE(extras->rating);
    EXPECT_TRUE(extras->shownKeywords().isEmpty());
    EXPECT_FALSE(readExtraValuesOf(dir.filePath(QStringLiteral("missing.jpg"))));
}

// A run writes every copy of an edited value when the switch is on in the standard form, or
// when the run says so itself; the described form writes the one tag whatever the switch says.
TEST(CopyPreferenceTest, OnlyTheStandardFormFollowsTheSwitch) {
    ExtraEdits unset;
    ExtraEdits asked;
    asked.syncCopies = true;
    for (const bool inStepOn : {false, true}) {
        CopiesInStepScope inStep(inStepOn);
        {
            ValueFormScope scope(ValueForm::standard);
            EXPECT_EQ(unset.syncsCopies(), inStepOn);
        }
        ValueFormScope scope(ValueForm::described);
        EXPECT_FALSE(unset.syncsCopies());
        EXPECT_TRUE(asked.syncsCopies());
    }
}

} // namespace
} // namespace tagmoor::test
