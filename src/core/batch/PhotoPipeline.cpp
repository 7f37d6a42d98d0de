#include "batch/PhotoPipeline.h"

#include "batch/BatchLog.h"
#include "batch/BatchSummary.h"
#include "batch/DatesInZone.h"
#include "batch/ExtraRunEdits.h"
#include "batch/FileCopier.h"
#include "dates/DateTexts.h"
#include "dates/OriginalDate.h"
#include "dates/PhotoDateRule.h"
#include "metadata/ImageKind.h"
#include "metadata/MetadataTest.h"
#include "metadata/PropertyLoading.h"
#include "metadata/SafeFileReplace.h"
#include "model/FormFieldTable.h"
#include "rename/RenameRule.h"

#include <QFile>
#include <QFileInfo>

#include <algorithm>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

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

// A name that stands for one file of a folder: no "/" (which would make or leave a folder), no
// NUL (which would end the path early), and not "." or "..".
bool isSingleFileName(const QString& name) {
    return !name.isEmpty() && !name.contains(QLatin1Char('/')) && !name.contains(QChar(0)) &&
           name != QLatin1String(".") && name != QLatin1String("..");
}

// Why the photo may not be written where it is, if it may not: its owner took the write bit
// away (root may write anything, but the bit still says the user's will), or this process may
// not write it.
std::optional<QString> whyNotWritable(const QString& path) {
    const QByteArray native = QFile::encodeName(path);
    struct stat st {};
    if (::stat(native.constData(), &st) != 0)
        return std::nullopt;
    if ((st.st_mode & S_IWUSR) == 0)
        return QStringLiteral("the photo is read-only");
    if (::access(native.constData(), W_OK) != 0)
        return QStringLiteral("the photo may not be written by this user");
    return std::nullopt;
}

// Whether the run edits any date field: only then does a photo's edit read its own values.
bool editsDates(const RunValues& values) {
    return std::any_of(
        dateFieldsInRunOrder().begin(), dateFieldsInRunOrder().end(),
        [&](const FormField* field) { return values.fieldEditedFlags.test(field->field); });
}

// A skipped photo's result: the outcome's text, with what it concerns in brackets.
PhotoResult skipped(PhotoOutcome outcome, const QString& detail = {}) {
    return PhotoResult{outcome, detail.isEmpty() ? describe(outcome)
                                                 : describe(outcome) + QStringLiteral(" (") +
                                                       detail + QLatin1Char(')')};
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
    QString folder = folderOf(p.sourcePath);
    if (m_values.isDestinationPathAsSource) {
        p.outputDirectoryValue = BatchSummary::destinationAsSameAsSource;
    } else if (m_values.destinationFolder && !m_values.destinationFolder->isEmpty()) {
        folder = *m_values.destinationFolder;
        const QString name = record.photoLibraryProperties
                                 ? record.photoLibraryProperties->OriginalFileName
                                 : lastComponent(p.sourcePath);
        target = folder + QLatin1Char('/') + name;
        p.outputDirectoryValue = folder;
    }

    // The "." is always written: a file without an extension gets a name ending in a point.
    const QString name = lastComponent(target);
    const QString newBase =
        CaptureNames::applies(m_values.renameSettings)
            ? m_captureNames->claim(m_values.renameSettings, record, p.sourcePath, folderOf(target),
                                    baseNameOf(name), extensionOf(name))
            : renamedBase(baseNameOf(name), firstNumber);
    const QString newName = newBase + QLatin1Char('.') + extensionOf(name);
    p.finalPath = folderOf(target) + QLatin1Char('/') + newName;
    // The output is one file in its folder (the output folder, or the photo's own): a name
    // from the rename rule or the library that would make, climb or leave a folder is refused.
    p.unsafeName = !isSingleFileName(newName) || folderOf(p.finalPath) != folder;
    p.sourceLocation = resolvedLocationOf(p.sourcePath).value_or(QString());
    p.finalLocation = locationOf(p.finalPath).value_or(QString());
    return p;
}

