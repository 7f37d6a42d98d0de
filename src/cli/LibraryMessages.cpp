#include "LibraryMessages.h"

#include <QLoggingCategory>

namespace tagmoor::cli {

void takeVerboseOption(QStringList& args) {
    bool verbose = false;
    for (int i = 0; i < args.size(); ++i) {
        if (args[i] == QLatin1String("--"))
            break;
        if (args[i] == QLatin1String("--verbose")) {
            verbose = true;
            args.removeAt(i--);
        }
    }
    // Warnings of every category (Exiv2's log, Qt's image readers, the write guard) and
    // below stay quiet by default; critical messages always show.
    if (!verbose)
        QLoggingCategory::setFilterRules(QStringLiteral("*.warning=false\n*.info=false"));
}

} // namespace tagmoor::cli
