#pragma once

#include <optional>

namespace tagmoor {

// The numbers an Exif tag can hold in its standard type, as the writers lay a value into it:
// whole numbers between the limits of an integer type, or a fraction of a rational type
// (which the writers make from a float whose size must fit a signed 32-bit numerator). A
// value outside would wrap (ISO -5 in a Short is 65531) or be written as 1/0.
struct TagValueRange {
    double lowest = 0;
    double highest = 0;
    bool whole = true;

    bool contains(double value) const { return value >= lowest && value <= highest; }
};

// The range of the Exif tag `key` ("Exif.Photo.ISOSpeedRatings"), or nothing for a key that
// is no Exif number tag.
std::optional<TagValueRange> tagValueRange(const char* key);

} // namespace tagmoor
