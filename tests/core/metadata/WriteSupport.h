#pragma once
// Helpers for the tests of writing and cleaning: the log, independent readers, the picture's
// bytes, leftover temporary files and child processes.

#include "TestSupport.h"

#include "metadata/SafeFileReplace.h"
#include "metadata/WrittenProperties.h"

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

// Collects every Qt log line written while it lives; the newest capture gets the lines.
class LogCapture {
public:
    LogCapture() {
        std::lock_guard lock(mutex());
        m_outer = current();
        current() = this;
        if (!m_outer)
            m_previous = qInstallMessageHandler(&LogCapture::handle);
    }
    ~LogCapture() {
        std::lock_guard lock(mutex());
        current() = m_outer;
        if (!m_outer)
            qInstallMessageHandler(m_previous);
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
    LogCapture* m_outer = nullptr;
    QtMessageHandler m_previous = nullptr;
    QStringList m_lines;
};

inline const QString kExiv2ErrorStart = QStringLiteral("*** error exiv2 exception '");

// The tags of several files as exiftool sees them in one run, numbers unformatted, group names
// of the first family ("IFD0:Artist", "GPS:GPSLatitude", "IPTC:Keywords"), by path.
inline QMap<QString, QJsonObject> exiftoolTagsOf(const QStringList& paths,
                                                 const QStringList& options = {}) {
    QStringList args{QStringLiteral("-j"), QStringLiteral("-n"), QStringLiteral("-a"),
                     QStringLiteral("-G1")};
    const ToolResult r = runTool(QStringLiteral("exiftool"), args + options + paths);
    QMap<QString, QJsonObject> byPath;
    for (const QJsonValue& v : QJsonDocument::fromJson(r.out).array())
        byPath.insert(v.toObject().value(QStringLiteral("SourceFile")).toString(), v.toObject());
    return byPath;
}

inline QJsonObject exiftoolTags(const QString& path) {
    return exiftoolTagsOf({path}).value(path);
}

// The raw value text of one tag as the exiv2 tool prints it ("48/1 30/1 0/1"), or nothing.
inline std::optional<QString> exiv2Value(const QString& path, const QString& key) {
    const ToolResult r =
        runTool(QStringLiteral("exiv2"),
                {QStringLiteral("-q"), QStringLiteral("-Pv"), QStringLiteral("-K"), key, path});
    if (r.out.isEmpty())
        return std::nullopt;
    return QString::fromUtf8(r.out).trimmed();
}

// Whether both outside readers read the file without an error; `tags` is exiftool's view.
inline bool readsCleanly(const QString& path, const QJsonObject& tags, QString* why) {
    if (tags.isEmpty() || tags.contains(QStringLiteral("ExifTool:Error"))) {
        *why =
            QStringLiteral("exiftool: ") + tags.value(QStringLiteral("ExifTool:Error")).toString();
        return false;
    }
    const ToolResult r = runTool(QStringLiteral("exiv2"), {QStringLiteral("-pa"), path});
    if (r.exitCode < 0 || r.err.toLower().contains("exception")) {
        *why = QStringLiteral("exiv2: ") + QString::fromUtf8(r.err);
        return false;
    }
    return true;
}

inline bool readsCleanly(const QString& path, QString* why) {
    return readsCleanly(path, exiftoolTags(path), why);
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
// previews; not the Exif thumbnail nor maker note previews, which belong to the Exif block), and
// the embedded images it extracts, in a fixed order; ranges that don't lie inside the file
// (samples cut short) are left out. For several files in one run, by path.
inline QMap<QString, QByteArray> locatedImageData(const QStringList& paths) {
    static const QList<QPair<QString, QString>> pairs{
        {QStringLiteral("StripOffsets"), QStringLiteral("StripByteCounts")},
        {QStringLiteral("TileOffsets"), QStringLiteral("TileByteCounts")},
        {QStringLiteral("PreviewImageStart"), QStringLiteral("PreviewImageLength")},
        {QStringLiteral("JpgFromRawStart"), QStringLiteral("JpgFromRawLength")},
    };
    static const QStringList embedded{QStringLiteral("JpgFromRaw"), QStringLiteral("PreviewImage")};
    QStringList options{QStringLiteral("-b")};
    for (const auto& [offsets, counts] : pairs)
        options << QLatin1Char('-') + offsets << QLatin1Char('-') + counts;
    for (const QString& name : embedded)
        options << QLatin1Char('-') + name;
    const QMap<QString, QJsonObject> all = exiftoolTagsOf(paths, options);
    QMap<QString, QByteArray> result;
    for (const QString& path : paths) {
        const QByteArray file = readBytes(path);
        const QJsonObject tags = all.value(path);
        QStringList keys = tags.keys();
        keys.sort();
        QByteArray data;
        for (const QString& key : keys) {
            // Only the file's own image directories: a maker note's preview goes with the note.
            if (!key.startsWith(QStringLiteral("IFD")) && !key.startsWith(QStringLiteral("SubIFD")))
                continue;
            for (const QString& name : embedded)
                if (key.endsWith(QLatin1Char(':') + name))
                    data += tags.value(key).toString().toUtf8();
            for (const auto& [offsets, counts] : pairs) {
                if (!key.endsWith(QLatin1Char(':') + offsets))
                    continue;
                const QString countKey = key.left(key.size() - offsets.size()) + counts;
                const QStringList starts =
                    tags.value(key).toVariant().toString().split(QLatin1Char(' '));
                const QStringList lengths =
                    tags.value(countKey).toVariant().toString().split(QLatin1Char(' '));
                for (qsizetype i = 0; i < starts.size() && i < lengths.size(); ++i) {
                    const qint64 start = starts[i].toLongLong();
                    const qint64 length = lengths[i].toLongLong();
                    if (start >= 0 && length > 0 && start + length <= file.size())
                        data += file.mid(start, length);
                }
            }
        }
        result.insert(path, data);
    }
    return result;
}

// Fingerprints of the picture itself, blind to metadata: decoded pixels where Qt decodes the
// type without complaint, else the picture's bytes located by format or by exiftool. (A TIFF
// whose strips are cut short decodes to whatever bytes follow them, so its pixels say nothing.)
// Empty when the file holds no picture data that can be found.
inline QMap<QString, QByteArray> pictureFingerprints(const QStringList& paths) {
    QMap<QString, QByteArray> data;
    QStringList unlocated;
    for (const QString& path : paths) {
        const QByteArray file = readBytes(path);
        QByteArray picture;
        {
            LogCapture decoderChatter;
            QImageReader reader(path);
            reader.setAutoTransform(false);
            const QImage image = reader.canRead() ? reader.read() : QImage();
            const bool tiff = file.startsWith("II*") || file.startsWith("MM");
            if (!image.isNull() && !(tiff && !decoderChatter.lines().isEmpty())) {
                const QImage argb = image.convertToFormat(QImage::Format_ARGB32);
                picture =
                    QByteArray("pixels") + QByteArray::number(argb.width()) + "x" +
                    QByteArray::number(argb.height()) +
                    QByteArray(reinterpret_cast<const char*>(argb.constBits()), argb.sizeInBytes());
            }
        }
        if (picture.isEmpty() && file.startsWith(QByteArray("\0\0\0\x0cjP  ", 8)))
            picture = jp2Codestream(file);
        if (picture.isEmpty() && file.startsWith("8BPS"))
            picture = psdPictureData(file);
        if (picture.isEmpty())
            unlocated << path;
        else
            data.insert(path, picture);
    }
    if (!unlocated.isEmpty())
        data.insert(locatedImageData(unlocated));
    QMap<QString, QByteArray> fingerprints;
    for (const QString& path : paths) {
        const QByteArray picture = data.value(path);
        fingerprints.insert(
            path, picture.isEmpty()
                      ? QByteArray()
                      : QCryptographicHash::hash(picture, QCryptographicHash::Sha256).toHex());
    }
    return fingerprints;
}

inline QByteArray pictureFingerprint(const QString& path) {
    return pictureFingerprints({path}).value(path);
}

// Our temporary files left in a folder, once the background release of replaced files is done.
inline QStringList temporaryFilesIn(const QString& dir) {
    SafeFileReplace::waitForReleases();
    return QDir(dir).entryList({QStringLiteral(".tagmoor-*")},
                               QDir::Files | QDir::Hidden | QDir::System);
}

// Runs `body` in a forked child and returns its exit status (as waitpid gives it). The child
// ends with _exit, so nothing of the test process runs twice. Its log goes to `logPath`.
inline int runInChild(const std::function<int()>& body, const QString& logPath = {}) {
    const pid_t pid = fork();
    if (pid == 0) {
        if (!logPath.isEmpty()) {
            const int fd =
                ::open(QFile::encodeName(logPath).constData(), O_WRONLY | O_CREAT | O_TRUNC, 0666);
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

// The values of a write, given by key text per block. A key that no row of its block has, or a
// value that no row could hold, fails the test: the writer would never see it.
inline WrittenProperties properties(const QVariantMap& exif, const QVariantMap& iptc = {},
                                    const QVariantMap& xmp = {}) {
    WrittenProperties written;
    const auto add = [&](const QVariantMap& block, KeyBlock kind) {
        for (auto it = block.begin(); it != block.end(); ++it) {
            const KeyRow* row = findKeyRow(it.key());
            QVariant value = it.value();
            if (value.typeId() == QMetaType::Int)
                value = QVariant::fromValue<qint64>(value.toInt());
            const PropertyValue typed = PropertyValue::fromVariant(value);
            if (!row || row->block != kind || typed.isAbsent()) {
                ADD_FAILURE() << "not a value of a row: " << it.key().toStdString();
                continue;
            }
            written.set(*row, typed);
        }
    };
    add(exif, KeyBlock::Exif);
    add(iptc, KeyBlock::Iptc);
    add(xmp, KeyBlock::Xmp);
    return written;
}

} // namespace tagmoor::test
