#include "ApplyJson.h"

#include "batch/CompactPathSet.h"
#include "model/KeyTable.h"
#include "rename/RenameNumbering.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>
#include <array>
#include <functional>

namespace tagmoor::cli {

namespace {

QJsonValue jsonValue(const PropertyValue& v) {
    if (auto date = v.date())
        return date->toOffsetFromUtc(date->offsetFromUtc()).toString(Qt::ISODateWithMs);
    if (auto bytes = v.bytes())
        return QString::fromLatin1(bytes->toBase64());
    return QJsonValue::fromVariant(v.variant());
}

void addAside(QJsonObject& object, const LeftAside& aside) {
    QJsonArray leftOut;
    for (const LeftOutEntry& entry : aside.leftOut)
        leftOut.append(QJsonObject{{QStringLiteral("path"), entry.path},
                                   {QStringLiteral("reason"), entry.reason}});
    object.insert(QStringLiteral("leftOut"), leftOut);
    object.insert(QStringLiteral("notPhotos"), QJsonArray::fromStringList(aside.notPhotos));
}

QByteArray line(const QJsonObject& object) {
    return QJsonDocument(object).toJson(QJsonDocument::Compact) + '\n';
}

QByteArray compact(const QJsonObject& object) {
    return QJsonDocument(object).toJson(QJsonDocument::Compact);
}

// Where the items of the array `key` go in the line of `object`, which has that array empty.
// Keys come in order and any quote inside a text is escaped, so the last `"key":[]` is it.
qsizetype itemsAt(const QByteArray& line, const QByteArray& key) {
    const QByteArray empty = '"' + key + "\":[]";
    return line.lastIndexOf(empty) + empty.size() - 1;
}

} // namespace

QStringList strippedGroups(const CleanOptions& c) {
    QStringList groups;
    if (c.cleanExif)
        groups << QStringLiteral("exif");
    if (c.cleanIPTC)
        groups << QStringLiteral("iptc");
    if (c.cleanXMP)
        groups << QStringLiteral("xmp");
    if (c.cleanGPS)
        groups << QStringLiteral("gps");
    if (c.cleanComment)
        groups << QStringLiteral("comment");
    return groups;
}

void writePlanJson(QTextStream& out, const PhotoPipeline& pipeline, const PathPhotoSource& photos,
                   const LeftAside& aside, bool* allWritten) {
    const int total = photos.count();
    const auto object = [&](int writes) {
        QJsonObject object{{QStringLiteral("dryRun"), true},
                           {QStringLiteral("total"), total},
                           {QStringLiteral("wouldWrite"), writes},
                           {QStringLiteral("wouldSkip"), total - writes},
                           {QStringLiteral("photos"), QJsonArray()}};
        addAside(object, aside);
        return object;
    };
    // The counts follow the list in the line: its end is made once the list is written.
    const QByteArray head = line(object(0));
    out << head.left(itemsAt(head, "photos"));

    RenameNumbering numbering;
    CompactPathSet claimed;
    const BatchSources sources(photos);
    const RunValues& values = pipeline.values();
    int writes = 0;
    for (int i = 0; i < total; ++i) {
        const CGImageProperties record = photos.record(i);
        const PhotoPlan plan = pipeline.plan(record, i + 1, total, numbering.take());
        const PhotoOutcome outcome = pipeline.forecast(plan, claimed, &sources);
        QJsonObject photo{{QStringLiteral("source"), photos.pathOf(i)},
                          {QStringLiteral("outcome"), describe(outcome)},
                          {QStringLiteral("write"), plan.hasUrl && isCounted(outcome)}};
        if (plan.hasUrl)
            photo.insert(QStringLiteral("target"), plan.finalPath);
        if (plan.hasUrl && isCounted(outcome)) {
            ++writes;
            claimed.insert(plan.finalPath);
            if (!plan.finalLocation.isEmpty())
                claimed.insert(plan.finalLocation);
            if (values.processingMode == ProcessingMode::removeGroups) {
                photo.insert(QStringLiteral("strip"),
                             QJsonArray::fromStringList(strippedGroups(values.clean)));
            } else {
                const FieldEdits edits = pipeline.fieldEditsFor(record);
                QJsonObject set;
                for (const KeyRow& row : allKeyRows()) {
                    const PropertyValue& v = edits.values.at(row);
                    if (v.isPresent())
                        set.insert(QString::fromLatin1(row.key), jsonValue(v));
                }
                QStringList erase = edits.erased.keys(KeyBlock::Exif);
                erase << edits.erased.keys(KeyBlock::Iptc) << edits.erased.keys(KeyBlock::Xmp);
                photo.insert(QStringLiteral("set"), set);
                photo.insert(QStringLiteral("erase"), QJsonArray::fromStringList(erase));
            }
        }
        if (i > 0)
            out << ',';
        out << compact(photo);
    }
    *allWritten = writes == total;

    const QByteArray tail = line(object(writes));
    out << tail.mid(itemsAt(tail, "photos"));
}

void writeResultJson(QTextStream& out, const BatchResult& result, const UnchangedPhotos& unchanged,
                     const LeftAside& aside) {
    // "written" counts the photos that carry the edit; "processed" those that got as far as
    // an output, as "Images Processed" does.
    QJsonObject object{{QStringLiteral("total"), result.total},
                       {QStringLiteral("reached"), result.processed},
                       {QStringLiteral("processed"), result.totalProcessedPhotos},
                       {QStringLiteral("written"), result.savedPhotos()},
                       {QStringLiteral("skipped"), result.skipped()},
                       {QStringLiteral("stopped"), result.stopped},
                       {QStringLiteral("output"), result.outputDirectoryValue},
                       {QStringLiteral("problems"), QJsonArray()},
                       {QStringLiteral("notReached"), QJsonArray()}};
    addAside(object, aside);
    // Photos whose edit went into their sidecar, only when there are any.
    if (!result.notes.isEmpty()) {
        QJsonArray notes;
        for (const PhotoProblem& note : result.notes)
            notes.append(QJsonObject{{QStringLiteral("path"), note.path},
                                     {QStringLiteral("note"), note.reason}});
        object.insert(QStringLiteral("notes"), notes);
    }
    const QByteArray whole = line(object);
    // The two lists are written into the line where their empty arrays stand, in the order
    // in which the line holds them.
    struct List {
        qsizetype at;
        ProblemLog* log;
        std::function<QByteArray(const PhotoProblem&)> item;
    };
    std::array<List, 2> lists{
        List{itemsAt(whole, "problems"), &unchanged.problems,
             [](const PhotoProblem& problem) {
                 return compact(QJsonObject{{QStringLiteral("path"), problem.path},
                                            {QStringLiteral("reason"), problem.reason}});
             }},
        List{itemsAt(whole, "notReached"), &unchanged.notReached, [](const PhotoProblem& photo) {
                 // A JSON string: the one element of an array, without its brackets.
                 return QJsonDocument(QJsonArray{photo.path})
                     .toJson(QJsonDocument::Compact)
                     .chopped(1)
                     .mid(1);
             }}};
    std::sort(lists.begin(), lists.end(), [](const List& a, const List& b) { return a.at < b.at; });
    qsizetype from = 0;
    for (const List& list : lists) {
        out << whole.mid(from, list.at - from);
        bool any = false;
        list.log->forEach([&](const PhotoProblem& problem) {
            if (any)
                out << ',';
            any = true;
            out << list.item(problem);
        });
        from = list.at;
    }
    out << whole.mid(from);
}

} // namespace tagmoor::cli
