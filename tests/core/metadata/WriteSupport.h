#pragma once
// Helpers for the tests of writing and cleaning: the log, independent readers, the picture's
// bytes, leftover temporary files and child processes.

#include "TestSupport.h"

#include <QCryptographicHash>
#include <QDir>
#include <QImageReader>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QVariantMap>
#include <QtEndian>

#include <functional>
#include <mutex>

#include <csignal>
#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace tagmoor::test {

// Collects every Qt log line written while it lives.
class LogCapture {
public:
    LogCapture() {
        std::lock_guard lock(mutex());
        current() = this;
        m_previous = qInstallMessageHandler(&LogCapture::handle);
    }
    ~LogCapture() {
        std::lock_guard lock(mutex());
        qInstallMessageHandler(m_previous);
        current() = nullptr;
    }
    QStringList lines() const {
        std::lock_guard lock(mutex());
        return m_lines;
    }
    bool contains(const QString& text) const {
        for (const QString& line : lines())
            if (line.contains(text))
                return true;
        return false;
    }

private:
    static void handle(QtMsgType, const QMessageLogContext&, const QString& message) {
        std::lock_guard lock(mutex());
        if (current())
            current()->m_lines << message;
    }
    static std::mutex& mutex() {
        static std::mutex m;
        return m;
    }
    static LogCapture*& current() {
        static LogCapture* c = nullptr;
        return c;
    }
    QtMessageHandler m_previous = nullptr;
    QStringList m_lines;
};

inline const QString kExiv2ErrorStart = QStringLiteral("*** error exiv2 exception '");

// The file's tags as exiftool sees them, numbers unformatted, group names of the first family
// ("IFD0:Artist", "GPS:GPSLatitude", "IPTC:Keywords"). Empty on failure.
inline QJsonObject exiftoolTags(const QString& path) {
    const ToolResult r = runTool(QStringLiteral("exiftool"),
                                 {QStringLiteral("-j"), QStringLiteral("-n"), QStringLiteral("-a"),
                                  QStringLiteral("-G1"), path});
    const QJsonArray all = QJsonDocument::fromJson(r.out).array();
    return all.isEmpty() ? QJsonObject() : all.first().toObject();
}

// The raw value text of one tag as the exiv2 tool prints it ("48/1 30/1 0/1"), or nothing.
inline std::optional<QString> exiv2Value(const QString& path, const QString& key) {
    const ToolResult r = runTool(QStringLiteral("exiv2"),
                                 {QStringLiteral("-q"), QStringLiteral("-Pv"), QStringLiteral("-K"),
                                  key, path});
    if (r.out.isEmpty())
        return std::nullopt;
    return QString::fromUtf8(r.out).trimmed();
}

// Whether both outside readers read the file without an error.
inline bool readsCleanly(const QString& path, QString* why) {
    const QJsonObject tags = exiftoolTags(path);
    if (tags.isEmpty() || tags.contains(QStringLiteral("ExifTool:Error"))) {
        *why = QStringLiteral("exiftool: ") + tags.value(QStringLiteral("ExifTool:Error")).toString();
        return false;
    }
    const ToolResult r = runTool(QStringLiteral("exiv2"), {QStringLiteral("-pS"), path});
    if (r.exitCode != 0 && r.exitCode != 1) {
        *why = QStringLiteral("exiv2: ") + QString::fromUtf8(r.err);
        return false;
    }
    if (r.err.contains("Exiv2 exception")) {
        *why = QStringLiteral("exiv2: ") + QString::fromUtf8(r.err);
        return false;
    }
    return true;
}

// The bytes of the picture of a JPEG 2000 file: its codestream box.
inline QByteArray jp2Codestream(const QByteArray& file) {
    qsizetype at = 0;
    while (at + 8 <= file.size()) {
        quint64 length = qFromBigEndian<quint32>(file.constData() + at);
        const QByteArray type = file.mid(at + 4, 4);
        qsizetype header = 8;
        if (length == 1 && at + 16 <= file.size()) {
            length = qFromBigEndian<quint64>(file.constData() + at + 8);
            header = 16;
        }
        if (length == 0)
            length = quint64(file.size() - at);
        if (type == "jp2c")
            return file.mid(at + header, qsizetype(length) - header);
        if (length < quint64(header))
            break;
        at += qsizetype(length);
    }
    return {};
}

// The bytes of a Photoshop file after its resources: layers and the merged picture.
inline QByteArray psdPictureData(const QByteArray& file) {
    qsizetype at = 26;
    for (int section = 0; section < 2 && at + 4 <= file.size(); ++section)
        at += 4 + qFromBigEndian<quint32>(file.constData() + at);
    return at <= file.size() ? file.mid(at) : QByteArray();
}

