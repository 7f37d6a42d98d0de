#include "presets/PresetArchive.h"

#include "foundation/WorkerThreads.h"
#include "presets/PresetDictionary.h"
#include "presets/PresetLog.h"

#include <QDataStream>
#include <QIODevice>
#include <QSet>
#include <QStringList>
#include <QVariantList>
#include <QtConcurrent/QtConcurrentMap>

#include <algorithm>
#include <iterator>
#include <vector>

namespace tagmoor {

namespace {

// The stream version is fixed so that a later Qt writes and reads the same bytes.
constexpr QDataStream::Version kStreamVersion = QDataStream::Qt_6_4;

// Nesting deeper than this is refused on both sides: the stored structure itself is four
// levels deep (list, preset, record, group), which leaves room for lists inside values.
constexpr int kMaxNesting = 32;

// The smallest stream form of a list element (a variant: type id and null flag), of a
// dictionary entry (an empty key and a variant) and of a text list element (an empty text).
constexpr qint64 kMinVariantSize = 5;
constexpr qint64 kMinEntrySize = 4 + kMinVariantSize;
constexpr qint64 kMinTextSize = 4;

enum class Shape { Leaf, List, Map, TextList, Refused };

// How a value of this type is streamed. Qt's own readers of lists reserve room for the
// count they read before reading the elements, so lists and dictionaries are read here
// with the count checked first; plain values are read by Qt. Types outside this set are
// never written by the store and make a block unreadable.
Shape shapeOf(int typeId) {
    switch (typeId) {
    case QMetaType::QVariantList:
        return Shape::List;
    case QMetaType::QVariantMap:
        return Shape::Map;
    case QMetaType::QStringList:
        return Shape::TextList;
    case QMetaType::Bool:
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::LongLong:
    case QMetaType::ULongLong:
    case QMetaType::Double:
    case QMetaType::Float:
    case QMetaType::UChar:
    case QMetaType::Char:
    case QMetaType::SChar:
    case QMetaType::Short:
    case QMetaType::UShort:
    case QMetaType::QChar:
    case QMetaType::QString:
    case QMetaType::QByteArray:
    case QMetaType::QDate:
    case QMetaType::QTime:
    case QMetaType::QDateTime:
    case QMetaType::QUrl:
        return Shape::Leaf;
    default:
        return Shape::Refused;
    }
}

class ArchiveReader {
public:
    explicit ArchiveReader(const QByteArray& block) : m_stream(block) {
        m_stream.setVersion(kStreamVersion);
    }

    bool atEnd() const { return m_stream.device()->bytesAvailable() == 0; }

    bool readList(QVariantList& out, int depth) {
        quint32 count = 0;
        if (depth > kMaxNesting || !readCount(count, kMinVariantSize))
            return false;
        out.reserve(count);
        for (quint32 i = 0; i < count; ++i) {
            QVariant v;
            if (!readVariant(v, depth + 1))
                return false;
            out.append(std::move(v));
        }
        return true;
    }

private:
    bool ok() const { return m_stream.status() == QDataStream::Ok; }

    bool readCount(quint32& count, qint64 minElementSize) {
        m_stream >> count;
        return ok() && qint64(count) * minElementSize <= m_stream.device()->bytesAvailable();
    }

    bool readMap(QVariantMap& out, int depth) {
        quint32 count = 0;
        if (depth > kMaxNesting || !readCount(count, kMinEntrySize))
            return false;
        for (quint32 i = 0; i < count; ++i) {
            QString key;
            QVariant v;
            m_stream >> key;
            if (!ok() || !readVariant(v, depth + 1))
                return false;
            // A stored dictionary lists its keys in order: each goes at the end.
            out.insert(out.cend(), key, std::move(v));
        }
        return true;
    }

    bool readTexts(QStringList& out) {
        quint32 count = 0;
        if (!readCount(count, kMinTextSize))
            return false;
        out.reserve(count);
        for (quint32 i = 0; i < count; ++i) {
            QString text;
            m_stream >> text;
            if (!ok())
                return false;
            out.append(std::move(text));
        }
        return true;
    }

    // A variant as QVariant streams it: type id, null flag, then the value.
    bool readVariant(QVariant& out, int depth) {
        quint32 typeId = 0;
        qint8 isNull = 0;
        m_stream >> typeId >> isNull;
        if (!ok())
            return false;
        if (typeId == QMetaType::UnknownType) { // an invalid variant: nothing follows
            out = QVariant();
            return true;
        }
        switch (shapeOf(int(typeId))) {
        case Shape::List: {
            QVariantList list;
            if (!readList(list, depth))
                return false;
            out = std::move(list);
            return true;
        }
        case Shape::Map: {
            QVariantMap map;
            if (!readMap(map, depth))
                return false;
            out = std::move(map);
            return true;
        }
        case Shape::TextList: {
            QStringList texts;
            if (!readTexts(texts))
                return false;
            out = std::move(texts);
            return true;
        }
        case Shape::Leaf: {
            const QMetaType type{int(typeId)};
            QVariant v(type);
            if (!type.load(m_stream, v.data()) || !ok())
                return false;
            out = std::move(v);
            return true;
        }
        case Shape::Refused:
            break;
        }
        return false;
    }

