#include "app/workingset/HomeSummaryBar.h"

#include "geo/Geocoder.h"
#include "processing/HomeSession.h"

#include <QHBoxLayout>
#include <QLabel>

namespace tagmoor {

HomeSummaryBar::HomeSummaryBar(HomeSession& session, QWidget* parent)
    : QWidget(parent), m_session(session), m_text(new QLabel), m_geocoder(new Geocoder(this)) {
    setObjectName(QStringLiteral("homeSummaryBar"));
    m_text->setObjectName(QStringLiteral("lblRunSummary"));
    m_text->setWordWrap(true);
    m_text->setTextFormat(Qt::RichText);
    m_text->setTextInteractionFlags(Qt::LinksAccessibleByMouse | Qt::LinksAccessibleByKeyboard);
    m_text->setAccessibleName(tr("What the next run does"));
    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_text, 1);
    connect(m_text, &QLabel::linkActivated, this, &HomeSummaryBar::followLink);
    connect(&session, &HomeSession::summaryChanged, this, &HomeSummaryBar::refresh);
    connect(&session, &HomeSession::newListStarted, this, &HomeSummaryBar::refresh);
    refresh();
}

void HomeSummaryBar::refresh() {
    m_items = m_session.summary();
    if (m_items.isEmpty()) {
        m_text->setText(QStringLiteral("<span style=\"color:%1\">%2</span>")
                            .arg(palette().color(QPalette::PlaceholderText).name(),
                                 tr("Nothing set for the run yet").toHtmlEscaped()));
        m_text->setToolTip(QString());
        return;
    }
    const std::optional<std::pair<double, double>> position = m_session.editedPosition();
    if (position && position != m_named)
        nameLocation(*position);
    QStringList parts;
    QStringList plain;
    for (qsizetype i = 0; i < m_items.size(); ++i) {
        QString text = m_items[i].text;
        if (m_items[i].kind == RunSummaryItem::Kind::location && !m_placeName.isEmpty())
            text = tr("location: %1").arg(m_placeName);
        plain << text;
        parts << QStringLiteral("<a href=\"open:%1\" style=\"text-decoration:none\">%2</a>"
                                "&nbsp;<a href=\"clear:%1\" title=\"%3\" "
                                "style=\"text-decoration:none\">\u2715</a>")
                     .arg(i)
                     .arg(text.toHtmlEscaped(), tr("Take this back").toHtmlEscaped());
    }
    m_text->setText(parts.join(QStringLiteral(" &middot; ")));
    m_text->setToolTip(plain.join(QStringLiteral(" \u00b7 ")));
}

void HomeSummaryBar::followLink(const QString& link) {
    const qsizetype colon = link.indexOf(QLatin1Char(':'));
    bool ok = false;
    const qsizetype index = link.mid(colon + 1).toInt(&ok);
    if (colon < 0 || !ok || index < 0 || index >= m_items.size())
        return;
    const RunSummaryItem item = m_items[index];
    if (link.startsWith(QStringLiteral("clear:")))
        m_session.clearSummaryItem(item);
    else
        emit openRequested(item);
}

void HomeSummaryBar::nameLocation(const std::pair<double, double>& position) {
    m_named = position;
    m_placeName.clear();
    m_geocoder->reverseGeocodeLocation(
        position.first, position.second,
        [this, position](const std::optional<Placemark>& mark, const QString&) {
            if (m_named != position || !mark)
                return;
            m_placeName = mark->composedName();
            refresh();
        });
}

} // namespace tagmoor
