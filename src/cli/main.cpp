#include "Commands.h"
#include "CsvCommand.h"
#include "LibraryMessages.h"
#include "WritingOptions.h"
#include "dates/ZoneClock.h"
#include "metadata/MetadataLibrary.h"

#include <QCoreApplication>
#include <QTextStream>

namespace {
const char* kUsage = "usage: tagmoor-cli COMMAND [OPTIONS] PATH...\n"
                     "       tagmoor-cli --version\n"
                     "\n"
                     "commands:\n"
                     "  read PATH...     print each photo's record as one JSON object per line\n"
                     "  apply [OPTIONS] PATH...\n"
                     "                   run a batch over photos and folders\n"
                     "  presets list|show|save|export|import|remove ...\n"
                     "                   the application's saved presets\n"
                     "  export --csv [--fields LIST] [-o FILE] PATH...\n"
                     "                   the photos' metadata as a table, a row per photo\n"
                     "  import --csv FILE [OPTIONS]\n"
                     "                   write a table's rows into the photos they name\n"
                     "  history          the batch runs that can be undone, newest first\n"
                     "  undo [RUN]       undo the newest run not undone, or the run RUN\n"
                     "\n"
                     "options of every command:\n"
                     "  --help           the options of the command\n"
                     "  --verbose        also the image libraries' warnings about damaged files\n"
                     "  --form standard|described\n"
                     "                   standard (the default): values are read and written as\n"
                     "                   they are, and only what is edited is written;\n"
                     "                   described: the classic rules (absent numbers written\n"
                     "                   as zero, GPS seconds whole, one keyword, wrapping\n"
                     "                   date shifts); --standard is --form standard\n"
                     "\n"
                     "Run 'tagmoor-cli COMMAND --help' for the options of a command and\n"
                     "'man tagmoor-cli' for the exit statuses.\n";
}

int main(int argc, char** argv) {
    // A command runs for seconds: the system's zone is looked up once, not at every date.
    tagmoor::ZoneClock::nameSystemZoneInEnvironment();
    tagmoor::initializeMetadataLibrary();
    QCoreApplication app(argc, argv);
    QCoreApplication::setOrganizationName(QStringLiteral("Tagmoor"));
    QCoreApplication::setApplicationName(QStringLiteral("Tagmoor"));

    QStringList args = QCoreApplication::arguments().mid(1);
    tagmoor::cli::takeVerboseOption(args);
    if (!tagmoor::cli::takeFormOption(args))
        return 2;
    const QString command = args.isEmpty() ? QString() : args.takeFirst();
    if (command == QLatin1String("read"))
        return tagmoor::cli::runRead(args);
    if (command == QLatin1String("apply"))
        return tagmoor::cli::runApply(args);
    if (command == QLatin1String("presets"))
        return tagmoor::cli::runPresets(args);
    if (command == QLatin1String("export"))
        return tagmoor::cli::runExport(args);
    if (command == QLatin1String("import"))
        return tagmoor::cli::runImport(args);
    if (command == QLatin1String("history"))
        return tagmoor::cli::runHistory(args);
    if (command == QLatin1String("undo"))
        return tagmoor::cli::runUndo(args);
    if (command == QLatin1String("--version")) {
        QTextStream(stdout) << "tagmoor-cli " TAGMOOR_VERSION "\n";
        return 0;
    }
    if (command == QLatin1String("--help") || command == QLatin1String("-h")) {
        QTextStream(stdout) << kUsage;
        return 0;
    }
    QTextStream(stderr)
        << (command.isEmpty() ? QStringLiteral("tagmoor-cli: no command\n")
                              : QStringLiteral("tagmoor-cli: unknown command '%1'\n").arg(command))
        << kUsage;
    return 2;
}
