#include "app/shell/AppDelegate.h"
#include "app/shell/MainWindow.h"
#include "app/shell/Translations.h"
#include "app/widgets/DialogPrompt.h"
#include "metadata/MetadataLibrary.h"

#include <QApplication>
#include <QDateTime>
#include <QFileInfo>
#include <QIcon>
#include <QLocale>
#include <QTimer>
#include <QWindow>

#include <cstdio>
#include <cstring>

namespace {

// With TAGMOOR_START_REPORT set, prints the wall-clock time at which a window is first on screen
// while the event loop is free to take its input (the start benchmark reads it); with the value
// "quit" the program then ends. A zero timer runs only when every event before it is handled.
void reportStart(QApplication& app) {
    const QByteArray mode = qgetenv("TAGMOOR_START_REPORT");
    if (mode.isEmpty())
        return;
    auto* poll = new QTimer(&app);
    poll->setInterval(0);
    QObject::connect(poll, &QTimer::timeout, &app, [poll, quit = mode == "quit"] {
        for (const QWidget* widget : QApplication::topLevelWidgets()) {
            if (!widget->isVisible() || !widget->windowHandle() ||
                !widget->windowHandle()->isExposed())
                continue;
            poll->stop();
            std::fprintf(stderr, "tagmoor ready %lld\n",
                         static_cast<long long>(QDateTime::currentMSecsSinceEpoch()));
            if (quit)
                QCoreApplication::exit(0);
            return;
        }
    });
    poll->start();
}

} // namespace

int main(int argc, char** argv) {
    // Answered before any window system is touched, so that they work without a display.
    for (int i = 1; i < argc; ++i) {
        if (std::strcmp(argv[i], "--version") == 0) {
            std::puts("tagmoor " TAGMOOR_VERSION);
            return 0;
        }
        if (std::strcmp(argv[i], "--help") == 0 || std::strcmp(argv[i], "-h") == 0) {
            std::puts("usage: tagmoor [PHOTO...]\n\n"
                      "Opens Tagmoor with the photos given in its working list; a running\n"
                      "Tagmoor takes them instead. See man tagmoor.");
            return 0;
        }
    }
    // Exiv2 is set up before any thread exists.
    tagmoor::initializeMetadataLibrary();

    QApplication app(argc, argv);
    // Before any window exists, so that every text is made in the user's language.
    const tagmoor::Translations translations(QLocale::system().uiLanguages());
    QCoreApplication::setOrganizationName(QStringLiteral("Tagmoor"));
    QCoreApplication::setApplicationName(QStringLiteral("Tagmoor"));
    QCoreApplication::setApplicationVersion(QStringLiteral(TAGMOOR_VERSION));
    QGuiApplication::setDesktopFileName(QStringLiteral("tagmoor"));
    QApplication::setWindowIcon(QIcon(QStringLiteral(":/icons/tagmoor.svg")));
    // The main window ends the program when it is closed (it asks first while a batch runs);
    // the welcome window hands over to it and must not end it.
    QApplication::setQuitOnLastWindowClosed(false);

    QStringList paths;
    for (const QString& argument : app.arguments().mid(1)) {
        if (!argument.startsWith(QLatin1Char('-')))
            paths.append(QFileInfo(argument).absoluteFilePath());
    }

    tagmoor::DialogPrompt prompt;
    tagmoor::AppDelegate delegate(prompt, {});
    // One instance per user: a second launch hands its files to the first and ends, before
    // any window or preset is made or read.
    if (!delegate.shell().claimInstance(paths))
        return 0;
    delegate.start(paths);
    prompt.setWindow(delegate.mainWindow());
    reportStart(app);
    return app.exec();
}
