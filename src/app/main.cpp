#include "metadata/MetadataLibrary.h"

#include <QApplication>
#include <QMainWindow>

int main(int argc, char** argv) {
    tagmoor::initializeMetadataLibrary();
    QApplication app(argc, argv);
    QCoreApplication::setOrganizationName(QStringLiteral("Tagmoor"));
    QCoreApplication::setApplicationName(QStringLiteral("Tagmoor"));
    QMainWindow window;
    window.setWindowTitle(QStringLiteral("Tagmoor"));
    window.resize(1100, 720);
    window.show();
    return app.exec();
}
