// The welcome window, the preferences, the dialogs of the application prompt, the open
// panel's enable filter, and the thumbnail cache and provider.

#include "AppTestSupport.h"

#include "app/shell/PreferencesWindow.h"
#include "app/shell/WelcomeWindow.h"
#include "app/widgets/DialogPrompt.h"
#include "app/widgets/DimmingCover.h"
#include "app/widgets/FilePanel.h"
#include "app/widgets/PanelEnableFilter.h"
#include "app/workingset/ThumbnailCache.h"
#include "app/workingset/ThumbnailProvider.h"
#include "presets/PresetArchive.h"
#include "presets/PresetDictionary.h"
#include "presets/PresetFile.h"
#include "shell/LoginItem.h"

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QDataStream>
#include <QDialogButtonBox>
#include <QFileSystemModel>
#include <QLabel>
#include <QLineEdit>
#include <QMainWindow>
#include <QMessageBox>
#include <QPushButton>
#include <QSignalSpy>
#include <QTabWidget>
#include <QTimer>

using namespace tagmoor;
using namespace tagmoor::test;

class ShellTest : public QObject {
    Q_OBJECT
private slots:
    void welcomeWindowComesFirstAndStoresTheChoice();
    void windowAppearsBeforeTheLaterStartStepsAndPresetsLoadAfterIt();
    void preferencesStoreEachBoxAsItChanges();
    void messageBoxesKeepTheButtonOrderAndReportTheAnswer();
    void panelEnablesFoldersAndListedTypesOnly();
    void panelTakesFilesAndFoldersTogetherOverACover();
    void cacheStaysWithinItsBytesAndDropsChangedFiles();
    void providerDecodesOnRequestAndDropsWorkWhenScrolling();
    void damagedFilesAreToldOnceNamingWhereTheyAreKept();
};

void ShellTest::welcomeWindowComesFirstAndStoresTheChoice() {
    TestApp t(false);
    WelcomeWindow* welcome = t.app->welcomeWindow();
    QVERIFY(welcome);
    QVERIFY(welcome->isVisible());
    QVERIFY(!t.window().isVisible());

    // Files handed over while the welcome window is up are dropped without a word.
    t.app->openFiles({formatsDir() + QStringLiteral("/Reagan.jpg")});
    QTest::qWait(50);
    QVERIFY(t.set().pendingOpenURLs().isEmpty());

    named<QCheckBox>(welcome, QStringLiteral("btnLaunchAutomatically"))->setChecked(true);
    QTest::mouseClick(named<QPushButton>(welcome, QStringLiteral("btnGetStarted")), Qt::LeftButton);
    QTRY_VERIFY(t.window().isVisible());
    QCOMPARE(t.app->settings().startup(), std::optional<bool>(true));
    QCOMPARE(t.app->settings().loginStartStatus(), std::optional<bool>(true));
    QVERIFY(QFileInfo::exists(LoginItem::entryPath()));
    QVERIFY(LoginItem::entryPath().startsWith(t.home.path()));

    // By default the add screen is the one welcome, and nothing is asked before any work.
    TestApp plain(false, ValueForm::standard);
    QVERIFY(!plain.app->welcomeWindow());
    QTRY_VERIFY(plain.window().isVisible());
    QVERIFY(!QFileInfo::exists(LoginItem::entryPath()) ||
            !LoginItem::entryPath().startsWith(plain.home.path()));
}

namespace {
// Calls back when a main window is shown.
class ShowWatch : public QObject {
public:
    explicit ShowWatch(std::function<void()> onShow) : m_onShow(std::move(onShow)) {}
    bool eventFilter(QObject* watched, QEvent* event) override {
        if (event->type() == QEvent::Show && qobject_cast<QMainWindow*>(watched))
            m_onShow();
        return false;
    }

private:
    std::function<void()> m_onShow;
};
} // namespace

