#include "processing/ReviewValues.h"

#include "editor/EditorState.h"
#include "editor/MetadataForm.h"
#include "foundation/Settings.h"
#include "processing/ProcessingOptions.h"
#include "processing/SidecarSettings.h"

namespace tagmoor {

RunValues reviewRunValues(const ProcessingOptions& options, const Settings& settings,
                          const Rename& renameSettings, MetadataForm& form,
                          const EditorState& editorState) {
    RunValues values;
    values.processingMode = options.mode();
    values.clean = options.clean();
    values.overwriteExisting =
        options.overwriteExisting || settings.isOverwriteIfAFileWithASameNameOrDefault();
    values.renameSettings = renameSettings;
    values.isDestinationPathAsSource = true;
    values.editedProperties = form.readForm();
    values.fieldEditedFlags = editorState.fieldEditedFlags;
    values.editorDates = editorState.editorDates().rules();
    values.carryShifts = editorState.carryShifts;
    values.extras = editorState.extras;
    values.photoValues = editorState.photoValues;
    values.sidecar = sidecarOptionsFrom(settings);
    return values;
}

} // namespace tagmoor
