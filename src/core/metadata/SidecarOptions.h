#pragma once

#include "foundation/ValueForm.h"

#include <QString>
#include <QStringList>

#include <optional>

namespace tagmoor {

// How a sidecar is named beside its photo: "name.ext.xmp" (the name of the photo with ".xmp"
// added) or "name.xmp" (the photo's extension replaced).
enum class SidecarNaming { WithExtension, ReplacingExtension };

// Where a run writes a photo's XMP.
enum class SidecarWrite {
    never,    // into the photo only; sidecars are left alone
    fallback, // into the photo, or into its sidecar when Exiv2 cannot write the format
    always,   // into the sidecar only; the photo keeps its bytes
    both,     // into the photo and its sidecar
};

// What stripping the XMP group does to a photo's sidecar.
enum class SidecarStrip {
    keep,   // the sidecar stays as it is
    strip,  // the sidecar is emptied of its properties
    remove, // the sidecar is removed
};

// A run's choices about sidecars. With `write` other than never, a copy or a renamed copy
// takes its photo's sidecar along, under the name of the new photo. A run left alone writes
// as it always did (never); the front ends start from frontEndDefault().
struct SidecarOptions {
    SidecarWrite write = SidecarWrite::never;
    SidecarStrip strip = SidecarStrip::keep;
    // The name of a new sidecar, where the photo had none to follow.
    SidecarNaming naming = SidecarNaming::WithExtension;

    // What the command line and the window choose unless told: in the standard form a sidecar
    // where the photo cannot be written, stripped with the XMP group; in the described form
    // sidecars are left alone.
    static SidecarOptions frontEndDefault() {
        SidecarOptions options;
        if (isStandardForm()) {
            options.write = SidecarWrite::fallback;
            options.strip = SidecarStrip::strip;
        }
        return options;
    }

    bool operator==(const SidecarOptions&) const = default;
};

// The words that name the choices, in the order of their enums; the settings and the command
// line use the same.
const QStringList& sidecarWriteNames();
const QStringList& sidecarStripNames();
const QStringList& sidecarNamingNames();

// The position of `word` (any case) among `names`, if it is one of them.
std::optional<int> sidecarChoice(const QString& word, const QStringList& names);

} // namespace tagmoor