void ShellTest::windowAppearsBeforeTheLaterStartStepsAndPresetsLoadAfterIt() {
    QTemporaryDir home;
    qputenv("XDG_CONFIG_HOME", QFile::encodeName(home.filePath(QStringLiteral("config"))));
    AppDelegate::Options options;
    options.settingsFile = home.filePath(QStringLiteral("settings.ini"));
    options.loginExecutable = QStringLiteral("/usr/bin/tagmoor");
    Settings(options.settingsFile).setStartup(true);
    QVERIFY(PresetFile::write(PresetFile::pathFor(options.settingsFile),
                              encodePresetArchive({makeNewPreset(QStringLiteral("Kept"), 0)})));

    ScriptedPrompt prompt;
    AppDelegate app(prompt, options);
    QVERIFY2(!app.mainWindow(), "no window before the start");
    QCOMPARE(app.presets().size(), 0);

    // What the sequence has done when the window appears: the first steps, not the version
    // steps after it, and not the presets, which load once the launch finishes.
    int shown = 0;
    bool firstRunStored = true;
    bool launchFinished = true;
    qsizetype presetsAtShow = -1;
    ShowWatch watch([&] {
        ++shown;
        firstRunStored = app.settings().firstRun().has_value();
        launchFinished = app.launchState().launchFinished;
        presetsAtShow = app.presets().size();
    });
    qApp->installEventFilter(&watch);
    app.start();
    qApp->removeEventFilter(&watch);
    QCOMPARE(shown, 1);
    QVERIFY(!firstRunStored);
    QVERIFY(!launchFinished);
    QCOMPARE(presetsAtShow, 0);
    QTRY_VERIFY(app.launchState().launchFinished);
    QCOMPARE(app.presets().size(), 1);
    QVERIFY(app.settings().firstRun().has_value());
}

void ShellTest::preferencesStoreEachBoxAsItChanges() {
    TestApp t;
    t.app->settings().setLoginStartStatus(true);
    t.app->showPreferences();
    PreferencesWindow* prefs = t.app->preferencesWindow();
    QVERIFY(prefs && prefs->isVisible());
    QCOMPARE(named<QTabWidget>(prefs)->count(), 1);
    QCOMPARE(named<QTabWidget>(prefs)->tabText(0), QStringLiteral("General"));
    QCOMPARE(named<QComboBox>(prefs, QStringLiteral("comboBoxLanguage"))->count(), 1);
    QCOMPARE(named<QComboBox>(prefs, QStringLiteral("comboBoxLanguage"))->currentText(),
             QStringLiteral("English"));
    // Opening the window applies the stored login choice to the autostart entry.
    QVERIFY(named<QCheckBox>(prefs, QStringLiteral("btnLaunchAutomatically"))->isChecked());
    QVERIFY(QFileInfo::exists(LoginItem::entryPath()));

    QTest::mouseClick(named<QCheckBox>(prefs, QStringLiteral("btnLaunchAutomatically")),
                      Qt::LeftButton);
    QCOMPARE(t.app->settings().loginStartStatus(), std::optional<bool>(false));
    QVERIFY(!QFileInfo::exists(LoginItem::entryPath()));
    prefs->clickedAutomatically(false); // twice off: nothing to remove, nothing raised
    QVERIFY(!QFileInfo::exists(LoginItem::entryPath()));

    QTest::mouseClick(named<QCheckBox>(prefs, QStringLiteral("btnOverwriteIfAFileWithASameName")),
                      Qt::LeftButton);
    QCOMPARE(t.app->settings().isOverwriteIfAFileWithASameName(), std::optional<bool>(true));
    QVERIFY(t.app->launchState().isOverwriteIfAFileWithASameName);

    const bool presetBefore =
        named<QCheckBox>(prefs, QStringLiteral("btnShowPresetSavingSettingInHome"))->isChecked();
    QTest::mouseClick(named<QCheckBox>(prefs, QStringLiteral("btnShowPresetSavingSettingInHome")),
                      Qt::LeftButton);
    QCOMPARE(t.app->settings().isPresetSavingSettingInHome(), std::optional<bool>(!presetBefore));

    // The update box changes nothing that is stored.
    const auto updateBefore = t.app->settings().autoCheckForUpdate();
    QTest::mouseClick(named<QCheckBox>(prefs, QStringLiteral("btnAutoUpdate")), Qt::LeftButton);
    QCOMPARE(t.app->settings().autoCheckForUpdate(), updateBefore);

    // The controls that change nothing in this version take no clicks and say why.
    for (const char* name : {"btnAutoUpdate", "comboBoxLanguage"}) {
        QWidget* control = named<QWidget>(prefs, QString::fromLatin1(name));
        QVERIFY2(!control->isEnabled(), name);
        QVERIFY2(control->toolTip().contains(QStringLiteral("this version")), name);
    }
    for (const char* name : {"btnLaunchAutomatically", "btnOverwriteIfAFileWithASameName",
                             "btnShowPresetSavingSettingInHome", "btnWriteTagsInStandardForm",
                             "btnLoadMapTiles", "btnClearMapCache"})
        QVERIFY2(named<QWidget>(prefs, QString::fromLatin1(name))->isEnabled(), name);

    // Close, and Escape, close the window.
    auto* buttons = named<QDialogButtonBox>(prefs, QStringLiteral("btnClose"));
    QVERIFY(buttons);
    QAbstractButton* close = buttons->button(QDialogButtonBox::Close);
    QVERIFY(close && close->isVisible());
    QTest::mouseClick(close, Qt::LeftButton);
    QVERIFY(!prefs->isVisible());
    t.app->showPreferences();
    QVERIFY(prefs->isVisible());
    QVERIFY(QTest::qWaitForWindowActive(prefs));
    QTest::keyClick(prefs, Qt::Key_Escape);
    QVERIFY(!prefs->isVisible());
}

