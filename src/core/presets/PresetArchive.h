#pragma once

#include "presets/ActualPreset.h"
#include "presets/PresetCheck.h"

#include <QByteArray>
#include <QList>

#include <optional>

namespace tagmoor {

// The stored form of the preset list: a Qt data stream (version 6.4) of one QVariantList
// holding one QVariantMap per preset, in list order. An empty list is stored as a stream of
// an empty list, not as nothing.
QByteArray encodePresetArchive(const QList<ActualPreset>& presets);

// The presets of a stored block, or nothing when the block does not decode: bytes that are
// not such a stream, a stream cut short or followed by other bytes, an element that is not a
// dictionary, or a value of a kind that no preset holds. Counts in the stream are checked
// against the bytes that remain before anything is allocated, so no block can make the
// reader allocate more than the block's own size.
std::optional<QList<ActualPreset>> decodePresetArchive(const QByteArray& block);

// The same block read preset by preset, as the store loads it: an element that is no
// dictionary, a preset that presetRefusal refuses, or one whose name an earlier preset has
// already (compared in small letters) is left out with its reason, and the others are kept.
// No photo is read. Nothing when the block itself does not decode.
struct PresetArchiveContents {
    QList<ActualPreset> presets;
    QList<RefusedPreset> refused;
};
std::optional<PresetArchiveContents> readPresetArchive(const QByteArray& block);

} // namespace tagmoor
