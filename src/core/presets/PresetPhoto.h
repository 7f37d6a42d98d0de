#pragma once

#include "model/CGImageProperties.h"

#include <QString>

#include <optional>

namespace tagmoor {

// What a preset takes from the photo it names (its "path"): the file's size, and the file's
// own five XMP values, which stand above the stored ones. Reading the list of presets opens no
// file; the photo is read where its values are wanted, by readPresetPhoto, which takes
// regular files only, never waits on a pipe or a device and reads a bounded number of bytes.
struct PresetPhotoFacts {
    qint64 fileSize = 0;
    // The values the file holds; the others stay absent.
    XMPDataProperties xmp;
};

// A photo larger than this is not read for a preset.
constexpr qint64 kMaxPresetPhotoBytes = 64 * 1024 * 1024;

// The facts of the photo at `path`, or nothing with the reason in `why`. Safe on any thread.
std::optional<PresetPhotoFacts> readPresetPhoto(const QString& path, QString* why = nullptr);

// Lays the facts over a preset's record: the size, and each XMP value the file holds.
void applyPresetPhoto(CGImageProperties& record, const PresetPhotoFacts& facts);

} // namespace tagmoor
