#pragma once

#include "foundation/UserPrompt.h"
#include "model/CGImageProperties.h"

#include <QList>
#include <QStringList>
#include <QUrl>

namespace tagmoor {

// Which open panel: the add screen's or the home screen's. They differ in the type filter
// (the home screen also takes library packages) and in the duplicate test against the list.
enum class PanelScreen { AddScreen, HomeScreen };

// The request for the "Add Photos" panel of a screen.
OpenPanelRequest addPhotosPanelRequest(PanelScreen screen);

struct PanelFilterResult {
    QList<QUrl> staged; // to append to stagedURLs, in the panel's order
    bool alreadyAdded = false;
    bool ignored = false;
};

// Filters the chosen paths of a panel against the staged files (and, on the home screen,
// the list), comparing lowercased paths, and drops existing files of unsupported types.
// Folders and missing paths pass.
PanelFilterResult filterPanelChoice(PanelScreen screen, const QStringList& chosenPaths,
                                    const QList<QUrl>& stagedURLs,
                                    const QList<CGImageProperties>& workingImages);

// The enable filter of folder-choice panels: on exactly for an existing folder.
bool folderPanelEnables(const QString& path);

// The enable filter of the home-folder grant panel: on exactly for the user's home folder.
bool homeFolderPanelEnables(const QString& path, const QString& homeFolder);

} // namespace tagmoor
