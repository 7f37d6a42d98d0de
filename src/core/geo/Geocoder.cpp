#include "geo/Geocoder.h"

#include "geo/Gazetteer.h"
#include "geo/GeoData.h"

#include <QtConcurrent/QtConcurrentRun>

#include <mutex>

namespace tagmoor {

QFuture<std::shared_ptr<const Gazetteer>> Geocoder::sharedGazetteer() {
    static std::once_flag once;
    static QFuture<std::shared_ptr<const Gazetteer>> future;
    std::call_once(once, [] {
        future = QtConcurrent::run(
            [] { return Gazetteer::fromFile(GeoData::locate(QStringLiteral("places.bin"))); });
    });
    return future;
}

Geocoder::Geocoder(QObject* parent) : QObject(parent) {
    connect(&m_watcher, &QFutureWatcherBase::finished, this, [this] {
        m_ready = m_watcher.result();
        m_isReady = true;
        runPending();
    });
    m_watcher.setFuture(sharedGazetteer());
}

Geocoder::Geocoder(std::shared_ptr<const Gazetteer> gazetteer, QObject* parent)
    : QObject(parent), m_ready(std::move(gazetteer)), m_isReady(true) {}

void Geocoder::whenReady(std::function<void(const Gazetteer*)> work) {
    // Answers go through the event queue, so none arrives inside the call that asked, and
    // they keep the order of the calls.
    m_pending.append(std::move(work));
    if (m_isReady && m_pending.size() == 1)
        QMetaObject::invokeMethod(this, &Geocoder::runPending, Qt::QueuedConnection);
}

void Geocoder::runPending() {
    while (!m_pending.isEmpty()) {
        const auto work = m_pending.takeFirst();
        work(m_ready.get());
    }
}

void Geocoder::reverseGeocodeLocation(double latitude, double longitude, ReverseHandler handler) {
    whenReady([=, handler = std::move(handler)](const Gazetteer* gazetteer) {
        if (!gazetteer) {
            handler(std::nullopt, tr("The place names are not installed"));
            return;
        }
        const std::optional<Placemark> mark = gazetteer->reverse(latitude, longitude);
        handler(mark, mark ? QString() : QStringLiteral("Placemark was nil"));
    });
}

void Geocoder::geocodeAddressString(const QString& text, ForwardHandler handler) {
    whenReady([=, handler = std::move(handler)](const Gazetteer* gazetteer) {
        if (!gazetteer) {
            handler({}, tr("The place names are not installed"));
            return;
        }
        handler(gazetteer->forward(text), QString());
    });
}

} // namespace tagmoor
