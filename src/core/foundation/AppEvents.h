#pragma once

#include <QList>
#include <QObject>
#include <QStringList>

namespace tagmoor {

// The child the main window's root shows; `none` leaves it empty.
enum class RootPage { addFiles, home, presetsDetails, none };

// The application's notification centre: one signal per notification name, carrying its
// user information as arguments. One instance, made at start and passed to every screen
// and controller that posts or observes. Emit on the main thread.
class AppEvents : public QObject {
    Q_OBJECT
public:
    explicit AppEvents(QObject* parent = nullptr) : QObject(parent) {}

signals:
    // The root's child to show.
    void UpdateVCOTM(RootPage page);
    // Pending opened files were staged; the home screen scans them.
    void OpenWithItemsOTM();
    // Paths dropped on the add screen.
    void DropViewOTM(const QStringList& urls);
    void HideUnhideTopLayerTM(bool isHidden);
    void AfterFinishOTM();
    void UpdateMetadataInfoOTM(const QList<int>& indexes, bool isMultipleSelected, int index);
    void UpdateMultipleValuesOTM();
    // 0 EXIF, 1 IPTC, 2 XMP.
    void UpdateEditorOTM(int Editor);
    void UpdateEditorNotificationOTM(int index);
    void UpdatePresetValuesOTM();
    void SetPresetValuesOTM();
    void PresetsDetailsOTM(int index);
    void UpdateLocationFromGeoLocationOTM();
    void HomePermissionResponseOTM();
    // 0 folders and photos, 1 photo library.
    void AddLibnFoldersnPhotosHomeVCOTM(int index);
    // 0 entire library, 1 albums.
    void AddLibnAlbumHomeVCOTM(int index);
    void AddLibnAlbumAddFilesOTM(int index);
    void ObserveRetriveAlbumsHomeVCOTM(bool isRetrived);
    void ObserveRetriveAlbumsOTM(bool isRetrived);
    void kAboutWindow();
    void closeToExitVC();
    void hyperLinkEULA();
    void hyperLinkPrivacyPolicy();
    // The desktop's colour scheme changed.
    void AppleInterfaceThemeChangedNotification();

    // Not in the catalogue of names: the file-opening queue asks to show the main window.
    void showMainWindowRequested();
};

} // namespace tagmoor
