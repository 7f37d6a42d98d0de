#include "processing/StartProcessChain.h"
#include "TestSupport.h"
#include "editor/EditorState.h"
#include "editor/MetadataForm.h"
#include "foundation/ScriptedPrompt.h"
#include "foundation/Settings.h"
#include "metadata/PropertyLoading.h"
#include "processing/FolderAccess.h"
#include "processing/ProcessingOptions.h"
#include "rename/RenameNumbering.h"
#include "workingset/WorkingSet.h"

#include <QSignalSpy>
#include <QTemporaryDir>

#include <string>

namespace tagmoor {
namespace {

using Box = ProcessingOptions::Box;

struct ChainFixture {
    QTemporaryDir home;
    WorkingSet set;
    EditorState state;
    ScriptedPrompt prompt;
    MetadataForm form{set, state, prompt, true};
    ProcessingOptions options;
    FolderAccess folders{home.path()};
    Settings settings{home.filePath("settings.ini")};
    RenameNumbering numbering;
    Rename rename;
    StartProcessChain chain{
        {set, form, state, options, folders, settings, prompt, numbering, rename}};
    QString photos = home.filePath("photos");
    QString out = home.filePath("out");

    ChainFixture() {
        QDir().mkpath(photos);
        QDir().mkpath(out);
        settings.setIsPresetSavingSettingInHome(false); // no preset sheet unless a test asks
        for (const char* name : {"Reagan.jpg", "et-GPS.jpg"}) {
            const QString copy =
                test::copySample(test::formatsDir() + "/" + QString::fromLatin1(name), photos);
            set.appendImages({*loadImageProperties(QUrl::fromLocalFile(copy))});
        }
        form.updateMetadataInfo(0, true, {0, 1});
    }

    // Runs the chain to its end; the run values when it reached the run screen.
    std::optional<RunValues> run() {
        QSignalSpy ready(&chain, &StartProcessChain::runReady);
        QSignalSpy cancelled(&chain, &StartProcessChain::cancelled);
        chain.clickedStartProcess();
        for (int i = 0; i < 50 && ready.isEmpty() && cancelled.isEmpty() && chain.isRunning(); ++i)
            ready.wait(100);
        if (ready.isEmpty())
            return std::nullopt;
        return ready.first().first().value<RunValues>();
    }

    // The chain's cover and questions in order: "+" cover on, "-" cover off, "a" a question,
    // "x" the chain ended without a run, "!" the run is ready.
    std::string trace;
    void startTrace() {
        trace.clear();
        QObject::connect(&chain, &StartProcessChain::coverChanged, &chain,
                         [this](bool on) { trace += on ? '+' : '-'; });
        QObject::connect(&chain, &StartProcessChain::cancelled, &chain, [this] { trace += 'x'; });
        QObject::connect(&chain, &StartProcessChain::runReady, &chain, [this] { trace += '!'; });
        prompt.onAlert = [this](const Alert&) { trace += 'a'; };
    }

