// Drives the real application through the states shown in docs/screenshots and saves a
// picture of the screen at each. Runs on a real X server (the screenshot script starts Xvfb).
//   screenshot_tour OUTPUT_DIR PHOTO...
#include "../AppTestSupport.h"
#include "batch/FinalProcessedVC.h"
#include "batch/RenameViewController.h"
#include "batch/ReviewChangesWindow.h"
#include "editor/DateConfigurationPanel.h"
#include "editor/FieldControl.h"
#include "editor/MetadataViewController.h"
#include "model/FormFieldTable.h"
#include "processing/StartProcessChain.h"
#include "shell/MainWindow.h"
#include "shell/PreferencesWindow.h"
#include "widgets/DialogPrompt.h"
#include "workingset/HomeScreen.h"
#include "workingset/PhotoListViews.h"
#include "workingset/ScanController.h"
#include "workingset/TutorialOverlay.h"

#include <QApplication>
#include <QCheckBox>
#include <QElapsedTimer>
#include <QLineEdit>
#include <QMenu>
#include <QPushButton>
#include <QRadioButton>
#include <QScreen>
#include <QScrollArea>
#include <QTimer>
#include <QToolButton>

using namespace tagmoor;

namespace {

void settle(int ms = 400) {
    QElapsedTimer timer;
    timer.start();
    while (timer.elapsed() < ms)
        QCoreApplication::processEvents(QEventLoop::AllEvents, 20);
}

void shoot(const QString& dir, const QString& name, QWidget* window, QWidget* popup = nullptr,
           int settleMs = 400) {
    settle(settleMs);
    QRect frame = window->frameGeometry();
    if (popup)
        frame |= popup->frameGeometry();
    const QPixmap screen = QGuiApplication::primaryScreen()->grabWindow(0);
    screen.copy(frame.adjusted(-1, -1, 1, 1).intersected(screen.rect()))
        .save(dir + QLatin1Char('/') + name);
}

} // namespace

