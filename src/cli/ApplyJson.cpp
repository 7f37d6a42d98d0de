#include "ApplyJson.h"

#include "model/KeyTable.h"
#include "rename/RenameNumbering.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSet>

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

QByteArray planJson(const PhotoPipeline& pipeline, const PathPhotoSource& photos,
                    const LeftAside& aside, bool* allWritten) {
    RenameNumbering numbering;
    QSet<QString> claimed;
    BatchSources sources;
    for (int i = 0; i < photos.count(); ++i)
        sources.add(photos.path(i));
    const RunValues& values = pipeline.values();
    const int total = photos.count();
    int writes = 0;
    QJsonArray list;
    for (int i = 0; i < total; ++i) {
        const CGImageProperties record = photos.record(i);
        const PhotoPlan plan = pipeline.plan(record, i + 1, total, numbering.take());
        const PhotoOutcome outcome = pipeline.forecast(plan, claimed, &sources);
        QJsonObject photo{{QStringLiteral("source"), photos.path(i)},
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
                QStringList erase = edits.eraseExif;
                erase << edits.eraseIptc << edits.eraseXmp;
                photo.insert(QStringLiteral("set"), set);
                photo.insert(QStringLiteral("erase"), QJsonArray::fromStringList(erase));
            }
        }
        list.append(photo);
    }
    *allWritten = writes == total;
    QJsonObject object{{QStringLiteral("dryRun"), true},
                       {QStringLiteral("total"), total},
                       {QStringLiteral("wouldWrite"), writes},
                       {QStringLiteral("wouldSkip"), total - writes},
                       {QStringLiteral("photos"), list}};
    addAside(object, aside);
    return line(object);
}

QByteArray resultJson(const BatchResult& result, const LeftAside& aside) {
    QJsonArray problems;
    for (const PhotoProblem& problem : result.problems)
        problems.append(QJsonObject{{QStringLiteral("path"), problem.path},
                                    {QStringLiteral("reason"), problem.reason}});
    QJsonObject object{{QStringLiteral("total"), result.total},
                       {QStringLiteral("reached"), result.processed},
                       {QStringLiteral("written"), result.totalProcessedPhotos},
                       {QStringLiteral("skipped"), result.skipped()},
                       {QStringLiteral("stopped"), result.stopped},
                       {QStringLiteral("output"), result.outputDirectoryValue},
                       {QStringLiteral("problems"), problems}};
    addAside(object, aside);
    return line(object);
}

} // namespace tagmoor::cli