    QDataStream m_stream;
};

// Whether the reader above takes `v` back; checked before writing so that a save never
// writes what the next start could not read.
bool isStorable(const QVariant& v, int depth) {
    if (depth > kMaxNesting)
        return false;
    switch (shapeOf(v.typeId())) {
    case Shape::List: {
        const QVariantList list = v.toList();
        return std::all_of(list.cbegin(), list.cend(),
                           [&](const QVariant& e) { return isStorable(e, depth + 1); });
    }
    case Shape::Map: {
        const QVariantMap map = v.toMap();
        return std::all_of(map.cbegin(), map.cend(),
                           [&](const QVariant& e) { return isStorable(e, depth + 1); });
    }
    case Shape::TextList:
    case Shape::Leaf:
        return true;
    case Shape::Refused:
        break;
    }
    return false;
}

// `v` without the parts that isStorable refuses.
QVariant storablePart(const QVariant& v, int depth) {
    if (isStorable(v, depth))
        return v;
    if (v.typeId() == QMetaType::QVariantList && depth < kMaxNesting) {
        QVariantList kept;
        for (const QVariant& e : v.toList())
            if (QVariant part = storablePart(e, depth + 1); part.isValid())
                kept.append(std::move(part));
        return kept;
    }
    if (v.typeId() == QMetaType::QVariantMap && depth < kMaxNesting) {
        QVariantMap kept;
        const QVariantMap map = v.toMap();
        for (auto it = map.cbegin(); it != map.cend(); ++it)
            if (QVariant part = storablePart(it.value(), depth + 1); part.isValid())
                kept.insert(it.key(), std::move(part));
        return kept;
    }
    qCWarning(lcPresets) << "A preset value of type" << v.typeName()
                         << "cannot be stored and is left out";
    return QVariant();
}

// The list of dictionaries in a block, or nothing.
std::optional<QVariantList> decodeArchiveList(const QByteArray& block) {
    ArchiveReader reader(block);
    QVariantList list;
    if (!reader.readList(list, 0) || !reader.atEnd())
        return std::nullopt;
    return list;
}

} // namespace

QByteArray encodePresetArchive(const QList<ActualPreset>& presets) {
    QVariantList list;
    list.reserve(presets.size());
    for (const ActualPreset& preset : presets)
        list.append(storablePart(presetToDictionary(preset), 1));
    QByteArray block;
    QDataStream out(&block, QIODevice::WriteOnly);
    out.setVersion(kStreamVersion);
    out << list;
    return block;
}

namespace {

// Builds the presets of the dictionaries at `positions` of `list`, in their order. Building
// the records from their dictionaries is the larger half of a load: the positions are cut
// into one run per thread, each with its own cache of date rules.
QList<ActualPreset> buildPresets(const QVariantList& list,
                                 const std::vector<qsizetype>& positions) {
    const qsizetype count = qsizetype(positions.size());
    std::vector<ActualPreset> built(std::size_t(count), ActualPreset{});
    const qsizetype runs = count < 64 ? 1 : workerThreadCount();
    std::vector<qsizetype> starts;
    for (qsizetype r = 0; r < runs; ++r)
        starts.push_back(count * r / runs);
    QtConcurrent::blockingMap(starts, [&](qsizetype start) {
        const auto next = std::upper_bound(starts.begin(), starts.end(), start);
        const qsizetype end = next == starts.end() ? count : *next;
        StoredRulesCache rules;
        for (qsizetype i = start; i < end; ++i)
            built[std::size_t(i)] = presetFromDictionary(list.at(positions[std::size_t(i)]).toMap(),
                                                         &rules, PhotoRead::Later);
    });
    return QList<ActualPreset>(std::make_move_iterator(built.begin()),
                               std::make_move_iterator(built.end()));
}

} // namespace

std::optional<QList<ActualPreset>> decodePresetArchive(const QByteArray& block) {
    const auto list = decodeArchiveList(block);
    if (!list)
        return std::nullopt;
    std::vector<qsizetype> positions;
    for (qsizetype i = 0; i < list->size(); ++i) {
        if (list->at(i).typeId() != QMetaType::QVariantMap)
            return std::nullopt;
        positions.push_back(i);
    }
    return buildPresets(*list, positions);
}

std::optional<PresetArchiveContents> readPresetArchive(const QByteArray& block) {
    const auto list = decodeArchiveList(block);
    if (!list)
        return std::nullopt;
    PresetArchiveContents contents;
    std::vector<qsizetype> positions;
    for (qsizetype i = 0; i < list->size(); ++i) {
        if (list->at(i).typeId() == QMetaType::QVariantMap)
            positions.push_back(i);
        else
            contents.refused.append({i, QString(),
                                     QStringLiteral("it is not a preset but a value of kind %1")
                                         .arg(QLatin1String(list->at(i).metaType().name()))});
    }
    const QList<ActualPreset> built = buildPresets(*list, positions);
    QSet<QString> names;
    for (qsizetype i = 0; i < built.size(); ++i) {
        const ActualPreset& preset = built[i];
        const QString name = preset.name.value_or(QString());
        std::optional<QString> refusal = presetRefusal(preset);
        if (!refusal && !name.isEmpty() && names.contains(name.toLower()))
            refusal = QStringLiteral("an earlier preset has the same name");
        if (refusal) {
            contents.refused.append({positions[std::size_t(i)], name, *refusal});
            continue;
        }
        if (!name.isEmpty())
            names.insert(name.toLower());
        contents.presets.append(preset);
    }
    std::sort(
        contents.refused.begin(), contents.refused.end(),
        [](const RefusedPreset& a, const RefusedPreset& b) { return a.position < b.position; });
    return contents;
}

} // namespace tagmoor
