#include "Commands.h"

#include <QTextStream>

namespace tagmoor::cli {

int runApply(const QStringList&) {
    QTextStream(stderr) << "tagmoor-cli apply: not built yet\n";
    return 2;
}

} // namespace tagmoor::cli
