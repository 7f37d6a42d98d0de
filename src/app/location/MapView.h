#pragma once

#include "app/location/MapType.h"
#include "geo/MapProjection.h"
#include "geo/TileLoader.h"

#include <QCache>
#include <QImage>
#include <QPointer>
#include <QString>
#include <QWidget>

#include <array>
#include <memory>
#include <optional>

class QPainter;
class QToolButton;

namespace tagmoor {

class PinCallout;
class Settings;
struct WorldOutline;

// The map's pin: where it stands and its callout texts.
struct PinAnnotation {
    double latitude = 0;
    double longitude = 0;
    QString title;
    QString subtitle;
};

class MapView;

// What a map draws over its tiles beside its pin (a track, the photos placed on it), and the
// drags that start on it.
class MapOverlay {
public:
    virtual ~MapOverlay() = default;
    virtual void paint(QPainter& painter, const MapView& map) = 0;
    // A press at `point`: true when the overlay takes the drag that follows.
    virtual bool press(QPointF point, const MapView& map) = 0;
    virtual void drag(QPointF point, const MapView& map) = 0;
    virtual void release(QPointF point, const MapView& map) = 0;
};

// A map of our own: the world outline of Natural Earth, drawn from the installed data in
// 256-pixel tiles of the web map grid so that it works offline, with web map tiles drawn over
// it when their server answers. Pan by dragging, zoom by the wheel or the buttons, one pin
// that can be dragged, and clicked to open its callout. Map types: 0 standard, 1 satellite, 2
// hybrid; satellite and hybrid need a tile address in the settings and otherwise show the outline
// with a note.
class MapView : public QWidget {
    Q_OBJECT
public:
    // The standard map's tiles when the settings name none.
    static constexpr const char* kOpenStreetMapTiles =
        "https://tile.openstreetmap.org/{z}/{x}/{y}.png";

    explicit MapView(QWidget* parent = nullptr);
    ~MapView() override;

    // Takes the tile addresses of the three map types from the settings (an empty one turns
    // that type's tiles off), unless the settings turn web tiles off altogether; `cacheFolder`
    // empty means the user's cache folder. The map follows the settings when the user
    // switches tiles on or off (MapTileNotices), and drops the tiles it holds when the cache
    // is emptied. `settings` must outlive the map.
    void configureTiles(const Settings& settings, const QString& cacheFolder = QString());
    // Sets the tile address of one map type ("" for none).
    void setTileTemplate(MapType type, const QString& urlTemplate,
                         const QString& cacheFolder = QString());

    MapType mapType() const { return m_mapType; }
    void setMapType(MapType type);

    // Shows `region` at the largest zoom that holds it, centred on its centre.
    void setRegion(const MapRegion& region, bool animated = true);
    // What the map shows now.
    MapRegion region() const;
    int zoom() const { return m_zoom; }
    void setZoom(int zoom);
    void zoomIn() { setZoom(m_zoom + 1); }
    void zoomOut() { setZoom(m_zoom - 1); }
    // Moves the view by screen pixels (a drag).
    void panBy(QPointF pixels);

    // Switches to `type`, shows a region `span` degrees wide and high around the pin (as
    // near as the widget's shape allows) and makes it the one pin. Gives the region asked for.
    MapRegion showPin(const PinAnnotation& pin, MapType type, double span);

    // The pin; at most one stands on the map.
    void addAnnotation(const PinAnnotation& pin);
    void removeAnnotations();
    const std::optional<PinAnnotation>& annotation() const { return m_pin; }
    int annotationCount() const { return m_pin ? 1 : 0; }
    // Where the pin's point is on the widget.
    QPointF pinPoint() const;
    // The callout above the pin, as a click on the pin opens and closes it. Removing the pin
    // closes it.
    void showCallout();
    void hideCallout();

    // Where a position is on the widget (the copy of the world nearest the view's centre), and
    // the position (x longitude, y latitude) of a point of the widget.
    QPointF pointOf(double latitude, double longitude) const;
    QPointF positionAt(QPointF point) const;
    // Draws `overlay` over the tiles and hands it the drags that start on it; nullptr for none.
    // The overlay must outlive the map or be taken off first.
    void setOverlay(MapOverlay* overlay);

    // Tiles drawn from the network in the last paint; the note of the last paint, if any.
    int networkTilesDrawn() const { return m_networkTilesDrawn; }
    QString note() const;
    TileLoader* tileLoader(MapType type) const { return m_loaders[std::size_t(type)]; }
    QToolButton* zoomInButton() const { return m_zoomIn; }
    QToolButton* zoomOutButton() const { return m_zoomOut; }

    QSize sizeHint() const override { return {520, 360}; }
    QSize minimumSizeHint() const override { return {160, 110}; }

signals:
    // The pin was dropped at a new place by the user.
    void annotationDragEnded(double latitude, double longitude);
    // "More Info" of the pin's callout was clicked.
    void moreInfoClicked();

protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    QImage outlineTile(int zoom, int x, int y);
    const QImage* networkTile(int zoom, int x, int y);
    void tileArrived(MapType type, int zoom, int x, int y, const QImage& image);
    QPointF topLeftWorld() const;
    void setZoomAround(int zoom, QPointF anchor);
    // The view or the pin moved: repaint, and keep the callout above the pin.
    void viewChanged();
    void placeCallout();
    QString attribution() const;
    // The steps of a paint: the outline and web tiles (true while some outline tile is still
    // to be drawn), the pin with its tip at `tip`, and the credit and note.
    bool paintTiles(QPainter& painter);
    static void paintPin(QPainter& painter, QPointF tip);
    void paintCaptions(QPainter& painter);

    std::shared_ptr<const WorldOutline> m_outline;
    MapType m_mapType = MapType::standard;
    int m_zoom = 2;
    QPointF m_centre; // in world pixels at m_zoom
    // The region last asked for, fitted again when the widget's size changes until the user
    // moves the map.
    std::optional<MapRegion> m_wantedRegion;
    std::optional<PinAnnotation> m_pin;
    std::array<QPointer<TileLoader>, 3> m_loaders;
    const Settings* m_settings = nullptr;
    QString m_cacheFolder;
    QCache<QString, QImage> m_outlineTiles;
    QCache<QString, QImage> m_networkTiles;
    QToolButton* m_zoomIn;
    QToolButton* m_zoomOut;
    PinCallout* m_callout;
    MapOverlay* m_overlay = nullptr;
    enum class Drag { None, Map, Pin, Overlay } m_drag = Drag::None;
    QPointF m_dragStart;
    QPointF m_lastMouse;
    QPointF m_grabOffset;
    bool m_moved = false;
    int m_networkTilesDrawn = 0;
};

} // namespace tagmoor
