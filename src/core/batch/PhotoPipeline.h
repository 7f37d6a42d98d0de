#pragma once

#include "batch/FieldEdits.h"
#include "batch/PhotoOutcome.h"
#include "batch/PhotoPlan.h"
#include "batch/RunValues.h"

#include <QSet>

namespace tagmoor {

// What happens to one selected photo of a run, in the three modes. The front half is shared:
// resolve the output path, rename, guard against collisions, copy, count. The edit modes
// then write the field values and erase lists and set the file's modification date; the
// clean mode strips the chosen groups. Holds no state between photos; safe to use from
// several threads at once for photos whose paths differ.
class PhotoPipeline {
public:
    explicit PhotoPipeline(RunValues values);

    const RunValues& values() const { return m_values; }

    // Output path and name (no file is touched). `firstNumber` is the rename rule's number.
    PhotoPlan plan(const CGImageProperties& record, int processed, int total,
                   long long firstNumber) const;

    // The file work of a planned photo: guard, copy, count, then the mode's metadata step.
    PhotoOutcome process(const PhotoPlan& plan, const CGImageProperties& record) const;

    // The values and erase lists that an edit run gives this photo.
    FieldEdits fieldEditsFor(const CGImageProperties& record) const;

    // What process() would decide at the guard, without touching anything. `claimed` holds
    // output paths that earlier photos of the same forecast would have written.
    PhotoOutcome forecast(const PhotoPlan& plan, const QSet<QString>& claimed) const;

    // The base name and extension as the pipeline splits a file name: the extension is what
    // follows the last "." that is not the first character.
    static QString baseNameOf(const QString& fileName);
    static QString extensionOf(const QString& fileName);

private:
    QString renamedBase(const QString& base, long long firstNumber) const;
    // The mode's metadata step on one file; gives the new modify date text, if any.
    std::optional<QString> changeMetadata(const QString& path, const CGImageProperties& record,
                                          bool flushToDisk = true) const;
    void setFileDates(const QString& path, const std::optional<QString>& modifyDate) const;

    RunValues m_values;
    FieldEdits m_plainEdits;
};

} // namespace tagmoor
