// Writes COUNT camera-size JPEGs with varied metadata into DIR, for the benchmarks.
//
//   make_corpus DIR COUNT [--size WIDTHxHEIGHT] [--seed N] [--prefix NAME]
//
// The picture is encoded once and its bytes re-used; each file then gets its own tags
// through Exiv2 (about 50 Exif, 11 IPTC and 8 XMP values, different in every file), so that
// generating a thousand files takes seconds, not minutes. Files are named PREFIX_00001.jpg...
#include "metadata/MetadataLibrary.h"

#include <QBuffer>
#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QImage>
#include <QRandomGenerator>
#include <QTextStream>

#include <exiv2/exiv2.hpp>

#include <cstdio>

namespace {

const char* kUsage =
    "usage: make_corpus DIR COUNT [--size WIDTHxHEIGHT] [--seed N] [--prefix NAME]\n";

// A picture with smooth areas and fine noise, so that it compresses like a photo.
QByteArray encodePicture(int width, int height, quint32 seed) {
    QImage image(width, height, QImage::Format_RGB32);
    QRandomGenerator random(seed);
    for (int y = 0; y < height; ++y) {
        auto* line = reinterpret_cast<QRgb*>(image.scanLine(y));
        for (int x = 0; x < width; ++x) {
            const int noise = int(random.bounded(24));
            line[x] = qRgb((x * 255 / width + noise) & 0xFF, (y * 255 / height + noise) & 0xFF,
                           ((x + y) / 16 + noise) & 0xFF);
        }
    }
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, "JPEG", 88);
    return bytes;
}

template <typename... Args> std::string format(const char* pattern, Args... args) {
    char text[256];
    std::snprintf(text, sizeof text, pattern, args...);
    return text;
}

void setExifValue(Exiv2::ExifData& exif, const char* key, Exiv2::TypeId type,
                  const std::string& text) {
    Exiv2::Value::AutoPtr v = Exiv2::Value::create(type);
    v->read(text);
    exif.add(Exiv2::ExifKey(key), v.get());
}

