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

// Why `name` cannot name a preset, or nothing: a name is shown in menus and given to the command
// line, so it holds no control character (a line break, a tab, a NUL), no half of a character,
// and does not begin with "--". Emptiness and repeats are the store's business.
std::optional<QString> presetNameRefusal(const QString& name);

// What a user who typed such a name is told.
QString unfitPresetNameText();

// A preset that was left out of a list, with its place in what was read and why.
struct RefusedPreset {
    qsizetype position = 0;
    QString name; // as stored, empty when it had none
    QString reason;
};

} // namespace tagmoor
