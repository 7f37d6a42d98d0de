#include "geo/MapTileNotices.h"

namespace tagmoor {

MapTileNotices& MapTileNotices::instance() {
    static MapTileNotices notices;
    return notices;
}

} // namespace tagmoor
