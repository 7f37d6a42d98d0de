#include "app/location/MapView.h"

#include "app/location/PinCallout.h"
#include "foundation/Settings.h"
#include "geo/MapProjection.h"
#include "geo/MapTileNotices.h"
#include "geo/TileLoader.h"
#include "geo/WorldOutline.h"

#include <QMouseEvent>
#include <QPainter>
#include <QPainterPath>
#include <QStandardPaths>
#include <QTimer>
#include <QToolButton>
#include <QUrl>
#include <QVBoxLayout>
#include <QWheelEvent>

#include <cmath>

namespace tagmoor {

namespace {

constexpr int kTile = MapProjection::kTileSize;
// Outline tiles drawn anew in one frame at most; a tile of the whole world at a low zoom
// takes up to about 6 ms, so two keep a frame within 16 ms.
constexpr int kNewTilesPerFrame = 2;
const QColor kSea(170, 211, 223);
const QColor kLand(242, 239, 233);
const QColor kCoast(120, 146, 160);
const QColor kBorder(168, 140, 168);
const QColor kPin(214, 48, 49);
// The pin's head, 23 pixels above its point, takes clicks within this radius.
constexpr int kPinHeadRadius = 13;
// From the pin's point to the bottom of its callout: the pin's height and the callout's arrow.
constexpr int kCalloutAbovePin = 34 + 12;

// The outline in the unit square of the projection (x east, y south), computed once.
struct ProjectedOutline {
    struct Shape {
        QPolygonF points;
        QRectF bounds;
        bool isBorder = false;
    };
    QList<Shape> land;
    QList<Shape> lines;
};

ProjectedOutline::Shape project(const WorldOutline::Line& line) {
    ProjectedOutline::Shape shape;
    shape.isBorder = line.isBorder;
    shape.points.reserve(line.points.size());
    for (const QPointF& p : line.points)
        shape.points.append(MapProjection::toWorld(p.y(), p.x(), 0) / kTile);
    shape.bounds = shape.points.boundingRect();
    return shape;
}

const ProjectedOutline* projectedOutline(const std::shared_ptr<const WorldOutline>& outline) {
    static const ProjectedOutline projected = [&] {
        ProjectedOutline result;
        if (!outline)
            return result;
        for (const auto& ring : outline->land)
            result.land.append(project(ring));
        for (const auto& line : outline->lines)
            result.lines.append(project(line));
        return result;
    }();
    return &projected;
}

QString tileKey(int type, int zoom, int x, int y) {
    return QStringLiteral("%1/%2/%3/%4").arg(type).arg(zoom).arg(x).arg(y);
}

// QRectF::intersects misses rectangles of no width or height (a straight line's bounds).
bool touches(const QRectF& a, const QRectF& b) {
    return a.left() <= b.right() && b.left() <= a.right() && a.top() <= b.bottom() &&
           b.top() <= a.bottom();
}

int wrapTile(int x, int count) {
    const int r = x % count;
    return r < 0 ? r + count : r;
}

} // namespace

MapView::MapView(QWidget* parent)
    : QWidget(parent), m_outline(WorldOutline::shared()), m_outlineTiles(160), m_networkTiles(160),
      m_zoomIn(new QToolButton(this)), m_zoomOut(new QToolButton(this)),
      m_callout(new PinCallout(this)) {
    setObjectName(QStringLiteral("mapView"));
    setMouseTracking(false);
    setCursor(Qt::OpenHandCursor);
    setAttribute(Qt::WA_OpaquePaintEvent);
    m_zoomIn->setObjectName(QStringLiteral("btnZoomIn"));
    m_zoomOut->setObjectName(QStringLiteral("btnZoomOut"));
    m_zoomIn->setText(QStringLiteral("+"));
    m_zoomOut->setText(QStringLiteral("\u2212"));
    m_zoomIn->setToolTip(tr("Zoom In"));
    m_zoomOut->setToolTip(tr("Zoom Out"));
    for (QToolButton* button : {m_zoomIn, m_zoomOut}) {
        button->setFixedSize(26, 26);
        button->setCursor(Qt::ArrowCursor);
        QFont font = button->font();
        font.setBold(true);
        font.setPointSizeF(font.pointSizeF() * 1.2);
        button->setFont(font);
    }
    connect(m_zoomIn, &QToolButton::clicked, this, &MapView::zoomIn);
    connect(m_zoomOut, &QToolButton::clicked, this, &MapView::zoomOut);
    connect(m_callout, &PinCallout::moreInfoClicked, this, &MapView::moreInfoClicked);
    projectedOutline(m_outline);
    m_centre = MapProjection::toWorld(0, 0, m_zoom);
}

MapView::~MapView() = default;

void MapView::configureTiles(const Settings& settings, const QString& cacheFolder) {
    if (!m_settings) {
        connect(&MapTileNotices::instance(), &MapTileNotices::loadingChanged, this,
                [this] { configureTiles(*m_settings, m_cacheFolder); });
        connect(&MapTileNotices::instance(), &MapTileNotices::cacheCleared, this, [this] {
            m_networkTiles.clear();
            update();
        });
    }
    m_settings = &settings;
    m_cacheFolder = cacheFolder;
    // A stored empty address turns a type's tiles off. Without one the standard map uses
    // OpenStreetMap, except in test runs, which must never reach a real server.
    const bool testRun = QStandardPaths::isTestModeEnabled();
    const bool online = settings.loadMapTilesFromInternetOrDefault();
    for (const MapType type : allMapTypes) {
        const std::optional<QString> stored = settings.mapTileUrl(type);
        QString address = online ? stored.value_or(QString()) : QString();
        if (online && type == MapType::standard && !stored && !testRun)
            address = QString::fromLatin1(kOpenStreetMapTiles);
        setTileTemplate(type, address, cacheFolder);
    }
}

void MapView::setTileTemplate(MapType type, const QString& urlTemplate,
                              const QString& cacheFolder) {
    delete m_loaders[std::size_t(type)];
    m_loaders[std::size_t(type)] = nullptr;
    m_networkTiles.clear();
    if (urlTemplate.isEmpty()) {
        update();
        return;
    }
    auto* loader = new TileLoader(
        urlTemplate, cacheFolder.isEmpty() ? TileLoader::defaultCacheFolder() : cacheFolder, this);
    connect(loader, &TileLoader::tileDecoded, this,
            [this, type](int zoom, int x, int y, const QImage& image) {
                tileArrived(type, zoom, x, y, image);
            });
    m_loaders[std::size_t(type)] = loader;
    update();
}

void MapView::setMapType(MapType type) {
    m_mapType = type;
    update();
}

void MapView::setRegion(const MapRegion& region, bool animated) {
    Q_UNUSED(animated);
    if (!region.isValid())
        return;
    m_wantedRegion = region;
    m_zoom = MapProjection::zoomThatFits(region, size());
    m_centre = MapProjection::toWorld(region.latitude, region.longitude, m_zoom);
    viewChanged();
}

MapRegion MapView::region() const {
    const QPointF centre = MapProjection::toLatLon(m_centre, m_zoom);
    const QPointF topLeft = MapProjection::toLatLon(topLeftWorld(), m_zoom);
    const QPointF bottomRight =
        MapProjection::toLatLon(topLeftWorld() + QPointF(width(), height()), m_zoom);
    return {centre.y(), centre.x(), topLeft.y() - bottomRight.y(),
            width() * 360.0 / (kTile * std::ldexp(1.0, m_zoom))};
}

void MapView::setZoom(int zoom) {
    setZoomAround(zoom, QPointF(width(), height()) / 2);
}

void MapView::setZoomAround(int zoom, QPointF anchor) {
    zoom = std::clamp(zoom, MapProjection::kMinZoom, MapProjection::kMaxZoom);
    if (zoom == m_zoom)
        return;
    // The point under the anchor stays where it is.
    const QPointF anchored = topLeftWorld() + anchor;
    const double factor = std::ldexp(1.0, zoom - m_zoom);
    m_centre = anchored * factor - anchor + QPointF(width(), height()) / 2;
    m_zoom = zoom;
    m_wantedRegion.reset();
    viewChanged();
}

void MapView::panBy(QPointF pixels) {
    m_centre -= pixels;
    const double size = kTile * std::ldexp(1.0, m_zoom);
    m_centre.setY(std::clamp(m_centre.y(), 0.0, size));
    m_centre.setX(std::fmod(m_centre.x(), size));
    if (m_centre.x() < 0)
        m_centre.rx() += size;
    m_wantedRegion.reset();
    viewChanged();
}

void MapView::addAnnotation(const PinAnnotation& pin) {
    m_pin = pin;
    if (!m_callout->isHidden())
        m_callout->showTextsOf(pin);
    viewChanged();
}

MapRegion MapView::showPin(const PinAnnotation& pin, MapType type, double span) {
    setMapType(type);
    MapRegion asked{pin.latitude, pin.longitude, span, span};
    const MapRegion fitted = MapProjection::regionThatFits(asked, size());
    if (fitted.isValid())
        asked = fitted;
    setRegion(asked, true);
    removeAnnotations();
    addAnnotation(pin);
    return asked;
}

void MapView::removeAnnotations() {
    m_pin.reset();
    hideCallout();
    update();
}

void MapView::showCallout() {
    if (!m_pin)
        return;
    m_callout->showTextsOf(*m_pin);
    m_callout->show();
    m_callout->raise();
    viewChanged();
}

void MapView::hideCallout() {
    if (m_callout->isHidden())
        return;
    m_callout->hide();
    update();
}

void MapView::viewChanged() {
    placeCallout();
    update();
}

// Centred above the pin's head, as far inside the map as it goes.
void MapView::placeCallout() {
    if (m_callout->isHidden() || !m_pin)
        return;
    const QPointF tip = pinPoint();
    const QSize size = m_callout->sizeHint();
    m_callout->setGeometry(
        QRect(QPoint(int(std::lround(tip.x() - size.width() / 2.0)),
                     int(std::lround(tip.y())) - kCalloutAbovePin - size.height()),
              size));
}

QPointF MapView::topLeftWorld() const {
    return m_centre - QPointF(width(), height()) / 2;
}

QPointF MapView::pinPoint() const {
    if (!m_pin)
        return {};
    return pointOf(m_pin->latitude, m_pin->longitude);
}

QPointF MapView::positionAt(QPointF point) const {
    return MapProjection::toLatLon(topLeftWorld() + point, m_zoom);
}

void MapView::setOverlay(MapOverlay* overlay) {
    m_overlay = overlay;
    update();
}

QPointF MapView::pointOf(double latitude, double longitude) const {
    QPointF world = MapProjection::toWorld(latitude, longitude, m_zoom);
    // The copy of the world nearest to the view's centre.
    const double size = kTile * std::ldexp(1.0, m_zoom);
    while (world.x() - m_centre.x() > size / 2)
        world.rx() -= size;
    while (m_centre.x() - world.x() > size / 2)
        world.rx() += size;
    return world - topLeftWorld();
}

QString MapView::note() const {
    if (m_settings && !m_settings->loadMapTilesFromInternetOrDefault())
        return tr("Map tiles from the internet are turned off in Preferences; showing the "
                  "outline.");
    if (m_mapType != MapType::standard && !m_loaders[std::size_t(m_mapType)])
        return tr("Satellite imagery needs a tile address in the settings; showing the outline.");
    return {};
}

QString MapView::attribution() const {
    const TileLoader* loader = m_loaders[std::size_t(m_mapType)];
    if (!loader || m_networkTilesDrawn == 0)
        return tr("Outline: Natural Earth");
    if (m_mapType == MapType::standard &&
        loader->urlTemplate() == QLatin1String(kOpenStreetMapTiles))
        return tr("\u00a9 OpenStreetMap contributors");
    const QString host = QUrl(loader->urlTemplate()).host();
    return m_mapType == MapType::standard ? tr("\u00a9 OpenStreetMap contributors (%1)").arg(host)
                                          : tr("Imagery: %1").arg(host);
}

QImage MapView::outlineTile(int zoom, int x, int y) {
    const QString key = tileKey(-1, zoom, x, y);
    if (const QImage* cached = m_outlineTiles.object(key))
        return *cached;
    QImage image(kTile, kTile, QImage::Format_RGB32);
    image.fill(kSea);
    const double count = std::ldexp(1.0, zoom);
    const QRectF tileRect(x / count, y / count, 1 / count, 1 / count);
    // A little margin, so that lines at the edge of a tile are drawn in both.
    const QRectF reach = tileRect.adjusted(-2 / (kTile * count), -2 / (kTile * count),
                                           2 / (kTile * count), 2 / (kTile * count));
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.scale(kTile * count, kTile * count);
    painter.translate(-tileRect.topLeft());
    const ProjectedOutline* outline = projectedOutline(m_outline);
    painter.setPen(Qt::NoPen);
    painter.setBrush(kLand);
    for (const auto& ring : outline->land) {
        if (touches(ring.bounds, reach))
            painter.drawPolygon(ring.points);
    }
    painter.setBrush(Qt::NoBrush);
    QPen coast(kCoast, 0.8);
    coast.setCosmetic(true);
    QPen border(kBorder, 0.8, Qt::DashLine);
    border.setCosmetic(true);
    for (const auto& line : outline->lines) {
        if (!touches(line.bounds, reach))
            continue;
        painter.setPen(line.isBorder ? border : coast);
        painter.drawPolyline(line.points);
    }
    painter.end();
    m_outlineTiles.insert(key, new QImage(image));
    return image;
}

const QImage* MapView::networkTile(int zoom, int x, int y) {
    TileLoader* loader = m_loaders[std::size_t(m_mapType)];
    if (!loader)
        return nullptr;
    if (const QImage* cached = m_networkTiles.object(tileKey(int(m_mapType), zoom, x, y)))
        return cached;
    loader->request(zoom, x, y);
    return nullptr;
}

void MapView::tileArrived(MapType type, int zoom, int x, int y, const QImage& image) {
    m_networkTiles.insert(tileKey(int(type), zoom, x, y), new QImage(image));
    if (type == m_mapType && zoom == m_zoom)
        update();
}

void MapView::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.fillRect(rect(), kSea);
    if (paintTiles(painter))
        QTimer::singleShot(0, this, qOverload<>(&QWidget::update));

