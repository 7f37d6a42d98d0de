#include "app/workingset/HomeActionBar.h"

#include "app/batch/ProcessingControls.h"
#include "app/workingset/HomePaneParts.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace tagmoor {

HomeActionBar::HomeActionBar(ProcessingControls& processing, QWidget* parent)
    : QWidget(parent), m_processing(processing),
      m_review(makePaneButton(QStringLiteral("btnReviewChanges"), tr("Review changes..."))),
      m_start(makePaneButton(QStringLiteral("btnStartProcess"), tr("Start Process"))) {
    setObjectName(QStringLiteral("homeActionBar"));
    connect(&processing, &ProcessingControls::startEnabledChanged, m_start, &QWidget::setEnabled);
    connect(m_start, &QPushButton::clicked, this, &HomeActionBar::startClicked);
    connect(m_review, &QPushButton::clicked, this, &HomeActionBar::reviewClicked);
    m_start->setDefault(true);
    m_start->setMinimumHeight(32);
    QFont startFont = m_start->font();
    startFont.setBold(true);
    m_start->setFont(startFont);
    m_review->setMinimumHeight(32);

    auto* mode = new QHBoxLayout;
    auto* modeLabel = new QLabel(tr("Mode:"));
    modeLabel->setBuddy(processing.popup());
    mode->addWidget(modeLabel);
    mode->addWidget(processing.popup(), 1);
    auto* start = new QHBoxLayout;
    start->addWidget(m_review);
    start->addWidget(m_start, 1);

    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(6);
    layout->addLayout(mode);
    layout->addLayout(start);
}

QList<QWidget*> HomeActionBar::batchControls() const {
    QList<QWidget*> controls{m_review, m_start, m_processing.popup()};
    for (int i = 0; i < 5; ++i)
        controls.append(m_processing.checkBox(ProcessingOptions::Box(i)));
    return controls;
}

} // namespace tagmoor
