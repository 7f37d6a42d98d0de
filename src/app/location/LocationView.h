#pragma once

#include <QWidget>

class QLabel;

namespace tagmoor {

class Geocoder;
class MapView;
class Settings;

// The home screen's location view: a position's place, found by reverse geocoding, and a small
// map with its pin. That is the one marked photo's position, the default coordinate when none
// or several are marked, or the one the picker chose. A failed geocoding leaves the text as
// it was.
class LocationView : public QWidget {
    Q_OBJECT
public:
    explicit LocationView(const Settings& settings, QWidget* parent = nullptr);

    enum class Naming {
        Place,          // "Paris, France"
        PlaceAndRegion, // "Paris, Île-de-France, France"
        Region,         // "Île-de-France, France"
    };
    // Shows the position: the pin at once, the place name when the gazetteer answers.
    void showPosition(double latitude, double longitude, Naming naming);
    // A photo without a position: the text, no map.
    void showText(const QString& text);
    void clear();

    QLabel* label() const { return m_text; }
    MapView* mapView() const { return m_map; }
    Geocoder& geocoder() const { return *m_geocoder; }

private:
    QLabel* m_text;
    MapView* m_map;
    Geocoder* m_geocoder;
    // Only the answer of the latest question is shown.
    int m_question = 0;
};

} // namespace tagmoor
