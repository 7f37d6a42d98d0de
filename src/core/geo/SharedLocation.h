#pragma once

namespace tagmoor {

// The position the location subsystem shares: where the picker starts and what it hands back
// when it closes, read by the editor's GPS fields; also the default coordinate the home
// screen's location view falls back on. One lives with the home screen's session and is handed
// to the picker and the screen; a new list starts it over at 0, 0.
class SharedLocation {
public:
    SharedLocation() = default;
    SharedLocation(double latitude, double longitude)
        : m_latitude(latitude), m_longitude(longitude) {}

    double latitude() const { return m_latitude; }
    double longitude() const { return m_longitude; }
    void set(double latitude, double longitude) {
        m_latitude = latitude;
        m_longitude = longitude;
    }
    void reset() { set(0, 0); }

private:
    double m_latitude = 0;
    double m_longitude = 0;
};

} // namespace tagmoor