void ShellTest::messageBoxesKeepTheButtonOrderAndReportTheAnswer() {
    QWidget window;
    window.resize(400, 300);
    window.show();
    DialogPrompt prompt(&window);

    QStringList order;
    QString seenTitle;
    QMessageBox::Icon seenIcon = QMessageBox::NoIcon;
    auto answerWith = [&](const QString& button) {
        QTimer::singleShot(0, [&, button] {
            auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
            QVERIFY(box);
            seenTitle = box->windowTitle();
            seenIcon = box->icon();
            QList<QAbstractButton*> buttons = box->buttons();
            std::sort(buttons.begin(), buttons.end(), [](auto* a, auto* b) {
                return a->mapToGlobal(QPoint()).x() < b->mapToGlobal(QPoint()).x();
            });
            order.clear();
            for (auto* b : buttons)
                order.append(b->text());
            for (auto* b : buttons) {
                if (b->text() == button)
                    b->click();
            }
        });
    };

    answerWith(QStringLiteral("NO"));
    QVERIFY(!prompt.askYesNo(QStringLiteral("Remove all images?"),
                             QStringLiteral("Are you sure you want to remove all images?")));
    QCOMPARE(order, (QStringList{QStringLiteral("YES"), QStringLiteral("NO")}));
    QCOMPARE(seenTitle, QStringLiteral("Remove all images?"));
    // Every alert has the style of a warning, a question too.
    QCOMPARE(seenIcon, QMessageBox::Warning);

    answerWith(QStringLiteral("YES"));
    QCOMPARE(prompt.ask(Alert::yesNo(QStringLiteral("Stop adding images?"), QStringLiteral("?"))),
             0);

    answerWith(QStringLiteral("OK"));
    QCOMPARE(
        prompt.ask(Alert::ok(QStringLiteral("Some images cannot be added"),
                             QStringLiteral("The selected images are already added to the list"))),
        0);
    QCOMPARE(order, QStringList{QStringLiteral("OK")});
    QCOMPARE(seenIcon, QMessageBox::Warning);

    // The alert with a name field has the same warning icon beside its texts.
    bool iconShown = false;
    QTimer::singleShot(0, [&] {
        auto* box = qobject_cast<QDialog*>(QApplication::activeModalWidget());
        QVERIFY(box && box->objectName() == QStringLiteral("textQuestion"));
        const auto* icon = box->findChild<QLabel*>(QStringLiteral("alertIcon"));
        iconShown = icon && icon->isVisible() && !icon->pixmap().isNull();
        named<QPushButton>(box)->click(); // the one button
    });
    prompt.askForText(
        {Alert::ok(QStringLiteral("Save selected settings as a preset"), QStringLiteral("?")),
         QStringLiteral("Preset"),
         {}});
    QVERIFY(iconShown);
}