    painter.setRenderHint(QPainter::Antialiasing);
    if (m_overlay)
        m_overlay->paint(painter, *this);
    if (m_pin)
        paintPin(painter, pinPoint());
    if (m_pin && !m_callout->isHidden()) {
        // The callout's point, down to the pin's head.
        const QPointF tip = pinPoint() - QPointF(0, kCalloutAbovePin - 8);
        QPolygonF arrow({tip, tip + QPointF(-8, -9), tip + QPointF(8, -9)});
        painter.setPen(Qt::NoPen);
        painter.setBrush(m_callout->palette().color(QPalette::Base));
        painter.drawPolygon(arrow);
    }
    paintCaptions(painter);
    painter.setPen(QPen(palette().color(QPalette::Mid), 1));
    painter.setBrush(Qt::NoBrush);
    painter.drawRect(rect().adjusted(0, 0, -1, -1));
}

bool MapView::paintTiles(QPainter& painter) {
    const QPointF topLeft = topLeftWorld();
    const int count = 1 << m_zoom;
    const int firstX = int(std::floor(topLeft.x() / kTile));
    const int lastX = int(std::floor((topLeft.x() + width()) / kTile));
    const int firstY = int(std::floor(topLeft.y() / kTile));
    const int lastY = int(std::floor((topLeft.y() + height()) / kTile));
    TileLoader* loader = m_loaders[std::size_t(m_mapType)];
    if (loader)
        loader->clearQueue();
    m_networkTilesDrawn = 0;
    int budget = kNewTilesPerFrame;
    bool pending = false;
    // Outline first for every tile, so that a slow network never leaves a hole.
    for (int y = std::max(0, firstY); y <= std::min(count - 1, lastY); ++y) {
        for (int x = firstX; x <= lastX; ++x) {
            const QPointF at = QPointF(x * kTile, y * kTile) - topLeft;
            const int wrapped = wrapTile(x, count);
            if (m_outlineTiles.contains(tileKey(-1, m_zoom, wrapped, y)) || budget > 0) {
                if (!m_outlineTiles.contains(tileKey(-1, m_zoom, wrapped, y)))
                    --budget;
                painter.drawImage(at, outlineTile(m_zoom, wrapped, y));
            } else {
                // Not drawn yet: the quarter of the tile one zoom out stands in for it until
                // a later frame draws it, so that no frame takes long.
                pending = true;
                if (const QImage* parent =
                        m_outlineTiles.object(tileKey(-1, m_zoom - 1, wrapped / 2, y / 2)))
                    painter.drawImage(QRectF(at, QSizeF(kTile, kTile)), *parent,
                                      QRectF((wrapped % 2) * kTile / 2, (y % 2) * kTile / 2,
                                             kTile / 2, kTile / 2));
            }
            if (const QImage* tile = networkTile(m_zoom, wrapped, y)) {
                painter.drawImage(at, *tile);
                ++m_networkTilesDrawn;
            }
        }
    }
    return pending;
}

