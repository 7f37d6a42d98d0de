#pragma once

#include "batch/CaptureNames.h"
#include "batch/FieldEdits.h"
#include "batch/FileIdentity.h"
#include "batch/PhotoOutcome.h"
#include "batch/PhotoPlan.h"
#include "batch/RunValues.h"
#include "metadata/ImageKind.h"
#include "metadata/WriteResult.h"
#include "metadata/XmpSidecar.h"

#include <QSet>

#include <memory>
#include <optional>

namespace tagmoor {

// What happens to one selected photo of a run, in the three modes. The front half is shared:
// resolve the output path, rename, guard against collisions, copy, count. The edit modes
// then write the field values and erase lists and set the file's modification date; the
// clean mode strips the chosen groups. Holds no state between photos; safe to use from
// several threads at once for photos whose paths differ.
//
// No photo is ever lost: paths are compared by the identity of the files they reach (an output
// that is the source itself, reached through a link or a mount, is edited in place, never
// removed); a generated name is one file name in the output folder; a file that is a source of
// the run is never in the way of another photo's output.
class PhotoPipeline {
public:
    explicit PhotoPipeline(RunValues values);

    const RunValues& values() const { return m_values; }

    // Output path and name (no file is touched). `firstNumber` is the rename rule's number.
    PhotoPlan plan(const CGImageProperties& record, int processed, int total,
                   long long firstNumber) const;

    // The sidecar of a photo's output: the source's sidecar, if it has one, and the path of
    // the output's. Empty when the run leaves sidecars alone.
    struct SidecarPlan {
        std::optional<SidecarFile> from;
        QString to;
    };
    SidecarPlan sidecarPlan(const QString& source, const QString& target) const;

    // What the caller has just found of a photo's files: its sidecarPlan and the identities of
    // the files at its source and output paths.
    struct PhotoFiles {
        SidecarPlan sidecar;
        std::optional<FileId> source;
        std::optional<FileId> target;
    };
    PhotoFiles photoFiles(const PhotoPlan& plan) const;

    // The file work of a planned photo: guard, copy, count, then the mode's metadata step.
    // `sources` are the sources of the whole run (none: only this photo's own). `files` are
    // the photo's files when the caller has just looked at them (none: looked at here).
    PhotoResult process(const PhotoPlan& plan, const CGImageProperties& record,
                        const BatchSources* sources = nullptr,
                        const PhotoFiles* files = nullptr) const;

    // The values and erase lists that an edit run gives this photo. With `path`, a shift of
    // an XMP date that the file at `path` holds with a time zone keeps that zone (the record
    // keeps the moment only); the file is read only when such a shift is asked.
    FieldEdits fieldEditsFor(const CGImageProperties& record, const QString& path = {}) const;

    // Whether the run needs a photo's values only where it edits the photo, so that a source
    // may hand it records whose values are unread (CGImageProperties::valuesUnread): they are
    // then taken from the very bytes that the edit parses, and the photo is parsed once. Not
    // for strips, names made from the photos, values of their own per photo, or dates moved
    // into a zone. (A photo whose edit goes into its sidecar too is read whole first.)
    bool readsValuesWhereItEdits() const;

    // The run's values as this photo gets them: with its PhotoValues laid over them.
    RunValues valuesFor(const CGImageProperties& record) const;

    // What process() would decide at the guard, without touching anything. `claimed` holds
    // output paths (or their locations) that earlier photos of the same forecast would have
    // written.
    PhotoOutcome forecast(const PhotoPlan& plan, const CompactPathSet& claimed,
                          const BatchSources* sources = nullptr) const;

    // The base name and extension as the pipeline splits a file name: the extension is what
    // follows the last "." that is not the first character.
    static QString baseNameOf(const QString& fileName);
    static QString extensionOf(const QString& fileName);

