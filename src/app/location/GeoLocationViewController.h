#pragma once

#include "app/location/MapView.h"
#include "geo/MapProjection.h"

#include <QDialog>
#include <QList>

class QButtonGroup;
class QCompleter;
class QHBoxLayout;
class QStringListModel;
class QLabel;
class QLineEdit;
class QPushButton;

namespace tagmoor {

class AppEvents;
class Geocoder;
class Settings;
class SharedLocation;
class UserPrompt;

// The location picker: a sheet over the editor where a position is chosen by typing its
// coordinates, by typing a place name (the offline gazetteer finds it), or by dragging the
// pin. Closing, by Done, Esc or the window's close box alike, hands the position to the
// SharedLocation that the editor's GPS fields take, and tells them so
// (UpdateLocationFromGeoLocationOTM). It writes no metadata itself.
class GeoLocationViewController : public QDialog {
    Q_OBJECT
public:
    GeoLocationViewController(AppEvents& events, const Settings& settings, UserPrompt& prompt,
                              SharedLocation& location, QWidget* parent = nullptr);
    ~GeoLocationViewController() override;

    // Opening: the map, the fields and the name from the shared position.
    void viewWillAppear();
    // The one routine of every move: map type, region of 1.0 by 1.0 degrees, one pin.
    void updateMap(const QString& title, const QString& subtitle, MapType type, double latitude,
                   double longitude);
    void clickedOnSegment(int index);
    // A user's edit of one of the three fields.
    void controlTextDidChange(QLineEdit* sender);
    // The pin was dropped by the user.
    void annotationDragEnded(double latitude, double longitude);
    void showMoreInfo();
    // The closing action: the position goes along.
    void clickedCancel();
    // Every way of closing ends here; an open picker hands its position back on the way.
    void done(int result) override;

    float latitude() const { return m_latitude; }
    float longitude() const { return m_longitude; }
    const MapRegion& newRegion() const { return m_newRegion; }
    const QList<PinAnnotation>& mapAnnotations() const { return m_mapAnnotations; }

protected:
    void showEvent(QShowEvent* event) override;

private:
    // The builders of the dialog, called in this order by the constructor.
    QLabel* makeHeading();
    void setUpFields();
    QHBoxLayout* makeCoordinateRow();
    QHBoxLayout* makeNameRow();
    QHBoxLayout* makeBottomRow();
    void connectControls();

    void writeFields();
    void startReverseGeocoding();

    AppEvents& m_events;
    UserPrompt& m_prompt;
    SharedLocation& m_location;
    Geocoder* m_geocoder;
    MapView* m_map;
    QLineEdit* m_latitudeField;
    QLineEdit* m_longitudeField;
    QLineEdit* m_nameField;
    QCompleter* m_completer;
    QStringListModel* m_completions;
    // Counts the user's edits of the name field: a reverse geocoding asked before the latest
    // of them is stale and leaves the typed text alone.
    int m_nameEdits = 0;
    // Shown and not yet closed: what makes a closing hand the position back.
    bool m_isOpen = false;
    QButtonGroup* m_segment;
    QPushButton* m_close;
    QList<PinAnnotation> m_mapAnnotations;
    float m_latitude = 0;
    float m_longitude = 0;
    MapRegion m_newRegion;
};

} // namespace tagmoor
