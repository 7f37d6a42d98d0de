#include "app/workingset/TutorialOverlay.h"

#include <QEvent>
#include <QGraphicsOpacityEffect>
#include <QHBoxLayout>
#include <QLabel>
#include <QPropertyAnimation>
#include <QPushButton>
#include <QTimer>
#include <QVBoxLayout>

namespace tagmoor {

namespace {

constexpr int kStepMs = 4500;

const char* const kTexts[TutorialOverlay::kSteps] = {
    QT_TRANSLATE_NOOP("tagmoor::TutorialOverlay",
                      "Your photos are in the list. Switch between thumbnails and a table with "
                      "Grid and Table."),
    QT_TRANSLATE_NOOP("tagmoor::TutorialOverlay",
                      "The check box of a photo marks it: a run and the editor work on the marked "
                      "photos only."),
    QT_TRANSLATE_NOOP("tagmoor::TutorialOverlay",
                      "Click a photo to see it on the right. Right-click for more: remove, get "
                      "info, open it."),
    QT_TRANSLATE_NOOP("tagmoor::TutorialOverlay",
                      "Edit EXIF, IPTC and XMP values in the editor. A field you change is framed "
                      "and goes to every marked photo."),
    QT_TRANSLATE_NOOP("tagmoor::TutorialOverlay",
                      "Fields that differ between the marked photos show \"Multiple Values\"; "
                      "untouched, each photo keeps its own."),
    QT_TRANSLATE_NOOP("tagmoor::TutorialOverlay",
                      "Set rules for the dates with the buttons beside the date fields, and rename "
                      "rules with Rename."),
    QT_TRANSLATE_NOOP("tagmoor::TutorialOverlay",
                      "When you are ready, press Start Process. Reset All takes every edit back."),
};

} // namespace

TutorialOverlay::TutorialOverlay(QWidget* parent)
    : QFrame(parent), m_counter(new QLabel), m_text(new QLabel), m_back(new QPushButton),
      m_next(new QPushButton), m_skip(new QPushButton), m_timer(new QTimer(this)),
      m_fade(new QGraphicsOpacityEffect(this)),
      m_fadeIn(new QPropertyAnimation(m_fade, "opacity", this)) {
    setObjectName(QStringLiteral("boxTutorial"));
    setFrameShape(QFrame::StyledPanel);
    setAutoFillBackground(true);
    setFixedWidth(420);
    setGraphicsEffect(m_fade);
    m_counter->setObjectName(QStringLiteral("lblTutorialStep"));
    m_counter->setForegroundRole(QPalette::PlaceholderText);
    m_text->setObjectName(QStringLiteral("lblBox1TutorialText"));
    m_text->setWordWrap(true);
    QFont font = m_text->font();
    font.setPointSizeF(font.pointSizeF() * 1.1);
    m_text->setFont(font);
    m_back->setObjectName(QStringLiteral("btnTutorialBack"));
    m_back->setText(tr("Back"));
    m_next->setObjectName(QStringLiteral("btnTutorialNext"));
    m_next->setText(tr("Next"));
    m_next->setDefault(true);
    m_skip->setObjectName(QStringLiteral("btnSkipIntro"));
    m_skip->setText(tr("Skip Intro"));
    m_skip->setFlat(true);
    connect(m_back, &QPushButton::clicked, this, &TutorialOverlay::clickedBack);
    connect(m_next, &QPushButton::clicked, this, &TutorialOverlay::clickedNext);
    connect(m_skip, &QPushButton::clicked, this, &TutorialOverlay::clickedHideTutorial);

    auto* buttons = new QHBoxLayout;
    buttons->addWidget(m_skip);
    buttons->addStretch(1);
    buttons->addWidget(m_back);
    buttons->addWidget(m_next);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(18, 14, 18, 12);
    layout->setSpacing(8);
    layout->addWidget(m_counter);
    layout->addWidget(m_text);
    layout->addLayout(buttons);

    m_timer->setObjectName(QStringLiteral("timerTutorial"));
    m_timer->setInterval(kStepMs);
    connect(m_timer, &QTimer::timeout, this, &TutorialOverlay::advance);
    m_fadeIn->setDuration(350);
    m_fadeIn->setStartValue(0.0);
    m_fadeIn->setEndValue(1.0);

    parent->installEventFilter(this);
    hide();
}

void TutorialOverlay::showTutorial() {
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
    showStep(m_step + 1);
    if (m_step >= kSteps)
        m_timer->stop();
}

void TutorialOverlay::takeOver() {
    m_timer->stop();
}

void TutorialOverlay::clickedNext() {
    takeOver();
    if (m_step >= kSteps) {
        clickedHideTutorial();
        return;
    }
    showStep(m_step + 1);
}

void TutorialOverlay::clickedBack() {
    takeOver();
    showStep(m_step - 1);
}

void TutorialOverlay::showStep(int step) {
    m_step = std::clamp(step, 1, kSteps);
    m_counter->setText(tr("Tip %1 of %2").arg(m_step).arg(kSteps));
    m_text->setText(tr(kTexts[m_step - 1]));
    m_back->setEnabled(m_step > 1);
    m_next->setText(m_step == kSteps ? tr("Done") : tr("Next"));
    adjustSize();
    place();
    m_fadeIn->stop();
    m_fadeIn->start();
}

// The tips take turns around the screen: left over the list, right over the editor.
void TutorialOverlay::place() {
    if (m_step < 1)
        return;
    const QSize room = parentWidget()->size();
    const int x = m_step <= 3 ? 40 : room.width() - width() - 40;
    const int y = 60 + ((m_step - 1) % 3) * (room.height() - 200) / 3;
    move(std::max(0, x), std::max(0, y));
}

void TutorialOverlay::enterEvent(QEnterEvent* event) {
    // The pointer on the card: the user is reading, and the tour waits for them.
    takeOver();
    QFrame::enterEvent(event);
}

bool TutorialOverlay::eventFilter(QObject* watched, QEvent* event) {
    if (watched == parentWidget() && event->type() == QEvent::Resize)
        place();
    return QFrame::eventFilter(watched, event);
}

} // namespace tagmoor