    QStringList titles() const {
        QStringList out;
        for (const Alert& a : prompt.alerts)
            out << a.title;
        return out;
    }
};

TEST(ProcessingOptions, ExifStandsForItsPartsAndTheRowKeepsHiddenValues) {
    ProcessingOptions o;
    o.chooseRow(2);
    EXPECT_TRUE(o.startEnabled());
    o.clickBox(Box::Exif, true);
    EXPECT_TRUE(o.shows(Box::Gps));
    EXPECT_TRUE(o.clean().cleanComment);
    o.clickBox(Box::Gps, false);
    EXPECT_FALSE(o.clean().cleanExif) << "giving up a part gives up the whole";
    EXPECT_FALSE(o.shows(Box::Exif));
    EXPECT_TRUE(o.clean().cleanComment);
    o.clickBox(Box::Comment, false);
    EXPECT_FALSE(o.startEnabled());

    o.clickBox(Box::Iptc, true);
    o.chooseRow(0);
    EXPECT_FALSE(o.shows(Box::Iptc));
    EXPECT_TRUE(o.clean().cleanIPTC) << "the popup leaves the values as they were";
}

// The popup's rows are the modes in order; a row past the last stays on the last mode, so a
// run never gets a mode that does not exist.
TEST(ProcessingOptions, PopupRowsAreTheModes) {
    ProcessingOptions o;
    EXPECT_EQ(o.mode(), ProcessingMode::keepUnedited);
    o.chooseRow(1);
    EXPECT_EQ(o.mode(), ProcessingMode::clearUnedited);
    o.chooseRow(7);
    EXPECT_EQ(o.mode(), ProcessingMode::removeGroups);
    EXPECT_TRUE(o.isRemoveGroups());
    EXPECT_EQ(o.row(), 2);
    o.reset();
    EXPECT_EQ(o.row(), 0);
}

TEST(StartProcessChain, ConfirmationsByModeAndNoGoesBack) {
    ChainFixture f;
    f.prompt.answerNext("NO");
    EXPECT_FALSE(f.run());
    EXPECT_EQ(f.prompt.alerts.at(0), StartProcessChain::noChangesQuestion());
    EXPECT_EQ(f.prompt.alerts.at(0).title, "No Changes in Metadata found");

    f.prompt.alerts.clear();
    f.options.chooseRow(2);
    EXPECT_FALSE(f.run());
    EXPECT_EQ(f.titles(), QStringList{"No options selected for removing metadata"});

    f.prompt.alerts.clear();
    f.options.chooseRow(1);
    f.prompt.answerNext("NO");
    EXPECT_FALSE(f.run());
    EXPECT_EQ(f.prompt.alerts.at(0), StartProcessChain::clearConfirmation());
}

TEST(StartProcessChain, PresetSheetRefusesEmptyAndTakenNamesThenAFolderOutsideHome) {
    ChainFixture f;
    f.settings.setIsPresetSavingSettingInHome(true);
    QStringList saved;
    f.chain.setPresetHooks({[] { return QStringLiteral("Preset 1"); },
                            [](const QString& n) { return n == "Taken"; },
                            [&](const QString& n) { saved << n; }});
    f.form.editText(Field::Artist, "Jane Doe");
    f.prompt.answerNext("YES");
    f.prompt.textAnswers = {{0, "  ", false}, {0, "Taken", false}, {0, "Trip", true}};
    QTemporaryDir elsewhere; // not within the home folder
    f.prompt.panelAnswers = {{elsewhere.path()}, {f.out}};
    const auto values = f.run();
    ASSERT_TRUE(values);
    EXPECT_EQ(f.titles(), (QStringList{"Are you sure to edit metadata of all the selected images?",
                                       "Save selected settings as a preset", "Invalid Preset name.",
                                       "Save selected settings as a preset", "Name already exists",
                                       "Save selected settings as a preset",
                                       "Files cannot be saved in the selected folder"}));
    EXPECT_EQ(f.prompt.textQuestions.first().text, "Preset 1");
    EXPECT_EQ(f.prompt.textQuestions.first().alert.buttons,
              (QStringList{"Save and Process", "Skip and Process"}));
    EXPECT_EQ(saved, QStringList{"Trip"});
    EXPECT_EQ(f.settings.isPresetSavingSettingInHome(), std::optional<bool>(false))
        << "\"Do not show again\" turns the offer off";
    EXPECT_EQ(f.prompt.panels.at(0).prompt, "Choose Destination Folder");
    EXPECT_EQ(f.prompt.panels.at(0).accessoryButton, "Keep Source Folder Path");
    EXPECT_EQ(values->destinationFolder, QFileInfo(f.out).absoluteFilePath());
    EXPECT_EQ(values->editedProperties.tiffProperties->artist.text(), "Jane Doe");
    EXPECT_TRUE(values->fieldEditedFlags.test(Field::Artist));

    // After "Do not show again" the next run goes straight on.
    f.prompt.alerts.clear();
    f.prompt.textQuestions.clear();
    f.prompt.answerNext("YES");
    f.prompt.panelAnswers = {{f.out}};
    ASSERT_TRUE(f.run());
    EXPECT_TRUE(f.prompt.textQuestions.isEmpty());
}

TEST(StartProcessChain, OverwriteQuestionOnlyWhenAFileIsInTheWay) {
    ChainFixture f;
    f.form.editText(Field::Artist, "Jane Doe");
    f.prompt.panelAnswers = {{f.out}};
    auto values = f.run();
    ASSERT_TRUE(values);
    EXPECT_FALSE(f.titles().contains("Overwrite files with same source and destination path?"));

    QFile::copy(f.set.workingImages().at(1).path(), f.out + "/et-GPS.jpg");
    f.prompt.alerts.clear();
    f.prompt.panelAnswers = {{f.out}};
    f.prompt.answers = {0, 0}; // YES, then Overwrite
    values = f.run();
    ASSERT_TRUE(values);
    EXPECT_EQ(f.prompt.alerts.last(), StartProcessChain::overwriteQuestion());
    EXPECT_EQ(f.prompt.alerts.last().buttons, (QStringList{"Overwrite", "Do not Overwrite"}));
    EXPECT_TRUE(values->overwriteExisting);
}

TEST(StartProcessChain, KeepingTheSourceFolderAsksForTheHomeFolderOnce) {
    ChainFixture f;
    f.form.editText(Field::Artist, "Jane Doe");
    f.prompt.accessoryAnswers = {true};
    f.prompt.answers = {0, 1}; // YES, then Cancel at the grant
    EXPECT_FALSE(f.run());
    EXPECT_EQ(f.titles().last(), "Please grant access to your Home Folder to continue");
    EXPECT_FALSE(f.folders.homeAccessGranted());

    f.prompt.alerts.clear();
    f.prompt.accessoryAnswers = {true};
    f.prompt.answers = {0, 0}; // YES, then Grant Access
    f.prompt.panelAnswers = {{f.home.path()}};
    auto values = f.run();
    ASSERT_TRUE(values);
    // The grant panel says what it wants and lets the user choose the home folder only.
    EXPECT_EQ(f.prompt.panels.last().message,
              "Please grant access to your Home Folder to continue");
    EXPECT_EQ(f.prompt.panels.last().onlyEnabledFolder, f.folders.homePath());
    EXPECT_TRUE(values->isDestinationPathAsSource);
    EXPECT_FALSE(values->destinationFolder);
    EXPECT_TRUE(f.folders.homeAccessGranted());

    // Granted: no second question.
    f.prompt.alerts.clear();
    f.prompt.accessoryAnswers = {true};
    values = f.run();
    ASSERT_TRUE(values);
    EXPECT_EQ(f.prompt.alerts.size(), 1);
}

// An output folder is taken inside the home folder, or where its path holds the login name, as
// a removable disk mounted for the user does; elsewhere the panel comes back.
TEST(FolderAccess, OutputFoldersInsideHomeOrUnderTheLoginName) {
    QTemporaryDir root;
    const QString home = root.filePath("home/alice");
    for (const char* folder : {"home/alice/Out", "media/alice/USB/Out", "run/media/alice/Disk",
                               "mnt/usb", "media/bob/USB"})
        QDir().mkpath(root.filePath(folder));
    const FolderAccess access(home, "alice");
    EXPECT_TRUE(access.mayHoldOutput(root.filePath("home/alice/Out")));
    EXPECT_TRUE(access.mayHoldOutput(root.filePath("media/alice/USB/Out")));
    EXPECT_TRUE(access.mayHoldOutput(root.filePath("run/media/alice/Disk")));
    EXPECT_FALSE(access.mayHoldOutput(root.filePath("mnt/usb")));
    EXPECT_FALSE(access.mayHoldOutput(root.filePath("media/bob/USB")));
    EXPECT_FALSE(FolderAccess(home, QString()).mayHoldOutput(root.filePath("media/alice/USB")));

    ChainFixture f;
    f.form.editText(Field::Artist, "Jane Doe");
    const QString login = systemLoginName();
    ASSERT_FALSE(login.isEmpty());
    QTemporaryDir elsewhere;
    const QString disk = elsewhere.filePath("media/" + login + "/USB");
    QDir().mkpath(disk);
    f.prompt.panelAnswers = {{disk}};
    const auto values = f.run();
    ASSERT_TRUE(values);
    EXPECT_FALSE(f.titles().contains("Files cannot be saved in the selected folder"));
    EXPECT_EQ(values->destinationFolder, QFileInfo(disk).absoluteFilePath());
}

TEST(StartProcessChain, NothingMarkedIsToldBeforeThePanel) {
    ChainFixture f;
    f.set.setAllSelected(false);
    f.form.editText(Field::Artist, "x");
    EXPECT_FALSE(f.run());
    EXPECT_EQ(f.titles().last(), "There are no photos selected");
    EXPECT_TRUE(f.prompt.panels.isEmpty());
}

// A keyword longer than IPTC holds stops the chain at its first step with the reason; within
// the limit the chain goes on to its confirmation.
TEST(StartProcessChain, AKeywordTooLongIsRefusedBeforeAnyQuestion) {
    ChainFixture f;
    const Field keywords = findFormField("Keywords")->field;
    f.form.editText(keywords, "harbour, " + QString(30, QChar(0x00e9))); // 60 bytes: fits
    f.prompt.answerNext("NO");
    EXPECT_FALSE(f.run());
    EXPECT_EQ(f.titles(), QStringList{"Are you sure to edit metadata of all the selected images?"});

    f.prompt.alerts.clear();
    f.form.editText(keywords, "harbour, " + QString(33, QChar(0x00e9))); // 66 bytes
    EXPECT_FALSE(f.run());
    ASSERT_EQ(f.titles(), QStringList{"Keyword too long"});
    EXPECT_TRUE(f.prompt.alerts.first().text.contains("66 bytes"));
    EXPECT_FALSE(f.chain.isRunning());
}

// The cover goes on and off in pairs on every branch: never off while it is off, held while a
// question that it covers stands (across the steps that reopen the folder panel), and handed
// over to the run, to be taken off only when the run sheet closes.
TEST(StartProcessChain, TheCoverComesAndGoesInPairsOnEveryBranch) {
    {
        ChainFixture f;
        f.startTrace();
        f.prompt.answerNext("NO");
        EXPECT_FALSE(f.run());
        EXPECT_EQ(f.trace, "+a-x") << "a No at the confirmation";
    }
    {
        ChainFixture f;
        f.startTrace();
        f.set.setAllSelected(false);
        EXPECT_FALSE(f.run());
        EXPECT_EQ(f.trace, "+a-ax") << "nothing marked is told without the cover";
    }
    {
        ChainFixture f;
        f.settings.setIsPresetSavingSettingInHome(true);
        f.chain.setPresetHooks({[] { return QStringLiteral("Preset 1"); },
                                [](const QString&) { return false; }, [](const QString&) {}});
        f.startTrace();
        f.prompt.textAnswers = {{0, " ", false}, {1, "", false}};
        QTemporaryDir elsewhere;
        f.prompt.panelAnswers = {{elsewhere.path()}, {}};
        EXPECT_FALSE(f.run());
        EXPECT_EQ(f.trace, "+a-+aaa-+a-+-x")
            << "the preset sheet, then a folder outside home and a cancelled panel";
    }
    {
        ChainFixture f;
        f.startTrace();
        f.prompt.accessoryAnswers = {true};
        f.prompt.answers = {0, 1}; // YES, then Cancel at the grant
        EXPECT_FALSE(f.run());
        EXPECT_EQ(f.trace, "+a-+-+a-x") << "the home folder grant refused";
    }
    {
        ChainFixture f;
        f.form.editText(Field::Artist, "Jane Doe");
        QFile::copy(f.set.workingImages().at(1).path(), f.out + "/et-GPS.jpg");
        f.startTrace();
        f.prompt.panelAnswers = {{f.out}};
        EXPECT_TRUE(f.run());
        EXPECT_EQ(f.trace, "+a-+-+a-+!") << "the overwrite question, then the run";
        f.chain.runClosed();
        EXPECT_EQ(f.trace, "+a-+-+a-+!-") << "the run's cover goes when its sheet closes";
        f.chain.runClosed();
        EXPECT_EQ(f.trace, "+a-+-+a-+!-") << "and only once";
    }
}

} // namespace
} // namespace tagmoor
