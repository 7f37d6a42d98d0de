#include "workingset/ListSelection.h"

#include "workingset/WorkingSet.h"

namespace tagmoor {

ButtonStates buttonStatesFor(int markedCount) {
    ButtonStates states;
    states.batchControlsEnabled = markedCount > 0;
    states.clearEditorAndPreview = markedCount == 0;
    return states;
}

SelectionOutcome ListSelection::checkBoxClicked(int row, bool on) {
    if (m_set.isEmpty() || !m_set.setSelected(row, on)) {
        SelectionOutcome none;
        none.ignored = true;
        return none;
    }
    return outcome(row, on, true);
}

SelectionOutcome ListSelection::setAllMarked(bool on) {
    if (m_set.isEmpty()) {
        SelectionOutcome none;
        none.ignored = true;
        return none;
    }
    m_set.setAllSelected(on);
    return outcome(0, on, true);
}

SelectionOutcome ListSelection::refresh() {
    if (m_set.isEmpty()) {
        SelectionOutcome none;
        none.ignored = true;
        none.buttons = buttonStatesFor(0);
        return none;
    }
    return outcome(0, true, false);
}

bool ListSelection::selectAllState() const {
    return !m_set.isEmpty() && m_set.markedCount() == m_set.count();
}

SelectionOutcome ListSelection::outcome(int clickedRow, bool clickedOn, bool fromClick) const {
    SelectionOutcome out;
    out.marked = m_set.markedIndices();
    const int n = int(out.marked.size());
    if (n == 1 && (clickedOn || !fromClick))
        out.editorAction = SelectionOutcome::EditorAction::LoadSingleRecord;
    else if (n == 0)
        out.editorAction = SelectionOutcome::EditorAction::RestoreEmpty;
    out.buttons = buttonStatesFor(n);
    if (n == 1) {
        out.showRecord = out.marked.first();
        out.metadataInfo = MetadataInfo{out.marked, false, out.marked.first()};
    } else if (n > 1) {
        out.geocodeDefaultAndClearPreview = true;
        out.metadataInfo = MetadataInfo{out.marked, true, clickedRow};
    }
    out.selectAllOn = selectAllState();
    return out;
}

} // namespace tagmoor
