// tagmoor-cli read: each photo's record as one JSON object per line.
#include "Commands.h"
#include "ExtraJson.h"

#include "extras/CopiesInStep.h"
#include "foundation/JsonText.h"
#include "metadata/MetadataLibrary.h"
#include "metadata/PropertyLoading.h"
#include "metadata/XmpSidecar.h"
#include "model/PropertyValue.h"
#include "workingset/OrderedRecordReader.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTextStream>
#include <QUrl>

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstdlib>
#include <string>
#include <string_view>
#include <type_traits>
#include <unordered_map>
#include <utility>

namespace tagmoor::cli {

namespace {

const char* kReadUsage =
    "usage: tagmoor-cli read [--form standard|described] [--threads N] [--sync-copies on|off]\n"
    "                        [--] PATH...\n"
    "\n"
    "Loads each photo as the application does and prints one JSON object per line:\n"
    "  {\"path\": ..., \"tiffProperties.artist\": {\"value\": ..., \"kind\": \"text\"}, ...}\n"
    "with every present field under its record name. Dates are ISO 8601 with their offset.\n"
    "The values beyond the form's fields stand under \"extras\" when there are any:\n"
    "  \"keywords\", \"keywordPaths\", \"rating\", \"label\", \"persons\", \"altText\",\n"
    "  \"extDescription\", \"event\", \"usageTerms\", \"creditLine\", \"instructions\",\n"
    "  \"creatorEmail\", \"creatorPhone\", \"creatorUrl\", \"creatorCity\", \"creatorCountry\".\n"
    "A path that gives no record prints {\"path\": ..., \"error\": ...}.\n"
    "In the standard form a photo's XMP sidecar (NAME.EXT.xmp or NAME.xmp) is read over its own\n"
    "values, and \"sidecar\": {\"path\": ..., \"keys\": [...]} names it and the keys it gave;\n"
    "the extras it gave are listed in \"extras\": {\"fromSidecar\": [...]}.\n"
    "  --form F      standard (the default): numbers, GPS positions and keyword lists as\n"
    "                the file holds them; described: the classic reading rules\n"
    "  --sync-copies on|off\n"
    "                on (standard form): the caption, creator, copyright and location\n"
    "                fields show the copy a reader prefers (Exif, then XMP, then IPTC);\n"
    "                off (the default): each tag as it stands\n"
    "  --threads N   read on N threads, as the window's scan does (default 1); the output\n"
    "                is the same for any N, in the order of the paths\n"
    "\n"
    "exit status: 0 every path gave a record, 1 some did not, 2 bad arguments\n";

// The JSON escape of one character below 0x80, or nothing for one that stands as it is.
std::string_view escapeOf(char16_t c) {
    static constexpr std::string_view controls[] = {
        "\\u0000", "\\u0001", "\\u0002", "\\u0003", "\\u0004", "\\u0005", "\\u0006", "\\u0007",
        "\\u0008", "\\t",     "\\n",     "\\u000b", "\\u000c", "\\r",     "\\u000e", "\\u000f",
        "\\u0010", "\\u0011", "\\u0012", "\\u0013", "\\u0014", "\\u0015", "\\u0016", "\\u0017",
        "\\u0018", "\\u0019", "\\u001a", "\\u001b", "\\u001c", "\\u001d", "\\u001e", "\\u001f"};
    if (c < 0x20)
        return controls[c];
    if (c == u'"')
        return "\\\"";
    if (c == u'\\')
        return "\\\\";
    return {};
}

// Appends the code units as a JSON string, each unit as one byte: UTF-8 bytes (every byte of
// a multi-byte sequence is at least 0x80, so only ASCII is ever escaped), or UTF-16 units that
// are all below 0x80. Runs without an escape go in one piece.
template <typename Unit> void appendEscaped(std::string& out, const Unit* text, qsizetype size) {
    const auto appendRun = [&](qsizetype from, qsizetype to) {
        if constexpr (std::is_same_v<Unit, char>) {
            out.append(text + from, std::size_t(to - from));
        } else {
            const std::size_t at = out.size();
            out.resize(at + std::size_t(to - from));
            std::transform(text + from, text + to, out.begin() + std::ptrdiff_t(at),
                           [](Unit unit) { return char(unit); });
        }
    };
    out += '"';
    qsizetype run = 0;
    for (qsizetype i = 0; i < size; ++i) {
        const auto c = static_cast<std::make_unsigned_t<Unit>>(text[i]);
        const std::string_view escape = c < 0x80 ? escapeOf(char16_t(c)) : std::string_view();
        if (escape.empty())
            continue;
        appendRun(run, i);
        out += escape;
        run = i + 1;
    }
    appendRun(run, size);
    out += '"';
}

void appendQuoted(std::string& out, QByteArrayView utf8) {
    appendEscaped(out, utf8.data(), utf8.size());
}

// An ASCII text goes straight from its UTF-16 units; any other through its UTF-8 form.
void appendQuoted(std::string& out, const QString& text) {
    const char16_t* units = reinterpret_cast<const char16_t*>(text.utf16());
    if (std::all_of(units, units + text.size(), [](char16_t c) { return c < 0x80; }))
        appendEscaped(out, units, text.size());
    else
        appendQuoted(out, QByteArrayView(text.toUtf8()));
}

// The shortest text that reads back as the same number; JSON has no NaN or infinity.
template <typename Number> void appendNumber(std::string& out, Number n) {
    if constexpr (std::is_floating_point_v<Number>) {
        if (!std::isfinite(n)) {
            out += "null";
            return;
        }
    }
    char buffer[64];
    const auto end = std::to_chars(buffer, buffer + sizeof buffer, n).ptr;
    out.append(buffer, end - buffer);
}

// Appends `n` as `width` digits with leading zeros; `n` is at least 0 and has no more digits.
void appendDigits(std::string& out, int n, int width) {
    char digits[4];
    for (int i = width - 1; i >= 0; --i, n /= 10)
        digits[i] = char('0' + n % 10);
    out.append(digits, width);
}

// The date at its own offset from UTC (in UTC when that is none). A local time's offset is how
// far its clock reads from UTC at that instant, so one conversion gives both: each asks the
// system's zone, which costs more than the rest of the date's line.
QDateTime atOwnOffset(const QDateTime& d) {
    if (d.timeSpec() != Qt::LocalTime || !d.isValid())
        return d.toOffsetFromUtc(d.offsetFromUtc());
    const qint64 instant = d.toMSecsSinceEpoch();
    const qint64 clock = QDateTime(d.date(), d.time(), Qt::UTC).toMSecsSinceEpoch();
    return QDateTime::fromMSecsSinceEpoch(instant, Qt::OffsetFromUTC,
                                          int((clock - instant) / 1000));
}

// The date at its own offset from UTC as Qt::ISODateWithMs writes it ("Z" for UTC, else the
// offset in whole minutes), without the string building of QDateTime::toString, which costs
// more than the rest of a line. Dates that form does not cover go through Qt.
void appendIsoDate(std::string& out, const QDateTime& d) {
    const QDateTime at = atOwnOffset(d);
    const QDate date = at.date();
    const QTime time = at.time();
    const Qt::TimeSpec zoneKind = at.timeSpec();
    const int offset = zoneKind == Qt::OffsetFromUTC ? at.offsetFromUtc() : 0;
    if (!date.isValid() || !time.isValid() || date.year() < 0 || date.year() > 9999 ||
        (zoneKind != Qt::UTC && zoneKind != Qt::OffsetFromUTC) || std::abs(offset) >= 100 * 3600)
        return appendQuoted(out, at.toString(Qt::ISODateWithMs));
    out += '"';
    appendDigits(out, date.year(), 4);
    out += '-';
    appendDigits(out, date.month(), 2);
    out += '-';
    appendDigits(out, date.day(), 2);
    out += 'T';
    appendDigits(out, time.hour(), 2);
    out += ':';
    appendDigits(out, time.minute(), 2);
    out += ':';
    appendDigits(out, time.second(), 2);
    out += '.';
    appendDigits(out, time.msec(), 3);
    if (zoneKind == Qt::UTC) {
        out += "Z\"";
        return;
    }
    out += offset >= 0 ? '+' : '-';
    appendDigits(out, std::abs(offset) / 3600, 2);
    out += ':';
    appendDigits(out, std::abs(offset) / 60 % 60, 2);
    out += '"';
}

void appendJson(std::string& out, const PropertyValue& v) {
    switch (v.kind()) {
    case PropertyValue::Kind::Text:
        return appendQuoted(out, *v.text());
    case PropertyValue::Kind::Int64:
        return appendNumber(out, *v.int64());
    case PropertyValue::Kind::Float32:
        return appendNumber(out, *v.float32());
    case PropertyValue::Kind::Float64:
        return appendNumber(out, *v.float64());
    case PropertyValue::Kind::UInt8:
        return appendNumber(out, unsigned(*v.uint8()));
    case PropertyValue::Kind::UInt64:
        return appendNumber(out, *v.uint64());
    case PropertyValue::Kind::Date:
        return appendIsoDate(out, *v.date());
    case PropertyValue::Kind::Bytes:
        return appendQuoted(out, QByteArrayView(v.bytes()->toBase64()));
    case PropertyValue::Kind::List: {
        // A list of texts (keywords) is written as Qt writes it; any other through Qt.
        const QVariantList list = *v.list();
        if (std::all_of(list.cbegin(), list.cend(), [](const QVariant& item) {
                return item.metaType().id() == QMetaType::QString;
            })) {
            QStringList texts;
            texts.reserve(list.size());
            for (const QVariant& item : list)
                texts.append(*static_cast<const QString*>(item.constData()));
            appendJsonStrings(out, texts);
            return;
        }
        out += QJsonDocument(QJsonArray::fromVariantList(list))
                   .toJson(QJsonDocument::Compact)
                   .toStdString();
        return;
    }
    case PropertyValue::Kind::Dictionary:
        out += QJsonDocument(QJsonObject::fromVariantMap(*v.dictionary()))
                   .toJson(QJsonDocument::Compact)
                   .toStdString();
        return;
    case PropertyValue::Kind::Absent:
        break;
    }
    out += "null";
}

// One record as one line of JSON, appended straight as UTF-8 bytes to the output gathered so
// far: with many small photos the printing costs as much as a good part of the reading. The
// values beyond the form's fields follow under "extras" when the photo has any.
// The text before a field's value (", \"group.field\": {\"value\": "), made once per field:
// the names come from the record's static tables, so their addresses tell the fields apart.
class FieldHeads {
public:
    const std::string& of(const char* group, const char* field) {
        std::string& head = m_heads[{group, field}];
        if (head.empty()) {
            head = ", \"";
            if (*group) {
                head += group;
                head += '.';
            }
            head += field; // record names are plain ASCII
            head += "\": {\"value\": ";
        }
        return head;
    }

private:
    struct Hash {
        std::size_t operator()(const std::pair<const char*, const char*>& key) const {
            return std::hash<const char*>()(key.first) * 31 + std::hash<const char*>()(key.second);
        }
    };
    std::unordered_map<std::pair<const char*, const char*>, std::string, Hash> m_heads;
};

// The text after a value of each kind (", \"kind\": \"text\"}").
const std::string& kindTail(PropertyValue::Kind kind) {
    static const auto tails = [] {
        std::array<std::string, std::size_t(PropertyValue::Kind::Dictionary) + 1> all;
        for (std::size_t k = 0; k < all.size(); ++k)
            all[k] = std::string(", \"kind\": \"") +
                     PropertyValue::kindName(PropertyValue::Kind(k)) + "\"}";
        return all;
    }();
    return tails.at(std::size_t(kind));
}

// Everything of one record's line after its path, to the line's end. Made on the reader's
// thread, so that the printing of many photos runs on as many threads as their reading.
void appendRecordFields(std::string& line, const CGImageProperties& record,
                        const std::optional<ExtraValues>& extras) {
    static thread_local FieldHeads heads;
    forEachPresentValue(
        record, [&](const char* group, const char* field, const char*, const PropertyValue& value) {
            line += heads.of(group, field);
            appendJson(line, value);
            line += kindTail(value.kind());
        });
    if (extras) {
        const std::size_t before = line.size();
        line += ", \"extras\": ";
        if (!appendExtraValuesJson(line, *extras))
            line.resize(before);
    }
    // Where the values came from, when a sidecar gave some: its path and its keys.
    if (!record.sidecarPath.isEmpty()) {
        line += ", \"sidecar\": {\"path\": ";
        appendQuoted(line, record.sidecarPath);
        line += ", \"keys\": [";
        for (qsizetype i = 0; i < record.sidecarKeys.size(); ++i) {
            if (i > 0)
                line += ", ";
            appendQuoted(line, record.sidecarKeys[i]);
        }
        line += "]}";
    }
    line += "}\n";
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

// Takes the options and paths of `read`; gives an exit status when the command ends here
// (the help, or a bad argument).
std::optional<int> takeReadArguments(const QStringList& args, QStringList& paths, int& threads) {
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
        if (!optionsDone && arg == QLatin1String("--sync-copies")) {
            const QString value = i + 1 < args.size() ? args[++i] : QString();
            if (value != QLatin1String("on") && value != QLatin1String("off")) {
                QTextStream(stderr) << "tagmoor-cli read: --sync-copies takes on or off\n"
                                    << kReadUsage;
                return 2;
            }
            setCopiesInStep(value == QLatin1String("on"));
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
    return std::nullopt;
}

} // namespace

int runRead(const QStringList& args) {
    QStringList paths;
    int threads = 1;
    if (const std::optional<int> status = takeReadArguments(args, paths, threads))
        return *status;

    // Many photos on several threads: freed memory stays in the process for the next photo.
    keepFreedMemoryInProcess();

    // The reader is handed absolute paths; each line is printed under the path as given, which
    // the queue of given paths supplies in the same order. Each reader thread makes the rest of
    // its photos' lines itself, from the record and extras of one parse; the lines are gathered
    // into one buffer and written in large pieces.
    QFile out;
    if (!out.open(stdout, QIODevice::WriteOnly | QIODevice::Unbuffered))
        return 2;
    constexpr qsizetype kWriteSize = 64 * 1024;
    std::string pending;
    pending.reserve(kWriteSize + 16 * 1024);
    const auto flush = [&] {
        out.write(pending.data(), qint64(pending.size()));
        pending.clear(); // keeps the capacity
    };
    int missing = 0;
    qsizetype next = 0;
    // The photos are only read: each folder's sidecars are listed once. Each record is printed
    // and dropped, so its values are not shared with other photos'.
    SidecarListing sidecars;
    const auto load = [&](const QUrl& url) -> std::optional<std::string> {
        const SidecarListing::Scope listed(sidecars);
        const UnsharedValues printedOnce;
        const std::optional<RecordAndExtras> read = loadImagePropertiesAndExtras(url);
        if (!read)
            return std::nullopt;
        std::string fields;
        fields.reserve(2048);
        appendRecordFields(fields, read->record, read->extras);
        return fields;
    };
    OrderedReader<std::string> reader(
        load, threads,
        [&](const QString&, std::optional<std::string>&& fields) {
            const QString& path = paths[next++];
            pending += "{\"path\": ";
            appendQuoted(pending, path);
            if (fields) {
                pending += *fields;
            } else {
                ++missing;
                pending += ", \"error\": ";
                appendQuoted(pending, whyNoRecord(path));
                pending += "}\n";
            }
            if (qsizetype(pending.size()) >= kWriteSize)
                flush();
        },
        OrderedReader<std::string>::kLongRuns); // nothing stops the command half-way
    // The working folder is asked once, not for each relative path.
    const QString current = QDir::currentPath() + QLatin1Char('/');
    for (const QString& path : paths)
        reader.read(QDir::cleanPath(QDir::isAbsolutePath(path) ? path : current + path));
    reader.finish();
    flush();
    out.close();
    return missing == 0 ? 0 : 1;
}

} // namespace tagmoor::cli
