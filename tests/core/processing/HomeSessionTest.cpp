#include "processing/HomeSession.h"
#include "TestSupport.h"
#include "editor/EditorState.h"
#include "foundation/AppEvents.h"
#include "foundation/ScriptedPrompt.h"
#include "foundation/Settings.h"
#include "metadata/PropertyLoading.h"
#include "presets/PresetStore.h"
#include "processing/FolderAccess.h"
#include "processing/ProcessingOptions.h"
#include "rename/RenameNumbering.h"
#include "workingset/ScanController.h"
#include "workingset/WorkingSet.h"

#include <QSignalSpy>
#include <QTemporaryDir>

namespace tagmoor {
namespace {

struct SessionFixture {
    QTemporaryDir home;
    WorkingSet set;
    ScriptedPrompt prompt;
    AppEvents events;
    ScanController scans{set, prompt, events};
    EditorState state;
    Settings settings{home.filePath("settings.ini")};
    ProcessingOptions options;
    FolderAccess folders{home.path()};
    Rename rename;
    RenameNumbering numbering;
    PresetStore presets{settings};
    HomeSession session{{set, scans, events, prompt, state, settings, options, folders, rename,
                         numbering, presets}};
    QString photos = home.filePath("photos");
    QString out = home.filePath("out");

    SessionFixture() {
        QDir().mkpath(photos);
        QDir().mkpath(out);
        settings.setIsPresetSavingSettingInHome(false);
        for (const char* name : {"Reagan.jpg", "et-GPS.jpg"}) {
            const QString copy =
                test::copySample(test::formatsDir() + "/" + QString::fromLatin1(name), photos);
            set.appendImages({*loadImageProperties(QUrl::fromLocalFile(copy))});
        }
        session.form().updateMetadataInfo(0, true, {0, 1});
    }
};

// Finish takes off the cover the chain left over the run, empties the list and, with it, lets
// go of everything the last list had: edits, rename rule, mode and picked position. Removing
// only some photos keeps them.
TEST(HomeSession, FinishLetsGoOfTheLastListAndItsCover) {
    SessionFixture f;
    f.session.form().editText(Field::Artist, "Jane Doe");
    f.options.chooseRow(1);
    f.rename = AddText{QStringLiteral("trip")};
    f.session.location().set(10, 20);
    QSignalSpy started(&f.session, &HomeSession::newListStarted);
    f.set.setSelected(0, false);
    f.set.removeMarkedImages();
    ASSERT_EQ(f.set.count(), 1);
    f.set.setAllSelected(true);
    EXPECT_TRUE(started.isEmpty());
    EXPECT_TRUE(f.session.form().hasEdits()) << "a list that is not empty keeps its edits";

    QStringList cover;
    QObject::connect(&f.session.chain(), &StartProcessChain::coverChanged, &f.session,
                     [&](bool on) { cover << (on ? "on" : "off"); });
    QSignalSpy ready(&f.session.chain(), &StartProcessChain::runReady);
    f.prompt.panelAnswers = {{f.out}};
    f.session.startProcess();
    ASSERT_TRUE(ready.wait(5000));
    EXPECT_EQ(cover.last(), "on");

    QList<RootPage> pages;
    QObject::connect(&f.events, &AppEvents::UpdateVCOTM, &f.session,
                     [&](RootPage page) { pages << page; });
    QSignalSpy after(&f.events, &AppEvents::AfterFinishOTM);
    cover.clear();
    f.session.finishRun();
    EXPECT_EQ(cover, QStringList{"off"});
    EXPECT_TRUE(f.set.isEmpty());
    EXPECT_EQ(pages, QList<RootPage>{RootPage::addFiles});
    EXPECT_EQ(after.size(), 1);
    EXPECT_EQ(started.size(), 1);
    EXPECT_FALSE(f.session.form().hasEdits());
    EXPECT_EQ(f.options.mode(), ProcessingMode::keepUnedited);
    EXPECT_EQ(f.rename, Rename{});
    EXPECT_EQ(f.session.location().latitude(), 0);
    EXPECT_EQ(f.session.location().longitude(), 0);
}

// The shared position: a photo with a position hands it over, one without leaves it; the
// picker starts from the form's position only when both of its parts are set, and its answer
// becomes the form's GPS edits.
TEST(HomeSession, TheSharedPositionGoesBetweenPhotoPickerAndForm) {
    SessionFixture f;
    const CGImageProperties& without = f.set.workingImages().at(0);
    const CGImageProperties& with = f.set.workingImages().at(1);
    f.session.location().set(1, 2);
    f.session.locationPickerOpening();
    EXPECT_EQ(f.session.location().latitude(), 1) << "a form without a position leaves it";
    EXPECT_FALSE(f.session.takePositionOf(without));
    EXPECT_EQ(f.session.location().latitude(), 1);
    const auto position = f.session.takePositionOf(with);
    ASSERT_TRUE(position);
    EXPECT_NEAR(position->latitude(), 54.99, 0.01);
    EXPECT_NEAR(f.session.location().longitude(), -1.92, 0.01);

    f.session.location().set(-33.9628, 18.4098);
    f.session.takePickedLocation();
    EXPECT_TRUE(f.session.form().hasEdits());
    f.session.location().set(0, 0);
    f.session.locationPickerOpening();
    EXPECT_NEAR(f.session.location().latitude(), -33.9628, 1e-4);
    EXPECT_NEAR(f.session.location().longitude(), 18.4098, 1e-4);
}

} // namespace
} // namespace tagmoor
