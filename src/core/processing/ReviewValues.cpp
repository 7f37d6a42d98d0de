#include "processing/ReviewValues.h"

#include "dates/ZoneClock.h"
#include "editor/EditorState.h"
#include "editor/MetadataForm.h"
#include "exchange/GeotagValues.h"
#include "exchange/LocalTimeValues.h"
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
    addEditorPhotoValues(values, editorState);
    return values;
}

void addEditorPhotoValues(RunValues& values, const EditorState& editorState) {
    if (!editorState.placedPositions.isEmpty())
        values.photoValues.push_back(
            std::make_shared<PlacedPhotoValues>(editorState.placedPositions));
    const std::optional<QString> zone = ZoneClock::zoneIdOf(editorState.datesZone);
    if (editorState.shiftToLocalTime)
        values.photoValues.push_back(
            std::make_shared<LocalTimeValues>(zone.value_or(ZoneClock::systemZoneId())));
    else if (zone)
        values.extras.datesZone = DatesZone{*zone, {}};
}

} // namespace tagmoor
