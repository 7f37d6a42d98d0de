#include "app/location/LocationView.h"

#include "app/location/MapView.h"
#include "geo/CoordinateText.h"
#include "geo/Geocoder.h"
#include "geo/MapProjection.h"

#include <QLabel>
#include <QLoggingCategory>
#include <QToolButton>
#include <QVBoxLayout>

Q_LOGGING_CATEGORY(lcLocationView, "tagmoor.location.view")

namespace tagmoor {

namespace {
constexpr double kOverviewSpan = 12.0;
} // namespace

LocationView::LocationView(const Settings& settings, QWidget* parent)
    : QWidget(parent), m_text(new QLabel), m_map(new MapView), m_geocoder(new Geocoder(this)) {
    setObjectName(QStringLiteral("locationView"));
    m_text->setObjectName(QStringLiteral("lblLocation"));
    m_text->setAlignment(Qt::AlignHCenter);
    m_text->setForegroundRole(QPalette::PlaceholderText);
    m_text->setWordWrap(true);
    m_map->setFixedHeight(110);
    m_map->zoomInButton()->hide();
    m_map->zoomOutButton()->hide();
    m_map->configureTiles(settings);
    m_map->hide();
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(6);
    layout->addWidget(m_map);
    layout->addWidget(m_text);
}

void LocationView::showPosition(double latitude, double longitude, Naming naming) {
    // Until the gazetteer answers, a view that showed no position gives the numbers.
    const bool hadPosition = !m_map->isHidden();
    m_map->show();
    // A wider view than the picker's: at this size the country around the pin tells more.
    m_map->setRegion({latitude, longitude, kOverviewSpan, kOverviewSpan}, false);
    m_map->removeAnnotations();
    m_map->addAnnotation({latitude, longitude, QString(), QString()});
    if (!hadPosition || m_text->text().isEmpty())
        m_text->setText(QStringLiteral("%1, %2").arg(coordinateText(float(latitude)),
                                                     coordinateText(float(longitude))));
    const int question = ++m_question;
    m_geocoder->reverseGeocodeLocation(
        latitude, longitude, [this, question, naming](const auto& mark, const QString& error) {
            if (question != m_question)
                return;
            if (!mark) {
                qCInfo(lcLocationView) << error;
                return;
            }
            m_text->setText(naming == Naming::PlaceAndRegion ? mark->composedNameWithRegion()
                            : naming == Naming::Region       ? mark->composedRegion()
                                                             : mark->composedName());
        });
}

void LocationView::showText(const QString& text) {
    ++m_question;
    m_map->hide();
    m_text->setText(text);
}

void LocationView::clear() {
    showText(QString());
}

} // namespace tagmoor
