#include "CsvCommand.h"

#include "ApplyCommand.h"
#include "PathPhotoSource.h"

#include "exchange/CsvColumns.h"
#include "exchange/CsvExport.h"
#include "exchange/CsvImport.h"
#include "metadata/PropertyLoading.h"
#include "metadata/XmpSidecar.h"
#include "model/FormFieldTable.h"

#include <QDir>
#include <QFile>
#include <QSaveFile>
#include <QSet>
#include <QTextStream>

namespace tagmoor::cli {

namespace {

const char* kExportHelp =
    "usage: tagmoor-cli export --csv [--fields LIST] [-o FILE] PHOTO|FOLDER...\n"
    "\n"
    "Prints the metadata of the photos as a table of comma separated values: a column\n"
    "SourceFile with each photo's absolute path, then one column per field of the form,\n"
    "named as the field's tag is named by the common metadata tools (Artist, Caption-Abstract,\n"
    "By-line, Keywords, DateTimeOriginal, GPSLatitude, ...; the XMP dates and XMP serial\n"
    "number and lens with their group, as XMP-xmp:CreateDate). The columns stand in the\n"
    "form's order; only those that some photo has a value for are written.\n"
    "Values are plain numbers, as the metadata tools print them with -n: codes rather than\n"
    "words (Orientation 6), GPS degrees as signed decimals beside the reference letter,\n"
    "dates as YYYY:MM:DD hh:mm:ss, keywords joined by \", \" (the metadata tools split them\n"
    "again with -sep \", \" when they import the table).\n"
    "\n"
    "  --csv             the table's format (the only one)\n"
    "  --fields LIST     these columns, in this order: comma list of column names or form\n"
    "                    field names (--fields Artist,Keywords,GPSLatitude)\n"
    "  -o, --output FILE write the table to FILE instead of standard output\n"
    "\n"
    "Exit status: 0 every photo was read; 1 a file named was no photo, or a file or\n"
    "folder could not be named (each is named on stderr); 2 bad arguments.\n";

const char* kImportHelp =
    "usage: tagmoor-cli import --csv FILE [--dry-run] [OPTIONS OF APPLY]\n"
    "\n"
    "Writes the values of a table of comma separated values into the photos its SourceFile\n"
    "column names, by the same batch run as apply: --out DIR or --in-place, --overwrite,\n"
    "--mode, --set, --preset, --dry-run, --json, --threads; see 'tagmoor-cli apply --help'.\n"
    "The table is one that export --csv writes, or one the common metadata tools write with\n"
    "-csv, best with -n: of their printed values, GPS positions, hemispheres, fractions and\n"
    "lengths are taken, the words of coded values such as Orientation are not.\n"
    "\n"
    "A non-empty cell is an edit of its field for that row's photo; an empty cell leaves\n"
    "the tag alone; a cell of \"-\" erases the tag. A row whose photo is not there is named\n"
    "and left out; columns that name no field are named once and ignored; a cell its field\n"
    "does not take is named and left out. A SourceFile of \"*\" gives its cells to every\n"
    "row. In the standard form the texts' placeholders ({filename}, {date:yyyy}, {counter},\n"
    "{camera}) are filled in per photo.\n"
    "\n"
    "Exit status: as apply; 1 also when a row or a cell was left out.\n";

// Takes "--NAME VALUE" or "--NAME=VALUE" at `i`; false when args[i] is not that option.
bool takeValue(const QStringList& args, int& i, const QStringList& names, QString* value,
               QString* error) {
    const QString& arg = args[i];
    for (const QString& name : names) {
        if (arg.startsWith(name + QLatin1Char('='))) {
            *value = arg.mid(name.size() + 1);
            return true;
        }
        if (arg == name) {
            if (i + 1 >= args.size())
                *error = QStringLiteral("%1 needs a value").arg(name);
            else
                *value = args[++i];
            return true;
        }
    }
    return false;
}

struct ExportOptions {
    bool csv = false;
    bool help = false;
    std::optional<QList<Field>> fields;
    QString output;
    QStringList inputs;
};

std::optional<QList<Field>> parseFields(const QString& list, QString* error) {
    QList<Field> fields;
    for (const QString& raw : list.split(QLatin1Char(','), Qt::SkipEmptyParts)) {
        std::optional<Field> field = CsvColumns::fieldOf(raw);
        if (!field) {
            if (const FormField* form = findFormField(raw.trimmed()))
                field = form->field;
        }
        if (!field) {
            *error = QStringLiteral("--fields: no field named '%1'").arg(raw.trimmed());
            return std::nullopt;
        }
        fields << *field;
    }
    return fields;
}

bool parseExport(const QStringList& args, ExportOptions& o, QString* error) {
    for (int i = 0; i < args.size(); ++i) {
        QString value;
        const QString& arg = args[i];
        if (arg == QLatin1String("--csv")) {
            o.csv = true;
        } else if (arg == QLatin1String("--help") || arg == QLatin1String("-h")) {
            o.help = true;
        } else if (takeValue(args, i, {QStringLiteral("--fields")}, &value, error)) {
            if (!error->isEmpty() || !(o.fields = parseFields(value, error)))
                return false;
        } else if (takeValue(args, i, {QStringLiteral("-o"), QStringLiteral("--output")}, &value,
                             error)) {
            if (!error->isEmpty())
                return false;
            o.output = value;
        } else if (arg == QLatin1String("--")) {
            o.inputs << args.mid(i + 1);
            break;
        } else if (arg.startsWith(QLatin1Char('-')) && arg.size() > 1) {
            *error = QStringLiteral("unknown option '%1'").arg(arg);
            return false;
        } else {
            o.inputs << arg;
        }
    }
    if (o.help)
        return true;
    if (!o.csv)
        *error = QStringLiteral("say the format: --csv");
    else if (o.inputs.isEmpty())
        *error = QStringLiteral("no photos or folders given");
    return error->isEmpty();
}

bool writeOutput(const QString& path, const QByteArray& bytes, QString* error) {
    if (path.isEmpty()) {
        QFile out;
        if (!out.open(stdout, QIODevice::WriteOnly) || out.write(bytes) != bytes.size()) {
            *error = QStringLiteral("cannot write to standard output");
            return false;
        }
        return true;
    }
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size() || !file.commit()) {
        *error = QStringLiteral("cannot write %1: %2").arg(path, file.errorString());
        return false;
    }
    return true;
}

} // namespace