void ShellTest::panelEnablesFoldersAndListedTypesOnly() {
    QTemporaryDir dir;
    const QString folder = dir.filePath(QStringLiteral("album.photoslibrary"));
    QDir().mkpath(folder);
    writeText(dir.filePath(QStringLiteral("a.JPG")), "x");
    writeText(dir.filePath(QStringLiteral("b.txt")), "x");
    writeText(dir.filePath(QStringLiteral("c.cr2")), "x");
    const QStringList images{QStringLiteral("jpg"), QStringLiteral("cr2")};

    auto enabled = [&](const QString& name, const QStringList& exts, bool files) {
        return PanelEnableFilter::shouldEnable(QFileInfo(dir.filePath(name)), exts, files);
    };
    QVERIFY(enabled(QStringLiteral("a.JPG"), images, true)); // extension compared lower-cased
    QVERIFY(enabled(QStringLiteral("c.cr2"), images, true));
    QVERIFY(!enabled(QStringLiteral("b.txt"), images, true));
    QVERIFY(enabled(QStringLiteral("album.photoslibrary"), images, true));
    QVERIFY(enabled(QStringLiteral("b.txt"), {}, true));
    // A folder chooser greys every file and keeps every folder.
    QVERIFY(!enabled(QStringLiteral("a.JPG"), images, false));
    QVERIFY(enabled(QStringLiteral("album.photoslibrary"), {}, false));

    // A panel limited to one folder greys its siblings, shows its message, and does not take
    // another folder typed into it.
    QDir().mkpath(dir.filePath(QStringLiteral("home")));
    QDir().mkpath(dir.filePath(QStringLiteral("other")));
    OpenPanelRequest request;
    request.canChooseFiles = false;
    request.directory = dir.path();
    request.message = QStringLiteral("Please grant access to your Home Folder to continue");
    request.onlyEnabledFolder = dir.filePath(QStringLiteral("home"));
    FilePanel panel(nullptr, request);
    QCOMPARE(panel.findChild<QLabel*>(QStringLiteral("panelMessage"))->text(), request.message);
    auto* filter = qobject_cast<PanelEnableFilter*>(panel.proxyModel());
    QVERIFY(filter);
    auto* files = qobject_cast<QFileSystemModel*>(filter->sourceModel());
    QVERIFY(files);
    const auto flagsOf = [&](const QString& name) {
        return filter->flags(filter->mapFromSource(files->index(dir.filePath(name))));
    };
    QTRY_VERIFY(files->index(dir.filePath(QStringLiteral("other"))).isValid());
    QVERIFY(flagsOf(QStringLiteral("home")) & Qt::ItemIsEnabled);
    QVERIFY(!(flagsOf(QStringLiteral("other")) & Qt::ItemIsEnabled));
    panel.selectFile(dir.filePath(QStringLiteral("other")));
    panel.accept();
    QVERIFY(panel.chosenPaths().isEmpty());
}

