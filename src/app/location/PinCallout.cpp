#include "app/location/PinCallout.h"

#include "app/location/MapView.h"
#include "foundation/UserPrompt.h"
#include "geo/CoordinateText.h"

#include <QCoreApplication>
#include <QLabel>
#include <QLoggingCategory>
#include <QPushButton>
#include <QVBoxLayout>

Q_LOGGING_CATEGORY(lcPinCallout, "tagmoor.location.pin")

namespace tagmoor {

PinCallout::PinCallout(QWidget* parent)
    : QFrame(parent), m_title(new QLabel), m_subtitle(new QLabel),
      m_moreInfo(new QPushButton(tr("More Info"))) {
    setObjectName(QStringLiteral("pinCallout"));
    setFrameShape(QFrame::StyledPanel);
    setAutoFillBackground(true);
    setBackgroundRole(QPalette::Base);
    setCursor(Qt::ArrowCursor);
    m_title->setObjectName(QStringLiteral("lblCalloutTitle"));
    m_subtitle->setObjectName(QStringLiteral("lblCalloutSubtitle"));
    m_subtitle->setForegroundRole(QPalette::PlaceholderText);
    m_moreInfo->setObjectName(QStringLiteral("btnMoreInfo"));
    m_moreInfo->setAutoDefault(false);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(8, 6, 8, 6);
    layout->setSpacing(4);
    layout->addWidget(m_title, 0, Qt::AlignHCenter);
    layout->addWidget(m_subtitle, 0, Qt::AlignHCenter);
    layout->addWidget(m_moreInfo, 0, Qt::AlignHCenter);
    connect(m_moreInfo, &QPushButton::clicked, this, &PinCallout::moreInfoClicked);
    hide();
}

void PinCallout::showTextsOf(const PinAnnotation& pin) {
    // Neither screen gives its pin a title; the position tells which pin this is.
    const QString title = pin.title.isEmpty()
                              ? QStringLiteral("%1, %2").arg(coordinateText(float(pin.latitude)),
                                                             coordinateText(float(pin.longitude)))
                              : pin.title;
    m_title->setText(title);
    m_subtitle->setText(pin.subtitle);
    m_subtitle->setVisible(!pin.subtitle.isEmpty());
    adjustSize();
}

void showMoreInfo(UserPrompt& prompt) {
    qCInfo(lcPinCallout) << "show popover to show more info";
    prompt.tell(QCoreApplication::translate("PinCallout", "show details"),
                QCoreApplication::translate("PinCallout", "Informative text goes here"));
}

} // namespace tagmoor
