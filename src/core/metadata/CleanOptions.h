#pragma once

namespace tagmoor {

// The five clean-metadata check boxes. EXIF stands for all of EXIF, GPS and the comment
// being parts of it; the box actions keep them consistent, not this struct.
struct CleanOptions {
    bool cleanExif = false;
    bool cleanIPTC = false;
    bool cleanXMP = false;
    bool cleanGPS = false;
    bool cleanComment = false;

    bool any() const { return cleanExif || cleanIPTC || cleanXMP || cleanGPS || cleanComment; }
    bool operator==(const CleanOptions&) const = default;
};

} // namespace tagmoor