void MapView::paintPin(QPainter& painter, QPointF tip) {
    QPainterPath pin;
    pin.moveTo(tip);
    pin.cubicTo(tip + QPointF(-4, -8), tip + QPointF(-11, -14), tip + QPointF(-11, -23));
    pin.arcTo(QRectF(tip + QPointF(-11, -34), QSizeF(22, 22)), 180, -180);
    pin.cubicTo(tip + QPointF(11, -14), tip + QPointF(4, -8), tip);
    painter.setPen(QPen(kPin.darker(140), 1));
    painter.setBrush(kPin);
    painter.drawPath(pin);
    painter.setBrush(Qt::white);
    painter.setPen(Qt::NoPen);
    painter.drawEllipse(tip + QPointF(0, -23), 4, 4);
    painter.setBrush(QColor(0, 0, 0, 60));
    painter.drawEllipse(tip, 4, 1.5);
}

// The credit of what is drawn, bottom right; the note of a map type without tiles on top.
void MapView::paintCaptions(QPainter& painter) {
    const QString credit = attribution();
    QFont small = font();
    small.setPointSizeF(small.pointSizeF() * 0.85);
    painter.setFont(small);
    const QFontMetrics metrics(small);
    QRect creditRect = metrics.boundingRect(credit).adjusted(-5, -2, 5, 2);
    creditRect.moveBottomRight(rect().bottomRight() - QPoint(2, 2));
    painter.setPen(Qt::NoPen);
    painter.setBrush(QColor(255, 255, 255, 200));
    painter.drawRect(creditRect);
    painter.setPen(QColor(60, 60, 60));
    painter.drawText(creditRect, Qt::AlignCenter, credit);
    const QString text = note();
    if (text.isEmpty())
        return;
    QRect noteRect = metrics.boundingRect(rect().adjusted(40, 8, -40, 0),
                                          Qt::AlignHCenter | Qt::TextWordWrap, text);
    noteRect.adjust(-8, -4, 8, 4);
    painter.setPen(Qt::NoPen);
    painter.setBrush(QColor(40, 40, 40, 190));
    painter.drawRoundedRect(noteRect, 6, 6);
    painter.setPen(Qt::white);
    painter.drawText(noteRect, Qt::AlignCenter | Qt::TextWordWrap, text);
}

