// A JPEG is parsed from its head with the XMP packet decoded apart: the metadata must be what
// Exiv2 gives from the whole file, on the samples and on heads built to trip a marker walk.
#include "TestSupport.h"

#include "metadata/ImageKind.h"
#include "metadata/JpegHead.h"
#include "metadata/MetadataBlockReader.h"
#include "metadata/MetadataLibrary.h"

#include <QFile>
#include <QTemporaryDir>

#include <exiv2/exiv2.hpp>

namespace tagmoor::test {
namespace {

// The three blocks through the reader the scan uses, or "unreadable".
QString throughReader(const QString& path) {
    const QVariantMap shaped = MetadataBlockReader::readJsonShaped(path);
    if (shaped.isEmpty())
        return QStringLiteral("unreadable");
    return shaped.value("exif").toString() + shaped.value("iptc").toString() +
           shaped.value("xmp").toString();
}

// The same shape from Exiv2's parse of the whole file.
QString jsonOfPlain(const QString& path) {
    auto shape = [](const auto& data) {
        QStringList lines;
        for (const auto& datum : data) {
            QString value =
                datum.size() > 0 ? QString::fromStdString(datum.value().toString()) : QString();
            value.replace('\\', "\\\\").replace('"', "\\\"");
            QString escaped;
            for (const QChar c : value)
                escaped += c.unicode() < 0x20
                               ? QStringLiteral("\\u%1").arg(c.unicode(), 4, 16, QLatin1Char('0'))
                               : QString(c);
            lines << QStringLiteral("  \"%1\": \"%2\"")
                         .arg(QString::fromStdString(datum.key()), escaped);
        }
        return QStringLiteral("{\n") + lines.join(",\n") + QStringLiteral("\n}");
    };
    try {
        const auto xmpLock = lockXmpToolkit();
        auto image = Exiv2::ImageFactory::open(QFile::encodeName(path).toStdString());
        image->readMetadata();
        return shape(image->exifData()) + shape(image->iptcData()) + shape(image->xmpData());
    } catch (const Exiv2::AnyError&) {
        return QStringLiteral("unreadable");
    }
}

QByteArray segment(unsigned char marker, const QByteArray& body) {
    QByteArray s;
    s.append(char(0xff)).append(char(marker));
    const int size = body.size() + 2;
    s.append(char(size >> 8)).append(char(size & 0xff));
    return s + body;
}

QByteArray xmpPacket(const QString& lens) {
    return QStringLiteral(
               "<x:xmpmeta xmlns:x=\"adobe:ns:meta/\"><rdf:RDF "
               "xmlns:rdf=\"http://www.w3.org/1999/02/22-rdf-syntax-ns#\"><rdf:Description "
               "rdf:about=\"\" xmlns:aux=\"http://ns.adobe.com/exif/1.0/aux/\" "
               "aux:Lens=\"%1\"/></rdf:RDF></x:xmpmeta>")
        .arg(lens)
        .toUtf8();
}

QByteArray xmpSegmentOf(const QByteArray& packet) {
    return segment(0xe1, QByteArray("http://ns.adobe.com/xap/1.0/", 29) + packet);
}

QByteArray xmpSegment(const QString& lens) {
    return xmpSegmentOf(xmpPacket(lens));
}

// A packet as writers leave it: wrapped in its processing instructions, with `padding` between
// the root element and the closing one.
QByteArray paddedPacket(const QString& lens, const QByteArray& padding,
                        const QByteArray& after = {}) {
    return "<?xpacket begin=\"\xef\xbb\xbf\" id=\"W5M0MpCehiHzreSzNTczkc9d\"?>\n" +
           xmpPacket(lens) + padding + "<?xpacket end=\"w\"?>" + after;
}

// A real JPEG with `extra` put right after its start-of-image marker.
QString jpegWith(const QString& dir, const QString& name, const QByteArray& extra) {
    const QString path = makeJpeg(dir + '/' + name);
    QFile f(path);
    EXPECT_TRUE(f.open(QIODevice::ReadOnly));
    QByteArray bytes = f.readAll();
    f.close();
    bytes.insert(2, extra);
    EXPECT_TRUE(f.open(QIODevice::WriteOnly | QIODevice::Truncate));
    f.write(bytes);
    return path;
}

} // namespace

TEST(JpegHead, TheReaderGivesWhatExiv2GivesFromTheWholeFile) {
    QTemporaryDir tmp;
    QStringList files;
    for (const QString& dir : {formatsDir(), malformedDir()})
        for (const QString& f : sampleFiles(dir))
            if (f.endsWith(".jpg"))
                files << f;
    // Exiv2 takes the first of two XMP segments; fill bytes may stand before a marker; an
    // XMP segment may hold its signature only.
    files << jpegWith(tmp.path(), "two-xmp.jpg", xmpSegment("first") + xmpSegment("second"));
    files << jpegWith(tmp.path(), "fill.jpg",
                      QByteArray("\xff\xff\xff", 3) + xmpSegment("after fill"));
    files << jpegWith(tmp.path(), "empty-xmp.jpg",
                      segment(0xe1, QByteArray("http://ns.adobe.com/xap/1.0/", 29)) +
                          xmpSegment("second"));
    files << jpegWith(tmp.path(), "comment.jpg",
                      segment(0xfe, "a comment") + xmpSegment("with comment"));
    // The padding after the root element is left out of the decoded packet; whitespace
    // anywhere else, and a packet that goes on after its closing instruction, stay as read.
    const QByteArray padding = QByteArray(2000, ' ') + "\n\t\r\n" + QByteArray(40, ' ');
    files << jpegWith(tmp.path(), "padded.jpg", xmpSegmentOf(paddedPacket(" padded ", padding)));
    files << jpegWith(tmp.path(), "padded-unclosed.jpg",
                      xmpSegmentOf(paddedPacket("unclosed", padding).replace("</x:xmpmeta>", "")));
    files << jpegWith(tmp.path(), "padded-trailing.jpg",
                      xmpSegmentOf(paddedPacket("trailing", padding, "<a/>")));
    // A segment that runs past the end of the file.
    {
        QFile f(tmp.path() + "/cut.jpg");
        ASSERT_TRUE(f.open(QIODevice::WriteOnly));
        f.write(QByteArray("\xff\xd8", 2) + xmpSegment("cut").left(60));
        files << f.fileName();
    }
    ASSERT_GT(files.size(), 15);
    for (const QString& f : files)
        EXPECT_EQ(throughReader(f).toStdString(), jsonOfPlain(f).toStdString()) << f.toStdString();
    // Given the file's first bytes, the reader goes on past them to the same head.
    for (const QString& f : files) {
        const std::optional<JpegHead> plain = readJpegHead(f);
        for (const qsizetype size : {qsizetype(3), qsizetype(100), kJpegHeadStartSize}) {
            const std::optional<JpegHead> started = readJpegHead(f, readImageHead(f, size));
            ASSERT_EQ(started.has_value(), plain.has_value()) << f.toStdString() << " " << size;
            if (plain) {
                EXPECT_EQ(started->segments, plain->segments) << f.toStdString() << " " << size;
                EXPECT_EQ(started->xmpPacket, plain->xmpPacket) << f.toStdString() << " " << size;
            }
        }
    }

    const std::optional<JpegHead> two = readJpegHead(tmp.path() + "/two-xmp.jpg");
    ASSERT_TRUE(two.has_value());
    EXPECT_TRUE(QByteArray::fromStdString(two->xmpPacket).contains("first"));
    EXPECT_FALSE(two->segments.contains("http://ns.adobe.com/xap/1.0/"));
    EXPECT_TRUE(two->segments.endsWith("\xff\xda"));
    EXPECT_FALSE(readJpegHead(tmp.path() + "/cut.jpg").has_value());

    const auto packetOf = [&](const char* name) {
        const std::optional<JpegHead> head = readJpegHead(tmp.path() + '/' + name);
        EXPECT_TRUE(head.has_value()) << name;
        return head ? QByteArray::fromStdString(head->xmpPacket) : QByteArray();
    };
    EXPECT_TRUE(packetOf("padded.jpg").endsWith("</x:xmpmeta><?xpacket end=\"w\"?>"));
    EXPECT_TRUE(packetOf("padded.jpg").startsWith("<?xpacket begin="));
    EXPECT_TRUE(packetOf("padded-unclosed.jpg").contains(padding));
    EXPECT_TRUE(packetOf("padded-trailing.jpg").contains(padding));
}

} // namespace tagmoor::test

