#include "workingset/PanelFilter.h"

#include "workingset/SupportedExtensions.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QSet>

namespace tagmoor {

OpenPanelRequest addPhotosPanelRequest(PanelScreen screen) {
    OpenPanelRequest r;
    r.prompt = QCoreApplication::translate("PanelFilter", "Add Photos");
    r.canChooseFiles = true;
    r.canChooseDirectories = true;
    r.allowsMultipleSelection = true;
    r.showsHiddenFiles = false;
    r.allowedExtensions =
        screen == PanelScreen::AddScreen ? panelExtensions() : supportedExtensions();
    return r;
}

PanelFilterResult filterPanelChoice(PanelScreen screen, const QStringList& chosenPaths,
                                    const QList<QUrl>& stagedURLs,
                                    const QList<CGImageProperties>& workingImages) {
    PanelFilterResult result;
    QSet<QString> staged;
    for (const QUrl& url : stagedURLs)
        staged.insert(url.toLocalFile().toLower());
    QSet<QString> listed;
    if (screen == PanelScreen::HomeScreen) {
        for (const CGImageProperties& record : workingImages)
            listed.insert(record.path().toLower());
    }
    for (const QString& path : chosenPaths) {
        const QString lower = path.toLower();
        if (staged.contains(lower) || listed.contains(lower)) {
            result.alreadyAdded = true;
            continue;
        }
        const QFileInfo info(path);
        if (info.exists() && !info.isDir() && !hasSupportedExtension(path)) {
            result.ignored = true;
            continue;
        }
        const QUrl url = QUrl::fromLocalFile(path);
        result.staged.append(url);
        staged.insert(lower);
    }
    return result;
}

bool folderPanelEnables(const QString& path) {
    return QFileInfo(path).isDir();
}

bool homeFolderPanelEnables(const QString& path, const QString& homeFolder) {
    return QDir::cleanPath(path) == QDir::cleanPath(homeFolder);
}

} // namespace tagmoor
