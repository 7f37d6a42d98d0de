#pragma once

#include "geo/Placemark.h"

#include <QFuture>
#include <QFutureWatcher>
#include <QList>
#include <QObject>
#include <QString>

#include <functional>
#include <memory>
#include <optional>

namespace tagmoor {

class Gazetteer;

// Asks the gazetteer on behalf of a screen. The gazetteer loads once per process on a worker
// thread; questions asked before it is ready wait for it, and every answer arrives on the
// thread of the geocoder, later than the call and in the order of the calls (the later answer
// wins where a screen shows the last one).
class Geocoder : public QObject {
    Q_OBJECT
public:
    // The process's gazetteer from the installed data.
    explicit Geocoder(QObject* parent = nullptr);
    // A given gazetteer (tests, benchmarks); null answers nothing and says so.
    explicit Geocoder(std::shared_ptr<const Gazetteer> gazetteer, QObject* parent = nullptr);

    using ReverseHandler = std::function<void(const std::optional<Placemark>&, const QString&)>;
    using ForwardHandler = std::function<void(const QList<Placemark>&, const QString&)>;

    // The placemark of a position, or nothing and the reason ("Placemark was nil" when no
    // place is near, the loading error when the data is missing).
    void reverseGeocodeLocation(double latitude, double longitude, ReverseHandler handler);
    // The places of a name, best first; an empty list when none matches.
    void geocodeAddressString(const QString& text, ForwardHandler handler);

    // Starts loading the process's gazetteer, once; later calls give the same future.
    static QFuture<std::shared_ptr<const Gazetteer>> sharedGazetteer();

private:
    void whenReady(std::function<void(const Gazetteer*)> work);

    void runPending();

    QFutureWatcher<std::shared_ptr<const Gazetteer>> m_watcher;
    std::shared_ptr<const Gazetteer> m_ready;
    bool m_isReady = false;
    QList<std::function<void(const Gazetteer*)>> m_pending;
};

} // namespace tagmoor
