#pragma once

#include <QWidget>

class QLabel;
class QPushButton;

namespace tagmoor {

class AlbumChooser;
class AppEvents;
class DimmingCover;
class DropView;
class ScanController;
class Settings;
class UserPrompt;

// The start screen, shown while the list is empty: the "Add Photos" panel, the drop target,
// and the photo library entry.
class AddFilesScreen : public QWidget {
    Q_OBJECT
public:
    // The objects the screen shows and hands its actions to.
    struct Objects {
        AppEvents& events;
        ScanController& scans;
        UserPrompt& prompt;
        const Settings& settings;
    };

    explicit AddFilesScreen(const Objects& objects, QWidget* parent = nullptr);

    void clickedAddPhotos();
    void clickedAddPhotosLibrary();
    // DropViewOTM: dropped paths go to the staged files unfiltered, then on to the home screen.
    void getDropViewItems(const QStringList& paths);
    // AfterFinishOTM: a run was finished; the add screen is shown again with an empty list.
    void getAfterFinishResult();

private:
    bool isBlockedByOverlay() const;

    Objects m_objects;
    DropView* m_dropView;
    QPushButton* m_addPhotos;
    QPushButton* m_addLibrary;
    DimmingCover* m_topLayer;
    AlbumChooser* m_chooser;
};

} // namespace tagmoor
