#pragma once
// The real home screen with every object it works with, over a working list of the caller's,
// shown offscreen at 1280x800: what the screen benchmarks drive.

#include "app/workingset/HomeScreen.h"
#include "app/workingset/ThumbnailProvider.h"
#include "editor/EditorState.h"
#include "foundation/AppEvents.h"
#include "foundation/ScriptedPrompt.h"
#include "foundation/Settings.h"
#include "presets/PresetStore.h"
#include "processing/FolderAccess.h"
#include "processing/HomeSession.h"
#include "processing/ProcessingOptions.h"
#include "rename/Rename.h"
#include "rename/RenameNumbering.h"
#include "workingset/ScanController.h"
#include "workingset/WorkingListModel.h"
#include "workingset/WorkingSet.h"

#include <QCoreApplication>

namespace tagmoor {

struct BenchHomeScreen {
    // `settingsFile` holds the bench's own settings; `homeFolder` is where outputs may go.
    BenchHomeScreen(WorkingSet& set, const QString& settingsFile, const QString& homeFolder)
        : settings(settingsFile), folders(homeFolder), model(set), scans(set, prompt, events),
          presets(settings), session({set, scans, events, prompt, state, settings, options, folders,
                                      rename, numbering, presets}),
          home({session, model, thumbnails}) {
        settings.setTutorialShow(true);
        settings.setIsPresetSavingSettingInHome(true);
        home.resize(1280, 800);
        home.show();
        QCoreApplication::processEvents();
    }

    ScriptedPrompt prompt;
    AppEvents events;
    EditorState state;
    Settings settings;
    ProcessingOptions options;
    FolderAccess folders;
    Rename rename;
    RenameNumbering numbering;
    WorkingListModel model;
    ThumbnailProvider thumbnails;
    ScanController scans;
    PresetStore presets;
    HomeSession session;
    HomeScreen home;
};

} // namespace tagmoor
