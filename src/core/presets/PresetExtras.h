#pragma once

#include "extras/ExtraEdits.h"

#include <QVariant>
#include <QVariantMap>

#include <optional>

namespace tagmoor {

// The edits beyond the form that a preset holds, as the stored dictionary keeps them under the
// preset's key "extras": "addKeywords" and "removeKeywords" (texts), "rating" (int32), "label",
// "texts" (a map from the JSON name of each IPTC text, "altText", to its text), "persons"
// (texts) and "syncCopies" (bool), each only when set. The moment of a GPS position is the
// photo's own and is never kept.
QVariantMap presetExtrasToDictionary(const ExtraEdits& extras);

// Reads what presetExtrasToDictionary wrote, leniently: a key missing or of another kind is
// left unset, and an unknown key passed over. Nothing when `stored` is no dictionary.
std::optional<ExtraEdits> presetExtrasFromDictionary(const QVariant& stored);

// The edits a preset keeps of the Keywords & More tab: all but the GPS moment.
ExtraEdits presetExtrasOf(const ExtraEdits& edits);

// A preset's extras with `given` laid over them, as a run that names a preset and gives edits
// of its own takes them: the keywords of both (those `given` removes no longer added), and for
// every other value the one `given` sets, else the preset's.
ExtraEdits extrasOverPreset(const ExtraEdits& preset, const ExtraEdits& given);

} // namespace tagmoor