int runExport(const QStringList& args) {
    QTextStream err(stderr);
    ExportOptions options;
    QString error;
    if (!parseExport(args, options, &error)) {
        err << "tagmoor-cli export: " << error
            << "\nRun 'tagmoor-cli export --help' for the options.\n";
        return 2;
    }
    if (options.help) {
        QTextStream(stdout) << kExportHelp;
        return 0;
    }
    QStringList problems;
    QList<LeftOutEntry> leftOut;
    QSet<QString> namedFiles;
    const PathPhotoSource paths =
        collectPhotoPaths(options.inputs, &problems, &leftOut, &namedFiles);
    for (const QString& problem : problems)
        err << "tagmoor-cli export: " << problem << '\n';
    if (!problems.isEmpty())
        return 2;
    bool allPhotos = leftOut.isEmpty();
    for (const LeftOutEntry& entry : leftOut)
        err << "tagmoor-cli export: " << entry.path << ": left out: " << entry.reason << '\n';
    QList<CsvPhoto> photos;
    // The photos are only read: each folder's sidecars are listed once.
    SidecarListing sidecars;
    const SidecarListing::Scope listed(sidecars);
    for (int i = 0; i < paths.count(); ++i) {
        const QString path = paths.pathOf(i);
        if (auto record = loadImageProperties(QUrl::fromLocalFile(path))) {
            photos << CsvPhoto{path, std::move(*record)};
        } else {
            // As in apply: a file found in a folder that is no photo is simply not one of the
            // photos; a file named that is none was asked for.
            err << "tagmoor-cli export: " << path << ": not a photo, left out of the table\n";
            allPhotos = allPhotos && !namedFiles.contains(path);
        }
    }
    err.flush();
    if (!writeOutput(options.output, CsvExport::table(photos, options.fields).toText(), &error)) {
        err << "tagmoor-cli export: " << error << '\n';
        return 2;
    }
    return allPhotos ? 0 : 1;
}

