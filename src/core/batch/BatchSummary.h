#pragma once

#include "batch/BatchResult.h"

#include <QString>
#include <QStringList>

namespace tagmoor {

// The texts of the result screen for a finished (or stopped) run.
struct BatchSummary {
    static inline const QString destinationAsSameAsSource =
        QStringLiteral("Destination path is same as source path");
    static constexpr int kOutputTitleLimit = 40;

    QString lblBatchProcessCompleted;   // "Batch Process Completed!" or "... Partially ..."
    QString lblValueImageProcessed;     // "total / total", whatever was reached
    QString lblValueBatchCount;         // ": total"
    QString lblValueImagesProcessed;    // ": totalProcessedPhotos"
    QString lblValuePhotosSkipped;      // ": total - totalProcessedPhotos"
    QString lblPhotosSavedSuccessfully; // "2 Photos saved successfully!", of the photos that
                                        // carry the whole edit
    QString lblNotReached;              // the photos a stop kept from being reached, or ""
    QString outputDirectoryValue;       // the folder in full
    QString outputDirectoryTitle;       // the folder, shortened for display
    bool outputDirectoryEnabled = true; // off when the output went beside the sources

    static BatchSummary of(const BatchResult& result);

    // A text shortened to the button's limit: its start and end around "...".
    static QString shortenForDisplay(const QString& text, int limit = kOutputTitleLimit);

    // The summary as lines for a terminal.
    QStringList lines() const;
};

} // namespace tagmoor
