#include "app/location/GeotagPanel.h"

#include "app/location/MapView.h"
#include "app/location/TrackOverlay.h"
#include "dates/ZoneClock.h"
#include "foundation/UserPrompt.h"
#include "processing/HomeSession.h"
#include "workingset/WorkingSet.h"

#include <QDialogButtonBox>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QSpinBox>
#include <QVBoxLayout>

#include <algorithm>

namespace tagmoor {

namespace {

QString offsetText(qint64 seconds) {
    const qint64 magnitude = std::abs(seconds);
    return QStringLiteral("%1%2:%3:%4")
        .arg(seconds < 0 ? QLatin1Char('-') : QLatin1Char('+'))
        .arg(magnitude / 3600)
        .arg(magnitude / 60 % 60, 2, 10, QLatin1Char('0'))
        .arg(magnitude % 60, 2, 10, QLatin1Char('0'));
}

// A field whose text is refused shows it in red until it is one that is taken.
void markRefused(QLineEdit* field, bool refused) {
    field->setStyleSheet(refused ? QStringLiteral("color: #c0392b;") : QString());
}

} // namespace

GeotagPanel::GeotagPanel(const QList<CGImageProperties>& photos, UserPrompt& prompt,
                         const Settings* settings, QWidget* parent)
    : QDialog(parent), m_prompt(prompt) {
    setObjectName(QStringLiteral("GeotagPanel"));
    setWindowTitle(tr("Geotag from Track"));
    setWindowModality(Qt::WindowModal);
    m_placement.setPhotos(photos);

    m_map = new MapView;
    m_map->setObjectName(QStringLiteral("geotagMap"));
    m_map->setMinimumSize(560, 340);
    if (settings)
        m_map->configureTiles(*settings);
    m_overlay =
        std::make_unique<TrackOverlay>(m_placement, [this](int index, double lat, double lon) {
            m_placement.move(index, lat, lon);
            showPlacement();
        });
    m_map->setOverlay(m_overlay.get());

    m_leftOut = new QListWidget;
    m_leftOut->setObjectName(QStringLiteral("listLeftOut"));
    m_leftOut->setMaximumHeight(110);
    m_count = new QLabel;
    m_count->setObjectName(QStringLiteral("lblPlacedCount"));

    auto* buttons = new QDialogButtonBox;
    QPushButton* cancel = buttons->addButton(QDialogButtonBox::Cancel);
    cancel->setObjectName(QStringLiteral("btnCancelGeotag"));
    QPushButton* apply = buttons->addButton(tr("Apply"), QDialogButtonBox::AcceptRole);
    apply->setObjectName(QStringLiteral("btnApplyGeotag"));
    apply->setDefault(true);
    connect(cancel, &QPushButton::clicked, this, &QDialog::reject);
    connect(apply, &QPushButton::clicked, this, [this] {
        emit applied(m_placement.placed());
        accept();
    });

    auto* layout = new QVBoxLayout(this);
    layout->addWidget(buildOptions());
    layout->addWidget(m_map, 1);
    layout->addWidget(m_count);
    layout->addWidget(new QLabel(tr("Left out:")));
    layout->addWidget(m_leftOut);
    layout->addWidget(buttons);
    showPlacement();
}

GeotagPanel* GeotagPanel::openFor(const WorkingSet& set, HomeSession& session, UserPrompt& prompt,
                                  const Settings& settings, QWidget* parent) {
    QList<CGImageProperties> photos;
    for (const int index : set.markedIndices())
        photos << set.workingImages()[index];
    if (photos.isEmpty())
        photos = set.workingImages();
    if (photos.isEmpty()) {
        prompt.ask(Alert::ok(tr("Geotag from Track"), tr("Add the photos to place first.")));
        return nullptr;
    }
    auto* panel = new GeotagPanel(photos, prompt, &settings, parent);
    panel->setAttribute(Qt::WA_DeleteOnClose);
    connect(panel, &GeotagPanel::applied, &session, &HomeSession::placePhotos);
    panel->open();
    return panel;
}

GeotagPanel::~GeotagPanel() {
    m_map->setOverlay(nullptr);
}

QWidget* GeotagPanel::buildOptions() {
    auto* options = new QWidget;
    auto* row = new QHBoxLayout(options);
    row->setContentsMargins(0, 0, 0, 0);
    auto* load = new QPushButton(tr("Load GPX Files..."));
    load->setObjectName(QStringLiteral("btnLoadTracks"));
    connect(load, &QPushButton::clicked, this, &GeotagPanel::loadTracks);
    row->addWidget(load);

    auto* form = new QFormLayout;
    m_offset = new QLineEdit(offsetText(m_placement.options().clockOffsetSeconds));
    m_offset->setObjectName(QStringLiteral("txtFieldClockOffset"));
    m_offset->setToolTip(tr("Added to the camera's clock to give the track's, as [+|-]H:M:S "
                            "(a camera 2 minutes slow: +0:02:00)"));
    connect(m_offset, &QLineEdit::textChanged, this, &GeotagPanel::offsetTyped);
    form->addRow(tr("Clock offset:"), m_offset);
    m_zone = new QLineEdit(ZoneClock::systemZoneId());
    m_zone->setObjectName(QStringLiteral("txtFieldCameraZone"));
    m_zone->setToolTip(tr("The zone the camera's clock was set to: Europe/Lisbon, UTC, +02:00"));
    connect(m_zone, &QLineEdit::textChanged, this, &GeotagPanel::zoneTyped);
    form->addRow(tr("Camera zone:"), m_zone);
    m_maxGap = new QSpinBox;
    m_maxGap->setObjectName(QStringLiteral("spinMaxGap"));
    m_maxGap->setRange(0, 7 * 24 * 3600);
    m_maxGap->setSuffix(tr(" s"));
    m_maxGap->setValue(int(m_placement.options().maxGapSeconds));
    m_maxGap->setToolTip(tr("The longest stretch between two fixes that is bridged"));
    connect(m_maxGap, &QSpinBox::valueChanged, this, [this](int seconds) {
        GeotagOptions options = m_placement.options();
        options.maxGapSeconds = seconds;
        m_placement.setOptions(options);
        showPlacement();
    });
    form->addRow(tr("Largest gap:"), m_maxGap);
    row->addLayout(form, 1);
    return options;
}

void GeotagPanel::loadTracks() {
    OpenPanelRequest request;
    request.prompt = tr("Load");
    request.message = tr("Choose the GPX files of the track.");
    request.canChooseDirectories = false;
    request.allowedExtensions = {QStringLiteral("gpx")};
    const QStringList paths = m_prompt.openPanel(request);
    if (paths.isEmpty())
        return;
    const QStringList problems = m_placement.loadTracks(paths);
    if (!problems.isEmpty())
        m_prompt.ask(Alert::ok(tr("Some of the track could not be read"),
                               problems.mid(0, 10).join(QLatin1Char('\n'))));
    frameTrack();
    showPlacement();
}

void GeotagPanel::offsetTyped(const QString& text) {
    const bool taken = m_placement.setClockOffsetText(text);
    markRefused(m_offset, !taken);
    if (taken)
        showPlacement();
}

void GeotagPanel::zoneTyped(const QString& text) {
    const std::optional<QTimeZone> zone = parseZone(text);
    markRefused(m_zone, !zone);
    if (!zone)
        return;
    GeotagOptions options = m_placement.options();
    options.cameraZone = *zone;
    m_placement.setOptions(options);
    showPlacement();
}

void GeotagPanel::showPlacement() {
    const QStringList leftOut = m_placement.leftOut();
    m_leftOut->clear();
    m_leftOut->addItems(leftOut);
    m_count->setText(tr("%1 of %2 photos placed")
                         .arg(m_placement.count() - leftOut.size())
                         .arg(m_placement.count()));
    m_map->update();
}

// Shows the whole track, with a little room around it.
void GeotagPanel::frameTrack() {
    const QList<TrackPoint>& points = m_placement.tracks().points;
    if (points.isEmpty())
        return;
    const auto [south, north] = std::minmax_element(
        points.cbegin(), points.cend(),
        [](const TrackPoint& a, const TrackPoint& b) { return a.latitude < b.latitude; });
    const auto [west, east] = std::minmax_element(
        points.cbegin(), points.cend(),
        [](const TrackPoint& a, const TrackPoint& b) { return a.longitude < b.longitude; });
    MapRegion region;
    region.latitude = (south->latitude + north->latitude) / 2;
    region.longitude = (west->longitude + east->longitude) / 2;
    region.latitudeSpan = std::max(0.005, (north->latitude - south->latitude) * 1.2);
    region.longitudeSpan = std::max(0.005, (east->longitude - west->longitude) * 1.2);
    m_map->setRegion(region, false);
}

} // namespace tagmoor
