#include "presets/PresetLog.h"

Q_LOGGING_CATEGORY(lcPresets, "tagmoor.presets")
