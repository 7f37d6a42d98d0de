#pragma once

#include "dates/OriginalFinalDate.h"
#include "extras/ExtraEdits.h"
#include "model/CGImageProperties.h"

#include <QString>

#include <optional>

namespace tagmoor {

// One saved preset: a name, the metadata values it applies, the rules of the six dates and the
// edits beyond the form (keywords added and removed, rating, label, IPTC texts, people shown,
// copies in step); a preset saved before it held those has none.
// `index` is the number the preset got when it was made; it is carried along but never
// renumbered, so code addresses presets by their list position, not by `index`.
struct ActualPreset {
    std::optional<qint64> index;
    std::optional<QString> name;
    std::optional<CGImageProperties> properties;
    std::optional<OriginalFinalDate> timeSetting;
    std::optional<ExtraEdits> extras = std::nullopt;

    bool operator==(const ActualPreset&) const = default;
};

// A fresh preset: an empty record (no url) and the default date rules.
inline ActualPreset makeNewPreset(const QString& name, qint64 index) {
    return {index, name, makeEmptyRecord(std::nullopt), OriginalFinalDate{}, std::nullopt};
}

} // namespace tagmoor
