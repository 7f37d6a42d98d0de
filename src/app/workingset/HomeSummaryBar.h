#pragma once

#include "processing/RunSummary.h"

#include <QWidget>

#include <optional>
#include <utility>

class QLabel;

namespace tagmoor {

class Geocoder;
class HomeSession;

// The line above Start Process that tells what the next run is set to do: fields edited,
// date rules, the rename rule, the position and the preset. Each item opens its panel when
// clicked, and its cross takes it back. The position is named by the offline gazetteer.
class HomeSummaryBar : public QWidget {
    Q_OBJECT
public:
    explicit HomeSummaryBar(HomeSession& session, QWidget* parent = nullptr);

    // Reads the session again (after a sheet that the session does not watch closed).
    void refresh();
    // What the links do: "open:N" or "clear:N" for item N.
    void followLink(const QString& link);

signals:
    void openRequested(const tagmoor::RunSummaryItem& item);

private:
    void nameLocation(const std::pair<double, double>& position);

    HomeSession& m_session;
    QLabel* m_text;
    Geocoder* m_geocoder;
    QList<RunSummaryItem> m_items;
    std::optional<std::pair<double, double>> m_named;
    QString m_placeName;
};

} // namespace tagmoor