namespace {

// Names what the table could not give; true when it gave everything.
bool tellProblems(const CsvImport::Problems& problems, QTextStream& err) {
    if (!problems.unknownColumns.isEmpty())
        err << "tagmoor-cli import: columns that name no field, ignored: "
            << problems.unknownColumns.join(QStringLiteral(", ")) << '\n';
    for (const QString& path : problems.missingFiles)
        err << "tagmoor-cli import: " << path << ": no such photo, row left out\n";
    for (const QString& cell : problems.refusedCells)
        err << "tagmoor-cli import: " << cell << ", cell left out\n";
    err.flush();
    return problems.missingFiles.isEmpty() && problems.refusedCells.isEmpty();
}

// The table named by --csv FILE among `args`, which keep the other arguments.
std::optional<CsvImport> readImportTable(QStringList& args, QString* error) {
    QString file;
    for (int i = 0; i < args.size(); ++i) {
        const int start = i;
        if (takeValue(args, i, {QStringLiteral("--csv")}, &file, error)) {
            if (!error->isEmpty())
                return std::nullopt;
            args.remove(start, i - start + 1);
            break;
        }
    }
    if (file.isEmpty()) {
        *error = QStringLiteral("give the table: --csv FILE");
        return std::nullopt;
    }
    QFile in(file);
    if (!in.open(QIODevice::ReadOnly)) {
        *error = QStringLiteral("cannot read %1: %2").arg(file, in.errorString());
        return std::nullopt;
    }
    const auto table = CsvTable::parse(in.readAll(), error);
    if (!table)
        return std::nullopt;
    return CsvImport::fromTable(*table, QDir::currentPath(), error);
}

} // namespace

int runImport(const QStringList& arguments) {
    QTextStream err(stderr);
    QStringList args = arguments;
    if (args.contains(QStringLiteral("--help")) || args.contains(QStringLiteral("-h"))) {
        QTextStream(stdout) << kImportHelp;
        return 0;
    }
    QString error;
    auto import = readImportTable(args, &error);
    std::optional<ApplyOptions> options;
    if (import) {
        options = ApplyOptions::parse(args + QStringList{QStringLiteral("--")} + import->photos(),
                                      &error);
        if (options && options->inputs.size() != import->photos().size()) {
            error = QStringLiteral("import takes no photo paths: the table's rows name them");
            options.reset();
        } else if (options && options->values.processingMode == ProcessingMode::removeGroups) {
            error = QStringLiteral("import writes the table's values: --mode remove writes none");
            options.reset();
        }
    }
    if (!import || (!options && !import->photos().isEmpty())) {
        err << "tagmoor-cli import: " << error
            << "\nRun 'tagmoor-cli import --help' for the options.\n";
        return 2;
    }
    const bool complete = tellProblems(import->problems(), err);
    if (import->photos().isEmpty()) {
        err << "tagmoor-cli import: the table names no photo that is there\n";
        return 1;
    }
    const bool templates = import->holdsTemplates();
    options->values.photoValues.push_back(std::make_shared<CsvImport>(std::move(*import)));
    const int status = runParsedApply(std::move(*options), QStringLiteral("import"), templates);
    return status == 0 && !complete ? 1 : status;
}

} // namespace tagmoor::cli
