#pragma once

#include <QPointer>
#include <QWidget>

class QAbstractItemView;
class QFrame;
class QMenu;
class QSplitter;
class QToolButton;

namespace tagmoor {

class AlbumChooser;
class DesktopActions;
class DimmingCover;
class FinalProcessedVC;
class GeoLocationViewController;
class HomeActionBar;
class HomeEditorBox;
class HomeListPane;
class HomeMenuActions;
class HomeSummaryBar;
struct RunSummaryItem;
class HomePreviewPane;
class HomeSession;
class PreviewViewController;
class ProcessingControls;
class RenameViewController;
class ScanProgressBox;
class ThumbnailProvider;
class TutorialOverlay;
class WorkingListModel;
enum class ProcessingMode;
struct CGImageProperties;
struct RunValues;
struct ScanProgressView;
struct SelectionOutcome;

// The home screen: the list pane (grid or table over one model, its bar) beside the side pane
// (preview, editor box, mode and Start Process), the sheets it opens and the progress box of a
// running scan. Its state lives in the HomeSession and the working set; the screen composes
// the panes, shows that state and hands every action on.
class HomeScreen : public QWidget {
    Q_OBJECT
public:
    // The objects the screen shows and hands its actions to.
    struct Objects {
        HomeSession& session;
        WorkingListModel& listModel;
        ThumbnailProvider& thumbnails;
    };

    explicit HomeScreen(const Objects& objects, QWidget* parent = nullptr);

    // Called by the root each time the screen comes up: starts the scan that waits for it.
    void viewWillAppear();

    void clickedAddMore();
    // The home face's "Folders and photos": the open panel of this screen.
    void addFoldersAndPhotos();
    void clickedRemove();
    void clickedStopScanning();
    void clickedCheckBox(int row, bool on);
    void clickedSelectUnselectAll(bool on);
    void markUnmarkAll();
    // 0 grid, 1 table.
    void clickedSegmentCollectionnTableView(int index);
    // The EXIF, IPTC and XMP tabs of the editor: 0, 1, 2.
    void clickedEditorTab(int editor);
    // Reset All, as when the list is new: the editor, its flags and date rules, the rename
    // rule and the picked position emptied, the mode popup on its first row with the clean
    // boxes off, the choice applied anew.
    void clickedResetAll();
    // "Show Metadata" and "Get Info": the facts of one photo.
    void showInfo(int row);
    // "Location...": the picker, starting from the photo's position.
    void clickShowEditorGPS();
    // The picker closed: the editor's GPS fields and the location view take its position.
    void updateLocationViewWithNotification();
    // Double click and "Show Metadata": the preview window of one photo.
    void openPreview(int row);
    // The tour of the screen, once per user: after the first scan that filled the list.
    void showTutorialOnce();
    // Start Process: the chain of questions, then the run screen.
    void clickedStartProcess();
    // Edit > Copy Metadata: the values of the photo on display; Edit > Paste Metadata...: the
    // list to tick, then the ticked values as edits of the marked photos.
    void copyMetadata();
    void pasteMetadata();
    // File > Export Metadata... and File > Import Metadata...; the photos an import matched
    // come up marked.
    void exportMetadata();
    void importMetadata();
    void openReview();
    void openPresets();
    // The keyboard's way into the editor: the first field of the tab on show.
    void focusEditor();
    // The first-start tips, again.
    void showTips();
    // The screen's actions for the main window's menus.
    HomeMenuActions& menuActions() const { return *m_menu; }
    // The rename sheet over the application's rename rule.
    void clickedRename();

    // Builds the context menu for a row of the list (-1: outside any row).
    QMenu* buildContextMenu(int row, QWidget* parent);

protected:
    void resizeEvent(QResizeEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;

private:
    QWidget* makeSidePane();
    QSplitter* makeSplitter();
    void makeCovers();
    // The preview and map take room only while one photo is on display (or in the described
    // form), and only while they are not folded away.
    void setSinglePhotoShown(bool shown);
    void updatePreviewRoom();
    void openSummaryItem(const RunSummaryItem& item);
    void connectPanes();
    void connectCore();
    void addBatchControl(QWidget* control);
    void applyProgress(const ScanProgressView& view);
    void applyOutcome(const SelectionOutcome& outcome);
    void setBatchControlsEnabled(bool on);
    void updateTotal();
    void updateMarkedSummary();
    void reloadViews();
    void showPreview(int row);
    void showLocation(const CGImageProperties& record);
    void editingModeChanged(ProcessingMode mode);
    // The list became empty: the screen shows the clean editor and options of the next one.
    void showNewList();
    void openRunSheet(const RunValues& values);
    void finishRun();
    void showContextMenu(QAbstractItemView* view, const QPoint& pos);

    Objects m_objects;
    ProcessingControls* m_processing;
    HomeListPane* m_list;
    HomePreviewPane* m_preview;
    HomeEditorBox* m_editorBox;
    HomeActionBar* m_actions;
    HomeSummaryBar* m_summary = nullptr;
    HomeMenuActions* m_menu = nullptr;
    QSplitter* m_splitter = nullptr;
    QToolButton* m_fold = nullptr;
    QFrame* m_previewLine = nullptr;
    bool m_singlePhotoShown = false;
    DesktopActions* m_desktop;
    AlbumChooser* m_chooser = nullptr;
    GeoLocationViewController* m_picker = nullptr;
    QPointer<PreviewViewController> m_previewWindow;
    TutorialOverlay* m_tutorial = nullptr;
    FinalProcessedVC* m_runSheet = nullptr;
    RenameViewController* m_renamePanel = nullptr;
    QList<QPointer<QWidget>> m_editingOnly;
    QList<QPointer<QWidget>> m_batchControls;
    DimmingCover* m_cover = nullptr;
    ScanProgressBox* m_progress = nullptr;
};

} // namespace tagmoor