void MapView::mousePressEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton)
        return;
    m_dragStart = m_lastMouse = event->position();
    m_moved = false;
    const QPointF head = pinPoint() + QPointF(0, -23);
    if (m_pin && QLineF(head, event->position()).length() <= kPinHeadRadius) {
        m_drag = Drag::Pin;
        m_grabOffset = pinPoint() - event->position();
    } else if (m_overlay && m_overlay->press(event->position(), *this)) {
        m_drag = Drag::Overlay;
    } else {
        m_drag = Drag::Map;
    }
    setCursor(Qt::ClosedHandCursor);
}

void MapView::mouseMoveEvent(QMouseEvent* event) {
    if (m_drag == Drag::None)
        return;
    const QPointF delta = event->position() - m_lastMouse;
    m_lastMouse = event->position();
    if (QLineF(m_dragStart, event->position()).length() > 3)
        m_moved = true;
    if (m_drag == Drag::Map) {
        panBy(delta);
    } else if (m_drag == Drag::Overlay) {
        m_overlay->drag(event->position(), *this);
        update();
    } else if (m_moved) {
        hideCallout();
        // The pin's point follows the mouse; the map stays where it is.
        const QPointF tip = event->position() + m_grabOffset;
        const QPointF where = MapProjection::toLatLon(topLeftWorld() + tip, m_zoom);
        m_pin->latitude = where.y();
        m_pin->longitude = where.x();
        viewChanged();
    }
}

void MapView::mouseReleaseEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton)
        return;
    const Drag drag = m_drag;
    m_drag = Drag::None;
    setCursor(Qt::OpenHandCursor);
    if (drag == Drag::Overlay && m_overlay) {
        m_overlay->release(event->position(), *this);
        update();
    } else if (drag == Drag::Pin && m_pin) {
        if (m_moved)
            emit annotationDragEnded(m_pin->latitude, m_pin->longitude);
        else if (m_callout->isHidden())
            showCallout();
        else
            hideCallout();
    } else if (drag == Drag::Map && !m_moved) {
        // A click on the map itself closes the callout.
        hideCallout();
    }
}

void MapView::wheelEvent(QWheelEvent* event) {
    const int steps = event->angleDelta().y() / 120;
    if (steps != 0)
        setZoomAround(m_zoom + steps, event->position());
    event->accept();
}

void MapView::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    m_zoomIn->move(width() - m_zoomIn->width() - 8, 8);
    m_zoomOut->move(width() - m_zoomOut->width() - 8, 8 + m_zoomIn->height() + 2);
    if (m_wantedRegion) {
        const MapRegion wanted = *m_wantedRegion;
        setRegion(wanted, false);
    }
    placeCallout();
}

} // namespace tagmoor
