#pragma once

#include <QList>

#include <optional>

namespace tagmoor {

class WorkingSet;

// The enable state of the home screen's batch controls (start, remove, preset, rename, the
// three editor tabs, GPS, editing options, the five clean boxes, reset all): all on when at
// least one record is marked, all off otherwise.
struct ButtonStates {
    bool batchControlsEnabled = false;
    // With nothing marked the editor is cleared, the preview emptied and the default
    // coordinate reverse-geocoded.
    bool clearEditorAndPreview = true;
    bool operator==(const ButtonStates&) const = default;
};
ButtonStates buttonStatesFor(int markedCount);

// What the editor is told: the marked indices ascending, whether more than one is marked,
// and the record to show.
struct MetadataInfo {
    QList<int> indexes;
    bool isMultipleSelected = false;
    int index = -1;
    bool operator==(const MetadataInfo&) const = default;
};

// The outcome of a change of marks (a check box click, select all, the end of a scan, a
// removal): what the screen has to do, in order. The screen carries it out; no logic is left.
struct SelectionOutcome {
    enum class EditorAction {
        None,             // leave the editor as it is
        LoadSingleRecord, // save the working values as the group state, load `showRecord`
        RestoreEmpty,     // nothing marked: back to the editor's empty state
    };
    bool ignored = false; // the list was empty, or the row outside it
    QList<int> marked;
    EditorAction editorAction = EditorAction::None;
    ButtonStates buttons;
    // One marked: its row (preview, its GPS for the location view). Several: none.
    std::optional<int> showRecord;
    // Several marked: reverse-geocode the default coordinate and clear name and preview.
    bool geocodeDefaultAndClearPreview = false;
    // Posted when at least one is marked.
    std::optional<MetadataInfo> metadataInfo;
    // The state of the select-all check box.
    bool selectAllOn = false;
};

// The rules of marking on the working list.
class ListSelection {
public:
    explicit ListSelection(WorkingSet& workingSet) : m_set(workingSet) {}

    // A click on the check box of `row`, now in state `on`.
    SelectionOutcome checkBoxClicked(int row, bool on);
    // The select-all check box (or "Mark/Unmark All" with the box's state): marks or unmarks
    // every record, then refreshes as a click would, with row 0 as the clicked one.
    SelectionOutcome setAllMarked(bool on);
    // The refresh that follows a scan or a removal: same steps without a click.
    SelectionOutcome refresh();

    // Select-all box on exactly when every record is marked (and the list is not empty).
    bool selectAllState() const;

private:
    SelectionOutcome outcome(int clickedRow, bool clickedOn, bool fromClick) const;
    WorkingSet& m_set;
};

} // namespace tagmoor