PhotoOutcome PhotoPipeline::forecast(const PhotoPlan& plan, const CompactPathSet& claimed,
                                     const BatchSources* sources) const {
    if (!plan.hasUrl)
        return PhotoOutcome::SkippedNoUrl;
    if (plan.unsafeName)
        return PhotoOutcome::SkippedUnsafeName;
    const auto sourceId = fileIdOf(plan.sourcePath);
    const auto targetId = fileIdOf(plan.finalPath);
    const bool sameFile = plan.finalPath == plan.sourcePath || (sourceId && sourceId == targetId);
    const SidecarPlan sidecar = sidecarPlan(plan.sourcePath, plan.finalPath);
    const bool taken = entryExists(plan.finalPath) || claimed.contains(plan.finalPath) ||
                       (!plan.finalLocation.isEmpty() && claimed.contains(plan.finalLocation)) ||
                       (!sameFile && sidecar.from && entryExists(sidecar.to));
    const bool inPlace = m_values.isDestinationPathAsSource && sameFile;
    if (!inPlace && !m_values.overwriteExisting && taken)
        return PhotoOutcome::SkippedCollision;
    if (!sourceId)
        return PhotoOutcome::SkippedNoSource;
    if (!sameFile && sources && entryExists(plan.finalPath) && sources->contains(plan.finalPath))
        return PhotoOutcome::SkippedSourceInTheWay;
    return PhotoOutcome::Written;
}

PhotoPipeline::PhotoFiles PhotoPipeline::photoFiles(const PhotoPlan& plan) const {
    return {sidecarPlan(plan.sourcePath, plan.finalPath), fileIdOf(plan.sourcePath),
            fileIdOf(plan.finalPath)};
}

PhotoResult PhotoPipeline::process(const PhotoPlan& plan, const CGImageProperties& record,
                                   const BatchSources* sources, const PhotoFiles* seenFiles) const {
    if (!plan.hasUrl)
        return skipped(PhotoOutcome::SkippedNoUrl);
    if (plan.unsafeName)
        return skipped(PhotoOutcome::SkippedUnsafeName, lastComponent(plan.finalPath));
    const QString& source = plan.sourcePath;
    const QString& target = plan.finalPath;

    // One file reached through two texts is the same file: writing it is editing in place, and
    // it is never removed to make room for itself.
    const PhotoFiles files = seenFiles ? *seenFiles : photoFiles(plan);
    const auto& sourceId = files.source;
    const bool sameFile = target == source || (sourceId && sourceId == files.target);
    const SidecarPlan& sidecar = files.sidecar;
    // A photo and its sidecar never part: a sidecar in the way is a collision of the photo.
    const bool targetExists = entryExists(target);
    const bool taken = targetExists || (!sameFile && sidecar.from && entryExists(sidecar.to));
    const bool inPlace = m_values.isDestinationPathAsSource && sameFile;
    if (!inPlace && !m_values.overwriteExisting && taken)
        return skipped(PhotoOutcome::SkippedCollision);
    if (!sourceId)
        return skipped(PhotoOutcome::SkippedNoSource);
    if (!sameFile && targetExists) {
        // A photo of this run is never in the way: removing it would lose it.
        if (sources && sources->contains(target))
            return skipped(PhotoOutcome::SkippedSourceInTheWay, target);
        if (!QFile::remove(target))
            qCDebug(lcBatch) << "could not remove the old output" << target;
    }
    // Where the sidecar settings ask for the photo's kind, it is told once, from the source's
    // bytes: the staged copy shares them, and the writer never changes a file's kind. (The
    // writer tells it again from the very bytes it edits.) An old output that takes the edit
    // instead is a file of its own, whose kind is told apart.
    std::optional<ImageKind> kind;
    // The reads of the photo's record until its sidecar's turn lay over it the sidecar that
    // the plan found, rather than each looking for it again.
    std::optional<KnownSidecar> known;
    if (m_values.sidecar.write != SidecarWrite::never) {
        kind = sniffImageKindOfFile(source);
        known.emplace(source, sidecar.from);
    }
    // A photo whose edit goes into its sidecar too is read whole first: the sidecar's part
    // wants its values as they were before the edit.
    std::optional<CGImageProperties> whole;
    if (record.valuesUnread && !sidecar.to.isEmpty() && kind && writesSidecar(*kind)) {
        whole = loadImageProperties(*record.url);
        if (!whole)
            return skipped(PhotoOutcome::SkippedNoUrl);
    }
    const CGImageProperties& values = whole ? *whole : record;
    PhotoResult result = sameFile ? editInPlace(target, values, kind)
                                  : editCopy(source, target, values, sources, kind);
    known.reset();
    return withSidecar(std::move(result), sidecar, target, values, kind);
}

