#pragma once
// Helpers shared by the screen tests: a whole application over temporary settings, answered
// by a ScriptedPrompt, and scratch folders of sample photos.

#include "app/editor/FieldControl.h"
#include "app/editor/MetadataViewController.h"
#include "app/shell/AppDelegate.h"
#include "app/shell/MainWindow.h"
#include "app/workingset/HomeScreen.h"
#include "foundation/ScriptedPrompt.h"
#include "foundation/Settings.h"
#include "metadata/MetadataLibrary.h"
#include "metadata/PropertyLoading.h"
#include "processing/HomeSession.h"
#include "workingset/ScanController.h"
#include "workingset/WorkingSet.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QLineEdit>
#include <QScrollArea>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTest>

#include <memory>

namespace tagmoor::test {

inline QString formatsDir() {
    return QStringLiteral(TAGMOOR_SAMPLES "/formats");
}

// Copies every sample photo into `dir`; the paths of the copies.
inline QStringList copySamples(const QString& dir) {
    QDir().mkpath(dir);
    QStringList copies;
    for (const QFileInfo& fi : QDir(formatsDir()).entryInfoList(QDir::Files, QDir::Name)) {
        const QString target = dir + QLatin1Char('/') + fi.fileName();
        if (QFile::copy(fi.absoluteFilePath(), target)) {
            QFile(target).setPermissions(QFile::ReadOwner | QFile::WriteOwner);
            copies.append(target);
        }
    }
    return copies;
}

// How many of the files give a record: what a scan of them must add.
inline int readableCount(const QStringList& paths) {
    int n = 0;
    for (const QString& path : paths)
        n += loadImageProperties(QUrl::fromLocalFile(path)).has_value() ? 1 : 0;
    return n;
}

// The one object of type T named `name` (any name when empty) under `root`, as a user finds a
// control by what it is called; nothing when there is none yet (a sheet made on first use).
// Two of them fail the test: a lookup never guesses.
template <typename T = QWidget> T* named(const QObject* root, const QString& name = QString()) {
    const QList<T*> found = root->findChildren<T*>(name);
    if (found.size() > 1)
        QTest::qFail(qPrintable(QStringLiteral("%1 objects named \"%2\" of the type asked for")
                                    .arg(found.size())
                                    .arg(name)),
                     __FILE__, __LINE__);
    return found.value(0);
}

// The field rows of an editor that lie wholly in its scroll area's view.
inline int rowsInView(const MetadataViewController* editor) {
    const QScrollArea* scroll = editor->findChild<QScrollArea*>();
    if (!scroll)
        return 0;
    const QRect view = scroll->viewport()->rect();
    int rows = 0;
    for (const FieldControl* control : editor->findChildren<FieldControl*>()) {
        if (!control->isVisibleTo(editor))
            continue;
        const QRect at(control->mapTo(scroll->viewport(), QPoint(0, 0)), control->size());
        rows += view.contains(at) ? 1 : 0;
    }
    return rows;
}

inline void writeText(const QString& path, const QByteArray& bytes) {
    QFile f(path);
    QVERIFY(f.open(QIODevice::WriteOnly));
    f.write(bytes);
}

// One application with its own settings file and autostart folder, its main window up.
struct TestApp {
    QTemporaryDir home;
    ScriptedPrompt prompt;
    std::unique_ptr<AppDelegate> app;

    // The screens' older tests check the described form; tests of the default pass standard.
    explicit TestApp(bool welcomeSeen = true, ValueForm form = ValueForm::described) {
        qputenv("XDG_CONFIG_HOME", QFile::encodeName(home.filePath(QStringLiteral("config"))));
        qputenv("TAGMOOR_JOURNAL_DIR", QFile::encodeName(home.filePath(QStringLiteral("journal"))));
        AppDelegate::Options options;
        options.settingsFile = home.filePath(QStringLiteral("settings.ini"));
        Settings(options.settingsFile).setValueForm(form);
        options.loginExecutable = QStringLiteral("/usr/bin/tagmoor");
        app = std::make_unique<AppDelegate>(prompt, options);
        if (welcomeSeen)
            app->settings().setStartup(true);
        app->start();
        QCoreApplication::processEvents();
    }
    MainWindow& window() { return *app->mainWindow(); }
    WorkingSet& set() { return app->workingSet(); }
    QString dir(const QString& name) {
        const QString path = home.filePath(name);
        QDir().mkpath(path);
        return path;
    }
    bool scanIdle() { return !set().isScanning(); }
};

// Short names of the fields the screen tests type into most.
inline constexpr Field kArtist = Field::Artist;
inline constexpr Field kCopyright = Field::Copyright;
inline constexpr Field kIso = Field::ISO;
inline constexpr Field kFNumber = Field::FNumber;
inline constexpr Field kLatitude = Field::GPSLatitude;
inline constexpr Field kLatitudeRef = Field::GPSLatitudeRef;
inline constexpr Field kLongitude = Field::GPSLongitude;
inline constexpr Field kLongitudeRef = Field::GPSLongitudeRef;

// Replaces a field's text as a user does: select all, delete, type.
inline void retype(QLineEdit* field, const QString& text) {
    field->selectAll();
    QTest::keyClick(field, Qt::Key_Backspace);
    QTest::keyClicks(field, text);
}

// Drops `paths` on the window and waits until the scan has listed them all; the home screen.
inline HomeScreen* loadPhotos(TestApp& t, const QStringList& paths) {
    t.app->scans().addFromDrop(paths);
    [&] { QTRY_VERIFY_WITH_TIMEOUT(t.scanIdle() && t.set().count() == paths.size(), 20000); }();
    QCoreApplication::processEvents();
    return named<HomeScreen>(&t.window(), QStringLiteral("Home"));
}

// Every screen test class is linked into one runner (AppTestMain.cpp) that runs the class named
// by its first argument, so that ctest still names each class. `prepare` runs before the
// application exists, for a class that needs an environment of its own.
using AppTestMaker = std::unique_ptr<QObject> (*)();
int registerAppTest(const char* name, AppTestMaker make, void (*prepare)() = nullptr);

} // namespace tagmoor::test

#define TAGMOOR_APP_TEST_MAIN_PREPARED(TestClass, prepare)                                         \
    [[maybe_unused]] static const int tagmoorRegistered##TestClass =                               \
        tagmoor::test::registerAppTest(                                                            \
            #TestClass,                                                                            \
            []() -> std::unique_ptr<QObject> { return std::make_unique<TestClass>(); }, prepare);
#define TAGMOOR_APP_TEST_MAIN(TestClass) TAGMOOR_APP_TEST_MAIN_PREPARED(TestClass, nullptr)
