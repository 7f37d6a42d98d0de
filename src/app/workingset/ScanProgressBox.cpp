#include "app/workingset/ScanProgressBox.h"

#include "workingset/ScanProgressView.h"

#include <QGridLayout>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>

namespace tagmoor {

ScanProgressBox::ScanProgressBox(QWidget* parent)
    : QFrame(parent), m_title(new QLabel(tr("Adding Images"))), m_loader(new QProgressBar),
      m_spinner(new QProgressBar), m_percent(new QLabel), m_path(new QLabel),
      m_imagesSelected(new QLabel), m_objectsSelected(new QLabel),
      m_stop(new QPushButton(tr("Stop"))) {
    setObjectName(QStringLiteral("boxLoader"));
    setFixedWidth(520);
    setAutoFillBackground(true);
    setFrameShape(QFrame::StyledPanel);
    setStyleSheet(QStringLiteral("#boxLoader { background: palette(window); border-radius: 10px;"
                                 " border: 1px solid palette(mid); }"));

    m_title->setObjectName(QStringLiteral("lblAddingImagesScanning"));
    QFont titleFont = m_title->font();
    titleFont.setPointSizeF(titleFont.pointSizeF() * 1.3);
    titleFont.setBold(true);
    m_title->setFont(titleFont);

    m_loader->setObjectName(QStringLiteral("loader"));
    m_loader->setRange(0, 1000);
    m_loader->setTextVisible(false);
    m_spinner->setObjectName(QStringLiteral("spinnerLoader"));
    m_spinner->setRange(0, 0); // turns while the files are counted
    m_spinner->setTextVisible(false);
    m_percent->setObjectName(QStringLiteral("lblPercentageLoader"));
    m_percent->setMinimumWidth(m_percent->fontMetrics().horizontalAdvance(QStringLiteral("100%")) +
                               6);
    m_percent->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    m_path->setObjectName(QStringLiteral("lblPathScanning"));
    m_path->setMinimumWidth(10);
    m_imagesSelected->setObjectName(QStringLiteral("lblImagesSelectedScanning"));
    m_objectsSelected->setObjectName(QStringLiteral("lblObjectSelectedScanning"));
    m_objectsSelected->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    m_stop->setObjectName(QStringLiteral("btnStopScanning"));
    m_stop->setMinimumWidth(96);

    auto* grid = new QGridLayout(this);
    grid->setContentsMargins(24, 20, 24, 20);
    grid->setHorizontalSpacing(10);
    grid->setVerticalSpacing(10);
    // Only one of the bar and the spinner shows at a time; they share the row with the percent.
    auto* bar = new QHBoxLayout;
    bar->setSpacing(10);
    bar->addWidget(m_loader, 1);
    bar->addWidget(m_spinner, 1);
    bar->addWidget(m_percent);
    grid->addWidget(m_title, 0, 0, 1, 2);
    grid->addLayout(bar, 1, 0, 1, 2);
    grid->addWidget(m_path, 2, 0, 1, 2);
    grid->addWidget(m_imagesSelected, 3, 0);
    grid->addWidget(m_objectsSelected, 3, 1);
    grid->addWidget(m_stop, 4, 0, 1, 2, Qt::AlignRight);
    grid->setColumnStretch(0, 1);
}

void ScanProgressBox::apply(const ScanProgressView& view) {
    setVisible(view.boxLoaderVisible);
    m_loader->setVisible(view.loaderVisible);
    m_loader->setValue(int(view.loaderValue * 1000 + 0.5));
    m_spinner->setVisible(view.spinnerVisible);
    m_percent->setText(view.percentText);
    m_fullPath = view.pathText;
    showPath();
    m_imagesSelected->setText(view.imagesSelectedText);
    m_objectsSelected->setText(view.objectsSelectedText);
}

void ScanProgressBox::resizeEvent(QResizeEvent* event) {
    QFrame::resizeEvent(event);
    showPath();
}

void ScanProgressBox::showPath() {
    // Long paths keep their start ("Path: /home/...") and the file name.
    const int width = std::max(40, m_path->width());
    m_path->setText(m_path->fontMetrics().elidedText(m_fullPath, Qt::ElideMiddle, width));
    m_path->setToolTip(m_fullPath);
}

} // namespace tagmoor
