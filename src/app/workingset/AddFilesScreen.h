#pragma once

#include <QWidget>

class QLabel;
class QPushButton;

namespace tagmoor {

class AppDelegate;
class DimmingCover;
class DropView;

// The start screen, shown while the list is empty: the "Add Photos" panel, the drop target,
// and the photo library entry.
class AddFilesScreen : public QWidget {
    Q_OBJECT
public:
    explicit AddFilesScreen(AppDelegate& app, QWidget* parent = nullptr);

    void clickedAddPhotos();
    void clickedAddPhotosLibrary();
    // DropViewOTM: dropped paths go to the staged files unfiltered, then on to the home screen.
    void getDropViewItems(const QStringList& paths);

    QPushButton* btnAddPhotos() const { return m_addPhotos; }
    QPushButton* btnAddPhotosLibrary() const { return m_addLibrary; }
    DropView* dropView() const { return m_dropView; }

private:
    bool isBlockedByOverlay() const;

    AppDelegate& m_app;
    DropView* m_dropView;
    QPushButton* m_addPhotos;
    QPushButton* m_addLibrary;
    DimmingCover* m_topLayer;
};

} // namespace tagmoor
