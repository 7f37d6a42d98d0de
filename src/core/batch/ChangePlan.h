#pragma once

#include "batch/PhotoOutcome.h"
#include "batch/PhotoPipeline.h"
#include "batch/PhotoSource.h"
#include "metadata/TagListing.h"

#include <QList>
#include <QMap>
#include <QString>

#include <functional>
#include <optional>

namespace tagmoor {

// One tag that a run changes in a photo: added (no `before`), removed (no `after`), or given
// another value or type.
struct TagChange {
    QString key;
    std::optional<TagText> before;
    std::optional<TagText> after;

    // "72/1 (Rational)", or "(none)".
    static QString describe(const std::optional<TagText>& tag);
    bool operator==(const TagChange&) const = default;
};

// What a run would do to one selected photo.
struct PhotoChanges {
    QString sourcePath;
    // The output path; empty for a photo without file.
    QString finalPath;
    PhotoOutcome outcome = PhotoOutcome::Written;
    // Why the photo would be skipped or would not get its edit; empty when it would.
    QString reason;
    // In key order.
    QList<TagChange> changes;

    bool isRenamed() const;
};

// The tags that differ between two listings, in key order.
QList<TagChange> tagChanges(const QMap<QString, TagText>& before,
                            const QMap<QString, TagText>& after);

// The plan of a run of `pipeline` over the selected photos of `photos`, without touching them:
// names and skips as the run decides them in list order (the rename rule's numbers start at
// `firstNumber`), and for each photo that would be written the tags that change. Those are
// found by doing the photo's metadata step on a scratch copy and comparing the tags, so they
// are exactly what the run writes, the changes that the writing itself brings included.
// `progress` (when given) hears of each photo done and may stop the plan by giving false.
QList<PhotoChanges> planChanges(const PhotoPipeline& pipeline, const PhotoSource& photos,
                                qint64 firstNumber,
                                const std::function<bool(int done, int total)>& progress = {});

// The same plan one photo at a time, for lists of any length: `each` hears of each selected
// photo in list order, with the record the plan used, `done` of `total`, and may end the plan
// by giving false. Nothing is kept per photo but the output names claimed so far.
void planEachChange(
    const PhotoPipeline& pipeline, const PhotoSource& photos, qint64 firstNumber,
    const std::function<bool(const PhotoChanges& photo, const CGImageProperties& record, int done,
                             int total)>& each);

} // namespace tagmoor