namespace tagmoor::test {

// The frame size found by walking the head is the one Exiv2 finds in the whole file, so that a
// photo taken as readable from it gives a record; a head that does not walk gives none.
TEST(JpegHead, TheFrameSizeIsTheOneExiv2Finds) {
    QTemporaryDir tmp;
    QStringList files;
    for (const QString& dir : {formatsDir(), malformedDir()})
        for (const QString& f : sampleFiles(dir))
            if (sniffImageKindOfFile(f) == ImageKind::Jpeg)
                files << f;
    const QString noFrame = jpegWith(tmp.path(), "no-frame.jpg", QByteArray("\xff\xd9", 2));
    files << noFrame;
    int sized = 0;
    for (const QString& f : files) {
        const std::optional<QSize> walked = jpegFrameSize(f, readImageHead(f, 100));
        EXPECT_EQ(walked, jpegFrameSize(f)) << f.toStdString();
        if (!walked)
            continue;
        ++sized;
        const auto xmpLock = lockXmpToolkit();
        auto image = Exiv2::ImageFactory::open(QFile::encodeName(f).toStdString());
        image->readMetadata();
        EXPECT_EQ(*walked, QSize(image->pixelWidth(), image->pixelHeight())) << f.toStdString();
    }
    EXPECT_GT(sized, 5);
    EXPECT_FALSE(jpegFrameSize(noFrame).has_value());
}

} // namespace tagmoor::test
