#pragma once

#include "model/KeyTable.h"
#include "model/PropertyValue.h"

#include <array>

namespace tagmoor {

// The typed intermediate between the bridge and the record: one value per row of the key
// lists, addressed by row number, of the row's read kind, with dates still as text.
// Latitude and longitude hold signed degrees as 32-bit floats. Rows 48-51 stay absent.
// The editor's result takes the same shape before writing, so reader and writer share it.
struct MetadataFieldSet {
    std::array<PropertyValue, kExifKeyCount> exif;
    std::array<PropertyValue, kIptcKeyCount> iptc;
    std::array<PropertyValue, kXmpKeyCount> xmp;

    PropertyValue& at(const KeyRow& row) {
        switch (row.block) {
        case KeyBlock::Exif:
            return exif[row.row];
        case KeyBlock::Iptc:
            return iptc[row.row];
        case KeyBlock::Xmp:
            break;
        }
        return xmp[row.row];
    }
    const PropertyValue& at(const KeyRow& row) const {
        return const_cast<MetadataFieldSet*>(this)->at(row);
    }

    bool operator==(const MetadataFieldSet&) const = default;
};

} // namespace tagmoor
