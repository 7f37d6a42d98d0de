#pragma once

#include "foundation/AppEvents.h"

#include <QtGlobal>

namespace tagmoor {

// The menu's rows by number: "New Configuration" is row 0, the saved presets follow, and
// "Edit Presets..." is the last.
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

inline PresetsMenuChoice presetsMenuChoice(qsizetype row, qsizetype presetCount) {
    const PresetMenuRow kind = presetMenuRow(row, presetCount);
    return {kind, kind == PresetMenuRow::savedPreset ? presetOfMenuRow(row) : -1};
}

} // namespace tagmoor