int main(int argc, char** argv) {
    initializeMetadataLibrary();
    QApplication application(argc, argv);
    if (argc < 3) {
        qCritical("usage: screenshot_tour OUTPUT_DIR PHOTO...");
        return 2;
    }
    const QString out = QString::fromLocal8Bit(argv[1]);
    QStringList photos;
    for (int i = 2; i < argc; ++i)
        photos << QString::fromLocal8Bit(argv[i]);

    test::TestApp t;
    QWidget* window = &t.window();
    window->resize(1280, 800);
    window->move(0, 0);
    settle(800);

    t.app->scans().addFromDrop(photos);
    while (!t.scanIdle() || t.set().count() == 0)
        settle(100);
    settle(1500);
    HomeScreen* home = t.window().homeScreen();
    // The tour of the screen comes up after the first scan.
    shoot(out, QStringLiteral("tutorial.png"), window);
    home->tutorial()->clickedHideTutorial();

    shoot(out, QStringLiteral("editor-several.png"), window);
    home->clickedEditorTab(1);
    shoot(out, QStringLiteral("editor-iptc.png"), window);
    home->clickedEditorTab(2);
    shoot(out, QStringLiteral("editor-xmp.png"), window);
    home->clickedEditorTab(0);

    // One photo marked, with an Artist typed: its values and the edited mark.
    home->clickedSelectUnselectAll(false);
    int row = 0;
    for (int i = 0; i < t.set().count(); ++i)
        if (t.set().workingImages().at(i).path().endsWith(QStringLiteral("/Reagan.jpg")))
            row = i;
    home->clickedCheckBox(row, true);
    settle();
    auto* artist = qobject_cast<QLineEdit*>(home->metadataView()->control(0)->input());
    artist->setFocus();
    artist->selectAll();
    QTest::keyClicks(artist, QStringLiteral("Jane Doe"));
    shoot(out, QStringLiteral("editor-one.png"), window);

    // The date panel of that photo, shifting its original time by two hours.
    FieldControl* date = home->metadataView()->control(formpos::DateTimeOriginal);
    home->metadataView()
        ->findChild<QScrollArea*>(QStringLiteral("scrollViewMetadataForm"))
        ->ensureWidgetVisible(date);
    date->dateButton()->click();
    settle();
    DateConfigurationPanel* panel = home->metadataView()->datePanel();
    panel->modeButton(DateMode::incrementTime)->click();
    QLineEdit* hours = panel->numberField(DatePart::incrementHour);
    hours->setFocus();
    hours->selectAll();
    QTest::keyClicks(hours, QStringLiteral("2"));
    QTest::keyClick(hours, Qt::Key_Tab);
    shoot(out, QStringLiteral("date-panel.png"), window, panel);
    panel->carryBox()->click();
    shoot(out, QStringLiteral("date-panel-carry.png"), window, panel);
    panel->carryBox()->click();
    panel->close();

    // The list's menu over the first photo.
    home->clickedSelectUnselectAll(true);
    settle();
    QAbstractItemView* grid = home->collectionView();
    const QRect item = grid->visualRect(grid->model()->index(0, 0));
    QMenu* menu = home->buildContextMenu(0, home);
    menu->popup(grid->viewport()->mapToGlobal(item.center()));
    shoot(out, QStringLiteral("context-menu.png"), window);
    menu->close();
    settle();

    // The rename sheet, adding a text before each name.
    home->clickedRename();
    RenameViewController* rename = home->renamePanel();
    rename->option(RenamePanel::Option::add)->click();
    QTest::keyClicks(rename->txtFieldAddText(), QStringLiteral("Iceland-"));
    shoot(out, QStringLiteral("rename-panel.png"), window);
    rename->clickedClose();
    settle();

    // The rename sheet's names from the capture date.
    home->clickedRename();
    rename->option(RenamePanel::Option::capture)->click();
    QTest::keyClicks(rename->txtFieldCapturePattern(), QStringLiteral("yyyyMMdd-HHmmss"));
    shoot(out, QStringLiteral("rename-capture-date.png"), window);
    rename->clickedClose();
    settle();

    // The plan of a run over ten marked photos, with the Artist typed.
    home->clickedSelectUnselectAll(false);
    for (int i = 0; i < 10 && i < t.set().count(); ++i)
        home->clickedCheckBox(i, true);
    settle();
    artist->setFocus();
    artist->selectAll();
    QTest::keyClicks(artist, QStringLiteral("Jane Doe"));
    home->findChild<QPushButton*>(QStringLiteral("btnReviewChanges"))->click();
    auto* review = home->findChild<ReviewChangesWindow*>();
    while (!review->isReady())
        settle(50);
    shoot(out, QStringLiteral("review-changes.png"), window, review);
    review->close();
    home->clickedSelectUnselectAll(true);
    settle();

    // The preference of the standard form.
    t.app->showPreferences();
    PreferencesWindow* preferences = t.app->preferencesWindow();
    preferences->btnWriteTagsInStandardForm()->setFocus();
    shoot(out, QStringLiteral("preferences-standard-form.png"), preferences);
    preferences->close();
    settle();

    // The questions of Start Process as the application shows them.
    DialogPrompt dialogs(window);
    const auto shootModal = [&](const QString& name, auto&& show) {
        QTimer::singleShot(700, [&] {
            shoot(out, name, window);
            if (QWidget* modal = QApplication::activeModalWidget())
                modal->close();
        });
        show();
        settle(200);
    };
    const std::pair<QString, Alert> alerts[] = {
        {"alert-confirm-edit.png", StartProcessChain::editConfirmation()},
        {"alert-no-changes.png", StartProcessChain::noChangesQuestion()},
        {"alert-confirm-clear.png", StartProcessChain::clearConfirmation()},
        {"alert-confirm-remove.png", StartProcessChain::removeConfirmation()},
        {"alert-no-options.png", StartProcessChain::noOptionsAlert()},
        {"alert-no-photos.png", StartProcessChain::noPhotosAlert()},
        {"alert-outside-home.png", StartProcessChain::outsideHomeAlert()},
        {"alert-access-required.png", StartProcessChain::accessRequiredAlert()},
        {"alert-overwrite.png", StartProcessChain::overwriteQuestion()},
        {"alert-invalid-preset-name.png", StartProcessChain::invalidPresetNameAlert()},
        {"alert-preset-name-taken.png", StartProcessChain::presetNameTakenAlert()},
    };
    for (const auto& [name, alert] : alerts)
        shootModal(name, [&, a = alert] { dialogs.ask(a); });
    shootModal(QStringLiteral("preset-sheet.png"), [&] {
        dialogs.askForText(StartProcessChain::presetSheet(QStringLiteral("Preset 1")));
    });
    OpenPanelRequest folderPanel = StartProcessChain::destinationPanel(true);
    folderPanel.directory = QDir::homePath();
    shootModal(QStringLiteral("folder-panel.png"),
               [&] { dialogs.openPanelWithAccessory(folderPanel); });

    // A run into a folder of the home folder: the sheet while it runs, and its result.
    const QString target = QDir::home().filePath(QStringLiteral("Edited"));
    QDir().mkpath(target);
    t.prompt.answers = {0};
    t.prompt.panelAnswers = {{target}};
    home->clickedStartProcess();
    while (!home->runSheet())
        settle(20);
    settle(60);
    shoot(out, QStringLiteral("run-progress.png"), window, nullptr, 0);
    while (!home->runSheet()->isShowingResult())
        settle(50);
    shoot(out, QStringLiteral("run-result.png"), window);
    return 0;
}
