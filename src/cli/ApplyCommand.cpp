#include "ApplyCommand.h"
#include "ApplyJson.h"
#include "ApplyOptions.h"
#include "Commands.h"
#include "PathPhotoSource.h"
#include "ProblemLog.h"

#include "batch/BatchDriver.h"
#include "batch/BatchObserver.h"
#include "batch/BatchSummary.h"
#include "batch/ChangePlan.h"
#include "batch/PhotoPipeline.h"
#include "exchange/GeotagValues.h"
#include "exchange/LocalTimeValues.h"
#include "exchange/PhotoTemplates.h"
#include "foundation/StopControl.h"
#include "model/FormFieldTable.h"
#include "rename/RenameNumbering.h"

#include <QDir>
#include <QTextStream>

#include <atomic>
#include <csignal>
#include <mutex>
#include <unistd.h>

namespace tagmoor::cli {

namespace {

QString valueText(const PropertyValue& v) {
    if (auto t = v.text())
        return QLatin1Char('"') + *t + QLatin1Char('"');
    const QVariant value = v.variant();
    // A byte tag (an altitude's reference, a version) as its numbers, not as raw bytes.
    if (value.typeId() == QMetaType::QByteArray) {
        QStringList numbers;
        for (const char byte : value.toByteArray())
            numbers << QString::number(quint8(byte));
        return numbers.join(QLatin1Char(' '));
    }
    switch (value.typeId()) {
    case QMetaType::Char:
    case QMetaType::SChar:
    case QMetaType::UChar:
        return QString::number(value.toInt());
    default:
        return value.toString();
    }
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

std::atomic<StopControl*> g_interruptible{nullptr};

extern "C" void stopOnSignal(int) {
    if (StopControl* stop = g_interruptible.load())
        stop->stopNow();
}

// While it lives, Ctrl-C (or a TERM signal) ends the run as Stop does in the window: the
// photos in work are finished, no new one starts, and the result names the photos not
// reached. A second signal ends the process at once, as it would have without this.
class StopOnInterrupt {
public:
    explicit StopOnInterrupt(StopControl& stop) {
        g_interruptible = &stop;
        struct sigaction action {};
        action.sa_handler = stopOnSignal;
        action.sa_flags = SA_RESETHAND;
        sigemptyset(&action.sa_mask);
        ::sigaction(SIGINT, &action, &m_int);
        ::sigaction(SIGTERM, &action, &m_term);
    }
    ~StopOnInterrupt() {
        ::sigaction(SIGINT, &m_int, nullptr);
        ::sigaction(SIGTERM, &m_term, nullptr);
        g_interruptible = nullptr;
    }
    StopOnInterrupt(const StopOnInterrupt&) = delete;
    StopOnInterrupt& operator=(const StopOnInterrupt&) = delete;

private:
    struct sigaction m_int {};
    struct sigaction m_term {};
};

// Prints what a run would do and gives whether every photo would be written: per photo the
// output, the values to be written and the keys to be erased, then each tag that would
// change, as found by doing the photo's edit on a scratch copy.
// A dry run speaks of what would happen: "would be written", "would be skipped: ...".
QString planned(PhotoOutcome outcome) {
    return QStringLiteral("would be ") + describe(outcome);
}

// The values to be written and the keys to be erased, or the groups to be stripped.
void printEdits(QTextStream& out, const PhotoPipeline& pipeline, const RunValues& values,
                const CGImageProperties& record) {
    if (values.processingMode == ProcessingMode::removeGroups) {
        out << "  strip " << strippedGroups(values.clean).join(QStringLiteral(", ")) << '\n';
        return;
    }
    const FieldEdits edits = pipeline.fieldEditsFor(record);
    for (const KeyRow& row : allKeyRows()) {
        const PropertyValue& v = edits.values.at(row);
        if (v.isPresent())
            out << "  set " << row.key << " = " << valueText(v) << '\n';
    }
    for (const KeyBlock block : {KeyBlock::Exif, KeyBlock::Iptc, KeyBlock::Xmp}) {
        for (const QString& key : edits.erased.keys(block))
            out << "  erase " << key << '\n';
    }
}

bool printPlan(QTextStream& out, const PhotoPipeline& pipeline, const PathPhotoSource& photos) {
    int writes = 0;
    const int total = photos.count();
    const RunValues& values = pipeline.values();
    planEachChange(pipeline, photos, RenameNumbering().next(),
                   [&](const PhotoChanges& photo, const CGImageProperties& record, int, int) {
                       if (photo.finalPath.isEmpty()) {
                           out << photo.sourcePath << ": " << planned(photo.outcome) << '\n';
                           return true;
                       }
                       out << photo.sourcePath << " -> " << photo.finalPath << ": "
                           << planned(photo.outcome) << '\n';
                       if (!isCounted(photo.outcome))
                           return true;
                       ++writes;
                       printEdits(out, pipeline, values, record);
                       if (!photo.reason.isEmpty()) {
                           out << "  would not be changed: " << photo.reason << '\n';
                           return true;
                       }
                       for (const TagChange& change : photo.changes)
                           out << "  would change " << change.key << ": "
                               << TagChange::describe(change.before) << " -> "
                               << TagChange::describe(change.after) << '\n';
                       out << "  would be written as " << photo.finalPath << " ("
                           << photo.changes.size() << " tags changed)\n";
                       return true;
                   });
    out << "dry run: " << writes << " of " << total << " photos would be written, "
        << total - writes << " skipped; nothing was changed\n";
    return writes == total;
}

// The photos of a batch: the paths given and found, less what gives no record.
struct Gathered {
    PathPhotoSource photos;
    QList<LeftOutEntry> leftOut;
    QStringList notPhotos;
    // Every path was a photo that can be named, and every file named was a photo.
    bool allAsked = true;
};

// Collects the photos; false when a path given cannot be read (exit status 2).
bool gatherPhotos(const ApplyOptions& options, const QString& prefix, QTextStream& err,
                  Gathered& g) {
    QStringList problems;
    QSet<QString> namedFiles;
    g.photos = collectPhotoPaths(options.inputs, &problems, &g.leftOut, &namedFiles);
    if (!problems.isEmpty()) {
        for (const QString& p : problems)
            err << prefix << p << '\n';
        return false;
    }
    // Nothing leaves the run without a word: what cannot be named is told and counts as not
    // changed; a file that gives no record is no photo (the photo list never takes it in).
    for (const LeftOutEntry& entry : g.leftOut)
        err << prefix << entry.path << ": left out: " << entry.reason << '\n';
    keepPhotos(g.photos, options.threads, &g.notPhotos);
    // A file found in a folder that is no photo is simply not part of the batch; a file the
    // user named is one that was asked for and not changed.
    bool namedNotPhoto = false;
    for (const QString& path : g.notPhotos) {
        err << prefix << path << ": not a photo, left out of the batch\n";
        namedNotPhoto = namedNotPhoto || namedFiles.contains(path);
    }
    err.flush();
    g.allAsked = g.leftOut.isEmpty() && !namedNotPhoto;
    return true;
}

// Runs the batch, prints its result and names each photo that did not get the edit; gives
// the exit status.
int runBatch(const ApplyOptions& options, const PhotoPipeline& pipeline, const Gathered& g,
             const QString& prefix, QTextStream& out, QTextStream& err) {
    RenameNumbering numbering;
    StopControl stop;
    TerminalProgress progress;
    const bool showProgress = !options.quiet && ::isatty(STDERR_FILENO);
    BatchDriver driver(pipeline, numbering, stop, showProgress ? &progress : nullptr,
                       options.threads);
    // Every run can be undone (`tagmoor-cli undo`).
    driver.setJournaled(true);
    // The problems and the photos not reached wait in files until the summary is out, rather
    // than in the result.
    ProblemLog problemLog;
    ProblemLog notReached;
    driver.setProblemSink([&](const PhotoProblem& problem) { problemLog.add(problem); });
    driver.setNotReachedSink([&](const QString& path) {
        notReached.add({path, QStringLiteral("not reached: the run was stopped")});
    });
    BatchResult result;
    {
        const StopOnInterrupt interruptible(stop);
        result = driver.run(g.photos);
    }
    progress.end();
    err.flush();

    if (options.json)
        writeResultJson(out, result, {problemLog, notReached}, {g.leftOut, g.notPhotos});
    else {
        for (const QString& line : BatchSummary::of(result).lines())
            out << line << '\n';
        for (const PhotoProblem& note : result.notes)
            out << note.path << ": " << note.reason << '\n';
    }
    out.flush();
    // One line for each photo that did not get what was asked, and why; then those that a
    // stop kept from being reached.
    const auto tell = [&](const PhotoProblem& problem) {
        err << prefix << problem.path << ": " << problem.reason << '\n';
    };
    problemLog.forEach(tell);
    notReached.forEach(tell);
    err.flush();
    const bool allChanged = result.savedPhotos() == result.total && problemLog.isEmpty() &&
                            notReached.isEmpty() && g.allAsked;
    return allChanged ? 0 : 1;
}

// Texts with placeholders are filled in per photo; each photo's counter is its place among
// the photos of the run.
void addTemplates(RunValues& values, const PathPhotoSource& photos, bool templatesPerPhoto) {
    if (!values.writeOptions.standardForm ||
        !(templatesPerPhoto || PhotoTemplates::neededFor(values)))
        return;
    QStringList paths;
    paths.reserve(photos.count());
    for (int i = 0; i < photos.count(); ++i)
        paths << photos.pathOf(i);
    PhotoTemplates::addTo(values, paths, templatesPerPhoto);
}

// Where a matched photo lies and the fixes it was worked out from, for the dry run.
QString placeText(const GeotagMatch& place) {
    QString text = QStringLiteral("%1, %2").arg(QString::number(place.latitude, 'f', 6),
                                                QString::number(place.longitude, 'f', 6));
    if (place.elevation)
        text += QStringLiteral(", %1 m").arg(QString::number(*place.elevation, 'f', 1));
    const auto fix = [](const TrackPoint& p) {
        return QStringLiteral("%1:%2 %3").arg(p.file).arg(p.line).arg(p.time.toString(Qt::ISODate));
    };
    text += place.before.line == place.after.line && place.before.file == place.after.file
                ? QStringLiteral(" (on the fix at %1)").arg(fix(place.before))
                : QStringLiteral(" (between %1 and %2)").arg(fix(place.before), fix(place.after));
    return text;
}

// Loads the tracks of --geotag and lays their positions over the photos of the run. Each photo
// that finds no place is named on stderr with the reason; the dry run names each place found.
// False when the tracks give no point at all.
bool addGeotag(ApplyOptions& options, const PathPhotoSource& photos, const QString& prefix,
               QTextStream& out, QTextStream& err, int* leftOut) {
    GpxTracks tracks = loadGpxFiles(options.geotagTracks);
    for (const QString& problem : std::as_const(tracks.problems))
        err << prefix << problem << '\n';
    if (tracks.points.isEmpty()) {
        err << prefix << "the tracks given hold no point with a time\n";
        return false;
    }
    auto geotag = std::make_shared<GeotagValues>(std::move(tracks), options.geotag);
    for (int i = 0; i < photos.count(); ++i) {
        const GeotagMatch place = geotag->match(photos.record(i));
        if (!place.matched()) {
            ++*leftOut;
            err << prefix << photos.pathOf(i) << ": no position: " << place.reason(options.geotag)
                << '\n';
        } else if (options.dryRun) {
            out << "geotag: " << photos.pathOf(i) << ": " << placeText(place) << '\n';
        }
    }
    err.flush();
    options.values.photoValues.push_back(std::move(geotag));
    return true;
}

// Moves each photo's dates to the local time of its place. A photo without a position or a zone
// keeps its dates and is named on stderr with the reason; the dry run names each zone found and
// the shift.
void addLocalTime(ApplyOptions& options, const PathPhotoSource& photos, const QString& prefix,
                  QTextStream& out, QTextStream& err, int* leftOut) {
    auto local = std::make_shared<LocalTimeValues>(options.cameraZoneId);
    for (int i = 0; i < photos.count(); ++i) {
        const CGImageProperties& record = photos.record(i);
        // The place is looked up under what the run's earlier values give the photo (a
        // position from a track).
        RunValues values = options.values;
        values.photoValues.clear();
        for (const auto& earlier : options.values.photoValues)
            earlier->adjust(record, values);
        const LocalTimeValues::Place place = local->placeOf(record, values);
        if (!place.zone) {
            ++*leftOut;
            err << prefix << photos.pathOf(i) << ": dates left as they are: " << place.reason()
                << '\n';
        } else if (options.dryRun) {
            out << "local time: " << photos.pathOf(i) << ": "
                << place.shiftText(options.cameraZoneId) << '\n';
        }
    }
    err.flush();
    options.values.photoValues.push_back(std::move(local));
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
    return runParsedApply(*options, QStringLiteral("apply"), false);
}

int runParsedApply(ApplyOptions options, const QString& command, bool templatesPerPhoto) {
    QTextStream err(stderr);
    QTextStream out(stdout);
    const QString prefix = QStringLiteral("tagmoor-cli %1: ").arg(command);
    Gathered gathered;
    if (!gatherPhotos(options, prefix, err, gathered))
        return 2;
    RunValues& values = options.values;
    int geotagLeftOut = 0;
    if (!options.geotagTracks.isEmpty() &&
        !addGeotag(options, gathered.photos, prefix, out, err, &geotagLeftOut))
        return 2;
    if (options.localTimeFromGps)
        addLocalTime(options, gathered.photos, prefix, out, err, &geotagLeftOut);
    if (values.processingMode == ProcessingMode::keepUnedited &&
        !values.fieldEditedFlags.hasEdits() && values.photoValues.empty() &&
        !values.extras.writesTags())
        err << "No Changes in Metadata found: the photos are only copied or rewritten\n";
    addTemplates(values, gathered.photos, templatesPerPhoto);

    const PhotoPipeline pipeline(values);
    if (options.dryRun) {
        bool allWritten = false;
        if (options.json)
            writePlanJson(out, pipeline, gathered.photos, {gathered.leftOut, gathered.notPhotos},
                          &allWritten);
        else
            allWritten = printPlan(out, pipeline, gathered.photos);
        out.flush();
        return allWritten && gathered.allAsked && geotagLeftOut == 0 ? 0 : 1;
    }
    if (values.destinationFolder && !QDir().mkpath(*values.destinationFolder)) {
        err << prefix << "cannot create the output folder " << *values.destinationFolder << '\n';
        return 2;
    }
    // The run reads each photo where it edits it, once, when it needs its values nowhere else.
    gathered.photos.setValuesReadByTheRun(pipeline.readsValuesWhereItEdits());
    const int status = runBatch(options, pipeline, gathered, prefix, out, err);
    // A photo the tracks gave no place, or whose place gave no zone, did not get what was
    // asked.
    return status == 0 && geotagLeftOut > 0 ? 1 : status;
}

} // namespace tagmoor::cli
