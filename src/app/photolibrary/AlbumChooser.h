#pragma once

#include "photolibrary/PhotoLibraryTypes.h"
#include "workingset/PanelFilter.h"

#include <QFrame>
#include <QPointer>

#include <memory>

class QCheckBox;
class QLabel;
class QListWidget;
class QListWidgetItem;
class QPushButton;
class QRadioButton;
class QStackedWidget;

namespace tagmoor {

class PhotoLibraryReader;
class ScanController;
class UserPrompt;

// The small panel that leads to a photo library, shown as a popup below the button that
// opened it. Three faces: on the home screen, folders and photos or a library; on either
// screen, the entire library or chosen albums; and the list of albums with a check box each.
// Libraries are read on a worker thread; what they give goes to the scan.
class AlbumChooser : public QFrame {
    Q_OBJECT
public:
    enum class Face { Home, AddFiles, AlbumList };

    // `screen` is the screen that owns this chooser: it decides how the originals enter.
    AlbumChooser(ScanController& scans, UserPrompt& prompt, PanelScreen screen,
                 QWidget* parent = nullptr);
    ~AlbumChooser() override;

    void showHomeFace(QWidget* anchor);
    void showAddFilesFace(QWidget* anchor);
    // Opens the list face for a chosen library and starts reading its albums.
    void showAlbumList(const QString& libraryPath, QWidget* anchor);
    Face face() const { return m_face; }

    void clickedOkHomeVC();
    void clickedOKAddFilesVC();
    void clickedAllAlbumList(bool on);
    void clickedCheckAlbum(int row, bool on);
    void clickedOKAlbumList();
    void clickedCancel();

    const QList<LibraryAlbum>& albums() const { return m_albums; }
    // A read of the library is under way.
    bool isBusy() const { return m_busy; }

signals:
    // The home face chose folders and photos: the screen opens its usual panel.
    void addFoldersChosen();
    // The album list is filled (or says why it is empty).
    void albumsShown();
    // The chosen originals went to the scan (or nothing did, when `count` is 0).
    void itemsHandedOver(int count);

private:
    QWidget* makeHomeFace();
    QWidget* makeAddFilesFace();
    QWidget* makeAlbumListFace();
    void setFace(Face face);
    void popUpBelow(QWidget* anchor);
    // Asks for a library with the given prompt, and the message above the panel's list when
    // there is one; empty when cancelled.
    QString chooseLibrary(const QString& prompt, const QString& message = {});
    void readEntireLibrary(const QString& path);
    void handOver(const LibraryRead& read);
    void fillAlbumList(const QList<LibraryAlbum>& albums, const QString& note);
    void onItemChanged(QListWidgetItem* item);

    ScanController& m_scans;
    UserPrompt& m_prompt;
    PanelScreen m_screen;
    Face m_face = Face::AddFiles;
    QPointer<QWidget> m_anchor;
    std::shared_ptr<PhotoLibraryReader> m_reader;
    QList<LibraryAlbum> m_albums;
    bool m_busy = false;
    bool m_filling = false;

    QStackedWidget* m_faces;
    QRadioButton* m_foldersAndPhotos;
    QRadioButton* m_photosLibrary;
    QRadioButton* m_entireLibrary;
    QRadioButton* m_chosenAlbums;
    QPushButton* m_okHome;
    QPushButton* m_okAddFiles;
    QPushButton* m_okAlbumList;
    QCheckBox* m_allAlbums;
    QListWidget* m_list;
    QLabel* m_title;
    QLabel* m_status;
};

} // namespace tagmoor
