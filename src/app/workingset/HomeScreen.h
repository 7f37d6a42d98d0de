#pragma once

#include <QPointer>
#include <QWidget>

class QAbstractButton;
class QAbstractItemView;
class QButtonGroup;
class QCheckBox;
class QLabel;
class QMenu;
class QPushButton;
class QStackedWidget;
class QToolButton;

namespace tagmoor {

class AlbumChooser;
class AppEvents;
class BatchController;
class FinalProcessedVC;
class GeoLocationViewController;
class LocationView;
class PreviewViewController;
class FolderAccess;
class PresetStore;
class PresetsViewController;
class ProcessingControls;
class RenameViewController;
class ProcessingOptions;
class RenameNumbering;
class StartProcessChain;
class Rename;
struct RunValues;
enum class ProcessingMode;
class Settings;
class TutorialOverlay;
struct CGImageProperties;
class DesktopActions;
class MetadataForm;
class MetadataViewController;
struct EditorState;
class DimmingCover;
class PhotoGridView;
class PhotoTableView;
class ScanController;
class ScanProgressBox;
struct ScanProgressView;
struct SelectionOutcome;
class ThumbnailProvider;
class UserPrompt;
class WorkingListModel;
class WorkingSet;

// The home screen: the working list as a thumbnail grid or a table over one model, the marks,
// the list's buttons, the preview pane, and the progress box of a running scan. It shows the
// state of the core objects and hands every action to them.
class HomeScreen : public QWidget {
    Q_OBJECT
public:
    // The objects the screen shows and hands its actions to.
    struct Objects {
        WorkingSet& workingSet;
        WorkingListModel& listModel;
        ThumbnailProvider& thumbnails;
        ScanController& scans;
        AppEvents& events;
        UserPrompt& prompt;
        EditorState& editorState;
        Settings& settings;
        ProcessingOptions& processingOptions;
        FolderAccess& folderAccess;
        Rename& renameSettings;
        RenameNumbering& renameNumbering;
        PresetStore& presets;
    };

    explicit HomeScreen(const Objects& objects, QWidget* parent = nullptr);

    // Called by the root each time the screen comes up: starts the scan that waits for it.
    void viewWillAppear();

    void clickedAddMore();
    // The home face's "Folders and photos": the open panel of this screen.
    void addFoldersAndPhotos();
    AlbumChooser* albumChooser() const { return m_chooser; }
    void clickedRemove();
    void clickedStopScanning();
    void clickedCheckBox(int row, bool on);
    void clickedSelectUnselectAll(bool on);
    void markUnmarkAll();
    // 0 grid, 1 table.
    void clickedSegmentCollectionnTableView(int index);

    int segmentIndex() const;
    PhotoGridView* collectionView() const { return m_grid; }
    PhotoTableView* tableView() const { return m_table; }
    ScanProgressBox* boxLoader() const { return m_progress; }
    DimmingCover* loaderCover() const { return m_cover; }
    QCheckBox* btnSelectUnselectAllInInTabColl() const { return m_selectAll; }
    QLabel* lblTotalPhotos() const { return m_total; }
    QLabel* lblImageName() const { return m_imageName; }
    QPushButton* btnAddMore() const { return m_addMore; }
    QPushButton* btnRemove() const { return m_remove; }
    QPushButton* btnStartProcess() const { return m_start; }
    // Controls that are on only while at least one photo is marked.
    const QList<QPointer<QWidget>>& batchControls() const { return m_batchControls; }
    void addBatchControl(QWidget* control);
    // Where the metadata editor goes.
    QWidget* editorHost() const { return m_editorHost; }
    MetadataViewController* metadataView() const { return m_editor; }
    MetadataForm& metadataForm() const { return *m_form; }
    QPushButton* btnResetAll() const { return m_resetAll; }
    // The EXIF, IPTC and XMP tabs of the editor: 0, 1, 2.
    void clickedEditorTab(int editor);
    // Reset All: the editor, its flags and date rules emptied, the mode popup on its first row
    // with the clean boxes off, the choice applied anew.
    void clickedResetAll();
    // "Show Metadata" and "Get Info": the facts of one photo.
    void showInfo(int row);
    QLabel* lblLocation() const { return m_location; }
    LocationView* locationView() const { return m_locationView; }
    // "Location...": the picker, starting from the photo's position.
    void clickShowEditorGPS();
    GeoLocationViewController* locationPicker() const { return m_picker; }
    // The picker closed: the editor's GPS fields and the location view take its position.
    void updateLocationViewWithNotification();
    // Double click and "Show Metadata": the preview window of one photo.
    void openPreview(int row);
    PreviewViewController* previewWindow() const;
    TutorialOverlay* tutorial() const { return m_tutorial; }
    // The tour of the screen, once per user: after the first scan that filled the list.
    void showTutorialOnce();
    // Start Process: the chain of questions, then the run screen.
    void clickedStartProcess();
    // The rename sheet over the application's rename rule.
    void clickedRename();
    RenameViewController* renamePanel() const { return m_renamePanel; }
    QPushButton* btnRename() const { return m_rename; }
    // The preset menu of "Presets...".
    PresetsViewController* presetsMenu() const { return m_presetsMenu; }
    StartProcessChain& startChain() const { return *m_chain; }
    ProcessingControls& processingControls() const { return *m_processing; }
    FinalProcessedVC* runSheet() const { return m_runSheet; }

