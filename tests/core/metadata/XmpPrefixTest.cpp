// The XMP toolkit's table of namespace prefixes is shared by the whole process, and parsing a
// packet writes the packet's prefixes into it. What a photo's new packet looks like must not
// depend on which other photos were read before it, and a photo that gives a standard prefix
// to a namespace of its own must not send the standard properties of other photos there.
#include "WriteSupport.h"

#include "foundation/ValueForm.h"
#include "metadata/MetadataTest.h"
#include "metadata/PropertyLoading.h"
#include "metadata/SafeMetadataEdit.h"
#include "metadata/XmpSidecar.h"

#include <QImage>
#include <QTemporaryDir>
#include <QUrl>

#include <exiv2/exiv2.hpp>

#include <thread>

namespace tagmoor::test {
namespace {

// A small JPEG whose only XMP is `packet`, laid in by hand so that the toolkit never sees it.
QString jpegWithPacket(const QString& path, const QByteArray& packet) {
    makeJpeg(path);
    QFile file(path);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly));
    const QByteArray jpeg = file.readAll();
    file.close();
    const QByteArray payload = QByteArray("http://ns.adobe.com/xap/1.0/", 29) + packet;
    const int length = int(payload.size()) + 2;
    QByteArray segment("\xFF\xE1", 2);
    segment.append(char(length >> 8)).append(char(length & 0xFF)).append(payload);
    EXPECT_TRUE(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
    file.write(jpeg.left(2) + segment + jpeg.mid(2));
    return path;
}

QByteArray packetDeclaring(const QByteArray& declarations) {
    return "<?xpacket begin=\"\xEF\xBB\xBF\" id=\"W5M0MpCehiHzreSzNTczkc9d\"?>"
           "<x:xmpmeta xmlns:x=\"adobe:ns:meta/\"><rdf:RDF "
           "xmlns:rdf=\"http://www.w3.org/1999/02/22-rdf-syntax-ns#\"><rdf:Description "
           "rdf:about=\"\" " +
           declarations + "/></rdf:RDF></x:xmpmeta><?xpacket end=\"w\"?>";
}

QByteArray bytesOf(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

// An edit that writes the photo's XMP anew.
WriteResult writeXmp(const QString& path) {
    return MetadataTest().setImagePropertiesAll(
        path,
        properties({}, {},
                   {{QStringLiteral("Xmp.xmp.CreateDate"), QStringLiteral("2021-05-06T07:08:09")},
                    {QStringLiteral("Xmp.aux.Lens"), QStringLiteral("Lens 50")}}),
        {});
}

// In the standard form an edit of `photo`'s XMP is refused, with a reason that says `why`, and
// the photo keeps its bytes; an edit outside XMP goes through and leaves `kept` in the packet.
void expectXmpLeftAlone(const QString& photo, const QString& why, const QByteArray& kept) {
    const ValueFormScope standard(ValueForm::standard);
    const QByteArray before = bytesOf(photo);
    const WriteResult refused = writeXmp(photo);
    EXPECT_EQ(refused.status, WriteStatus::NotWritable);
    EXPECT_TRUE(refused.detail.contains(why)) << refused.detail.toStdString();
    EXPECT_EQ(bytesOf(photo), before);
    const WriteResult artist = MetadataTest().setImagePropertiesAll(
        photo, properties({{QStringLiteral("Exif.Image.Artist"), QStringLiteral("Jane Doe")}}), {});
    ASSERT_TRUE(artist.written()) << artist.detail.toStdString();
    EXPECT_TRUE(bytesOf(photo).contains(kept)) << bytesOf(photo).toStdString();
}

void read(const QString& path) {
    EXPECT_TRUE(loadImageProperties(QUrl::fromLocalFile(path)).has_value());
}

TEST(XmpPrefix, APhotosNewPacketDependsOnItsOwnPacketOnly) {
    const ValueFormScope standard(ValueForm::standard);
    QTemporaryDir tmp;
    const QByteArray plain =
        packetDeclaring("xmlns:xmp=\"http://ns.adobe.com/xap/1.0/\" xmp:Label=\"Red\"");
    const QByteArray oldStyle =
        packetDeclaring("xmlns:xap=\"http://ns.adobe.com/xap/1.0/\" xap:Label=\"Blue\"");
    const QString oldPhoto = jpegWithPacket(tmp.filePath("old.jpg"), oldStyle);

    // Written alone, each keeps the prefix it came with; a photo without XMP takes the standard.
    const QString first = makeJpeg(tmp.filePath("bare-1.jpg"));
    ASSERT_TRUE(writeXmp(first).written());
    const QByteArray alone = bytesOf(first);
    EXPECT_TRUE(alone.contains("xmp:CreateDate")) << alone.toStdString();
    const QString old = jpegWithPacket(tmp.filePath("old-written.jpg"), oldStyle);
    ASSERT_TRUE(writeXmp(old).written());
    EXPECT_TRUE(bytesOf(old).contains("xap:CreateDate")) << bytesOf(old).toStdString();
    EXPECT_TRUE(bytesOf(old).contains("xap:Label=\"Blue\""));

    // Another photo, or a sidecar, read in the old style just before changes nothing, in
    // UTF-16 as well.
    read(oldPhoto);
    QByteArray wide;
    for (const QChar c : QString::fromUtf8(oldStyle))
        wide.append(char(c.unicode() >> 8)).append(char(c.unicode() & 0xff));
    read(jpegWithPacket(tmp.filePath("old-wide.jpg"), wide));
    const QString second = makeJpeg(tmp.filePath("bare-2.jpg"));
    ASSERT_TRUE(writeXmp(second).written());
    EXPECT_EQ(bytesOf(second), alone);
    EXPECT_TRUE(readSidecarFieldSet(oldStyle).has_value());
    const QString third = makeJpeg(tmp.filePath("bare-3.jpg"));
    ASSERT_TRUE(writeXmp(third).written());
    EXPECT_EQ(bytesOf(third), alone);

    // Nor does one read on another thread between this photo's read and its writing.
    const QString plainAlone = jpegWithPacket(tmp.filePath("plain-1.jpg"), plain);
    ASSERT_TRUE(writeXmp(plainAlone).written());
    const QString plainMeanwhile = jpegWithPacket(tmp.filePath("plain-2.jpg"), plain);
    SafeMetadataEdit::run(
        plainMeanwhile, std::nullopt,
        [&](Exiv2::Image& image) {
            std::thread([&] { read(oldPhoto); }).join();
            image.xmpData()["Xmp.xmp.CreateDate"] = "2021-05-06T07:08:09";
            image.xmpData()["Xmp.aux.Lens"] = "Lens 50";
            image.writeXmpFromPacket(false);
            return SafeMetadataEdit::LandedCheck();
        },
        true, nullptr, true);
    EXPECT_EQ(bytesOf(plainMeanwhile), bytesOf(plainAlone));
}

TEST(XmpPrefix, APacketThatTakesAStandardPrefixIsKeptApart) {
    const ValueFormScope standard(ValueForm::standard);
    QTemporaryDir tmp;
    const QByteArray foreign =
        packetDeclaring("xmlns:xmp=\"http://foreign.example/ns/\" xmp:Label=\"Theirs\"");
    const QString odd = jpegWithPacket(tmp.filePath("odd.jpg"), foreign);
    read(odd);

    // The standard properties of the next photo still go into the standard namespace.
    const QString plain = jpegWithPacket(
        tmp.filePath("plain.jpg"),
        packetDeclaring("xmlns:xmp=\"http://ns.adobe.com/xap/1.0/\" xmp:Label=\"Red\""));
    ASSERT_TRUE(writeXmp(plain).written());
    const QByteArray written = bytesOf(plain);
    EXPECT_TRUE(written.contains("xmlns:xmp=\"http://ns.adobe.com/xap/1.0/\""))
        << written.toStdString();
    EXPECT_FALSE(written.contains("foreign.example"));
    EXPECT_EQ(exiv2Value(plain, QStringLiteral("Xmp.xmp.CreateDate")),
              QStringLiteral("2021-05-06T07:08:09"));

    // The odd photo's XMP is not written anew, since its values would change namespace; an
    // edit elsewhere leaves its packet as it was.
    const QByteArray before = bytesOf(odd);
    const WriteResult refused = writeXmp(odd);
    EXPECT_EQ(refused.status, WriteStatus::NotWritable);
    EXPECT_EQ(bytesOf(odd), before);
    const WriteResult artist = MetadataTest().setImagePropertiesAll(
        odd, properties({{QStringLiteral("Exif.Image.Artist"), QStringLiteral("Jane Doe")}}), {});
    ASSERT_TRUE(artist.written()) << artist.detail.toStdString();
    EXPECT_TRUE(bytesOf(odd).contains(foreign.mid(foreign.indexOf("<x:xmpmeta"))));
}

TEST(XmpPrefix, NamespacesKeepTheirOwnNames) {
    const ValueFormScope standard(ValueForm::standard);
    QTemporaryDir tmp;
    // Exiv2 takes a namespace name without a closing "/" as the one with it, Darwin Core's
    // and a photographer's own alike.
    const QByteArray declarations = "xmlns:dwc=\"http://rs.tdwg.org/dwc/index.htm\" "
                                    "dwc:institutionCode=\"CDS\" "
                                    "xmlns:studio=\"http://studio.example/ns\" "
                                    "studio:Job=\"Harbour\"";
    const QString photo = jpegWithPacket(tmp.filePath("named.jpg"), packetDeclaring(declarations));
    ASSERT_TRUE(writeXmp(photo).written());
    const QByteArray written = bytesOf(photo);
    for (const QByteArray& kept :
         {QByteArray("xmlns:dwc=\"http://rs.tdwg.org/dwc/index.htm\""),
          QByteArray("xmlns:studio=\"http://studio.example/ns\""),
          QByteArray("dwc:institutionCode=\"CDS\""), QByteArray("studio:Job=\"Harbour\""),
          QByteArray("xmp:CreateDate=\"2021-05-06T07:08:09\"")})
        EXPECT_TRUE(written.contains(kept)) << kept.toStdString() << "\n" << written.toStdString();

    // A sidecar written anew keeps them as well.
    MetadataFieldSet edited;
    edited.at(*findKeyRow("Xmp.aux.Lens")) = PropertyValue(QStringLiteral("Lens 50"));
    const QByteArray sidecar = editedSidecarPacket(packetDeclaring(declarations), edited, {});
    EXPECT_TRUE(sidecar.contains("xmlns:studio=\"http://studio.example/ns\""))
        << sidecar.toStdString();
    EXPECT_TRUE(sidecar.contains("xmlns:dwc=\"http://rs.tdwg.org/dwc/index.htm\""));
    EXPECT_TRUE(sidecar.contains("Lens 50"));

    // A value that reads like such a declaration is text, and stays as it was.
    const QString title = QStringLiteral("see xmlns:studio='http://studio.example/ns/' here");
    const QString titled = jpegWithPacket(
        tmp.filePath("titled.jpg"),
        packetDeclaring(declarations +
                        " xmlns:dc=\"http://purl.org/dc/elements/1.1/\" dc:format=\"" +
                        title.toUtf8() + "\""));
    ASSERT_TRUE(writeXmp(titled).written());
    EXPECT_EQ(exiv2Value(titled, QStringLiteral("Xmp.dc.format")), title);
    EXPECT_TRUE(bytesOf(titled).contains("xmlns:studio=\"http://studio.example/ns\""));
}

// Exiv2 takes a namespace with and without its closing "/" as one, so writing such a packet anew
// keeps one of two values: the standard form leaves it as it is, the described form writes on.
TEST(XmpPrefix, OneNamespaceUnderTwoNamesIsNotWrittenAnewInTheStandardForm) {
    QTemporaryDir tmp;
    const QByteArray twice = packetDeclaring(
        "xmlns:MicrosoftPhoto=\"http://ns.microsoft.com/photo/1.0\" MicrosoftPhoto:Rating=\"75\" "
        "xmlns:MicrosoftPhoto_1_=\"http://ns.microsoft.com/photo/1.0/\" "
        "MicrosoftPhoto_1_:Rating=\"63\"");
    const QString photo = jpegWithPacket(tmp.filePath("twice.jpg"), twice);
    expectXmpLeftAlone(photo, QStringLiteral("two names"), twice.mid(twice.indexOf("<x:xmpmeta")));
    const ValueFormScope described(ValueForm::described);
    EXPECT_TRUE(writeXmp(photo).written());
}

// A PNG, like most formats, has its packet encoded by its own writer, which gives a namespace
// name without a closing "/" one: the standard form leaves such XMP as it is rather than move
// its values into another namespace; an edit outside XMP, or of a packet whose names all end
// well, still goes through.
TEST(XmpPrefix, AWriterThatWouldChangeANamespaceNameLeavesTheXmpAlone) {
    QTemporaryDir tmp;
    const auto pngWithPacket = [&](const QString& name, const QByteArray& packet) {
        const QString path = tmp.filePath(name);
        QImage picture(8, 8, QImage::Format_RGB32);
        picture.fill(Qt::darkGreen);
        EXPECT_TRUE(picture.save(path, "PNG"));
        auto image = Exiv2::ImageFactory::open(QFile::encodeName(path).toStdString());
        image->readMetadata();
        image->xmpPacket() = packet.toStdString();
        image->writeXmpFromPacket(true);
        image->writeMetadata();
        return path;
    };
    const QByteArray bare = "xmlns:dwc=\"http://rs.tdwg.org/dwc/index.htm\"";
    const QString photo = pngWithPacket(
        "dwc.png", packetDeclaring(bare + " dwc:institutionCode=\"CDS\" "
                                          "xmlns:xmp=\"http://ns.adobe.com/xap/1.0/\" "
                                          "xmp:Label=\"Red\""));
    expectXmpLeftAlone(photo, QStringLiteral("another namespace"), bare);
    {
        const ValueFormScope standard(ValueForm::standard);
        const QString plain =
            pngWithPacket("plain.png", packetDeclaring("xmlns:xmp=\"http://ns.adobe.com/xap/1.0/\" "
                                                       "xmp:Label=\"Red\""));
        ASSERT_TRUE(writeXmp(plain).written());
        EXPECT_EQ(exiv2Value(plain, QStringLiteral("Xmp.aux.Lens")), QStringLiteral("Lens 50"));
    }
    const ValueFormScope described(ValueForm::described);
    EXPECT_TRUE(writeXmp(photo).written());
}

} // namespace
} // namespace tagmoor::test
