#include "metadata/TagValueRange.h"

#include "metadata/Exiv2Guard.h"

#include <limits>

namespace tagmoor {

namespace {

template <typename T> TagValueRange wholeRange() {
    return {double(std::numeric_limits<T>::min()), double(std::numeric_limits<T>::max()), true};
}

// Exiv2::floatToRationalCast gives 1/0 for a value beyond the signed 32-bit range, and the
// writers of both forms go through it.
constexpr double kLargestFraction = double(std::numeric_limits<int32_t>::max());

} // namespace

std::optional<TagValueRange> tagValueRange(const char* key) {
    std::optional<TagValueRange> range;
    guardExiv2(
        [&] {
            switch (Exiv2::ExifKey(key).defaultTypeId()) {
            case Exiv2::unsignedByte:
                range = wholeRange<uint8_t>();
                break;
            case Exiv2::unsignedShort:
                range = wholeRange<uint16_t>();
                break;
            case Exiv2::unsignedLong:
                range = wholeRange<uint32_t>();
                break;
            case Exiv2::signedByte:
                range = wholeRange<int8_t>();
                break;
            case Exiv2::signedShort:
                range = wholeRange<int16_t>();
                break;
            case Exiv2::signedLong:
                range = wholeRange<int32_t>();
                break;
            case Exiv2::unsignedRational:
                range = TagValueRange{0, kLargestFraction, false};
                break;
            case Exiv2::signedRational:
                range = TagValueRange{-kLargestFraction, kLargestFraction, false};
                break;
            default:
                break;
            }
        },
        // Exiv2 refuses a key it has no tag for: that is no number tag, which is the answer.
        [](Exiv2Failure, const QString&) {});
    return range;
}

} // namespace tagmoor
