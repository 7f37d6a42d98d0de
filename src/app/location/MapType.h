#pragma once

#include <array>

namespace tagmoor {

// The three map types, in the order of the map type segment's buttons and of the stored tile
// addresses.
enum class MapType { standard, satellite, hybrid };

inline constexpr std::array allMapTypes{MapType::standard, MapType::satellite, MapType::hybrid};

// The map type of a segment button's id: with no button checked (-1), the standard map.
inline MapType mapTypeOfSegment(int id) {
    return id == 1 ? MapType::satellite : id == 2 ? MapType::hybrid : MapType::standard;
}

} // namespace tagmoor
