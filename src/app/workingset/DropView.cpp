#include "app/workingset/DropView.h"

#include "foundation/AppEvents.h"

#include <QDragEnterEvent>
#include <QMimeData>
#include <QPainter>
#include <QPainterPath>
#include <QUrl>

namespace tagmoor {

DropView::DropView(AppEvents& events, QWidget* parent) : QFrame(parent), m_events(events) {
    setObjectName(QStringLiteral("dropView"));
    setAcceptDrops(true);
}

QStringList DropView::pathsOf(const QMimeData* data) {
    QStringList paths;
    if (!data || !data->hasUrls())
        return paths;
    for (const QUrl& url : data->urls()) {
        if (url.isLocalFile())
            paths.append(url.toLocalFile());
    }
    return paths;
}

void DropView::dragEnterEvent(QDragEnterEvent* event) {
    if (pathsOf(event->mimeData()).isEmpty())
        return;
    event->acceptProposedAction();
    setHovered(true);
}

void DropView::dragLeaveEvent(QDragLeaveEvent*) {
    setHovered(false);
}

void DropView::dropEvent(QDropEvent* event) {
    setHovered(false);
    const QStringList paths = pathsOf(event->mimeData());
    if (paths.isEmpty()) {
        event->ignore();
        return;
    }
    event->acceptProposedAction();
    emit m_events.DropViewOTM(paths);
}

void DropView::setHovered(bool on) {
    m_hovered = on;
    update();
}

void DropView::paintEvent(QPaintEvent* event) {
    QFrame::paintEvent(event);
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QPalette pal = palette();
    QColor border = pal.color(QPalette::Mid);
    QColor fill = pal.color(QPalette::Base);
    if (m_hovered) {
        border = pal.color(QPalette::Highlight);
        fill = pal.color(QPalette::Highlight);
        fill.setAlpha(28);
    }
    QPainterPath path;
    path.addRoundedRect(QRectF(rect()).adjusted(2, 2, -2, -2), 14, 14);
    painter.fillPath(path, fill);
    QPen pen(border, 2, Qt::DashLine);
    pen.setDashPattern({6, 4});
    painter.setPen(pen);
    painter.drawPath(path);
}

} // namespace tagmoor
