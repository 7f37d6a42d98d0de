#pragma once

#include <QtGlobal>

namespace tagmoor {

// What a row of the preset menu stands for: "New Configuration" first, then the saved presets
// in their order, "Edit Presets..." last. The rows are the numbers PresetsDetailsOTM carries.
enum class PresetMenuRow { newConfiguration, savedPreset, editPresets, outside };

inline PresetMenuRow presetMenuRow(qsizetype row, qsizetype presetCount) {
    if (row == 0)
        return PresetMenuRow::newConfiguration;
    if (row == presetCount + 1)
        return PresetMenuRow::editPresets;
    return row > 0 && row <= presetCount ? PresetMenuRow::savedPreset : PresetMenuRow::outside;
}

// The store's position of the saved preset on a menu row.
inline qsizetype presetOfMenuRow(qsizetype row) {
    return row - 1;
}

} // namespace tagmoor