void ShellTest::panelTakesFilesAndFoldersTogetherOverACover() {
    QTemporaryDir dir;
    QDir().mkpath(dir.filePath(QStringLiteral("Holidays")));
    writeText(dir.filePath(QStringLiteral("a.jpg")), "x");

    QMainWindow window;
    window.setCentralWidget(new QWidget);
    window.resize(600, 400);
    window.show();
    DialogPrompt prompt(&window);
    OpenPanelRequest request;
    request.prompt = QStringLiteral("Add Photos");
    request.allowedExtensions = {QStringLiteral("jpg")};
    request.directory = dir.path();

    bool coverShown = false;
    QString acceptText;
    auto choose = [&](const QString& typed) {
        QTimer::singleShot(0, [&, typed] {
            auto* panel = qobject_cast<FilePanel*>(QApplication::activeModalWidget());
            QVERIFY(panel);
            const auto covers = window.findChildren<DimmingCover*>();
            coverShown = covers.size() == 1 && covers[0]->isVisible();
            acceptText = panel->labelText(QFileDialog::Accept);
            if (typed.isEmpty()) {
                panel->reject();
                return;
            }
            panel->findChild<QLineEdit*>(QStringLiteral("fileNameEdit"))->setText(typed);
            panel->accept();
        });
    };

    choose(QStringLiteral("\"Holidays\" \"a.jpg\""));
    QStringList chosen = prompt.openPanel(request);
    std::sort(chosen.begin(), chosen.end());
    QCOMPARE(chosen, (QStringList{dir.filePath(QStringLiteral("Holidays")),
                                  dir.filePath(QStringLiteral("a.jpg"))}));
    QVERIFY(coverShown);
    QCOMPARE(acceptText, QStringLiteral("Add Photos"));
    QVERIFY(window.findChildren<DimmingCover*>().isEmpty());

    choose(QString());
    QVERIFY(prompt.openPanel(request).isEmpty());
    QVERIFY(window.findChildren<DimmingCover*>().isEmpty());
}

void ShellTest::cacheStaysWithinItsBytesAndDropsChangedFiles() {
    ThumbnailCache cache(1024 * 1024);
    const QDateTime when = QDateTime::currentDateTimeUtc();
    QImage tile(120, 120, QImage::Format_ARGB32); // 57,600 bytes
    tile.fill(Qt::red);
    for (int i = 0; i < 60; ++i)
        cache.insert(QStringLiteral("/p/%1.jpg").arg(i), 120, {tile, {800, 800}, 100, when});
    QVERIFY(cache.usedBytes() <= cache.maxBytes());
    QVERIFY(!cache.find(QStringLiteral("/p/0.jpg"), 120)); // the oldest went first
    QVERIFY(cache.find(QStringLiteral("/p/59.jpg"), 120));
    QVERIFY(!cache.find(QStringLiteral("/p/59.jpg"), 30)); // sizes are kept apart

    cache.insert(QStringLiteral("/p/59.jpg"), 30, {tile.scaled(30, 30), {800, 800}, 100, when});
    QVERIFY(!cache.dropIfChanged(QStringLiteral("/p/59.jpg"), 100, when));
    QVERIFY(cache.find(QStringLiteral("/p/59.jpg"), 120));
    QVERIFY(cache.dropIfChanged(QStringLiteral("/p/59.jpg"), 101, when));
    QVERIFY(!cache.find(QStringLiteral("/p/59.jpg"), 120));
    QVERIFY(!cache.find(QStringLiteral("/p/59.jpg"), 30));
    QVERIFY(cache.find(QStringLiteral("/p/58.jpg"), 120));
}

