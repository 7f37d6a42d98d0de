#include "ApplyOptions.h"

#include "DateRuleArgument.h"
#include "ExtraArguments.h"
#include "PresetsCommand.h"
#include "RenameArgument.h"
#include "SidecarArguments.h"
#include "WritingOptions.h"
#include "batch/FormSnapshot.h"
#include "dates/ZoneClock.h"
#include "editor/FieldValueCheck.h"
#include "foundation/WorkerThreads.h"
#include "model/FormFieldTable.h"
#include "rename/RenameRule.h"

#include <QDir>
#include <QFileInfo>

#include <algorithm>

namespace tagmoor::cli {

namespace {

bool applyStrip(CleanOptions& clean, const QString& list, QString* error) {
    for (const QString& raw : list.split(QLatin1Char(','), Qt::SkipEmptyParts)) {
        const QString group = raw.trimmed().toLower();
        // As the check boxes do: EXIF takes its GPS and comment parts along.
        if (group == QLatin1String("exif"))
            clean.cleanExif = clean.cleanGPS = clean.cleanComment = true;
        else if (group == QLatin1String("iptc"))
            clean.cleanIPTC = true;
        else if (group == QLatin1String("xmp"))
            clean.cleanXMP = true;
        else if (group == QLatin1String("gps"))
            clean.cleanGPS = true;
        else if (group == QLatin1String("comment"))
            clean.cleanComment = true;
        else {
            *error = QStringLiteral("--strip: unknown group '%1' (exif, iptc, xmp, gps, comment)")
                         .arg(raw);
            return false;
        }
    }
    return true;
}

} // namespace

namespace {

// The parts of the help text, each from its heading on.
QString usageHelp() {
    return QStringLiteral(
        "usage: tagmoor-cli apply [OPTIONS] PHOTO|FOLDER...\n"
        "\n"
        "Runs one batch over the photos given and the photos found in the folders given\n"
        "(walked with the same rules as the photo list: hidden entries and packages skipped,\n"
        "only the accepted photo types).\n"
        "\n"
        "Where the output goes (one of the two is required):\n"
        "  --out DIR            write edited copies into DIR; the sources are never changed\n"
        "  --in-place           edit each photo where it is (a rename makes a copy beside it)\n"
        "  --overwrite          replace a file that is in the way; without it the photo is\n"
        "                       skipped\n"
        "\n");
}

QString doneHelp() {
    return QStringLiteral(
        "What is done:\n"
        "  --mode keep|clear|remove\n"
        "                       keep: write the edited fields, keep every other tag (default)\n"
        "                       clear: write the edited fields, erase the other tags of the\n"
        "                              field table\n"
        "                       remove: strip the groups given by --strip\n"
        "  --strip LIST         with --mode remove: comma list of exif, iptc, xmp, gps, comment\n"
        "                       (exif includes gps and comment)\n"
        "  --set FIELD=VALUE    give a field a value, by its form name or its key:\n"
        "                       --set Artist=\"Jane Doe\"  --set Iptc.Application2.City=Paris\n"
        "                       An empty VALUE writes the empty text. Numbers as 2.8 or 400;\n"
        "                       popups by their stored code (--set Orientation=6).\n"
        "                       A number must fit its tag: ISO 0 to 65535, no negative\n"
        "                       FNumber or GPSAltitude (below sea level: GPSAltitudeRef=1),\n"
        "                       GPSLatitude -90 to 90, GPSLongitude -180 to 180. Text must\n"
        "                       be valid UTF-8.\n"
        "  --date FIELD=RULE    a rule for a date field: DateTimeOriginal, CreationDate,\n"
        "                       ModifyDate, CreateDateXMP, ModifyDateXMP, CreateDatePhotoshop.\n"
        "                       RULE is one of\n"
        "                         keep                     the tag stays as it is\n"
        "                         empty                    the tag is erased\n"
        "                         select:YYYY-MM-DD HH:MM:SS   this date for every photo\n"
        "                         update:day=D,month=M,year=Y,time=HH:MM:SS\n"
        "                                                  the parts given replace the photo's\n"
        "                                                  own, the others stay\n"
        "                         shift-date:Y:M:D         add signed years, months, days\n"
        "                                                  (e.g. shift-date:0:0:-2)\n"
        "                         shift-time:H:M:S         add signed hours, minutes, seconds\n"
        "                                                  (e.g. shift-time:+1:00:00)\n"
        "                       A shift moves each photo's own date and carries into the\n"
        "                       next part (23:30 + 1 hour is 00:30 of the next day); in the\n"
        "                       described form each part wraps within its own range and\n"
        "                       never carries (Jan 31 + 1 day is Jan 1) unless --carry is\n"
        "                       given. A part of 0 keeps the photo's own. A photo without\n"
        "                       the date keeps it missing, except with select and empty.\n"
        "                       ModifyDate also sets the output file's modification time.\n"
        "  --rename RULE        how output names are made from each photo's name:\n"
        "                         keep | add-before:TEXT | add-after:TEXT\n"
        "                         replace:FIND=REPLACEMENT   (the name is lower-cased)\n"
        "                         index[:OPTS] | counter[:OPTS] | date[:OPTS]\n"
        "                         capture[:PATTERN]  the capture date by a Unicode date\n"
        "                                  pattern (default yyyyMMdd-HHmmss), -1, -2...\n"
        "                                  added on collision\n"
        "                       OPTS, comma separated: before | after, text=T (stands in for\n"
        "                       the name), start=N (first number, default 1), digits=N\n"
        "                       (counter only: least number of digits)\n"
        "                       A new name is one file name: no text may hold '/'.\n"
        "  --preset NAME        apply a saved preset: its fields and date rules, as the\n"
        "                       window applies it; --set and --date given beside it win\n"
        "                       (see 'tagmoor-cli presets')\n"
        "  --geotag TRACK.gpx   give each photo the position of a GPS track (GPX 1.0/1.1;\n"
        "                       repeatable) at its capture time (DateTimeOriginal, else\n"
        "                       CreateDate), linear between two fixes; with altitude where\n"
        "                       the track has it. A photo outside the track or in a gap\n"
        "                       keeps its GPS tags and is named on stderr with the reason.\n"
        "  --geotag-offset [+|-]H:M:S   added to the camera's clock to give the track's\n"
        "                       (a camera 2 minutes slow: +0:02:00)\n"
        "  --geotag-max-gap SECONDS   the longest stretch between two fixes that is bridged\n"
        "                       (default 300)\n"
        "  --camera-zone ZONE   the zone the camera's clock was set to: Europe/Lisbon, UTC,\n"
        "                       +02:00 (default: this computer's zone)\n"
        "  --zone ZONE          the zone of the photos' dates (a name such as Asia/Kathmandu,\n"
        "                       or an offset such as +05:45): the dates are written with\n"
        "                       their offset on that date (summer time included), in\n"
        "                       OffsetTime, OffsetTimeOriginal, OffsetTimeDigitized and in\n"
        "                       the XMP dates\n"
        "  --local-time-from-gps   move each photo's dates from the camera's zone\n"
        "                       (--camera-zone) to the zone of the place in its GPS tags\n"
        "                       (or its --geotag position), found offline, and write them\n"
        "                       with that zone's offset. A photo without a position keeps\n"
        "                       its dates and is named on stderr.\n"
        "\n");
}

QString writingHelp() {
    return QStringLiteral(
        "How tags are written:\n"
        "  --form standard|described\n"
        "                       standard (the default): only the fields given are written,\n"
        "                       each tag keeps its type, no zero stands in for a missing\n"
        "                       value, shifts carry; described: the classic rules\n"
        "                       (--standard is --form standard)\n"
        "  --carry              (described form) date and time shifts carry into days,\n"
        "                       months and years\n"
        "                       (23:37:53 on Dec 31 + 1 hour is 00:37:53 on Jan 1)\n"
        "  IPTC text outside ASCII is always written with the UTF-8 declaration; a photo\n"
        "  that declares another IPTC character set is not changed.\n"
        "\n");
}

QString runningHelp() {
    return QStringLiteral(
        "Running:\n"
        "  --dry-run            print the plan (per photo: output path, write or skip, the\n"
        "                       values to be written and the keys to be erased, and each\n"
        "                       tag that would change, old -> new) and change nothing\n"
        "  --threads N          photos worked on at once (default: the number of cores, at\n"
        "                       most 4); the result is the same as one at a time\n"
        "  --json               print the plan or the result as one JSON object\n"
        "  --quiet              no progress on the terminal\n"
        "  --verbose            also the image libraries' warnings about damaged files\n"
        "\n"
        "A file that gives no record (not a photo) is no photo of the batch and is named on\n"
        "stderr. Every photo that did not get what was asked (skipped, format not writable,\n"
        "disk full, no permission, file changed, a name that is not valid UTF-8) is named on\n"
        "stderr, one line each, with the reason; in the standard form its copy is not kept\n"
        "in the output folder, and only the photos that carry the edit count as saved.\n"
        "Ctrl-C stops the run: the photos in work are finished, the others are named as not\n"
        "reached (in --json: \"notReached\", apart from \"problems\").\n"
        "\n"
        "Exit status: 0 every photo saved with the edit; 1 some photos skipped, not changed\n"
        "or not reached, or a file named as an argument is no photo (for --dry-run: would\n"
        "be skipped); 2 bad arguments, including a value that --set, --date or --preset\n"
        "gives and its field does not take (a number outside its tag's range, a latitude\n"
        "beyond 90 or a longitude beyond 180 degrees, a year outside 0001 to 9999, text\n"
        "that is not valid UTF-8): nothing is written then.\n");
}

} // namespace

QString ApplyOptions::helpText() {
    return usageHelp() + doneHelp() + extraOptionsHelp() + writingHelp() + sidecarHelp() +
           runningHelp();
}

namespace {

bool failed(QString* error, const QString& message) {
    *error = message;
    return false;
}

// What the arguments have said so far, beside the options themselves.
struct ParseState {
    ApplyOptions o;
    bool inPlace = false;
    std::optional<QString> strip;
    std::optional<QString> preset;
    // An option that only --geotag takes (its offset or gap).
    bool geotagOptionGiven = false;
    bool cameraZoneGiven = false;
};

bool takesValue(const QString& arg) {
    return arg == QLatin1String("--set") || arg == QLatin1String("--date") ||
           arg == QLatin1String("--mode") || arg == QLatin1String("--strip") ||
           arg == QLatin1String("--rename") || arg == QLatin1String("--out") ||
           arg == QLatin1String("--preset") || arg == QLatin1String("--threads") ||
           isExtraOption(arg) || isSidecarOption(arg) ||
           arg.startsWith(QLatin1String("--geotag")) || arg == QLatin1String("--camera-zone") ||
           arg == QLatin1String("--zone");
}

// --zone ZONE: the run's dates are written in that zone.
bool applyZone(RunValues& values, const QString& v, QString* error) {
    const auto zone = ZoneClock::zoneIdOf(v);
    if (!zone)
        return failed(error, QStringLiteral("--zone: no time zone named '%1' (a name such as "
                                            "Asia/Kathmandu, UTC, or an offset such as +05:45)")
                                 .arg(v));
    values.extras.datesZone = DatesZone{*zone, {}};
    return true;
}

// --geotag TRACK, --geotag-offset, --geotag-max-gap, --camera-zone.
bool applyGeotagOption(ApplyOptions& o, const QString& arg, const QString& v, QString* error) {
    if (arg == QLatin1String("--geotag")) {
        o.geotagTracks << QFileInfo(v).absoluteFilePath();
        return true;
    }
    if (arg == QLatin1String("--geotag-offset")) {
        const auto offset = parseClockOffset(v);
        if (!offset)
            return failed(error, QStringLiteral("--geotag-offset wants [+|-]H:M:S or seconds, "
                                                "not '%1'")
                                     .arg(v));
        o.geotag.clockOffsetSeconds = *offset;
        return true;
    }
    if (arg == QLatin1String("--geotag-max-gap")) {
        bool ok = false;
        o.geotag.maxGapSeconds = v.toLongLong(&ok);
        if (!ok || o.geotag.maxGapSeconds < 0)
            return failed(error, QStringLiteral("--geotag-max-gap wants seconds, not '%1'").arg(v));
        return true;
    }
    if (arg == QLatin1String("--camera-zone")) {
        const auto zone = parseZone(v);
        const auto zoneId = ZoneClock::zoneIdOf(v);
        if (!zone || !zoneId)
            return failed(error, QStringLiteral("--camera-zone: no time zone named '%1' (a name "
                                                "such as Europe/Lisbon, UTC, or an offset "
                                                "such as +02:00)")
                                     .arg(v));
        o.geotag.cameraZone = *zone;
        o.cameraZoneId = *zoneId;
        return true;
    }
    return failed(error, QStringLiteral("unknown option '%1'").arg(arg));
}

bool applySet(RunValues& values, const QString& v, QString* error) {
    const int eq = int(v.indexOf(QLatin1Char('=')));
    if (eq <= 0)
        return failed(error, QStringLiteral("--set wants FIELD=VALUE, not '%1'").arg(v));
    const FormField* field = findFormField(v.left(eq));
    if (!field)
        return failed(error, QStringLiteral("--set: no field named '%1'").arg(v.left(eq)));
    if (auto problem = FormSnapshot::setText(values.editedProperties, *field, v.mid(eq + 1)))
        return failed(error, QStringLiteral("--set: %1").arg(*problem));
    if (auto refused = refusedFieldValue(*field, values.editedProperties))
        return failed(error, QStringLiteral("--set: %1").arg(*refused));
    values.fieldEditedFlags.set(field->field);
    return true;
}

bool applyDate(RunValues& values, const QString& v, QString* error) {
    const auto rule = DateRuleArgument::parse(v, error);
    if (!rule)
        return failed(error, QStringLiteral("--date: %1").arg(*error));
    values.editorDates.rule(rule->field) = rule->rule;
    values.editorDates.slot(rule->field) = rule->slot;
    values.editorDates.alive(rule->field) = true;
    values.fieldEditedFlags.set(formFieldOf(rule->field));
    return true;
}

bool applyMode(RunValues& values, const QString& v, QString* error) {
    const QString mode = v.toLower();
    if (mode == QLatin1String("keep"))
        values.processingMode = ProcessingMode::keepUnedited;
    else if (mode == QLatin1String("clear"))
        values.processingMode = ProcessingMode::clearUnedited;
    else if (mode == QLatin1String("remove"))
        values.processingMode = ProcessingMode::removeGroups;
    else
        return failed(error, QStringLiteral("--mode is keep, clear or remove, not '%1'").arg(v));
    return true;
}

bool applyRename(RunValues& values, const QString& v, QString* error) {
    const auto rule = parseRenameArgument(v, error);
    if (!rule)
        return failed(error, QStringLiteral("--rename: %1").arg(*error));
    if (const auto refused = refusedRenameText(*rule))
        return failed(error, QStringLiteral("--rename: %1").arg(*refused));
    values.renameSettings = *rule;
    return true;
}

// An option that takes a value, with its value `v`.
bool applyValueOption(ParseState& s, const QString& arg, const QString& v, QString* error) {
    RunValues& values = s.o.values;
    if (arg == QLatin1String("--set"))
        return applySet(values, v, error);
    if (arg == QLatin1String("--date"))
        return applyDate(values, v, error);
    if (arg == QLatin1String("--mode"))
        return applyMode(values, v, error);
    if (arg == QLatin1String("--strip")) {
        s.strip = v;
        return applyStrip(values.clean, v, error);
    }
    if (arg == QLatin1String("--rename"))
        return applyRename(values, v, error);
    if (arg == QLatin1String("--out")) {
        if (v.isEmpty())
            return failed(error, QStringLiteral("--out needs a folder"));
        values.destinationFolder = QDir::cleanPath(QFileInfo(v).absoluteFilePath());
        return true;
    }
    if (arg == QLatin1String("--preset")) {
        s.preset = v;
        return true;
    }
    if (isExtraOption(arg))
        return applyExtraOption(values.extras, arg, v, error);
    if (isSidecarOption(arg))
        return takeSidecarOption(arg, v, values, error);
    if (arg == QLatin1String("--zone"))
        return applyZone(values, v, error);
    if (arg.startsWith(QLatin1String("--geotag")) || arg == QLatin1String("--camera-zone")) {
        s.geotagOptionGiven = s.geotagOptionGiven || arg.startsWith(QLatin1String("--geotag-"));
        s.cameraZoneGiven = s.cameraZoneGiven || arg == QLatin1String("--camera-zone");
        return applyGeotagOption(s.o, arg, v, error);
    }
    // --threads
    bool ok = false;
    s.o.threads = v.toInt(&ok);
    if (!ok || s.o.threads < 1 || s.o.threads > 64)
        return failed(error, QStringLiteral("--threads wants a number from 1 to 64"));
    return true;
}

// An option without a value; false when `arg` is none of them.
bool applyFlag(ParseState& s, const QString& arg) {
    if (arg == QLatin1String("--help") || arg == QLatin1String("-h"))
        s.o.help = true;
    else if (arg == QLatin1String("--in-place"))
        s.inPlace = true;
    else if (arg == QLatin1String("--overwrite"))
        s.o.values.overwriteExisting = true;
    else if (arg == QLatin1String("--dry-run"))
        s.o.dryRun = true;
    else if (arg == QLatin1String("--json"))
        s.o.json = true;
    else if (arg == QLatin1String("--local-time-from-gps"))
        s.o.localTimeFromGps = true;
    else if (arg == QLatin1String("--quiet") || arg == QLatin1String("-q"))
        s.o.quiet = true;
    else
        return takeWritingOption(arg, s.o.values);
    return true;
}

// Takes the arguments one after the other, in their order, so that the first bad one is the
// one told.
bool takeArguments(ParseState& s, const QStringList& args, QString* error) {
    for (int i = 0; i < args.size(); ++i) {
        QString arg = args[i];
        std::optional<QString> inlineValue;
        if (arg.startsWith(QLatin1String("--")) && arg.contains(QLatin1Char('='))) {
            // "--out=DIR" and "--set=Artist=x" carry their value after the first "=".
            const int eq = int(arg.indexOf(QLatin1Char('=')));
            inlineValue = arg.mid(eq + 1);
            arg = arg.left(eq);
        }
        if (takesValue(arg)) {
            if (!inlineValue && i + 1 >= args.size())
                return failed(error, QStringLiteral("%1 needs a value").arg(arg));
            const QString v = inlineValue ? *inlineValue : args[++i];
            if (!applyValueOption(s, arg, v, error))
                return false;
        } else if (applyFlag(s, arg)) {
        } else if (arg == QLatin1String("--")) {
            s.o.inputs << args.mid(i + 1);
            break;
        } else if (arg.startsWith(QLatin1Char('-')) && arg.size() > 1) {
            return failed(error, QStringLiteral("unknown option '%1'").arg(arg));
        } else {
            s.o.inputs << arg;
        }
    }
    return true;
}

// The checks of the whole: a preset's values, where the output goes, the mode's needs.
bool checkOptions(ParseState& s, QString* error) {
    RunValues& values = s.o.values;
    // A reference given with its coordinate signs it, as the form's popup does.
    FormSnapshot::signCoordinates(values.editedProperties);
    if (s.preset) {
        if (!applyStoredPreset(values, *s.preset, error))
            return false;
        // The preset's values pass the checks of --set and --date; those given beside it have
        // passed them already, so what is refused here came from the preset.
        if (auto refused = refusedRunValue(values.editedProperties, values.fieldEditedFlags,
                                           values.editorDates))
            return failed(error, QStringLiteral("--preset %1: %2").arg(*s.preset, *refused));
    }

    if (s.inPlace && values.destinationFolder)
        return failed(error, QStringLiteral("--out and --in-place exclude each other"));
    if (!s.inPlace && !values.destinationFolder)
        return failed(error, QStringLiteral("say where the output goes: --out DIR or --in-place"));
    values.isDestinationPathAsSource = s.inPlace;

    const bool removing = values.processingMode == ProcessingMode::removeGroups;
    if (s.strip && !removing)
        return failed(error, QStringLiteral("--strip goes with --mode remove"));
    if (removing && !values.clean.any())
        return failed(error, QStringLiteral("No options selected for removing metadata: give "
                                            "--strip exif,iptc,xmp,gps,comment"));
    if (removing && values.fieldEditedFlags.hasEdits())
        return failed(error,
                      QStringLiteral("--mode remove writes no field: leave out --set and --date"));
    if (removing && values.extras.writesTags())
        return failed(error, QStringLiteral("--mode remove writes no field: leave out the "
                                            "keyword, rating, label and text options"));
    if (s.geotagOptionGiven && s.o.geotagTracks.isEmpty())
        return failed(error, QStringLiteral("--geotag-offset and --geotag-max-gap go with "
                                            "--geotag TRACK.gpx"));
    if (s.cameraZoneGiven && s.o.geotagTracks.isEmpty() && !s.o.localTimeFromGps)
        return failed(error, QStringLiteral("--camera-zone goes with --geotag TRACK.gpx or "
                                            "--local-time-from-gps"));
    if (s.o.localTimeFromGps && values.extras.datesZone)
        return failed(error, QStringLiteral("--zone and --local-time-from-gps exclude each "
                                            "other: the place gives each photo its zone"));
    if (removing && (!s.o.geotagTracks.isEmpty() || s.o.localTimeFromGps))
        return failed(error, QStringLiteral("--mode remove writes no field: leave out --geotag "
                                            "and --local-time-from-gps"));
    if (s.o.inputs.isEmpty())
        return failed(error, QStringLiteral("no photos or folders given"));
    return true;
}

} // namespace

std::optional<ApplyOptions> ApplyOptions::parse(const QStringList& args, QString* error) {
    ParseState s;
    s.o.threads = workerThreadCount();
    s.o.values.editedProperties = FormSnapshot::empty();
    s.o.values.sidecar = SidecarOptions::frontEndDefault();
    s.o.cameraZoneId = ZoneClock::systemZoneId();
    if (!takeArguments(s, args, error))
        return std::nullopt;
    if (s.o.help)
        return s.o;
    if (!checkOptions(s, error))
        return std::nullopt;
    return s.o;
}

} // namespace tagmoor::cli
