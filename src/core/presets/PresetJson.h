#pragma once

#include "presets/ActualPreset.h"

#include <QByteArray>
#include <QString>

#include <optional>

namespace tagmoor {

// A preset as a JSON file that people can read and that moves presets between machines:
//
//   {"tagmoorPreset": 1,
//    "preset": {"name": "Beach", "index": {"int64": 0},
//               "propertite": {"map": {"{TIFF}": {"map": {"Artist": "Jane"}}, ...}},
//               "TimeSetting": {...the date rules...}}}
//
// "preset" is the stored dictionary of the preset, key for key. A text stands as a JSON
// string; every other value names its kind, so that it reads back as the same kind: int64,
// int32, uint32, uint64, uint8, float32, float64, bool, date (ISO 8601 with its offset),
// day (ISO date), bytes (base64), list (an array of values), texts (an array of strings) and
// map. Numbers that JSON cannot carry exactly (large 64-bit integers, NaN, infinities) are
// written as strings. The date rules are written as their own JSON object.
QByteArray encodePresetJson(const ActualPreset& preset, QString* error = nullptr);

// The preset of such a file, or nothing with the reason in `error` when the bytes are not a
// preset file or a value does not read back.
std::optional<ActualPreset> decodePresetJson(const QByteArray& json, QString* error = nullptr);

// The largest preset file that is read: a preset's JSON is a few kilobytes.
constexpr qint64 kMaxPresetJsonBytes = 4 * 1024 * 1024;

// The preset of the JSON file at `path`, or nothing with the reason in `error`: only a
// regular file of at most kMaxPresetJsonBytes is read, without waiting on a pipe or a device;
// its preset must decode and pass presetRefusal. The photo it names is not opened.
std::optional<ActualPreset> readPresetJsonFile(const QString& path, QString* error = nullptr);

} // namespace tagmoor