PhotoResult PhotoPipeline::editInPlace(const QString& target, const CGImageProperties& record,
                                       std::optional<ImageKind> kind) const {
    // Onto itself there is nothing to copy: the metadata are written into the source.
    if (!QFileInfo(target).isFile())
        return skipped(PhotoOutcome::SkippedNoOutput, QStringLiteral("not a regular file"));
    // A read-only photo stays as it is; it is not made writable.
    if (const auto why = whyNotWritable(target))
        return {PhotoOutcome::Written,
                writeStatusText(WriteStatus::NoPermission) + QStringLiteral(": ") + *why};
    const MetadataStep step = changeMetadata(target, record, /*flushToDisk=*/true, kind);
    const bool dated = !step.write.written() || setFileDates(target, step.modifyDate);
    return {PhotoOutcome::Written, problemOf(step, target, dated)};
}

PhotoResult PhotoPipeline::editCopy(const QString& source, const QString& target,
                                    const CGImageProperties& record, const BatchSources* sources,
                                    std::optional<ImageKind>& kind) const {
    // A new output is written whole before it takes its name, so that a file at the output
    // path is never half made: the source is read, and its edited bytes go to a new file in
    // the output folder that takes the output's name once complete, checked and dated, and
    // only while that name is free. The source is never written.
    const MetadataStep step = changeMetadata(source, record, /*flushToDisk=*/false, kind, target);
    if (step.published)
        return {PhotoOutcome::Written, problemOf(step, target, step.dated)};
    // In the standard form a copy without its whole edit never takes the output's place, so
    // that nothing in the output folder looks like a result that is not one.
    if (!step.write.written() && step.placeErrorCode == 0 && m_values.writeOptions.standardForm)
        return {PhotoOutcome::Written, problemOf(step, source, step.dated)};
    StagedOutput output;
    if (step.placeErrorCode != 0 && step.write.written()) {
        // Complete and checked, but its name was taken meanwhile.
        output.error = step.placeError;
        output.errorCode = step.placeErrorCode;
    } else {
        // Else the copy is staged: made beside its place as a link to the source (or a copy
        // of it) and moved in once done. A photo that takes no edit of its own (its edit goes
        // to its sidecar), or whose edit failed, keeps the step's outcome; where the copy
        // could not be begun, the staged file, if one can be made, takes the edit where it
        // stands.
        output.staged =
            FileCopier::stage(source, folderOf(target), &output.error, &output.errorCode);
        if (!output.staged.isEmpty()) {
            const bool edited = step.placeErrorCode == 0;
            output.step =
                edited ? step : changeMetadata(output.staged, record, /*flushToDisk=*/false, kind);
            output.stepPath = edited ? source : output.staged;
            if (const std::optional<PhotoResult> dropped = publishStaged(output, source, target))
                return *dropped;
        }
    }
    // An output that could not be made or moved in: the old output in the way takes the edit.
    if (!output.published) {
        kind.reset();
        return editOldOutput(output, source, target, record, sources);
    }
    return {PhotoOutcome::Written, problemOf(output.step, output.stepPath, output.dated)};
}

std::optional<PhotoResult> PhotoPipeline::publishStaged(StagedOutput& output, const QString& source,
                                                        const QString& target) const {
    // In the standard form a copy without its whole edit never takes the output's place,
    // so that nothing in the output folder looks like a result that is not one. Only the
    // run's own hidden name goes: while it is a link, the source keeps its bytes under its
    // own name. (The described form lets such a copy stand.)
    const bool onlyEditedCopies = m_values.writeOptions.standardForm;
    const auto withoutEdit = [&] {
        QFile::remove(output.staged);
        return PhotoResult{PhotoOutcome::Written,
                           problemOf(output.step, output.stepPath, output.dated)};
    };
    if (onlyEditedCopies && !output.step.write.written())
        return withoutEdit();
    const bool detached =
        FileCopier::detach(output.staged, source, &output.error, &output.errorCode);
    // The file dates are set once the copy no longer shares the source's storage, and
    // before it takes its place: the move keeps them.
    if (detached && output.step.write.written())
        output.dated = setFileDates(output.staged, output.step.modifyDate);
    if (onlyEditedCopies && detached && !output.dated)
        return withoutEdit();
    output.published =
        detached && FileCopier::publish(output.staged, target, &output.error, &output.errorCode);
    if (!output.published)
        QFile::remove(output.staged);
    return std::nullopt;
}

