#pragma once

#include <QByteArray>
#include <QString>

namespace tagmoor {

// The installed world data: the gazetteer (places.bin) and the outline (world-outline.bin).
namespace GeoData {

// The full path of a data file, searched in: $TAGMOOR_DATA_DIR, the share folder beside the
// executable (../share/tagmoor), the XDG data folders (tagmoor/), and the source tree's data/
// (a build that was not installed). Empty when none holds it.
QString locate(const QString& fileName);

// The contents of a data file, uncompressed; empty when it is missing or damaged.
QByteArray readCompressed(const QString& path);

} // namespace GeoData

} // namespace tagmoor
