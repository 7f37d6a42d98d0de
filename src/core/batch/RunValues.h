#pragma once

#include "batch/FieldEditedFlags.h"
#include "batch/PhotoValues.h"
#include "dates/OriginalFinalDate.h"
#include "extras/ExtraEdits.h"
#include "metadata/CleanOptions.h"
#include "metadata/SidecarOptions.h"
#include "metadata/WriteOptions.h"
#include "model/CGImageProperties.h"
#include "rename/Rename.h"

#include <QMetaType>
#include <QString>

#include <memory>
#include <optional>
#include <vector>

namespace tagmoor {

// What a run does to each photo, in the order of the mode popup's rows.
enum class ProcessingMode { keepUnedited = 0, clearUnedited = 1, removeGroups = 2 };

// Everything a run reads, settled before it starts and copied into it, so that the run never
// looks at the screens' live state.
struct RunValues {
    ProcessingMode processingMode = ProcessingMode::keepUnedited;
    CleanOptions clean;
    // The output folder's path; none means each photo is written where it is.
    std::optional<QString> destinationFolder;
    bool isDestinationPathAsSource = false;
    bool overwriteExisting = false;
    // The snapshot of the form taken just before the run.
    CGImageProperties editedProperties;
    FieldEditedFlags fieldEditedFlags;
    // The rules of the six date fields (a copy of editorDates).
    OriginalFinalDate editorDates;
    Rename renameSettings;
    // How tags are laid into the files (standard form, IPTC character set).
    WriteOptions writeOptions;
    // Date and time shifts carry into days, months and years instead of wrapping.
    bool carryShifts = false;
    // What some photos get instead of the values above, applied in order (none: every photo
    // gets the same).
    std::vector<std::shared_ptr<const PhotoValues>> photoValues;
    // What the run writes beyond the form's fields: keywords added and removed, rating,
    // label, the IPTC Core and Extension texts, and whether copies follow their field.
    ExtraEdits extras;
    // Where the XMP goes beside the photo, and what stripping does to a sidecar.
    SidecarOptions sidecar;
};

} // namespace tagmoor

Q_DECLARE_METATYPE(tagmoor::RunValues)
