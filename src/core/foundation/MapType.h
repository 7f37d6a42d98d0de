#pragma once

#include <array>

namespace tagmoor {

// The three map types, in the order of the map type segment's buttons and of the stored tile
// addresses.
enum class MapType { standard, satellite, hybrid };

inline constexpr std::array allMapTypes{MapType::standard, MapType::satellite, MapType::hybrid};

} // namespace tagmoor
