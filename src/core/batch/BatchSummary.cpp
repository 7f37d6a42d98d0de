#include "batch/BatchSummary.h"

#include <QCoreApplication>

namespace tagmoor {

BatchSummary BatchSummary::of(const BatchResult& r) {
    BatchSummary s;
    s.lblValueImageProcessed = QCoreApplication::translate("BatchSummary", "%1 / %1").arg(r.total);
    s.lblValueBatchCount = QStringLiteral(": %1").arg(r.total);
    s.lblValueImagesProcessed = QStringLiteral(": %1").arg(r.totalProcessedPhotos);
    s.lblValuePhotosSkipped = QStringLiteral(": %1").arg(r.total - r.totalProcessedPhotos);
    // Saved means the photo holds the edit: an output whose edit did not land is processed
    // but not saved.
    s.lblPhotosSavedSuccessfully =
        (r.savedPhotos() > 1
             ? QCoreApplication::translate("BatchSummary", "%1 Photos saved successfully!")
             : QCoreApplication::translate("BatchSummary", "%1 Photo saved successfully!"))
            .arg(r.savedPhotos());
    if (r.notReachedCount == 1)
        s.lblNotReached = QCoreApplication::translate(
            "BatchSummary", "1 photo was not reached: the run was stopped");
    else if (r.notReachedCount > 1)
        s.lblNotReached = QCoreApplication::translate(
                              "BatchSummary", "%1 photos were not reached: the run was stopped")
                              .arg(r.notReachedCount);
    s.lblBatchProcessCompleted =
        r.total == r.totalProcessedPhotos
            ? QCoreApplication::translate("BatchSummary", "Batch Process Completed!")
            : QCoreApplication::translate("BatchSummary", "Batch Process Partially Completed!");
    s.outputDirectoryEnabled = r.outputDirectoryValue != destinationAsSameAsSource;
    s.outputDirectoryValue = r.outputDirectoryValue;
    s.outputDirectoryTitle = shortenForDisplay(r.outputDirectoryValue);
    return s;
}

QString BatchSummary::shortenForDisplay(const QString& text, int limit) {
    if (text.size() <= limit)
        return text;
    const QString dots = QStringLiteral("...");
    const int room = limit - int(dots.size());
    const int head = room / 2;
    return text.left(head) + dots + text.right(room - head);
}

QStringList BatchSummary::lines() const {
    QStringList lines{
        lblBatchProcessCompleted,
        QCoreApplication::translate("BatchSummary", "Batch Count") + lblValueBatchCount,
        QCoreApplication::translate("BatchSummary", "Images Processed") + lblValueImagesProcessed,
        QCoreApplication::translate("BatchSummary", "Photos Skipped") + lblValuePhotosSkipped,
        QCoreApplication::translate("BatchSummary", "Output Directory: ") + outputDirectoryValue,
        lblPhotosSavedSuccessfully};
    if (!lblNotReached.isEmpty())
        lines << lblNotReached;
    return lines;
}

} // namespace tagmoor