PhotoResult PhotoPipeline::editOldOutput(const StagedOutput& output, const QString& source,
                                         const QString& target, const CGImageProperties& record,
                                         const BatchSources* sources) const {
    if (m_values.processingMode != ProcessingMode::removeGroups)
        qCWarning(lcBatch).noquote()
            << "copy of" << source << "to" << target << "failed:" << output.error;
    const QString cause = output.errorCode ? writeStatusText(writeStatusOfErrno(output.errorCode)) +
                                                 QStringLiteral(": ") + output.error
                                           : output.error;
    // An old output that could not be removed takes the photo's metadata instead; but
    // not through a link, which may lead out of the output folder, nor into a photo of
    // the run.
    const QFileInfo old(target);
    if (!old.isFile() || old.isSymLink() || (sources && sources->contains(target)))
        return skipped(PhotoOutcome::SkippedNoOutput, cause);
    // The old output's bytes are not the photo's: values left unread are read from the photo.
    std::optional<CGImageProperties> whole;
    if (record.valuesUnread) {
        whole = loadImageProperties(*record.url);
        if (!whole)
            return skipped(PhotoOutcome::SkippedNoOutput, cause);
    }
    const MetadataStep step = changeMetadata(target, whole ? *whole : record);
    const bool dated = !step.write.written() || setFileDates(target, step.modifyDate);
    QString problem = QStringLiteral("the old output could not be replaced (%1)").arg(cause);
    if (const QString stepProblem = problemOf(step, target, dated); !stepProblem.isEmpty())
        problem += QStringLiteral("; ") + stepProblem;
    return {PhotoOutcome::Written, problem};
}

QString PhotoPipeline::problemOf(const MetadataStep& step, const QString& path,
                                 bool datesSet) const {
    if (!step.write.written()) {
        // The writer's own text names the file it wrote, here perhaps the hidden staged one.
        QString detail = step.write.detail;
        if (detail.startsWith(path + QStringLiteral(": ")))
            detail = detail.mid(path.size() + 2);
        QString text = writeStatusText(step.write.status);
        if (!detail.isEmpty())
            text += QStringLiteral(" (") + detail + QLatin1Char(')');
        return text;
    }
    if (!datesSet)
        return QStringLiteral("the modification date could not be set");
    return {};
}

PhotoPipeline::MetadataStep PhotoPipeline::changeMetadata(const QString& path,
                                                          const CGImageProperties& record,
                                                          bool flushToDisk,
                                                          std::optional<ImageKind> kind,
                                                          const QString& copyTo) const {
    if (!copyTo.isEmpty()) {
        // The new modify date is known once the edit is made, before the copy is complete.
        std::optional<QString> modifyDate;
        bool dated = true;
        const SafeFileReplace::CopyScope copy(path, copyTo, [&](int fd) {
            dated = setFileDates(copyTo, modifyDate, fd);
            return dated || !m_values.writeOptions.standardForm;
        });
        MetadataStep step = writeStep(path, record, flushToDisk, kind, &modifyDate);
        step.published = copy.published();
        step.dated = dated;
        step.placeError = copy.placeErrorText();
        step.placeErrorCode = copy.placeError();
        return step;
    }
    std::optional<QString> modifyDate;
    return writeStep(path, record, flushToDisk, kind, &modifyDate);
}

PhotoPipeline::MetadataStep
PhotoPipeline::writeStep(const QString& path, const CGImageProperties& record, bool flushToDisk,
                         std::optional<ImageKind> kind, std::optional<QString>* modifyDate) const {
    MetadataTest bridge;
    bridge.setFlushesToDisk(flushToDisk);
    bridge.setWriteOptions(m_values.writeOptions);
    if (m_values.processingMode == ProcessingMode::removeGroups) {
        return {bridge.cleanMetadata(path, m_values.clean), std::nullopt};
    }
    // An edit that goes to the sidecar alone leaves the photo's bytes as they are.
    if (m_values.sidecar.write != SidecarWrite::never &&
        !writesPhoto(kind ? *kind : sniffImageKindOfFile(path)))
        return {};
    if (record.valuesUnread && record.url && editsDates(m_values)) {
        // The photo's dates are read from the bytes that are edited, where the edit parses
        // them anyway. Its other values go into no edit (readsValuesWhereItEdits).
        bridge.setExtraWrite(extraWriteOf(m_values, m_plainEdits));
        const WriteResult write =
            bridge.writeEditsOfOwnRecord(path, *record.url, [&](const CGImageProperties& own) {
                FieldEdits edits = fieldEditsFor(own, path);
                *modifyDate = edits.values.at(formField(Field::ModifyDate).keyRow()).text();
                return MetadataTest::EditedRows{std::move(edits.values), std::move(edits.erased)};
            });
        return {write, *modifyDate};
    }
    const FieldEdits edits = fieldEditsFor(record, path);
    // A photo's own values may carry extra edits of their own (a position's moment).
    bridge.setExtraWrite(
        extraWriteOf(m_values.photoValues.empty() ? m_values : valuesFor(record), edits));
    *modifyDate = edits.values.at(formField(Field::ModifyDate).keyRow()).text();
    // The values in the file are merged in from the very bytes that the writer edits.
    return {bridge.writeMergedFields(path, edits.values, edits.erased), *modifyDate};
}

