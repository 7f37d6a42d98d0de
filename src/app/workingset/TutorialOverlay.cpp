#include "app/workingset/TutorialOverlay.h"

#include <QEvent>
#include <QGraphicsOpacityEffect>
#include <QLabel>
#include <QPainter>
#include <QPropertyAnimation>
#include <QTimer>
#include <QVBoxLayout>

namespace tagmoor {

namespace {

constexpr int kStepMs = 4500;

} // namespace

TutorialOverlay::TutorialOverlay(QWidget* parent)
    : QWidget(parent), m_box(new QWidget(this)), m_counter(new QLabel), m_text(new QLabel),
      m_skip(new QLabel), m_timer(new QTimer(this)), m_fade(new QGraphicsOpacityEffect(m_box)),
      m_fadeIn(new QPropertyAnimation(m_fade, "opacity", this)) {
    setObjectName(QStringLiteral("boxTutorial"));
    m_box->setObjectName(QStringLiteral("box1Tutorial"));
    m_box->setAutoFillBackground(true);
    m_box->setFixedWidth(420);
    m_box->setGraphicsEffect(m_fade);
    m_counter->setObjectName(QStringLiteral("lblTutorialStep"));
    m_counter->setForegroundRole(QPalette::PlaceholderText);
    m_text->setObjectName(QStringLiteral("lblBox1TutorialText"));
    m_text->setWordWrap(true);
    QFont font = m_text->font();
    font.setPointSizeF(font.pointSizeF() * 1.1);
    m_text->setFont(font);
    m_skip->setObjectName(QStringLiteral("lblSkipIntro"));
    m_skip->setText(QStringLiteral("<a href=\"skip\">%1</a>").arg(tr("Skip Intro")));
    m_skip->setAlignment(Qt::AlignRight);
    connect(m_skip, &QLabel::linkActivated, this, &TutorialOverlay::clickedHideTutorial);

    auto* layout = new QVBoxLayout(m_box);
    layout->setContentsMargins(18, 14, 18, 12);
    layout->setSpacing(8);
    layout->addWidget(m_counter);
    layout->addWidget(m_text);
    layout->addWidget(m_skip);

    m_timer->setObjectName(QStringLiteral("timerTutorial"));
    m_timer->setInterval(kStepMs);
    connect(m_timer, &QTimer::timeout, this, &TutorialOverlay::advance);
    m_fadeIn->setDuration(350);
    m_fadeIn->setStartValue(0.0);
    m_fadeIn->setEndValue(1.0);

    parent->installEventFilter(this);
    setGeometry(parent->rect());
    hide();
}

void TutorialOverlay::showTutorial() {
    setGeometry(parentWidget()->rect());
    show();
    raise();
    showStep(1);
    m_timer->start();
}

void TutorialOverlay::clickedHideTutorial() {
    m_timer->stop();
    m_step = 0;
    hide();
    emit finished();
}

void TutorialOverlay::advance() {
    if (m_step >= kSteps) {
        clickedHideTutorial();
        return;
    }
    showStep(m_step + 1);
}

void TutorialOverlay::showStep(int step) {
    static const char* const kTexts[kSteps] = {
        QT_TR_NOOP("Your photos are in the list. Switch between thumbnails and a table with "
                   "Grid and Table."),
        QT_TR_NOOP("The check box of a photo marks it: a run and the editor work on the marked "
                   "photos only."),
        QT_TR_NOOP("Click a photo to see it on the right. Right-click for more: remove, get "
                   "info, open it."),
        QT_TR_NOOP("Edit EXIF, IPTC and XMP values in the editor. A field you change is framed "
                   "and goes to every marked photo."),
        QT_TR_NOOP("Fields that differ between the marked photos show \"Multiple Values\"; "
                   "untouched, each photo keeps its own."),
        QT_TR_NOOP("Set rules for the dates with the buttons beside the date fields, and rename "
                   "rules with Rename."),
        QT_TR_NOOP("When you are ready, press Start Process. Reset All takes every edit back."),
    };
    m_step = std::clamp(step, 1, kSteps);
    m_counter->setText(tr("Tip %1 of %2").arg(m_step).arg(kSteps));
    m_text->setText(tr(kTexts[m_step - 1]));
    m_box->adjustSize();
    // The boxes take turns around the screen: left over the list, right over the editor.
    const int x = m_step <= 3 ? 40 : width() - m_box->width() - 40;
    const int y = 60 + ((m_step - 1) % 3) * (height() - 200) / 3;
    m_box->move(std::max(0, x), std::max(0, y));
    m_fadeIn->stop();
    m_fadeIn->start();
}

void TutorialOverlay::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.fillRect(rect(), QColor(0, 0, 0, 90));
}

void TutorialOverlay::mousePressEvent(QMouseEvent*) {
    clickedHideTutorial();
}

bool TutorialOverlay::eventFilter(QObject* watched, QEvent* event) {
    if (watched == parentWidget() && event->type() == QEvent::Resize)
        setGeometry(parentWidget()->rect());
    return QWidget::eventFilter(watched, event);
}

} // namespace tagmoor
