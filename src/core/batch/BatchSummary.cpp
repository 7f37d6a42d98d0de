#include "batch/BatchSummary.h"

namespace tagmoor {

BatchSummary BatchSummary::of(const BatchResult& r) {
    BatchSummary s;
    s.lblValueImageProcessed = QStringLiteral("%1 / %1").arg(r.total);
    s.lblValueBatchCount = QStringLiteral(": %1").arg(r.total);
    s.lblValueImagesProcessed = QStringLiteral(": %1").arg(r.totalProcessedPhotos);
    s.lblValuePhotosSkipped = QStringLiteral(": %1").arg(r.total - r.totalProcessedPhotos);
    s.lblPhotosSavedSuccessfully =
        QStringLiteral("%1 %2 saved successfully!")
            .arg(r.totalProcessedPhotos)
            .arg(r.totalProcessedPhotos > 1 ? QStringLiteral("Photos") : QStringLiteral("Photo"));
    s.lblBatchProcessCompleted = r.total == r.totalProcessedPhotos
                                     ? QStringLiteral("Batch Process Completed!")
                                     : QStringLiteral("Batch Process Partially Completed!");
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
    return {lblBatchProcessCompleted,
            QStringLiteral("Batch Count") + lblValueBatchCount,
            QStringLiteral("Images Processed") + lblValueImagesProcessed,
            QStringLiteral("Photos Skipped") + lblValuePhotosSkipped,
            QStringLiteral("Output Directory: ") + outputDirectoryValue,
            lblPhotosSavedSuccessfully};
}

} // namespace tagmoor
