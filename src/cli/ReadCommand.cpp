#include "Commands.h"

#include <QTextStream>

namespace tagmoor::cli {

int runRead(const QStringList&) {
    QTextStream(stderr) << "tagmoor-cli read: not built yet\n";
    return 2;
}

} // namespace tagmoor::cli