void fillTags(Exiv2::Image& image, int index, QRandomGenerator& random, int width, int height) {
    static const char* makes[] = {"Canon", "NIKON CORPORATION", "SONY", "FUJIFILM", "OLYMPUS"};
    static const char* models[] = {"EOS R5", "Z 7II", "ILCE-7RM4", "X-T4", "E-M1MarkIII"};
    static const char* cities[] = {"Lyon", "Porto", "Kyoto", "Quebec", "Tromsø", "Cusco"};
    const int camera = int(random.bounded(5));
    const int day = 1 + int(random.bounded(28)), month = 1 + int(random.bounded(12));
    const int year = 2005 + int(random.bounded(19));
    const int hour = int(random.bounded(24)), minute = int(random.bounded(60));
    const int second = int(random.bounded(60));
    const std::string date =
        format("%04d:%02d:%02d %02d:%02d:%02d", year, month, day, hour, minute, second);
    const std::string isoDate =
        format("%04d-%02d-%02dT%02d:%02d:%02d", year, month, day, hour, minute, second);

    Exiv2::ExifData& exif = image.exifData();
    using T = Exiv2::TypeId;
    setExifValue(exif, "Exif.Image.ImageDescription", T::asciiString, format("Frame %d", index));
    setExifValue(exif, "Exif.Image.Make", T::asciiString, makes[camera]);
    setExifValue(exif, "Exif.Image.Model", T::asciiString, models[camera]);
    setExifValue(exif, "Exif.Image.Orientation", T::unsignedShort,
                 std::to_string(1 + random.bounded(8)));
    setExifValue(exif, "Exif.Image.XResolution", T::unsignedRational, "300/1");
    setExifValue(exif, "Exif.Image.YResolution", T::unsignedRational, "300/1");
    setExifValue(exif, "Exif.Image.ResolutionUnit", T::unsignedShort, "2");
    setExifValue(exif, "Exif.Image.Software", T::asciiString,
                 format("Firmware %d.%d", camera, index % 10));
    setExifValue(exif, "Exif.Image.DateTime", T::asciiString, date);
    setExifValue(exif, "Exif.Image.Artist", T::asciiString, format("Photographer %d", index % 37));
    setExifValue(exif, "Exif.Image.YCbCrPositioning", T::unsignedShort, "2");
    setExifValue(exif, "Exif.Image.Copyright", T::asciiString,
                 format("(c) %d Studio %d", year, index % 5));
    setExifValue(exif, "Exif.Photo.ExposureTime", T::unsignedRational,
                 format("1/%d", 30 + int(random.bounded(4000))));
    setExifValue(exif, "Exif.Photo.FNumber", T::unsignedRational,
                 format("%d/10", 14 + int(random.bounded(200))));
    setExifValue(exif, "Exif.Photo.ExposureProgram", T::unsignedShort,
                 std::to_string(random.bounded(9)));
    setExifValue(exif, "Exif.Photo.ISOSpeedRatings", T::unsignedShort,
                 std::to_string(100 << random.bounded(7)));
    setExifValue(exif, "Exif.Photo.ExifVersion", T::undefined, "48 50 51 50");
    setExifValue(exif, "Exif.Photo.DateTimeOriginal", T::asciiString, date);
    setExifValue(exif, "Exif.Photo.DateTimeDigitized", T::asciiString, date);
    setExifValue(exif, "Exif.Photo.ShutterSpeedValue", T::signedRational,
                 format("%d/1000", int(random.bounded(12000))));
    setExifValue(exif, "Exif.Photo.ApertureValue", T::unsignedRational,
                 format("%d/100", 100 + int(random.bounded(800))));
    setExifValue(exif, "Exif.Photo.ExposureBiasValue", T::signedRational,
                 format("%d/3", int(random.bounded(13)) - 6));
    setExifValue(exif, "Exif.Photo.MaxApertureValue", T::unsignedRational, "297/100");
    setExifValue(exif, "Exif.Photo.MeteringMode", T::unsignedShort,
                 std::to_string(random.bounded(7)));
    setExifValue(exif, "Exif.Photo.LightSource", T::unsignedShort,
                 std::to_string(random.bounded(4)));
    setExifValue(exif, "Exif.Photo.Flash", T::unsignedShort, random.bounded(2) ? "16" : "9");
    setExifValue(exif, "Exif.Photo.FocalLength", T::unsignedRational,
                 format("%d/10", 120 + int(random.bounded(4000))));
    setExifValue(exif, "Exif.Photo.UserComment", T::comment,
                 format("charset=Ascii Shot %d of the series", index));
    setExifValue(exif, "Exif.Photo.ColorSpace", T::unsignedShort, "1");
    setExifValue(exif, "Exif.Photo.PixelXDimension", T::unsignedLong, std::to_string(width));
    setExifValue(exif, "Exif.Photo.PixelYDimension", T::unsignedLong, std::to_string(height));
    setExifValue(exif, "Exif.Photo.SensingMethod", T::unsignedShort, "2");
    setExifValue(exif, "Exif.Photo.ExposureMode", T::unsignedShort,
                 std::to_string(random.bounded(3)));
    setExifValue(exif, "Exif.Photo.WhiteBalance", T::unsignedShort,
                 std::to_string(random.bounded(2)));
    setExifValue(exif, "Exif.Photo.FocalLengthIn35mmFilm", T::unsignedShort,
                 std::to_string(18 + random.bounded(300)));
    setExifValue(exif, "Exif.Photo.SceneCaptureType", T::unsignedShort,
                 std::to_string(random.bounded(4)));
    setExifValue(exif, "Exif.Photo.Saturation", T::unsignedShort,
                 std::to_string(random.bounded(3)));
    setExifValue(exif, "Exif.Photo.Sharpness", T::unsignedShort, std::to_string(random.bounded(3)));
    setExifValue(exif, "Exif.Photo.SubjectDistanceRange", T::unsignedShort,
                 std::to_string(random.bounded(4)));
    setExifValue(exif, "Exif.Photo.CameraOwnerName", T::asciiString,
                 format("Owner %d", index % 11));
    setExifValue(exif, "Exif.Photo.BodySerialNumber", T::asciiString,
                 format("%08u", random.generate() % 100000000));
    setExifValue(exif, "Exif.Photo.LensMake", T::asciiString, makes[camera]);
    setExifValue(exif, "Exif.Photo.LensModel", T::asciiString,
                 format("%d-%dmm F%d", 12 + camera, 70 + 10 * camera, 2 + camera % 3));
    setExifValue(exif, "Exif.Photo.LensSerialNumber", T::asciiString, format("L%06d", index));
    setExifValue(exif, "Exif.GPSInfo.GPSVersionID", T::unsignedByte, "2 3 0 0");
    setExifValue(exif, "Exif.GPSInfo.GPSLatitudeRef", T::asciiString,
                 random.bounded(2) ? "N" : "S");
    setExifValue(exif, "Exif.GPSInfo.GPSLatitude", T::unsignedRational,
                 format("%d/1 %d/1 %d/100", int(random.bounded(90)), int(random.bounded(60)),
                        int(random.bounded(6000))));
    setExifValue(exif, "Exif.GPSInfo.GPSLongitudeRef", T::asciiString,
                 random.bounded(2) ? "E" : "W");
    setExifValue(exif, "Exif.GPSInfo.GPSLongitude", T::unsignedRational,
                 format("%d/1 %d/1 %d/100", int(random.bounded(180)), int(random.bounded(60)),
                        int(random.bounded(6000))));
    setExifValue(exif, "Exif.GPSInfo.GPSAltitudeRef", T::unsignedByte, "0");
    setExifValue(exif, "Exif.GPSInfo.GPSAltitude", T::unsignedRational,
                 format("%d/10", int(random.bounded(40000))));

    Exiv2::IptcData& iptc = image.iptcData();
    iptc["Iptc.Application2.ObjectName"] = format("Object %d", index);
    iptc["Iptc.Application2.Byline"] = format("Photographer %d", index % 37);
    iptc["Iptc.Application2.Headline"] = format("Headline number %d", index);
    iptc["Iptc.Application2.Caption"] = format("A caption that tells what frame %d shows.", index);
    iptc["Iptc.Application2.City"] = cities[random.bounded(6)];
    iptc["Iptc.Application2.CountryName"] = "Somewhere";
    iptc["Iptc.Application2.CountryCode"] = "SWH";
    iptc["Iptc.Application2.Credit"] = "Tagmoor bench";
    iptc["Iptc.Application2.Source"] = format("Card %d", index / 100);
    for (const char* word : {"travel", "street", "light"}) {
        Exiv2::Value::AutoPtr v = Exiv2::Value::create(Exiv2::string);
        v->read(word);
        iptc.add(Exiv2::IptcKey("Iptc.Application2.Keywords"), v.get());
    }

    Exiv2::XmpData& xmp = image.xmpData();
    xmp["Xmp.aux.SerialNumber"] = format("%08u", random.generate() % 100000000);
    xmp["Xmp.aux.Lens"] = format("Lens %d", camera);
    xmp["Xmp.photoshop.DateCreated"] = isoDate;
    xmp["Xmp.xmp.CreateDate"] = isoDate;
    xmp["Xmp.xmp.ModifyDate"] = isoDate;
    xmp["Xmp.xmp.Rating"] = std::to_string(random.bounded(6));
    xmp["Xmp.dc.title"] = format("lang=\"x-default\" Title %d", index);
    xmp["Xmp.dc.creator"] = format("Photographer %d", index % 37);
}

} // namespace

