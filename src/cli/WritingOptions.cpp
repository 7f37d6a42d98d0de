#include "WritingOptions.h"

#include "foundation/ValueForm.h"

#include <QTextStream>

namespace tagmoor::cli {

bool takeWritingOption(const QString& arg, RunValues& values) {
    if (arg == QLatin1String("--carry")) {
        values.carryShifts = true;
        return true;
    }
    return false;
}

bool takeFormOption(QStringList& args) {
    for (int i = 0; i < args.size(); ++i) {
        const QString& arg = args[i];
        if (arg == QLatin1String("--"))
            break;
        QString name;
        if (arg == QLatin1String("--standard")) {
            name = QStringLiteral("standard");
            args.removeAt(i--);
        } else if (arg == QLatin1String("--form")) {
            if (i + 1 >= args.size()) {
                QTextStream(stderr) << "tagmoor-cli: --form needs standard or described\n";
                return false;
            }
            name = args[i + 1];
            args.remove(i, 2);
            --i;
        } else if (arg.startsWith(QLatin1String("--form="))) {
            name = arg.mid(7);
            args.removeAt(i--);
        } else {
            continue;
        }
        const std::optional<ValueForm> form = valueFormFromName(name);
        if (!form) {
            QTextStream(stderr) << "tagmoor-cli: --form takes standard or described, not '" << name
                                << "'\n";
            return false;
        }
        setValueForm(*form);
    }
    return true;
}

} // namespace tagmoor::cli