void ShellTest::providerDecodesOnRequestAndDropsWorkWhenScrolling() {
    QTemporaryDir dir;
    QStringList paths;
    for (int i = 0; i < 12; ++i) {
        const QString path = dir.filePath(QStringLiteral("p%1.png").arg(i));
        QImage image(400, 300, QImage::Format_RGB32);
        image.fill(QColor::fromHsv(i * 30, 200, 200));
        QVERIFY(image.save(path));
        paths.append(path);
    }
    ThumbnailProvider provider;
    QSignalSpy ready(&provider, &ThumbnailProvider::thumbnailReady);

    QVERIFY(provider.thumbnail(paths[0], 120).isNull()); // a miss is queued
    QTRY_VERIFY(!provider.thumbnail(paths[0], 120).isNull());
    QCOMPARE(provider.thumbnail(paths[0], 120).size(), QSize(120, 90));
    QCOMPARE(provider.originalSize(paths[0]), QSize(400, 300));

    // While scrolling, requests wait for the pause and earlier ones are dropped.
    provider.viewScrolled();
    for (int i = 1; i < 12; ++i)
        provider.thumbnail(paths[i], 120);
    provider.viewScrolled();
    QCOMPARE(provider.pendingCount(), 0);
    provider.thumbnail(paths[11], 120);
    QCOMPARE(provider.runningCount(), 0);
    QTRY_VERIFY(!provider.thumbnail(paths[11], 120).isNull());
    QCOMPARE(provider.runningCount(), 0);
    for (int i = 1; i < 11; ++i)
        QVERIFY(!provider.cache().find(paths[i], 120));

    // A file changed on disk is decoded again.
    QImage changed(200, 200, QImage::Format_RGB32);
    changed.fill(Qt::black);
    QVERIFY(changed.save(paths[0]));
    {
        QFile file(paths[0]);
        QVERIFY(file.open(QIODevice::ReadWrite));
        QVERIFY(file.setFileTime(QDateTime::currentDateTime().addSecs(-3600),
                                 QFileDevice::FileModificationTime));
    }
    provider.revalidate();
    QTRY_VERIFY(!provider.cache().find(paths[0], 120));
    QTRY_COMPARE(provider.thumbnail(paths[0], 120).size(), QSize(120, 120));
}

// A damaged settings file and a presets file with one good preset among bad ones: the first
// start tells each once, naming the file kept aside; the next start has nothing to tell.
void ShellTest::damagedFilesAreToldOnceNamingWhereTheyAreKept() {
    QTemporaryDir home;
    qputenv("XDG_CONFIG_HOME", QFile::encodeName(home.filePath(QStringLiteral("config"))));
    AppDelegate::Options options;
    options.settingsFile = home.filePath(QStringLiteral("settings.ini"));
    options.loginExecutable = QStringLiteral("/usr/bin/tagmoor");
    writeText(options.settingsFile, "[General]\nStartupOTM=true\nnot a setting at all\n");
    QVariantList elements{QStringLiteral("no preset"),
                          presetToDictionary(makeNewPreset(QStringLiteral("Kept"), 0))};
    QByteArray block;
    {
        QDataStream out(&block, QIODevice::WriteOnly);
        out.setVersion(QDataStream::Qt_6_4);
        out << elements;
    }
    QVERIFY(PresetFile::write(PresetFile::pathFor(options.settingsFile), block));

    ScriptedPrompt prompt;
    {
        AppDelegate app(prompt, options);
        app.settings().setStartup(true);
        app.start();
        QTRY_COMPARE(prompt.alerts.size(), 2);
        const QString settingsKept = app.settings().keptAsideAs();
        const QString presetsKept = app.presets().lastLoad().keptAs;
        QVERIFY(!settingsKept.isEmpty() && QFileInfo::exists(settingsKept));
        QVERIFY(!presetsKept.isEmpty() && QFileInfo::exists(presetsKept));
        QCOMPARE(prompt.alerts[0].title, QStringLiteral("The settings could not be read"));
        QVERIFY2(prompt.alerts[0].text.contains(settingsKept), qPrintable(prompt.alerts[0].text));
        QCOMPARE(prompt.alerts[1].title, QStringLiteral("Some presets were left out"));
        QVERIFY2(prompt.alerts[1].text.contains(presetsKept), qPrintable(prompt.alerts[1].text));
        QVERIFY2(prompt.alerts[1].text.contains(QStringLiteral("not a preset")),
                 qPrintable(prompt.alerts[1].text));
        QCOMPARE(app.presets().size(), 1);
        // More writes, nothing more to tell.
        app.settings().setIsPopUp(true);
        QTest::qWait(50);
        QCOMPARE(prompt.alerts.size(), 2);
    }
    prompt.alerts.clear();
    AppDelegate again(prompt, options);
    again.start();
    QTest::qWait(100);
    QVERIFY(prompt.alerts.isEmpty());
    QCOMPARE(again.presets().size(), 1);
}

TAGMOOR_APP_TEST_MAIN(ShellTest)
#include "ShellTest.moc"