int main(int argc, char** argv) {
    tagmoor::initializeMetadataLibrary();
    QCoreApplication app(argc, argv);
    QStringList args = QCoreApplication::arguments().mid(1);
    int width = 4000, height = 3000;
    quint32 seed = 1;
    QString prefix = QStringLiteral("IMG");
    QStringList positional;
    for (int i = 0; i < args.size(); ++i) {
        const QString& a = args[i];
        const bool hasValue = i + 1 < args.size();
        if (a == QLatin1String("--size") && hasValue) {
            const QStringList wh = args[++i].split(QLatin1Char('x'));
            width = wh.value(0).toInt();
            height = wh.value(1).toInt();
        } else if (a == QLatin1String("--seed") && hasValue) {
            seed = args[++i].toUInt();
        } else if (a == QLatin1String("--prefix") && hasValue) {
            prefix = args[++i];
        } else if (a == QLatin1String("--help") || a == QLatin1String("-h")) {
            QTextStream(stdout) << kUsage;
            return 0;
        } else {
            positional << a;
        }
    }
    bool countOk = false;
    const int count = positional.value(1).toInt(&countOk);
    if (positional.size() != 2 || !countOk || count < 0 || width <= 0 || height <= 0) {
        QTextStream(stderr) << kUsage;
        return 2;
    }
    const QString dirPath = positional[0];
    if (!QDir().mkpath(dirPath)) {
        QTextStream(stderr) << "make_corpus: cannot create " << dirPath << "\n";
        return 1;
    }

    QElapsedTimer timer;
    timer.start();
    const QByteArray picture = encodePicture(width, height, seed);
    QRandomGenerator random(seed);
    try {
        for (int i = 1; i <= count; ++i) {
            Exiv2::Image::AutoPtr image = Exiv2::ImageFactory::open(
                reinterpret_cast<const Exiv2::byte*>(picture.constData()), long(picture.size()));
            image->readMetadata();
            fillTags(*image, i, random, width, height);
            image->writeMetadata();
            Exiv2::BasicIo& io = image->io();
            io.seek(0, Exiv2::BasicIo::beg);
            const Exiv2::DataBuf bytes = io.read(long(io.size()));
            QFile out(QDir(dirPath).filePath(
                QStringLiteral("%1_%2.jpg").arg(prefix).arg(i, 5, 10, QLatin1Char('0'))));
            if (!out.open(QIODevice::WriteOnly | QIODevice::Truncate) ||
                out.write(reinterpret_cast<const char*>(bytes.pData_), bytes.size_) !=
                    bytes.size_) {
                QTextStream(stderr) << "make_corpus: cannot write " << out.fileName() << "\n";
                return 1;
            }
        }
    } catch (const Exiv2::AnyError& e) {
        QTextStream(stderr) << "make_corpus: Exiv2 failed: " << e.what() << "\n";
        return 1;
    }
    QTextStream(stdout) << "make_corpus: " << count << " files of " << width << "x" << height
                        << " (" << picture.size() / 1024 << " KiB picture) in " << dirPath << ", "
                        << timer.elapsed() << " ms\n";
    return 0;
}
