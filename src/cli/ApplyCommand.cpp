#include "ApplyOptions.h"
#include "Commands.h"
#include "PathPhotoSource.h"

#include "batch/BatchDriver.h"
#include "batch/BatchObserver.h"
#include "batch/BatchSummary.h"
#include "batch/PhotoPipeline.h"
#include "batch/StopControl.h"
#include "model/FormFieldTable.h"
#include "rename/RenameNumbering.h"

#include <QDir>
#include <QSet>
#include <QTextStream>

#include <mutex>
#include <unistd.h>

namespace tagmoor::cli {

namespace {

QString valueText(const PropertyValue& v) {
    if (auto t = v.text())
        return QLatin1Char('"') + *t + QLatin1Char('"');
    return v.variant().toString();
}

// Progress on the terminal: one line, rewritten for each photo.
class TerminalProgress : public BatchObserver {
public:
    void photoStarted(const PhotoPlan& plan) override {
        std::lock_guard lock(m_mutex);
        QTextStream(stderr) << "\r\033[K" << plan.processed << " / " << plan.total << "  "
                            << plan.sourcePath;
        m_shown = true;
    }
    void end() {
        if (m_shown)
            QTextStream(stderr) << "\r\033[K";
    }

private:
    std::mutex m_mutex;
    bool m_shown = false;
};

// Prints what a run would do and gives whether every photo would be written.
bool printPlan(QTextStream& out, const PhotoPipeline& pipeline, const PathPhotoSource& photos) {
    RenameNumbering numbering;
    QSet<QString> claimed;
    int writes = 0;
    const int total = photos.count();
    const RunValues& values = pipeline.values();
    for (int i = 0; i < total; ++i) {
        const CGImageProperties record = photos.record(i);
        const PhotoPlan plan = pipeline.plan(record, i + 1, total, numbering.take());
        const PhotoOutcome outcome = pipeline.forecast(plan, claimed);
        if (!plan.hasUrl) {
            out << photos.path(i) << ": " << describe(outcome) << '\n';
            continue;
        }
        out << plan.sourcePath << " -> " << plan.finalPath << ": " << describe(outcome) << '\n';
        if (!isCounted(outcome))
            continue;
        ++writes;
        claimed.insert(plan.finalPath);
        if (values.processingMode == ProcessingMode::removeGroups) {
            const CleanOptions& c = values.clean;
            QStringList groups;
            if (c.cleanExif)
                groups << QStringLiteral("exif");
            if (c.cleanIPTC)
                groups << QStringLiteral("iptc");
            if (c.cleanXMP)
                groups << QStringLiteral("xmp");
            if (c.cleanGPS)
                groups << QStringLiteral("gps");
            if (c.cleanComment)
                groups << QStringLiteral("comment");
            out << "  strip " << groups.join(QStringLiteral(", ")) << '\n';
            continue;
        }
        const FieldEdits edits = pipeline.fieldEditsFor(record);
        for (const KeyRow& row : allKeyRows()) {
            const PropertyValue& v = edits.values.at(row);
            if (v.isPresent())
                out << "  set " << row.key << " = " << valueText(v) << '\n';
        }
        for (const QStringList* list : {&edits.eraseExif, &edits.eraseIptc, &edits.eraseXmp}) {
            for (const QString& key : *list)
                out << "  erase " << key << '\n';
        }
    }
    out << "dry run: " << writes << " of " << total << " photos would be written, "
        << total - writes << " skipped; nothing was changed\n";
    return writes == total;
}

} // namespace

int runApply(const QStringList& args) {
    QTextStream err(stderr);
    QTextStream out(stdout);
    QString error;
    const auto options = ApplyOptions::parse(args, &error);
    if (!options) {
        err << "tagmoor-cli apply: " << error
            << "\nRun 'tagmoor-cli apply --help' for the options.\n";
        return 2;
    }
    if (options->help) {
        out << ApplyOptions::helpText();
        return 0;
    }

    QStringList problems;
    const QStringList paths = collectPhotoPaths(options->inputs, &problems);
    if (!problems.isEmpty()) {
        for (const QString& p : problems)
            err << "tagmoor-cli apply: " << p << '\n';
        return 2;
    }
    const RunValues& values = options->values;
    if (values.processingMode == ProcessingMode::keepUnedited &&
        !values.fieldEditedFlags.hasKeyedEdits())
        err << "No Changes in Metadata found: the photos are only copied or rewritten\n";

    const PhotoPipeline pipeline(values);
    const PathPhotoSource photos(paths);
    if (options->dryRun) {
        const bool allWritten = printPlan(out, pipeline, photos);
        out.flush();
        return allWritten ? 0 : 1;
    }
    if (values.destinationFolder && !QDir().mkpath(*values.destinationFolder)) {
        err << "tagmoor-cli apply: cannot create the output folder " << *values.destinationFolder
            << '\n';
        return 2;
    }

    RenameNumbering numbering;
    StopControl stop;
    TerminalProgress progress;
    const bool showProgress = !options->quiet && ::isatty(STDERR_FILENO);
    BatchDriver driver(pipeline, numbering, stop, showProgress ? &progress : nullptr,
                       options->threads);
    const BatchResult result = driver.run(photos);
    progress.end();
    err.flush();

    for (const QString& line : BatchSummary::of(result).lines())
        out << line << '\n';
    out.flush();
    return result.totalProcessedPhotos == result.total ? 0 : 1;
}

} // namespace tagmoor::cli
