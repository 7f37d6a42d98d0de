#pragma once

#include <QList>
#include <QObject>
#include <QStringList>

namespace tagmoor {

// The child the main window's root shows; `none` leaves it empty.
enum class RootPage { addFiles, home, presetsDetails, none };

// What a row of the preset menu stands for: "New Configuration" first, then the saved presets
// in their order, "Edit Presets..." last.
enum class PresetMenuRow { newConfiguration, savedPreset, editPresets, outside };

// The row chosen in the preset menu, with the store's position of a saved preset.
struct PresetsMenuChoice {
    PresetMenuRow row = PresetMenuRow::newConfiguration;
    qsizetype presetIndex = -1; // only for savedPreset
};

// The application's notification centre: one signal per notification name, carrying its
// user information as typed arguments. Only names that are both posted and observed are here;
// a screen that would merely relay a click to itself calls the method directly. One instance,
// made at start and passed to every screen and controller that posts or observes. Emit on the
// main thread.
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
    // An overlay came up (false) or went away (true): the screens' top layer follows it.
    void HideUnhideTopLayerTM(bool isHidden);
    // A run was finished and the list emptied; the add screen is on show again.
    void AfterFinishOTM();
    // The marked records changed: their indices, whether more than one, the record to show.
    void UpdateMetadataInfoOTM(const QList<int>& indexes, bool isMultipleSelected, int index);
    // Library originals were merged into the list: the editor's placeholders are brought up to
    // date for them.
    void UpdateMultipleValuesOTM();
    // A row of the presets menu was chosen.
    void PresetsDetailsOTM(PresetsMenuChoice choice);
    // The location picker closed; the chosen position is in the shared location.
    void UpdateLocationFromGeoLocationOTM();

    // Not in the catalogue of names: the file-opening queue asks to show the main window.
    void showMainWindowRequested();
};

} // namespace tagmoor
