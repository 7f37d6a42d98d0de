#pragma once

#include "exchange/TrackPlacement.h"

#include <QDialog>

class QLabel;
class QLineEdit;
class QListWidget;
class QSpinBox;

namespace tagmoor {

class HomeSession;
class MapView;
class Settings;
class WorkingSet;
class TrackOverlay;
class UserPrompt;

// The "Geotag from Track" sheet: GPX files loaded through the prompt's file panel, their track
// and each photo's place drawn on the offline map before anything is written. The clock
// offset, the camera's zone and the largest gap place the photos anew as they are typed; a
// photo's dot can be dragged to another place; the photos left out are listed with the reason.
// Apply hands the places over (applied()) and closes the sheet.
class GeotagPanel : public QDialog {
    Q_OBJECT
public:
    // `settings` (may be null) gives the map its tiles.
    GeotagPanel(const QList<CGImageProperties>& photos, UserPrompt& prompt,
                const Settings* settings, QWidget* parent = nullptr);
    ~GeotagPanel() override;

    // Opens the sheet over `parent` for the marked photos of the list (all of them when none is
    // marked); Apply gives the places to the session's edits. Nothing opens for an empty list.
    static GeotagPanel* openFor(const WorkingSet& set, HomeSession& session, UserPrompt& prompt,
                                const Settings& settings, QWidget* parent);

    // The placing as it stands: tracks, options, each photo's place.
    const TrackPlacement& placement() const { return m_placement; }
    MapView* map() const { return m_map; }

signals:
    void applied(const tagmoor::PlacedPositions& positions);

private:
    QWidget* buildOptions();
    void loadTracks();
    void offsetTyped(const QString& text);
    void zoneTyped(const QString& text);
    void showPlacement();
    void frameTrack();

    TrackPlacement m_placement;
    UserPrompt& m_prompt;
    MapView* m_map = nullptr;
    std::unique_ptr<TrackOverlay> m_overlay;
    QLineEdit* m_offset = nullptr;
    QLineEdit* m_zone = nullptr;
    QSpinBox* m_maxGap = nullptr;
    QListWidget* m_leftOut = nullptr;
    QLabel* m_count = nullptr;
};

} // namespace tagmoor
