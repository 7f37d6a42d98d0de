#include "app/widgets/DimmingCover.h"

#include <QEvent>
#include <QPainter>

namespace tagmoor {

DimmingCover::DimmingCover(QWidget* parent, int bottomMargin)
    : QWidget(parent), m_bottomMargin(bottomMargin) {
    setObjectName(QStringLiteral("dimmingCover"));
    // Swallows clicks and keys meant for the controls below.
    setAttribute(Qt::WA_NoMousePropagation);
    setFocusPolicy(Qt::StrongFocus);
    parent->installEventFilter(this);
    fitParent();
}

bool DimmingCover::eventFilter(QObject* watched, QEvent* event) {
    if (watched == parentWidget() && event->type() == QEvent::Resize)
        fitParent();
    return QWidget::eventFilter(watched, event);
}

void DimmingCover::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.fillRect(rect(), QColor(0, 0, 0, int(0.7 * 255)));
}

void DimmingCover::fitParent() {
    const QSize size = parentWidget()->size();
    setGeometry(0, 0, size.width(), std::max(0, size.height() - m_bottomMargin));
}

} // namespace tagmoor
