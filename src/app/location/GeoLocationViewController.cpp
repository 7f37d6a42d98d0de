#include "app/location/GeoLocationViewController.h"

#include "app/location/MapTypeSegment.h"
#include "app/location/PinCallout.h"
#include "foundation/AppEvents.h"
#include "foundation/Settings.h"
#include "foundation/UserPrompt.h"
#include "geo/CoordinateText.h"
#include "geo/Geocoder.h"
#include "geo/SharedLocation.h"

#include <QAbstractItemView>
#include <QButtonGroup>
#include <QCompleter>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QLoggingCategory>
#include <QPushButton>
#include <QShowEvent>
#include <QStringListModel>
#include <QVBoxLayout>

#include <cmath>
#include <utility>

Q_LOGGING_CATEGORY(lcPicker, "tagmoor.location.picker")

namespace tagmoor {

namespace {
constexpr double kSpan = 1.0;
} // namespace

GeoLocationViewController::GeoLocationViewController(AppEvents& events, const Settings& settings,
                                                     UserPrompt& prompt, SharedLocation& location,
                                                     QWidget* parent)
    : QDialog(parent), m_events(events), m_prompt(prompt), m_location(location),
      m_geocoder(new Geocoder(this)), m_map(new MapView), m_latitudeField(new QLineEdit),
      m_longitudeField(new QLineEdit), m_nameField(new QLineEdit),
      m_completions(new QStringListModel(this)) {
    setObjectName(QStringLiteral("GeoLocation"));
    setWindowTitle(tr("Location"));
    setWindowModality(Qt::WindowModal);
    resize(720, 560);
    m_map->configureTiles(settings);

    QLabel* heading = makeHeading();
    setUpFields();
    QHBoxLayout* coordinates = makeCoordinateRow();
    QHBoxLayout* name = makeNameRow();
    QHBoxLayout* bottom = makeBottomRow();

    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(16, 14, 16, 14);
    layout->setSpacing(10);
    layout->addWidget(heading);
    layout->addLayout(coordinates);
    layout->addLayout(name);
    layout->addWidget(m_map, 1);
    layout->addLayout(bottom);
    connectControls();
}

QLabel* GeoLocationViewController::makeHeading() {
    auto* heading = new QLabel(tr("Change the location of the selected photos"));
    heading->setObjectName(QStringLiteral("lblChangeTheLocationOfTheSelected"));
    QFont bold = heading->font();
    bold.setBold(true);
    heading->setFont(bold);
    return heading;
}

void GeoLocationViewController::setUpFields() {
    m_latitudeField->setObjectName(QStringLiteral("txtFieldLatitude"));
    m_longitudeField->setObjectName(QStringLiteral("txtFieldLongitude"));
    m_nameField->setObjectName(QStringLiteral("txtFieldName"));
    m_latitudeField->setPlaceholderText(tr("Decimal degrees, north positive"));
    m_longitudeField->setPlaceholderText(tr("Decimal degrees, east positive"));
    m_nameField->setPlaceholderText(tr("Type a place, e.g. Z\u00fcrich or Paris, France"));
    m_nameField->setClearButtonEnabled(true);
    // The matches of the typed name, each with its region and country: "Paris, Texas, United
    // States" tells one Paris from another. The gazetteer already matched them, so the popup
    // lists them as they are.
    m_completer = new QCompleter(m_completions, this);
    m_completer->setCompletionMode(QCompleter::UnfilteredPopupCompletion);
    m_completer->popup()->setObjectName(QStringLiteral("namePlaces"));
    m_nameField->setCompleter(m_completer);
}

namespace {

QLabel* fieldLabel(const QString& text, const char* name, QWidget* buddy) {
    auto* label = new QLabel(text);
    label->setObjectName(QString::fromLatin1(name));
    label->setBuddy(buddy);
    return label;
}

} // namespace

QHBoxLayout* GeoLocationViewController::makeCoordinateRow() {
    auto* latitudeLabel = fieldLabel(tr("Latitude:"), "lblLatitude", m_latitudeField);
    auto* longitudeLabel = fieldLabel(tr("Longitude:"), "lblLongitude", m_longitudeField);
    auto* coordinates = new QHBoxLayout;
    coordinates->addWidget(latitudeLabel);
    coordinates->addWidget(m_latitudeField, 1);
    coordinates->addSpacing(12);
    coordinates->addWidget(longitudeLabel);
    coordinates->addWidget(m_longitudeField, 1);
    return coordinates;
}

QHBoxLayout* GeoLocationViewController::makeNameRow() {
    auto* name = new QHBoxLayout;
    name->addWidget(fieldLabel(tr("Place:"), "lblName", m_nameField));
    name->addWidget(m_nameField, 1);
    return name;
}

// The map type segment and the Done button.
QHBoxLayout* GeoLocationViewController::makeBottomRow() {
    auto* viewLabel = new QLabel(tr("View:"));
    viewLabel->setObjectName(QStringLiteral("lblView"));
    auto* segment = new MapTypeSegment(QStringLiteral("segmentControl"));
    m_segment = segment->group();
    auto* bottom = new QHBoxLayout;
    bottom->addWidget(viewLabel);
    bottom->addWidget(segment);
    bottom->addStretch(1);
    m_close = new QPushButton(tr("Done"));
    m_close->setObjectName(QStringLiteral("btnCancel"));
    m_close->setDefault(true);
    bottom->addWidget(m_close);
    return bottom;
}

void GeoLocationViewController::connectControls() {
    connect(m_segment, &QButtonGroup::idClicked, this,
            &GeoLocationViewController::clickedOnSegment);
    for (QLineEdit* field : {m_latitudeField, m_longitudeField, m_nameField})
        connect(field, &QLineEdit::textEdited, this,
                [this, field] { controlTextDidChange(field); });
    connect(m_map, &MapView::annotationDragEnded, this,
            &GeoLocationViewController::annotationDragEnded);
    connect(m_map, &MapView::moreInfoClicked, this, &GeoLocationViewController::showMoreInfo);
    connect(m_close, &QPushButton::clicked, this, &GeoLocationViewController::clickedCancel);
    connect(m_completer, qOverload<const QString&>(&QCompleter::activated), this,
            [this](const QString& place) {
                m_nameField->setText(place);
                controlTextDidChange(m_nameField);
            });
}

GeoLocationViewController::~GeoLocationViewController() = default;

void GeoLocationViewController::showEvent(QShowEvent* event) {
    QDialog::showEvent(event);
    if (event->spontaneous())
        return;
    m_isOpen = true;
    viewWillAppear();
}

void GeoLocationViewController::viewWillAppear() {
    m_latitude = float(m_location.latitude());
    m_longitude = float(m_location.longitude());
    m_nameField->clear();
    updateMap(QString(), QString(), mapTypeOfSegment(m_segment->checkedId()), m_latitude,
              m_longitude);
    writeFields();
    startReverseGeocoding();
}

void GeoLocationViewController::updateMap(const QString& title, const QString& subtitle,
                                          MapType type, double latitude, double longitude) {
    const PinAnnotation pin{latitude, longitude, title, subtitle};
    m_newRegion = m_map->showPin(pin, type, kSpan);
    m_mapAnnotations = {pin};
}

void GeoLocationViewController::clickedOnSegment(int index) {
    updateMap(QString(), QString(), mapTypeOfSegment(index), m_latitude, m_longitude);
    writeFields();
}

void GeoLocationViewController::controlTextDidChange(QLineEdit* sender) {
    const MapType mapType = mapTypeOfSegment(m_segment->checkedId());
    if (sender == m_latitudeField || sender == m_longitudeField) {
        (sender == m_latitudeField ? m_latitude : m_longitude) = floatValueOfText(sender->text());
        updateMap(QString(), QString(), mapType, m_latitude, m_longitude);
        startReverseGeocoding();
    } else if (sender == m_nameField) {
        const int edit = ++m_nameEdits;
        m_geocoder->geocodeAddressString(
            m_nameField->text(), [this, edit](const QList<Placemark>& marks, const QString& error) {
                if (!error.isEmpty())
                    qCInfo(lcPicker) << error;
                if (edit == m_nameEdits) {
                    QStringList places;
                    for (const Placemark& mark : marks)
                        places.append(mark.composedNameWithRegion());
                    places.removeDuplicates();
                    m_completions->setStringList(places);
                    if (places.size() > 1 && m_nameField->hasFocus())
                        m_completer->complete();
                }
                if (marks.isEmpty())
                    return;
                m_latitude = float(marks.first().latitude);
                m_longitude = float(marks.first().longitude);
                updateMap(QString(), QString(), mapTypeOfSegment(m_segment->checkedId()),
                          m_latitude, m_longitude);
                writeFields();
            });
    }
}

void GeoLocationViewController::annotationDragEnded(double latitude, double longitude) {
    m_latitude = float(latitude);
    m_longitude = float(longitude);
    if (!m_mapAnnotations.isEmpty()) {
        m_mapAnnotations.first().latitude = latitude;
        m_mapAnnotations.first().longitude = longitude;
    }
    writeFields();
    startReverseGeocoding();
}

void GeoLocationViewController::showMoreInfo() {
    tagmoor::showMoreInfo(m_prompt);
}

void GeoLocationViewController::clickedCancel() {
    accept();
}

// Done accepts; Esc and the close box reject. Either way the position goes along, once: a
// picker already closed has nothing more to hand back.
void GeoLocationViewController::done(int result) {
    if (std::exchange(m_isOpen, false)) {
        m_location.set(m_latitude, m_longitude);
        emit m_events.UpdateLocationFromGeoLocationOTM();
    }
    QDialog::done(result);
}

void GeoLocationViewController::writeFields() {
    m_latitudeField->setText(coordinateText(m_latitude));
    m_longitudeField->setText(coordinateText(m_longitude));
}

void GeoLocationViewController::startReverseGeocoding() {
    m_geocoder->reverseGeocodeLocation(
        m_latitude, m_longitude,
        [this, edits = m_nameEdits](const std::optional<Placemark>& mark, const QString& error) {
            // The user typed a name since the question: what they typed stays.
            if (edits != m_nameEdits)
                return;
            if (!mark) {
                qCInfo(lcPicker) << (error.isEmpty() ? QStringLiteral("Unknown error") : error);
                return;
            }
            m_nameField->setText(mark->composedName());
        });
}

} // namespace tagmoor
