#include "app/shell/WelcomeWindow.h"

#include <QCheckBox>
#include <QCloseEvent>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace tagmoor {

WelcomeWindow::WelcomeWindow(QWidget* parent)
    : QWidget(parent, Qt::Window), m_launchAtLogin(new QCheckBox), m_start(new QPushButton) {
    setObjectName(QStringLiteral("welcomeWindow"));
    setWindowTitle(tr("Welcome to Tagmoor"));
    setAttribute(Qt::WA_DeleteOnClose, false);

    auto* icon = new QLabel;
    icon->setPixmap(QIcon(QStringLiteral(":/icons/tagmoor.svg"))
                        .pixmap(QSize(96, 96), icon->devicePixelRatioF()));
    icon->setAlignment(Qt::AlignCenter);

    auto* title = new QLabel(tr("Welcome to Tagmoor"));
    QFont titleFont = title->font();
    titleFont.setPointSizeF(titleFont.pointSizeF() * 1.6);
    titleFont.setBold(true);
    title->setFont(titleFont);
    title->setAlignment(Qt::AlignCenter);

    auto* text = new QLabel(QStringLiteral(
        "Gather your photos into one list, mark the ones to work on, and edit their EXIF, "
        "IPTC, XMP and GPS metadata in one go. Dates can follow rules, files can be renamed, "
        "and whole metadata groups can be removed."));
    text->setWordWrap(true);
    text->setAlignment(Qt::AlignCenter);
    text->setMinimumWidth(380);

    m_launchAtLogin->setObjectName(QStringLiteral("btnLaunchAutomatically"));
    m_launchAtLogin->setText(tr("Launch Tagmoor at login"));
    m_start->setObjectName(QStringLiteral("btnGetStarted"));
    m_start->setText(tr("Get Started"));
    m_start->setDefault(true);
    m_start->setMinimumWidth(160);
    connect(m_start, &QPushButton::clicked, this, &WelcomeWindow::close);

    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(40, 32, 40, 28);
    layout->setSpacing(14);
    layout->addWidget(icon);
    layout->addWidget(title);
    layout->addWidget(text);
    layout->addSpacing(8);
    layout->addWidget(m_launchAtLogin, 0, Qt::AlignHCenter);
    layout->addWidget(m_start, 0, Qt::AlignHCenter);
}

void WelcomeWindow::closeEvent(QCloseEvent* event) {
    leave();
    event->accept();
}

void WelcomeWindow::leave() {
    if (m_left)
        return;
    m_left = true;
    emit left(m_launchAtLogin->isChecked());
}

} // namespace tagmoor
