// tagmoor-cli read: each photo's record as one JSON object per line.
#include "Commands.h"

#include "metadata/MetadataLibrary.h"
#include "metadata/PropertyLoading.h"
#include "workingset/OrderedRecordReader.h"

#include <QDir>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTextStream>
#include <QUrl>

#include <charconv>
#include <cmath>

namespace tagmoor::cli {

namespace {

const char* kReadUsage =
    "usage: tagmoor-cli read [--threads N] [--] PATH...\n"
    "\n"
    "Loads each photo as the application does and prints one JSON object per line:\n"
    "  {\"path\": ..., \"tiffProperties.artist\": {\"value\": ..., \"kind\": \"text\"}, ...}\n"
    "with every present field under its record name. Dates are ISO 8601 with their offset.\n"
    "A path that gives no record prints {\"path\": ..., \"error\": ...}.\n"
    "  --threads N   read on N threads, as the window's scan does (default 1); the output\n"
    "                is the same for any N, in the order of the paths\n"
    "\n"
    "exit status: 0 every path gave a record, 1 some did not, 2 bad arguments\n";

QString quoted(const QString& text) {
    QString out = QStringLiteral("\"");
    for (const QChar c : text) {
        switch (c.unicode()) {
        case '"':
            out += QStringLiteral("\\\"");
            break;
        case '\\':
            out += QStringLiteral("\\\\");
            break;
        case '\n':
            out += QStringLiteral("\\n");
            break;
        case '\r':
            out += QStringLiteral("\\r");
            break;
        case '\t':
            out += QStringLiteral("\\t");
            break;
        default:
            if (c.unicode() < 0x20)
                out += QStringLiteral("\\u%1").arg(c.unicode(), 4, 16, QLatin1Char('0'));
            else
                out += c;
        }
    }
    return out + QLatin1Char('"');
}

// The shortest text that reads back as the same number; JSON has no NaN or infinity.
template <typename Float> QString number(Float f) {
    if (!std::isfinite(f))
        return QStringLiteral("null");
    char buffer[64];
    const auto end = std::to_chars(buffer, buffer + sizeof buffer, f).ptr;
    return QString::fromLatin1(buffer, end - buffer);
}

QString isoDate(const QDateTime& d) {
    return quoted(d.toOffsetFromUtc(d.offsetFromUtc()).toString(Qt::ISODateWithMs));
}

QString jsonOf(const PropertyValue& v) {
    switch (v.kind()) {
    case PropertyValue::Kind::Text:
        return quoted(*v.text());
    case PropertyValue::Kind::Int64:
        return QString::number(*v.int64());
    case PropertyValue::Kind::Float32:
        return number(*v.float32());
    case PropertyValue::Kind::Float64:
        return number(*v.float64());
    case PropertyValue::Kind::UInt8:
        return QString::number(*v.uint8());
    case PropertyValue::Kind::UInt64:
        return QString::number(*v.uint64());
    case PropertyValue::Kind::Date:
        return isoDate(*v.date());
    case PropertyValue::Kind::Bytes:
        return quoted(QString::fromLatin1(v.bytes()->toBase64()));
    case PropertyValue::Kind::List:
        return QString::fromUtf8(
            QJsonDocument(QJsonArray::fromVariantList(*v.list())).toJson(QJsonDocument::Compact));
    case PropertyValue::Kind::Dictionary:
        return QString::fromUtf8(QJsonDocument(QJsonObject::fromVariantMap(*v.dictionary()))
                                     .toJson(QJsonDocument::Compact));
    case PropertyValue::Kind::Absent:
        break;
    }
    return QStringLiteral("null");
}

QString recordLine(const QString& path, const CGImageProperties& record) {
    QString line = QStringLiteral("{\"path\": ") + quoted(path);
    forEachPresentValue(
        record, [&](const char* group, const char* field, const char*, const PropertyValue& value) {
            const QString name =
                *group ? QStringLiteral("%1.%2").arg(QLatin1String(group), QLatin1String(field))
                       : QString::fromLatin1(field);
            line += QStringLiteral(", %1: {\"value\": %2, \"kind\": \"%3\"}")
                        .arg(quoted(name), jsonOf(value),
                             QLatin1String(PropertyValue::kindName(value.kind())));
        });
    return line + QLatin1Char('}');
}

QString whyNoRecord(const QString& path) {
    const QFileInfo info(path);
    if (!info.exists())
        return QStringLiteral("no such file");
    if (info.isDir())
        return QStringLiteral("is a folder");
    if (!info.isReadable())
        return QStringLiteral("cannot be read");
    return QStringLiteral("not a readable photo of an accepted type");
}

} // namespace

int runRead(const QStringList& args) {
    QStringList paths;
    int threads = 1;
    bool optionsDone = false;
    for (qsizetype i = 0; i < args.size(); ++i) {
        const QString& arg = args[i];
        if (!optionsDone && (arg == QLatin1String("--help") || arg == QLatin1String("-h"))) {
            QTextStream(stdout) << kReadUsage;
            return 0;
        }
        if (!optionsDone && arg == QLatin1String("--")) {
            optionsDone = true;
            continue;
        }
        if (!optionsDone && arg == QLatin1String("--threads")) {
            bool ok = false;
            threads = i + 1 < args.size() ? args[++i].toInt(&ok) : 0;
            if (!ok || threads < 1 || threads > 64) {
                QTextStream(stderr) << "tagmoor-cli read: --threads needs a number from 1 to 64\n"
                                    << kReadUsage;
                return 2;
            }
            continue;
        }
        if (!optionsDone && arg.startsWith(QLatin1Char('-')) && arg.size() > 1) {
            QTextStream(stderr) << "tagmoor-cli read: unknown option '" << arg << "'\n"
                                << kReadUsage;
            return 2;
        }
        paths << arg;
    }
    if (paths.isEmpty()) {
        QTextStream(stderr) << "tagmoor-cli read: no path given\n" << kReadUsage;
        return 2;
    }

    // The reader is handed absolute paths; each result is printed under the path as given,
    // which the queue of given paths supplies in the same order.
    QTextStream out(stdout);
    int missing = 0;
    qsizetype next = 0;
    OrderedRecordReader reader(&loadImageProperties, threads,
                               [&](const QString&, std::optional<CGImageProperties>&& record) {
                                   const QString& path = paths[next++];
                                   if (record) {
                                       out << recordLine(path, *record) << '\n';
                                   } else {
                                       ++missing;
                                       out << "{\"path\": " << quoted(path)
                                           << ", \"error\": " << quoted(whyNoRecord(path)) << "}\n";
                                   }
                                   out.flush();
                               });
    for (const QString& path : paths)
        reader.read(QDir::cleanPath(QFileInfo(path).absoluteFilePath()));
    reader.finish();
    if (const XmpLockStats stats = xmpLockStats(); stats.enabled)
        QTextStream(stderr) << "xmp lock: " << stats.locks << " times, held "
                            << stats.heldNs / 1000000 << " ms, waited for "
                            << stats.waitedNs / 1000000 << " ms\n";
    return missing == 0 ? 0 : 1;
}

} // namespace tagmoor::cli
