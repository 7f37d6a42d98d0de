#include "metadata/MetadataTest.h"

#include "model/KeyTable.h"

namespace tagmoor {

MetadataTest::MetadataTest() {
    initializeAllNeeded();
}

void MetadataTest::initializeAllNeeded() {
    m_exifKeys = exifKeyNames();
    m_iptcKeys = iptcKeyNames();
    m_xmpKeys = xmpKeyNames();
}

} // namespace tagmoor
