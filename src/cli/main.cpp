#include "metadata/MetadataLibrary.h"

#include <QCoreApplication>
#include <QTextStream>

int main(int argc, char** argv) {
    tagmoor::initializeMetadataLibrary();
    QCoreApplication app(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("tagmoor-cli"));
    QTextStream(stdout) << "usage: tagmoor-cli read PATH...\n";
    return 2;
}
