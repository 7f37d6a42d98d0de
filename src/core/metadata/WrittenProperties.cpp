#include "metadata/WrittenProperties.h"

#include <algorithm>

namespace tagmoor {

bool WrittenProperties::isEmpty(KeyBlock block) const {
    const auto absent = [](const PropertyValue& value) { return value.isAbsent(); };
    switch (block) {
    case KeyBlock::Exif:
        return std::all_of(m_values.exif.begin(), m_values.exif.end(), absent);
    case KeyBlock::Iptc:
        return std::all_of(m_values.iptc.begin(), m_values.iptc.end(), absent);
    case KeyBlock::Xmp:
        break;
    }
    return std::all_of(m_values.xmp.begin(), m_values.xmp.end(), absent);
}

// The value's own variant converts: the texts and numbers written are exactly Qt's readings,
// which files written so far hold.
QString writtenText(const PropertyValue& value) {
    return value.variant().toString();
}

qint64 writtenInteger(const PropertyValue& value) {
    return value.variant().toLongLong();
}

float writtenFloat(const PropertyValue& value) {
    return value.variant().toFloat();
}

double writtenDouble(const PropertyValue& value) {
    return value.variant().toDouble();
}

} // namespace tagmoor
