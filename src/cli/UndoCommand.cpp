// tagmoor-cli history and tagmoor-cli undo: the journal of past runs, and their undo.
#include "Commands.h"

#include "journal/RunJournal.h"

#include <QTextStream>

namespace tagmoor::cli {

namespace {

const char* kHistoryUsage =
    "usage: tagmoor-cli history\n"
    "\n"
    "The batch runs that can be undone, newest first, one a line: the run's id, when it\n"
    "started, where it wrote (\"in place\" or the output folder), how many photos it had and\n"
    "whether it was undone. The journal keeps the last 20 runs.\n";

const char* kUndoUsage =
    "usage: tagmoor-cli undo [RUN]\n"
    "\n"
    "Undoes a batch run (the newest not undone, or the run of that id; see 'history'): the\n"
    "photos it changed in place get their old bytes and file times back, the files it made in\n"
    "an output folder are removed. A file changed since the run is left as it is and named.\n"
    "\n"
    "exit status: 0 undone, 1 some file was left alone (each named on standard error), or no\n"
    "such run, or the run was undone before; 2 bad arguments\n";

bool wantsHelp(const QStringList& args) {
    return args.contains(QLatin1String("--help")) || args.contains(QLatin1String("-h"));
}

} // namespace

int runHistory(const QStringList& args) {
    QTextStream out(stdout);
    if (wantsHelp(args)) {
        out << kHistoryUsage;
        return 0;
    }
    if (!args.isEmpty()) {
        QTextStream(stderr) << "tagmoor-cli history: unexpected argument '" << args.first() << "'\n"
                            << kHistoryUsage;
        return 2;
    }
    for (const JournalRun& run : RunJournal::runs()) {
        out << run.id << '\t' << run.when.toLocalTime().toString(Qt::ISODate) << '\t'
            << (run.inPlace ? QStringLiteral("in place") : run.folder) << '\t' << run.photos
            << (run.photos == 1 ? " photo" : " photos") << '\t'
            << (run.undone ? "undone" : "can be undone") << '\n';
    }
    return 0;
}

int runUndo(const QStringList& args) {
    QTextStream out(stdout);
    QTextStream err(stderr);
    if (wantsHelp(args)) {
        out << kUndoUsage;
        return 0;
    }
    if (args.size() > 1 || (!args.isEmpty() && args.first().startsWith(QLatin1Char('-')))) {
        err << "tagmoor-cli undo: unexpected argument '" << args.last() << "'\n" << kUndoUsage;
        return 2;
    }
    const UndoReport report = RunJournal::undo(args.value(0));
    switch (report.status) {
    case UndoReport::Status::NoSuchRun:
        err << (report.id.isEmpty()
                    ? QStringLiteral("tagmoor-cli undo: no run to undo\n")
                    : QStringLiteral("tagmoor-cli undo: no run '%1'\n").arg(report.id));
        return 1;
    case UndoReport::Status::AlreadyUndone:
        err << "tagmoor-cli undo: run " << report.id << " was undone before\n";
        return 1;
    case UndoReport::Status::Undone:
        break;
    }
    out << "Run " << report.id << " undone: " << report.restored.size()
        << (report.restored.size() == 1 ? " file" : " files") << " restored or removed, "
        << report.leftAlone.size() << " left alone\n";
    for (const LeftAlone& left : report.leftAlone)
        err << left.path << ": left alone: " << left.reason << '\n';
    return report.leftAlone.isEmpty() ? 0 : 1;
}

} // namespace tagmoor::cli
