#pragma once

#include <QString>

#include <optional>

namespace tagmoor {

// The time zone of a place on Earth, offline: the installed grid of zones (time-zones.bin,
// cells of 0.01 degree). Loaded once, on first use, by whichever thread asks first.
namespace TimeZoneMap {

// The IANA name of the zone at the position ("Europe/Lisbon"; "Etc/GMT+2" at sea), or none
// when the position is not one or the data is missing.
std::optional<QString> zoneAt(double latitude, double longitude);

// Whether the zone data could be read (a build without it finds no zones).
bool isAvailable();

} // namespace TimeZoneMap

} // namespace tagmoor
