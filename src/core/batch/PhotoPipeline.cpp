#include "batch/PhotoPipeline.h"

#include "batch/BatchLog.h"
#include "batch/BatchSummary.h"
#include "batch/FileCopier.h"
#include "dates/DateRule.h"
#include "dates/DateTexts.h"
#include "metadata/MergeForWriting.h"
#include "metadata/MetadataTest.h"
#include "model/FormFieldTable.h"
#include "rename/RenameRule.h"

#include <QFile>
#include <QFileInfo>

#include <fcntl.h>
#include <sys/stat.h>

namespace tagmoor {

namespace {

QString lastComponent(const QString& path) {
    const int slash = int(path.lastIndexOf(QLatin1Char('/')));
    return slash < 0 ? path : path.mid(slash + 1);
}

QString folderOf(const QString& path) {
    const int slash = int(path.lastIndexOf(QLatin1Char('/')));
    return slash < 0 ? QString() : path.left(slash);
}

bool existsAt(const QString& path) {
    return QFileInfo::exists(path);
}

} // namespace

PhotoPipeline::PhotoPipeline(RunValues values)
    : m_values(std::move(values)), m_plainEdits(plainFieldEdits(m_values)) {}

QString PhotoPipeline::baseNameOf(const QString& fileName) {
    const int dot = int(fileName.lastIndexOf(QLatin1Char('.')));
    return dot > 0 ? fileName.left(dot) : fileName;
}

QString PhotoPipeline::extensionOf(const QString& fileName) {
    const int dot = int(fileName.lastIndexOf(QLatin1Char('.')));
    return dot > 0 ? fileName.mid(dot + 1) : QString();
}

QString PhotoPipeline::renamedBase(const QString& base, long long firstNumber) const {
    return tagmoor::renamedBase(m_values.renameSettings, base, firstNumber);
}

PhotoPlan PhotoPipeline::plan(const CGImageProperties& record, int processed, int total,
                              long long firstNumber) const {
    PhotoPlan p;
    p.processed = processed;
    p.total = total;
    if (!record.url)
        return p;
    p.hasUrl = true;
    p.sourcePath = record.path();

    QString target = p.sourcePath;
    if (m_values.isDestinationPathAsSource) {
        p.outputDirectoryValue = BatchSummary::destinationAsSameAsSource;
    } else if (m_values.destinationFolder && !m_values.destinationFolder->isEmpty()) {
        const QString folder = *m_values.destinationFolder;
        const QString name = record.photoLibraryProperties
                                 ? record.photoLibraryProperties->OriginalFileName
                                 : lastComponent(p.sourcePath);
        target = folder + QLatin1Char('/') + name;
        p.outputDirectoryValue = folder;
    }

    // The "." is always written: a file without an extension gets a name ending in a point.
    const QString name = lastComponent(target);
    p.finalPath = folderOf(target) + QLatin1Char('/') + renamedBase(baseNameOf(name), firstNumber) +
                  QLatin1Char('.') + extensionOf(name);
    return p;
}

PhotoOutcome PhotoPipeline::forecast(const PhotoPlan& plan, const QSet<QString>& claimed) const {
    if (!plan.hasUrl)
        return PhotoOutcome::SkippedNoUrl;
    const bool inPlace = m_values.isDestinationPathAsSource && plan.finalPath == plan.sourcePath;
    if (!inPlace && !m_values.overwriteExisting &&
        (existsAt(plan.finalPath) || claimed.contains(plan.finalPath)))
        return PhotoOutcome::SkippedCollision;
    if (!existsAt(plan.sourcePath))
        return PhotoOutcome::SkippedNoSource;
    return PhotoOutcome::Written;
}

PhotoOutcome PhotoPipeline::process(const PhotoPlan& plan, const CGImageProperties& record) const {
    if (!plan.hasUrl)
        return PhotoOutcome::SkippedNoUrl;
    const QString& source = plan.sourcePath;
    const QString& target = plan.finalPath;

    const bool inPlace = m_values.isDestinationPathAsSource && target == source;
    if (!inPlace && !m_values.overwriteExisting && existsAt(target))
        return PhotoOutcome::SkippedCollision;
    if (!existsAt(source))
        return PhotoOutcome::SkippedNoSource;
    if (target != source && existsAt(target) && !QFile::remove(target))
        qCDebug(lcBatch) << "could not remove the old output" << target;

    // Onto itself there is nothing to copy: the metadata are written into the source.
    if (target == source) {
        if (!QFileInfo(target).isFile())
            return PhotoOutcome::SkippedNoOutput;
        setFileDates(target, changeMetadata(target, record));
        return PhotoOutcome::Written;
    }

    // A new output is made beside its place, changed there and then moved in whole, so that a
    // file at the output path is never half made. The staged file starts as a link to the
    // source where possible: the writer replaces files rather than writing into them, and
    // whatever still shares the source's storage afterwards becomes a real copy.
    QString error;
    const QString staged = FileCopier::stage(source, folderOf(target), &error);
    bool published = false;
    std::optional<QString> modifyDate;
    if (!staged.isEmpty()) {
        // The staged file is the run's own hidden link beside the output: replacing it cannot
        // touch anything of the user's, so it is not flushed to disk photo by photo.
        modifyDate = changeMetadata(staged, record, /*flushToDisk=*/false);
        published = FileCopier::detach(staged, source, &error) &&
                    FileCopier::publish(staged, target, &error);
        if (!published)
            QFile::remove(staged);
    }
    if (!published) {
        if (m_values.processingMode != ProcessingMode::removeGroups)
            qCWarning(lcBatch).noquote()
                << "copy of" << source << "to" << target << "failed:" << error;
        // An old output that could not be removed takes the photo's metadata instead.
        if (!QFileInfo(target).isFile())
            return PhotoOutcome::SkippedNoOutput;
        modifyDate = changeMetadata(target, record);
    }
    setFileDates(target, modifyDate);
    return PhotoOutcome::Written;
}

std::optional<QString> PhotoPipeline::changeMetadata(const QString& path,
                                                     const CGImageProperties& record,
                                                     bool flushToDisk) const {
    MetadataTest bridge;
    bridge.setFlushesToDisk(flushToDisk);
    if (m_values.processingMode == ProcessingMode::removeGroups) {
        const CleanOptions& c = m_values.clean;
        bridge.cleanMetadata(path, c.cleanIPTC, c.cleanExif, c.cleanXMP, c.cleanGPS,
                             c.cleanComment);
        return std::nullopt;
    }
    const FieldEdits edits = fieldEditsFor(record);
    bridge.setImagePropertiesAll(path, mergeForWriting(edits.values, path, bridge), edits.eraseExif,
                                 edits.eraseIptc, edits.eraseXmp);
    return edits.values.at(formFieldAt(formpos::ModifyDate)->keyRow()).text();
}

FieldEdits PhotoPipeline::fieldEditsFor(const CGImageProperties& record) const {
    FieldEdits edits = m_plainEdits;
    const bool clearUnedited = m_values.processingMode == ProcessingMode::clearUnedited;
    const auto fields = dateFieldsInRunOrder();
    for (std::size_t i = 0; i < fields.size(); ++i) {
        const KeyRow& row = fields[i]->keyRow();
        if (!m_values.fieldEditedFlags.test(fields[i]->position)) {
            if (clearUnedited)
                edits.erase(row);
            continue;
        }
        const DateRuleOutcome outcome =
            applyDateRule(allDateFields[i], record, m_values.editorDates);
        switch (outcome.action) {
        case DateRuleOutcome::Action::deleteKey:
            edits.erase(row);
            break;
        case DateRuleOutcome::Action::writeText:
            edits.values.at(row) = PropertyValue(outcome.text);
            break;
        case DateRuleOutcome::Action::nothing:
            break;
        }
    }
    return edits;
}

void PhotoPipeline::setFileDates(const QString& path, const std::optional<QString>& text) const {
    const FieldEditedFlags& flags = m_values.fieldEditedFlags;
    if (!flags.test(formpos::CreationDate) && !flags.test(formpos::ModifyDate))
        return;
    // Linux keeps no settable birth time, so the creation date rule reaches the tag only; the
    // modify date rule also becomes the file's modification time.
    if (!flags.test(formpos::ModifyDate))
        return;
    if (!text)
        return;
    const auto date = sharedDateFormatter().parse(*text);
    if (!date)
        return;
    const qint64 ms = date->toMSecsSinceEpoch();
    const qint64 seconds = ms >= 0 ? ms / 1000 : -((-ms + 999) / 1000);
    const struct timespec times[2] = {{0, UTIME_OMIT},
                                      {time_t(seconds), long(ms - seconds * 1000) * 1000000L}};
    if (::utimensat(AT_FDCWD, QFile::encodeName(path).constData(), times, 0) != 0)
        qCWarning(lcBatch).noquote() << "could not set the modification date of" << path;
}

} // namespace tagmoor