// The byte ranges of the picture and embedded previews that exiftool locates (strips, tiles,
// previews, thumbnails), in a fixed order, clipped to the file.
inline QByteArray locatedImageData(const QString& path, const QByteArray& file) {
    static const QList<QPair<QString, QString>> pairs{
        {QStringLiteral("StripOffsets"), QStringLiteral("StripByteCounts")},
        {QStringLiteral("TileOffsets"), QStringLiteral("TileByteCounts")},
        {QStringLiteral("PreviewImageStart"), QStringLiteral("PreviewImageLength")},
        {QStringLiteral("JpgFromRawStart"), QStringLiteral("JpgFromRawLength")},
        {QStringLiteral("ThumbnailOffset"), QStringLiteral("ThumbnailLength")},
    };
    QStringList args{QStringLiteral("-j"), QStringLiteral("-n"), QStringLiteral("-a"),
                     QStringLiteral("-G1"), QStringLiteral("-b")};
    for (const auto& [offsets, counts] : pairs)
        args << QLatin1Char('-') + offsets << QLatin1Char('-') + counts;
    args << path;
    const QJsonArray all = QJsonDocument::fromJson(runTool(QStringLiteral("exiftool"), args).out).array();
    const QJsonObject tags = all.isEmpty() ? QJsonObject() : all.first().toObject();
    QStringList keys = tags.keys();
    keys.sort();
    QByteArray data;
    for (const QString& key : keys) {
        for (const auto& [offsets, counts] : pairs) {
            if (!key.endsWith(QLatin1Char(':') + offsets))
                continue;
            const QString countKey = key.left(key.size() - offsets.size()) + counts;
            const QStringList starts = tags.value(key).toVariant().toString().split(QLatin1Char(' '));
            const QStringList lengths =
                tags.value(countKey).toVariant().toString().split(QLatin1Char(' '));
            data += key.toUtf8();
            for (qsizetype i = 0; i < starts.size() && i < lengths.size(); ++i)
                data += file.mid(starts[i].toLongLong(), lengths[i].toLongLong());
        }
    }
    return data;
}

// A fingerprint of the picture itself, blind to metadata: decoded pixels where Qt decodes the
// type, else the picture's bytes located by format or by exiftool. Empty when none is found.
inline QByteArray pictureFingerprint(const QString& path) {
    const QByteArray file = readBytes(path);
    QByteArray data;
    QImageReader reader(path);
    reader.setAutoTransform(false);
    if (reader.canRead()) {
        const QImage image = reader.read();
        if (!image.isNull()) {
            const QImage argb = image.convertToFormat(QImage::Format_ARGB32);
            data = QByteArray("pixels") + QByteArray::number(argb.width()) + "x" +
                   QByteArray::number(argb.height()) +
                   QByteArray(reinterpret_cast<const char*>(argb.constBits()), argb.sizeInBytes());
        }
    }
    if (data.isEmpty() && file.startsWith(QByteArray("\0\0\0\x0cjP  ", 8)))
        data = jp2Codestream(file);
    if (data.isEmpty() && file.startsWith("8BPS"))
        data = psdPictureData(file);
    if (data.isEmpty())
        data = locatedImageData(path, file);
    if (data.isEmpty())
        return {};
    return QCryptographicHash::hash(data, QCryptographicHash::Sha256).toHex();
}

// Our temporary files left in a folder.
inline QStringList temporaryFilesIn(const QString& dir) {
    return QDir(dir).entryList({QStringLiteral(".tagmoor-*")},
                               QDir::Files | QDir::Hidden | QDir::System);
}

// Runs `body` in a forked child and returns its exit status (as waitpid gives it). The child
// ends with _exit, so nothing of the test process runs twice. Its log goes to `logPath`.
inline int runInChild(const std::function<int()>& body, const QString& logPath = {}) {
    const pid_t pid = fork();
    if (pid == 0) {
        if (!logPath.isEmpty()) {
            const int fd = ::open(QFile::encodeName(logPath).constData(),
                                  O_WRONLY | O_CREAT | O_TRUNC, 0666);
            if (fd >= 0) {
                dup2(fd, STDOUT_FILENO);
                dup2(fd, STDERR_FILENO);
            }
            qInstallMessageHandler(nullptr);
        }
        _exit(body());
    }
    int status = 0;
    waitpid(pid, &status, 0);
    return status;
}

// A property dictionary with the three blocks.
inline QVariantMap properties(const QVariantMap& exif, const QVariantMap& iptc = {},
                              const QVariantMap& xmp = {}) {
    return {{QStringLiteral("exif"), exif},
            {QStringLiteral("iptc"), iptc},
            {QStringLiteral("xmp"), xmp}};
}

} // namespace tagmoor::test
