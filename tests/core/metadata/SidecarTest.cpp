// XMP sidecars beside a photo: found by both naming conventions, read over the photo's own
// values, edited property by property and put in place safely.
#include "ExivFixture.h"
#include "WriteHooks.h"
#include "metadata/PropertyLoading.h"
#include "metadata/SafeFileReplace.h"
#include "metadata/XmpSidecar.h"
#include "model/KeyTable.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QUrl>

#include <gtest/gtest.h>

namespace tagmoor {
namespace {

using namespace tagmoor::test;

QByteArray packetWith(const QByteArray& properties) {
    return "<x:xmpmeta xmlns:x=\"adobe:ns:meta/\"><rdf:RDF "
           "xmlns:rdf=\"http://www.w3.org/1999/02/22-rdf-syntax-ns#\"><rdf:Description "
           "rdf:about=\"\" xmlns:dc=\"http://purl.org/dc/elements/1.1/\" "
           "xmlns:photoshop=\"http://ns.adobe.com/photoshop/1.0/\" "
           "xmlns:aux=\"http://ns.adobe.com/exif/1.0/aux/\" "
           "xmlns:darktable=\"http://darktable.sf.net/\">" +
           properties + "</rdf:Description></rdf:RDF></x:xmpmeta>";
}

const QByteArray kSidecar =
    packetWith("<dc:creator><rdf:Seq><rdf:li>Sidecar Artist</rdf:li></rdf:Seq></dc:creator>"
               "<photoshop:City>Lyon</photoshop:City><aux:Lens>35mm</aux:Lens>"
               "<darktable:history_end>4</darktable:history_end>");

class Sidecars : public ::testing::Test {
protected:
    QTemporaryDir dir;
    QString photo = jpegWithTags(dir.filePath("photo.jpg"), [](Exiv2::Image& img) {
        addExif(img.exifData(), "Exif.Image.Artist", Exiv2::asciiString, "Camera Artist");
        addExif(img.exifData(), "Exif.Image.Model", Exiv2::asciiString, "Model X");
        img.xmpData()["Xmp.aux.Lens"] = "50mm";
    });
    const PropertyValue& row(const MetadataFieldSet& set, const char* key) {
        return set.at(*findKeyRow(QLatin1String(key)));
    }
};

TEST_F(Sidecars, BothNamingsAreFoundAndTheOneWithTheExtensionWins) {
    EXPECT_FALSE(findSidecar(photo));
    ASSERT_TRUE(writeBytes(dir.filePath("photo.XMP"), kSidecar));
    EXPECT_EQ(findSidecar(photo),
              (SidecarFile{dir.filePath("photo.XMP"), SidecarNaming::ReplacingExtension}));
    ASSERT_TRUE(writeBytes(dir.filePath("photo.jpg.xmp"), kSidecar));
    EXPECT_EQ(findSidecar(photo),
              (SidecarFile{dir.filePath("photo.jpg.xmp"), SidecarNaming::WithExtension}));
    EXPECT_EQ(sidecarPathFor("/a/b.c/name", SidecarNaming::ReplacingExtension), "/a/b.c/name.xmp");
    EXPECT_EQ(sidecarPathFor("/a/.hidden", SidecarNaming::ReplacingExtension), "/a/.hidden.xmp");
}

TEST_F(Sidecars, AKnownSidecarIsTakenForItsPhotoAloneAndOnlyWhileItIsKnown) {
    const QString other = dir.filePath("other.jpg");
    ASSERT_TRUE(writeBytes(dir.filePath("other.xmp"), kSidecar));
    {
        const KnownSidecar known(photo, std::nullopt);
        // A sidecar that turns up after the look is not seen by this photo's reads...
        ASSERT_TRUE(writeBytes(dir.filePath("photo.xmp"), kSidecar));
        EXPECT_FALSE(findSidecar(photo));
        {
            ValueFormScope scope(ValueForm::standard);
            const auto record = loadImageProperties(QUrl::fromLocalFile(photo));
            ASSERT_TRUE(record);
            EXPECT_TRUE(record->sidecarPath.isEmpty());
        }
        // ...but another photo's sidecar still is.
        EXPECT_EQ(findSidecar(other)->path, dir.filePath("other.xmp"));
    }
    EXPECT_EQ(findSidecar(photo)->path, dir.filePath("photo.xmp"));
}

TEST_F(Sidecars, AListedFolderAnswersForEveryNameAndCaseAndStillChecksTheFile) {
    const QString second = dir.filePath("second.jpg");
    const QString third = dir.filePath("third.tif");
    ASSERT_TRUE(writeBytes(dir.filePath("photo.jpg.XMP"), kSidecar));
    ASSERT_TRUE(writeBytes(dir.filePath("second.XMP"), kSidecar));
    ASSERT_TRUE(writeBytes(dir.filePath("third.xmp"), kSidecar));
    ASSERT_TRUE(QDir(dir.path()).mkdir("third.tif.xmp")); // no regular file: not a sidecar
    {
        // By default a folder is listed only after some names were looked for in it; until
        // then each is looked at, and a sidecar added meanwhile is found.
        SidecarListing later;
        const SidecarListing::Scope inLater(later);
        const QString fourth = dir.filePath("fourth.jpg");
        EXPECT_FALSE(findSidecar(fourth));
        ASSERT_TRUE(writeBytes(dir.filePath("fourth.xmp"), kSidecar));
        EXPECT_EQ(findSidecar(fourth)->path, dir.filePath("fourth.xmp"));
    }
    SidecarListing listing(1);
    const SidecarListing::Scope listed(listing);
    EXPECT_EQ(*findSidecar(photo),
              (SidecarFile{dir.filePath("photo.jpg.XMP"), SidecarNaming::WithExtension}));
    EXPECT_EQ(findSidecar(second)->path, dir.filePath("second.XMP"));
    EXPECT_EQ(*findSidecar(third),
              (SidecarFile{dir.filePath("third.xmp"), SidecarNaming::ReplacingExtension}));
    // A listed name is still looked at: one removed since is gone. One added since is not
    // seen while the listing lives.
    ASSERT_TRUE(QFile::remove(dir.filePath("second.XMP")));
    ASSERT_TRUE(writeBytes(dir.filePath("second.jpg.xmp"), kSidecar));
    EXPECT_FALSE(findSidecar(second));
    // A folder that cannot be listed is looked at name by name.
    EXPECT_TRUE(listing.mayHold(dir.filePath("absent"), "a.xmp"));
}

TEST_F(Sidecars, TheRecordTakesTheSidecarsValuesAndSaysWhichInTheStandardFormOnly) {
    ASSERT_TRUE(writeBytes(dir.filePath("photo.xmp"), kSidecar));
    {
        ValueFormScope scope(ValueForm::standard);
        const auto record = loadImageProperties(QUrl::fromLocalFile(photo));
        ASSERT_TRUE(record);
        EXPECT_EQ(record->tiffProperties->artist.text(), QStringLiteral("Sidecar Artist"));
        EXPECT_EQ(record->tiffProperties->model.text(), QStringLiteral("Model X"));
        EXPECT_EQ(record->iptcProperties->city.text(), QStringLiteral("Lyon"));
        EXPECT_EQ(record->xmpDataProperties->lens.text(), QStringLiteral("35mm"));
        EXPECT_EQ(record->sidecarPath, dir.filePath("photo.xmp"));
        EXPECT_TRUE(record->sidecarKeys.contains("Exif.Image.Artist"));
        EXPECT_TRUE(record->sidecarKeys.contains("Xmp.aux.Lens"));
        EXPECT_FALSE(record->sidecarKeys.contains("Exif.Image.Model"));
    }
    // The described form reads the photo alone, unless sidecars were asked for.
    const auto described = loadImageProperties(QUrl::fromLocalFile(photo));
    ASSERT_TRUE(described);
    EXPECT_EQ(described->tiffProperties->artist.text(), QStringLiteral("Camera Artist"));
    EXPECT_TRUE(described->sidecarPath.isEmpty());
    setSidecarsRead(true);
    EXPECT_EQ(loadImageProperties(QUrl::fromLocalFile(photo))->tiffProperties->artist.text(),
              QStringLiteral("Sidecar Artist"));
    setSidecarsRead(std::nullopt);
    // A sidecar that is no XMP gives nothing and leaves the photo's values.
    ASSERT_TRUE(writeBytes(dir.filePath("photo.jpg.xmp"), "not xml at all"));
    ValueFormScope scope(ValueForm::standard);
    EXPECT_EQ(loadImageProperties(QUrl::fromLocalFile(photo))->tiffProperties->artist.text(),
              QStringLiteral("Camera Artist"));
}

TEST_F(Sidecars, AnEditChangesOnlyItsPropertiesAndAnErasureTakesThemOut) {
    MetadataFieldSet edits;
    edits.at(*findKeyRow("Exif.Image.Artist")) = PropertyValue(QStringLiteral("New Artist"));
    edits.at(*findKeyRow("Exif.Photo.ISOSpeedRatings")) = PropertyValue(qint64(400));
    edits.at(*findKeyRow("Xmp.aux.SerialNumber")) = PropertyValue(QStringLiteral("S1"));
    ErasedRows erased;
    erased.add(*findKeyRow("Iptc.Application2.City"));
    const QByteArray packet = editedSidecarPacket(kSidecar, edits, erased);
    const auto set = readSidecarFieldSet(packet);
    ASSERT_TRUE(set);
    EXPECT_EQ(row(*set, "Exif.Image.Artist").text(), QStringLiteral("New Artist"))
        << packet.toStdString();
    EXPECT_EQ(row(*set, "Exif.Photo.ISOSpeedRatings").int64(), 400);
    EXPECT_EQ(row(*set, "Xmp.aux.SerialNumber").text(), QStringLiteral("S1"));
    EXPECT_EQ(row(*set, "Xmp.aux.Lens").text(), QStringLiteral("35mm"));
    EXPECT_TRUE(row(*set, "Iptc.Application2.City").isAbsent());
    // What the program does not know stays.
    EXPECT_TRUE(packet.contains("history_end")) << packet.toStdString();

    // A new sidecar from nothing, put in place, then replaced.
    const QString path = dir.filePath("photo.jpg.xmp");
    ASSERT_TRUE(writeSidecar(path, {}, edits, {}).written());
    EXPECT_EQ(row(*readSidecarFile(path), "Exif.Image.Artist").text(),
              QStringLiteral("New Artist"));
    MetadataFieldSet second;
    second.at(*findKeyRow("Iptc.Application2.City")) = PropertyValue(QStringLiteral("Nice"));
    ASSERT_TRUE(writeSidecar(path, *readSidecarBytes(path), second, {}).written());
    const auto both = readSidecarFile(path);
    EXPECT_EQ(row(*both, "Exif.Image.Artist").text(), QStringLiteral("New Artist"));
    EXPECT_EQ(row(*both, "Iptc.Application2.City").text(), QStringLiteral("Nice"));
    SafeFileReplace::waitForReleases();
    EXPECT_EQ(QDir(dir.path()).entryList(QDir::Files | QDir::Hidden).size(), 2)
        << "no temporary file is left";
}

TEST_F(Sidecars, AFailedReplacementLeavesTheOldSidecarWhole) {
    const QString path = dir.filePath("photo.jpg.xmp");
    ASSERT_TRUE(writeBytes(path, kSidecar));
    MetadataFieldSet edits;
    edits.at(*findKeyRow("Exif.Image.Artist")) = PropertyValue(QStringLiteral("Lost"));
    setWriteFaultHook([](SafeFileReplace::Step step) {
        return step == SafeFileReplace::Step::Rename ? ENOSPC : 0;
    });
    const WriteResult result = writeSidecar(path, kSidecar, edits, {});
    setWriteFaultHook({});
    EXPECT_EQ(result.status, WriteStatus::DiskFull);
    EXPECT_EQ(readBytes(path), kSidecar);
    SafeFileReplace::waitForReleases();
    EXPECT_EQ(QDir(dir.path()).entryList(QDir::Files | QDir::Hidden).size(), 2);
}

} // namespace
} // namespace tagmoor
