#pragma once

#include "metadata/SidecarOptions.h"

namespace tagmoor {

class Settings;

// A run's sidecar choices as the settings hold them; what they leave out (or hold no known
// word for) is the form's choice.
SidecarOptions sidecarOptionsFrom(const Settings& settings);

// Applies the settings that hold for the whole process: the accepted extensions and whether
// sidecars are read, as far as the settings choose them.
void applyProcessSidecarSettings(const Settings& settings);

// Whether the window keeps the copies of a group in step when the setting is absent: on, so
// that a photo whose Exif copy is gone shows its XMP or IPTC copy in the form, and an edit of
// a caption, creator or rights field writes every copy of it. The described form keeps its
// copies apart whatever the switch says (ExtraEdits::syncsCopies).
inline constexpr bool kCopiesInStepByDefault = true;

// Whether the window keeps the copies of a group in step: the setting, or the default above.
// The command line keeps its own switch (off unless asked).
bool copiesInStepFrom(const Settings& settings);

} // namespace tagmoor
