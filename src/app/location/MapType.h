#pragma once

#include "foundation/MapType.h"

namespace tagmoor {

// The map type of a segment button's id: with no button checked (-1), the standard map.
inline MapType mapTypeOfSegment(int id) {
    return id == 1 ? MapType::satellite : id == 2 ? MapType::hybrid : MapType::standard;
}

} // namespace tagmoor
