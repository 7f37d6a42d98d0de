#include "batch/PhotoOutcome.h"

namespace tagmoor {

QString describe(PhotoOutcome outcome) {
    switch (outcome) {
    case PhotoOutcome::Written:
        return QStringLiteral("written");
    case PhotoOutcome::SkippedNoUrl:
        return QStringLiteral("skipped: not a readable photo");
    case PhotoOutcome::SkippedCollision:
        return QStringLiteral("skipped: a file exists at the output path");
    case PhotoOutcome::SkippedNoSource:
        return QStringLiteral("skipped: the source file is gone");
    case PhotoOutcome::SkippedNoOutput:
        return QStringLiteral("skipped: the copy failed");
    case PhotoOutcome::SkippedUnsafeName:
        return QStringLiteral("skipped: the new name is not a single file name in the output "
                              "folder");
    case PhotoOutcome::SkippedSourceInTheWay:
        return QStringLiteral("skipped: another photo of this batch has the output name");
    }
    return {};
}

} // namespace tagmoor
