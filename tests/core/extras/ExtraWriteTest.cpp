#include "../metadata/ExivFixture.h"

#include "metadata/ExtraTags.h"
#include "metadata/MetadataFieldSet.h"
#include "metadata/MetadataTest.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace tagmoor::test {
namespace {

WriteResult writeExtras(const QString& path, const ExtraEdits& edits) {
    MetadataTest bridge;
    WriteOptions options;
    options.standardForm = true;
    bridge.setWriteOptions(options);
    bridge.setExtraWrite({edits, {}});
    return bridge.writeMergedFields(path, MetadataFieldSet{}, ErasedRows{});
}

// The two flat keyword lists end up as one list; a language alternative keeps its other
// languages; the label takes its written name; a keyword outside ASCII declares UTF-8.
TEST(ExtraWriteTest, ListsAndAlternativesAreEditedInPlace) {
    QTemporaryDir dir;
    const QString photo =
        jpegWithTags(dir.filePath(QStringLiteral("p.jpg")), [](Exiv2::Image& img) {
            addIptc(img.iptcData(), "Iptc.Application2.Keywords", "a");
            Exiv2::XmpArrayValue subject(Exiv2::xmpBag);
            subject.read("a");
            subject.read("b");
            img.xmpData().add(Exiv2::XmpKey("Xmp.dc.subject"), &subject);
            Exiv2::LangAltValue alt("lang=de Ein Schiff");
            img.xmpData().add(Exiv2::XmpKey("Xmp.iptc.AltTextAccessibility"), &alt);
        });
    ExtraEdits edits;
    edits.addKeywords = {QStringLiteral("Orte|Lissabon|Belém")};
    edits.label = QStringLiteral("GREEN");
    edits.texts[std::size_t(ExtraText::AltText)] = QStringLiteral("A ship");
    ASSERT_TRUE(writeExtras(photo, edits).written());

    const std::optional<ExtraValues> read = readExtraValuesOf(photo);
    ASSERT_TRUE(read);
    const QStringList flat{QStringLiteral("a"), QStringLiteral("b"), QStringLiteral("Belém")};
    EXPECT_EQ(read->keywords.iptc, flat);
    EXPECT_EQ(read->keywords.subject, flat);
    EXPECT_EQ(read->label, QStringLiteral("Green"));
    EXPECT_EQ(read->texts[std::size_t(ExtraText::AltText)], QStringLiteral("A ship"));
    const auto xmpLock = lockXmpToolkit();
    Exiv2::Image::AutoPtr image = Exiv2::ImageFactory::open(QFile::encodeName(photo).toStdString());
    image->readMetadata();
    EXPECT_EQ(image->xmpData()["Xmp.iptc.AltTextAccessibility"].toString(),
              "lang=\"x-default\" A ship, lang=\"de\" Ein Schiff");
    EXPECT_EQ(image->iptcData()["Iptc.Envelope.CharacterSet"].toString(), "\x1b%G");
}

// Each value another program wrote is read under its key: every text of the table (a
// language alternative by its default item, a contact field inside its structure), the three
// keyword lists, the rating, the label and the persons shown.
TEST(ExtraWriteTest, EveryValueAnotherProgramWroteIsRead) {
    QTemporaryDir dir;
    const QString photo =
        jpegWithTags(dir.filePath(QStringLiteral("p.jpg")), [](Exiv2::Image& img) {
            Exiv2::XmpData& xmp = img.xmpData();
            for (const ExtraTextRow& row : kExtraTextRows) {
                const std::string text = std::string("text of ") + row.jsonName;
                if (row.kind == ExtraTextKind::LangAlt) {
                    Exiv2::LangAltValue alt("lang=de anders");
                    alt.read("lang=x-default " + text);
                    xmp.add(Exiv2::XmpKey(row.key), &alt);
                } else {
                    xmp[row.key] = text;
                }
            }
            const auto bag = [&xmp](const char* key, Exiv2::TypeId type,
                                    std::initializer_list<const char*> items) {
                Exiv2::XmpArrayValue value(type);
                for (const char* item : items)
                    value.read(item);
                xmp.add(Exiv2::XmpKey(key), &value);
            };
            bag("Xmp.dc.subject", Exiv2::xmpBag, {"harbour", "dawn"});
            bag("Xmp.lr.hierarchicalSubject", Exiv2::xmpBag, {"Places|Harbour"});
            bag("Xmp.digiKam.TagsList", Exiv2::xmpSeq, {"Places/Harbour"});
            bag("Xmp.iptcExt.PersonInImage", Exiv2::xmpBag, {"Ana", "Rui"});
            xmp["Xmp.xmp.Rating"] = "4";
            xmp["Xmp.xmp.Label"] = "Blue";
        });
    const std::optional<ExtraValues> read = readExtraValuesOf(photo);
    ASSERT_TRUE(read);
    for (const ExtraTextRow& row : kExtraTextRows)
        EXPECT_EQ(read->texts[std::size_t(row.text)],
                  QStringLiteral("text of %1").arg(QLatin1String(row.jsonName)))
            << row.key;
    EXPECT_EQ(read->keywords.subject, (QStringList{"harbour", "dawn"}));
    EXPECT_EQ(read->keywords.hierarchical, QStringList{"Places|Harbour"});
    EXPECT_EQ(read->keywords.tagsList, QStringList{"Places/Harbour"});
    EXPECT_EQ(read->persons, (QStringList{"Ana", "Rui"}));
    EXPECT_EQ(read->rating, 4);
    EXPECT_EQ(read->label, QStringLiteral("Blue"));
}

} // namespace
} // namespace tagmoor::test
