#pragma once

#include "presets/ActualPreset.h"

#include <QByteArray>
#include <QHash>
#include <QUrl>
#include <QVariantMap>

#include <optional>

namespace tagmoor {

// The stored dictionary of one preset and of its record. Keys are part of the stored format,
// misspellings included ("propertite"). Every value keeps its kind.
//
// Preset: "name", "index", "path" (the record's file), "propertite" (the record),
// "createDate" and "modifyDate" (the record's own two dates), "TimeSetting" (the date
// rules as JSON text) and "extras" (the edits beyond the form, see PresetExtras); each only
// when it has a value.
QVariantMap presetToDictionary(const ActualPreset& preset);

// Whether a record's photo (its "path") is read as the record is: Now for a single preset, as
// the stored format has it; Later where many presets are read at once or their file comes
// from elsewhere (the saved list, an imported file): no file is opened then, and the store
// reads the photos on a thread of its own (readPresetPhoto).
enum class PhotoRead { Now, Later };

// Date rules already read, by their stored text. Presets often share their rules, and reading
// that JSON text is the larger part of reading a preset.
using StoredRulesCache = QHash<QByteArray, OriginalFinalDate>;

// Reads what presetToDictionary wrote, leniently: a missing or mistyped name gives the empty
// text, a missing index stays absent, a missing record gives an empty one, and missing or
// unreadable date rules give the default rules.
ActualPreset presetFromDictionary(const QVariantMap& dictionary,
                                  StoredRulesCache* rulesCache = nullptr,
                                  PhotoRead photo = PhotoRead::Now);

// The record as an image property dictionary: one sub-dictionary per present group under the
// group's dictionary key, present fields under their ImageIO keys; beside them the top-level
// values, the colour model and the five XMP values. XMP dates are written as text.
QVariantMap recordToDictionary(const CGImageProperties& record);

// The reverse. Groups missing from the dictionary stay absent; the colour model and XMP
// groups are always present. A field keeps whatever kind of value it finds. The file size is
// never taken from the dictionary: with a `url` and PhotoRead::Now, it is the size of that
// file, and the file's own XMP values, where it has them, replace the dictionary's.
CGImageProperties dictionaryToRecord(const QVariantMap& dictionary, const std::optional<QUrl>& url,
                                     PhotoRead photo = PhotoRead::Now);

} // namespace tagmoor