WriteResult PhotoPipeline::writeMetadataInto(const QString& path,
                                             const CGImageProperties& record) const {
    return changeMetadata(path, record, /*flushToDisk=*/false).write;
}

namespace {

bool isXmpDate(DateField field) {
    return QByteArray(dateFieldKey(field)).startsWith("Xmp.");
}

} // namespace

bool PhotoPipeline::readsValuesWhereItEdits() const {
    return m_values.processingMode != ProcessingMode::removeGroups &&
           !CaptureNames::applies(m_values.renameSettings) && m_values.photoValues.empty() &&
           !m_values.extras.datesZone;
}

RunValues PhotoPipeline::valuesFor(const CGImageProperties& record) const {
    RunValues own = m_values;
    own.photoValues.clear();
    for (const auto& values : m_values.photoValues)
        values->adjust(record, own);
    return own;
}

FieldEdits PhotoPipeline::fieldEditsFor(const CGImageProperties& record,
                                        const QString& path) const {
    if (m_values.photoValues.empty())
        return editsOf(m_values, m_plainEdits, record, path);
    const RunValues own = valuesFor(record);
    return editsOf(own, plainFieldEdits(own), record, path);
}

FieldEdits PhotoPipeline::editsOf(const RunValues& values, FieldEdits edits,
                                  const CGImageProperties& record, const QString& path) {
    const bool clearUnedited = values.processingMode == ProcessingMode::clearUnedited;
    const auto fields = dateFieldsInRunOrder();
    const PhotoDateRule dateRule =
        PhotoDateRule::forRun(values.writeOptions.standardForm, values.carryShifts);
    std::optional<OriginalDate> ownDates;   // read at the first edited date field
    std::optional<MetadataFieldSet> inFile; // read at the first XMP date that reads its clock
    for (std::size_t i = 0; i < fields.size(); ++i) {
        const KeyRow& row = fields[i]->keyRow();
        if (!values.fieldEditedFlags.test(fields[i]->field)) {
            if (clearUnedited)
                edits.erase(row);
            continue;
        }
        const DateField field = allDateFields[i];
        const DateTimeConfiguration& rule = values.editorDates.rule(field);
        const std::optional<QDateTime>& slot = values.editorDates.slot(field);
        std::optional<DateZone> zone;
        if (!path.isEmpty() && isXmpDate(field) && dateRule.readsOwnClock(rule)) {
            if (!inFile)
                inFile = readMetadataFieldSet(path);
            if (const auto text = inFile->at(row).text())
                zone = zoneOfDateText(*text);
        }
        if (!ownDates)
            ownDates = OriginalDate::of(record);
        const DateRuleOutcome outcome = dateRule.apply(rule, slot, ownDates->get(field), zone);
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
    if (values.extras.datesZone)
        putDatesInZone(*values.extras.datesZone, record, path, edits);
    return edits;
}

bool PhotoPipeline::setFileDates(const QString& path, const std::optional<QString>& text,
                                 int fd) const {
    // Linux keeps no settable birth time, so the creation date rule reaches the tag only; the
    // modify date rule also becomes the file's modification time. `text` is the photo's new
    // modify date, which only an edited ModifyDate field gives: the run's, or the photo's own.
    if (!text)
        return true;
    const auto date = sharedDateFormatter().parse(*text);
    if (!date)
        return true;
    const qint64 ms = date->toMSecsSinceEpoch();
    const qint64 seconds = ms >= 0 ? ms / 1000 : -((-ms + 999) / 1000);
    const struct timespec times[2] = {{0, UTIME_OMIT},
                                      {time_t(seconds), long(ms - seconds * 1000) * 1000000L}};
    if ((fd >= 0 ? ::futimens(fd, times)
                 : ::utimensat(AT_FDCWD, QFile::encodeName(path).constData(), times, 0)) != 0) {
        qCWarning(lcBatch).noquote() << "could not set the modification date of" << path;
        return false;
    }
    return true;
}

} // namespace tagmoor
