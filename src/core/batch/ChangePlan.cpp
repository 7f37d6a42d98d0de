#include "batch/ChangePlan.h"

#include "batch/CompactPathSet.h"
#include "batch/FileIdentity.h"

#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

namespace tagmoor {

namespace {

QString fileNameOf(const QString& path) {
    return path.mid(path.lastIndexOf(QLatin1Char('/')) + 1);
}

// The tag changes of one photo that would be written: its metadata step on a scratch copy.
// Gives the reason when the step would fail.
QString previewWrite(const PhotoPipeline& pipeline, const CGImageProperties& record,
                     const QString& source, const QString& scratchFolder,
                     QList<TagChange>* changes) {
    const QString copy = scratchFolder + QLatin1Char('/') + fileNameOf(source);
    QFile::remove(copy);
    if (!QFile::copy(source, copy))
        return QStringLiteral("the photo could not be read");
    QFile(copy).setPermissions(QFile::ReadOwner | QFile::WriteOwner);
    const auto before = listTags(source);
    const WriteResult write = pipeline.writeMetadataInto(copy, record);
    QString reason;
    if (!write.written()) {
        reason = writeStatusText(write.status);
        // The writer names the file it wrote: here the scratch copy, which stands for the photo.
        QString detail = write.detail;
        detail.replace(copy, fileNameOf(source));
        if (!detail.isEmpty())
            reason += QStringLiteral(" (") + detail + QLatin1Char(')');
    } else if (before) {
        if (const auto after = listTags(copy))
            *changes = tagChanges(*before, *after);
    }
    QFile::remove(copy);
    return reason;
}

} // namespace

QString TagChange::describe(const std::optional<TagText>& tag) {
    if (!tag)
        return QStringLiteral("(none)");
    QString value = tag->value;
    if (value.size() > 80)
        value = value.left(77) + QStringLiteral("...");
    return value + QStringLiteral(" (") + tag->type + QLatin1Char(')');
}

bool PhotoChanges::isRenamed() const {
    return !finalPath.isEmpty() && fileNameOf(finalPath) != fileNameOf(sourcePath);
}

QList<TagChange> tagChanges(const QMap<QString, TagText>& before,
                            const QMap<QString, TagText>& after) {
    QList<TagChange> out;
    auto b = before.constBegin();
    auto a = after.constBegin();
    while (b != before.constEnd() || a != after.constEnd()) {
        if (a == after.constEnd() || (b != before.constEnd() && b.key() < a.key())) {
            out.append({b.key(), b.value(), std::nullopt});
            ++b;
        } else if (b == before.constEnd() || a.key() < b.key()) {
            out.append({a.key(), std::nullopt, a.value()});
            ++a;
        } else {
            if (b.value() != a.value())
                out.append({b.key(), b.value(), a.value()});
            ++a;
            ++b;
        }
    }
    return out;
}

void planEachChange(
    const PhotoPipeline& pipeline, const PhotoSource& photos, qint64 firstNumber,
    const std::function<bool(const PhotoChanges&, const CGImageProperties&, int, int)>& each) {
    const int count = photos.count();
    const BatchSources sources(photos);
    int total = 0;
    for (int i = 0; i < count; ++i) {
        if (photos.isSelected(i))
            ++total;
    }
    QTemporaryDir scratch;
    CompactPathSet claimed;
    int processed = 0;
    for (int i = 0; i < count; ++i) {
        if (!photos.isSelected(i))
            continue;
        ++processed;
        const CGImageProperties record = photos.record(i);
        const PhotoPlan p = pipeline.plan(record, processed, total, firstNumber++);
        PhotoChanges photo;
        photo.sourcePath = p.hasUrl ? p.sourcePath : photos.pathOf(i);
        photo.finalPath = p.hasUrl ? p.finalPath : QString();
        photo.outcome = pipeline.forecast(p, claimed, &sources);
        if (!isCounted(photo.outcome)) {
            photo.reason = tagmoor::describe(photo.outcome);
        } else {
            claimed.insert(p.finalPath);
            if (!p.finalLocation.isEmpty())
                claimed.insert(p.finalLocation);
            const bool inPlace =
                pipeline.values().isDestinationPathAsSource && p.finalPath == p.sourcePath;
            if (inPlace && !QFileInfo(p.sourcePath).isWritable())
                photo.reason = writeStatusText(WriteStatus::NoPermission) +
                               QStringLiteral(": the photo is read-only");
            else
                photo.reason = scratch.isValid()
                                   ? previewWrite(pipeline, record, p.sourcePath, scratch.path(),
                                                  &photo.changes)
                                   : QStringLiteral("no scratch folder for the preview");
        }
        if (!each(photo, record, processed, total))
            break;
    }
}

QList<PhotoChanges> planChanges(const PhotoPipeline& pipeline, const PhotoSource& photos,
                                qint64 firstNumber, const std::function<bool(int, int)>& progress) {
    QList<PhotoChanges> plan;
    planEachChange(pipeline, photos, firstNumber,
                   [&](const PhotoChanges& photo, const CGImageProperties&, int done, int total) {
                       plan.append(photo);
                       return !progress || progress(done, total);
                   });
    return plan;
}

} // namespace tagmoor
