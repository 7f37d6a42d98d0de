#pragma once

#include "batch/BatchController.h"
#include "editor/MetadataClipboard.h"
#include "editor/MetadataForm.h"
#include "exchange/ListExchange.h"
#include "geo/PlacedPosition.h"
#include "geo/SharedLocation.h"
#include "processing/RunSummary.h"
#include "processing/StartProcessChain.h"

#include <QObject>

#include <functional>
#include <optional>

namespace tagmoor {

class AppEvents;
class FolderAccess;
class PresetStore;
class ProcessingOptions;
class Rename;
class RenameNumbering;
class ScanController;
class Settings;
class UserPrompt;
class WorkingSet;
struct CGImageProperties;
struct EditorState;
struct ExtraEdits;

// The home screen's state without its widgets: the editor's form, the chain of questions of
// Start Process, the controller of the run and the position the location picker shares, over
// the application's working set, options and presets. The shell makes one and hands it to the
// screen, whose panes show its state and forward their actions here.
class HomeSession : public QObject {
    Q_OBJECT
public:
    struct Objects {
        WorkingSet& workingSet;
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

    explicit HomeSession(const Objects& objects, QObject* parent = nullptr);

    const Objects& objects() const { return m_objects; }
    MetadataForm& form() { return m_form; }
    StartProcessChain& chain() { return m_chain; }
    BatchController& batch() { return m_batch; }
    SharedLocation& location() { return m_location; }

    // Start Process: the chain of questions, unless a scan is still adding photos.
    void startProcess();
    // The plan of the run as Start Process would make it now, before any question.
    RunValues reviewValues();
    // Reset All, as when the list is new: the form, its flags and date rules emptied, the
    // rename rule and the picked position let go, the mode back on its first row with the
    // clean boxes off (and the values behind them), the one-run overwrite answer forgotten.
    void resetAll();
    // Finish on the run sheet: the edit state reset, the rename rule back to its default, the
    // run's cover gone, the list emptied and the add screen back.
    void finishRun();

    // The one marked photo's position, which becomes the shared one; nothing when it has none.
    std::optional<SharedLocation> takePositionOf(const CGImageProperties& record);
    // The picker is about to open: it starts from the form's position when both parts are set.
    void locationPickerOpening();
    // The picker closed: the form's GPS fields take the shared position as edits.
    void takePickedLocation();

    // The geotag panel's Apply: the photos take these places as their own GPS edits (shown in
    // the editor for the photo on display, reviewed and written like any edit).
    void placePhotos(const PlacedPositions& positions);

    // Copy Metadata: the values of the photo on display (with its rating, label, IPTC texts
    // and people shown, read from its file) go to the clipboard, replacing what it held; false
    // (and the clipboard as it was) when no photo is on display.
    bool copyMetadata();
    // What Paste Metadata... offers to tick.
    const MetadataClipboard& clipboard() const { return m_clipboard; }
    // Paste Metadata...: the values of the ticked entries (by their position in the
    // clipboard's entries) go into the form and the edits beyond it as edits of the marked
    // photos.
    void pasteMetadata(const QList<bool>& ticked);
    // Paste Metadata... as the menu runs it: the list of the clipboard's values to tick, then
    // the paste of those ticked; an alert when nothing was copied. False when nothing changed.
    bool askAndPasteMetadata();
    // The question Paste Metadata... asks: one "label: value" item per value copied.
    TickQuestion pasteQuestion() const;

    // File > Export Metadata... and File > Import Metadata....
    ListExchange& exchange() { return m_exchange; }

    // What the next run is set to do, item by item.
    QList<RunSummaryItem> summary() const;
    // The edits of the Keywords & More tab, which a run and the review take with the form's.
    const ExtraEdits& extraEdits() const;
    void setExtraEdits(const ExtraEdits& edits);
    // The keys 0 to 5 on the list: the rating of the marked photos.
    void setRating(int stars);
    // The edited position (both coordinates typed or picked), signed.
    std::optional<std::pair<double, double>> editedPosition() const;
    // Takes one item back: its edits, its date rule, the rename rule, the position, or the
    // preset's values.
    void clearSummaryItem(const RunSummaryItem& item);

signals:
    // The list became empty and everything of the last one was let go: no edit, date rule,
    // rename rule, mode or picked position reaches the next photos.
    void newListStarted();
    // The edits beyond the form changed (the tab shows them anew).
    void extraEditsChanged();
    // The summary may read differently (edits, rules, preset or rename changed).
    void summaryChanged();

private:
    void startNewList();
    // What a new list and Reset All both let go of.
    void letGoOfTheEdits();
    void clearExtraItem(RunSummaryItem::Kind kind);

    Objects m_objects;
    MetadataForm m_form;
    StartProcessChain m_chain;
    BatchController m_batch;
    SharedLocation m_location;
    // Outlives the list, so that values copied from one list can go into the next.
    MetadataClipboard m_clipboard;
    ListExchange m_exchange;
    // The saved preset last put into the form.
    QString m_presetName;
};

} // namespace tagmoor