    // Builds the context menu for a row of the list (-1: outside any row).
    QMenu* buildContextMenu(int row, QWidget* parent);

protected:
    void resizeEvent(QResizeEvent* event) override;

private:
    // Gives the preview box what the editor below it can spare at this height.
    void fitPreviewToHeight();
    QWidget* makeTopBar();
    QWidget* makeSidePane();
    QPushButton* makeReviewButton();
    void applyProgress(const ScanProgressView& view);
    void applyOutcome(const SelectionOutcome& outcome);
    void setBatchControlsEnabled(bool on);
    void updateTotal();
    void updateMarkedSummary();
    void reloadViews();
    void clearViewSelection();
    void showPreview(int row);
    void refreshPreviewPicture();
    void clearPreview();
    void showLocation(const CGImageProperties& record);
    void editingModeChanged(ProcessingMode mode);
    // The list became empty: the next photos start from a clean editor and clean options.
    void startNewList();
    void openRunSheet(const RunValues& values);
    void finishRun();
    void showContextMenu(QAbstractItemView* view, const QPoint& pos);

    Objects m_objects;
    QButtonGroup* m_segment;
    QToolButton* m_gridButton;
    QToolButton* m_tableButton;
    QCheckBox* m_selectAll;
    QLabel* m_total;
    QPushButton* m_addMore;
    AlbumChooser* m_chooser = nullptr;
    QPushButton* m_remove;
    QStackedWidget* m_views;
    PhotoGridView* m_grid;
    PhotoTableView* m_table;
    QLabel* m_preview;
    int m_previewSide = 0;
    QLabel* m_imageName;
    QString m_previewPath;
    QWidget* m_editorHost;
    MetadataForm* m_form;
    MetadataViewController* m_editor;
    DesktopActions* m_desktop;
    QPushButton* m_resetAll = nullptr;
    QButtonGroup* m_tabs = nullptr;
    QLabel* m_markedSummary;
    QLabel* m_location = nullptr;
    LocationView* m_locationView = nullptr;
    GeoLocationViewController* m_picker = nullptr;
    QPointer<PreviewViewController> m_previewWindow;
    TutorialOverlay* m_tutorial = nullptr;
    ProcessingControls* m_processing = nullptr;
    StartProcessChain* m_chain = nullptr;
    BatchController* m_batch = nullptr;
    FinalProcessedVC* m_runSheet = nullptr;
    RenameViewController* m_renamePanel = nullptr;
    QPushButton* m_rename = nullptr;
    PresetsViewController* m_presetsMenu = nullptr;
    QList<QPointer<QWidget>> m_editingOnly;
    QPushButton* m_start;
    QList<QPointer<QWidget>> m_batchControls;
    DimmingCover* m_cover;
    ScanProgressBox* m_progress;
};

} // namespace tagmoor
