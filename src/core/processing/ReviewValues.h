#pragma once

#include "batch/RunValues.h"

namespace tagmoor {

class MetadataForm;
class ProcessingOptions;
class Settings;
struct EditorState;

// The values that a run started now would take, for reviewing its changes before any of the
// questions of Start Process: the mode and its clean boxes, the rename rule, the writing
// preferences and the snapshot of the form. The output folder is chosen only when the run
// starts, so the review writes the photos where they are; the overwrite choice is the
// preference's (or this run's answer).
RunValues reviewRunValues(const ProcessingOptions& options, const Settings& settings,
                          const Rename& renameSettings, MetadataForm& form,
                          const EditorState& editorState);

// Lays the editor's per-photo values over a run: the positions placed from tracks, the zone of
// the dates, and the move of each photo's dates to the local time of its place.
void addEditorPhotoValues(RunValues& values, const EditorState& editorState);

} // namespace tagmoor
