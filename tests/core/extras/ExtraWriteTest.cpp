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

} // namespace
} // namespace tagmoor::test
