#pragma once

#include "presets/ActualPreset.h"

#include <QList>
#include <QString>

#include <optional>

namespace tagmoor {

// Why a preset read from a file may not join the list, or nothing when it may. The one place
// where the values a preset carries are judged: the saved list on load and an imported file
// both pass through it, and a refused preset is left out with this reason while the others
// are kept.
std::optional<QString> presetRefusal(const ActualPreset& preset);

// A preset that was left out of a list, with its place in what was read and why.
struct RefusedPreset {
    qsizetype position = 0;
    QString name; // as stored, empty when it had none
    QString reason;
};

} // namespace tagmoor