    // The metadata step of a run on the file at `path` (a scratch copy, for a preview),
    // without flushing it to disk.
    WriteResult writeMetadataInto(const QString& path, const CGImageProperties& record) const;

private:
    QString renamedBase(const QString& base, long long firstNumber) const;
    // The edits of one photo under `values`, from the plain fields' edits `edits` on.
    static FieldEdits editsOf(const RunValues& values, FieldEdits edits,
                              const CGImageProperties& record, const QString& path);
    struct MetadataStep {
        MetadataStep() = default;
        MetadataStep(WriteResult written, std::optional<QString> newModifyDate = std::nullopt)
            : write(std::move(written)), modifyDate(std::move(newModifyDate)) {}
        WriteResult write;
        // The new modify date text, if any.
        std::optional<QString> modifyDate;
        // For a copy written straight to its name (changeMetadata()'s `copyTo`): whether it
        // took that name, whether its file dates were set, and why it could not be begun (the
        // source would not open, no new file could be made in the output folder) or placed
        // there (a text and errno value; 0 when none of these happened).
        bool published = false;
        bool dated = true;
        QString placeError;
        int placeErrorCode = 0;
    };
    // A new output as it is made beside its place and moved in.
    struct StagedOutput {
        QString staged;
        // The file the step's texts name (the staged one, or the source of a copy).
        QString stepPath;
        bool published = false;
        MetadataStep step;
        bool dated = true;
        // Why making or moving it failed.
        QString error;
        int errorCode = 0;
    };
    // The steps of process() once the guard let a photo through: an output that is the
    // source itself is edited where it is; any other is made as a staged copy, edited and
    // moved in, or, when that fails, the old output in the way takes the edit.
    // `kind` is the source's kind, where it was told; editCopy() forgets it when the edit goes
    // into an old output instead.
    PhotoResult editInPlace(const QString& target, const CGImageProperties& record,
                            std::optional<ImageKind> kind) const;
    PhotoResult editCopy(const QString& source, const QString& target,
                         const CGImageProperties& record, const BatchSources* sources,
                         std::optional<ImageKind>& kind) const;
    // Moves a staged output in, once it no longer shares the source's storage; a result when
    // the copy is dropped for want of its edit.
    std::optional<PhotoResult> publishStaged(StagedOutput& output, const QString& source,
                                             const QString& target) const;
    PhotoResult editOldOutput(const StagedOutput& output, const QString& source,
                              const QString& target, const CGImageProperties& record,
                              const BatchSources* sources) const;
    // The mode's metadata step on one file, whose kind is `kind` where it is known. With
    // `copyTo`, the file at `path` is only read, and its edited bytes become a new file at
    // `copyTo`, dated before it takes that name, which must be free.
    MetadataStep changeMetadata(const QString& path, const CGImageProperties& record,
                                bool flushToDisk = true,
                                std::optional<ImageKind> kind = std::nullopt,
                                const QString& copyTo = {}) const;
    // changeMetadata() without a copy; `modifyDate` is set as soon as the edit is known.
    MetadataStep writeStep(const QString& path, const CGImageProperties& record, bool flushToDisk,
                           std::optional<ImageKind> kind, std::optional<QString>* modifyDate) const;
    // Whether an edit of a photo of this kind goes into the photo, into its sidecar.
    bool writesPhoto(ImageKind kind) const;
    bool writesSidecar(ImageKind kind) const;
    // The sidecar's part of a photo whose output now stands at `target`: taken along, edited,
    // stripped or removed. The photo's result, with what became of its sidecar.
    PhotoResult withSidecar(PhotoResult photo, const SidecarPlan& sidecar, const QString& target,
                            const CGImageProperties& record,
                            std::optional<ImageKind> outputKind = std::nullopt) const;
    // Sets the file dates the edit asks for; false when that failed.
    // Through the open `fd` where one is given.
    bool setFileDates(const QString& path, const std::optional<QString>& modifyDate,
                      int fd = -1) const;
    // What a photo whose output exists reports: nothing when the whole edit landed.
    QString problemOf(const MetadataStep& step, const QString& path, bool datesSet) const;

    RunValues m_values;
    FieldEdits m_plainEdits;
    // The names given by the capture-date rule so far; shared by copies of the pipeline.
    std::shared_ptr<CaptureNames> m_captureNames = std::make_shared<CaptureNames>();
};

} // namespace tagmoor
