#include "app/workingset/PhotoItemDelegate.h"

#include "app/workingset/ThumbnailProvider.h"
#include "workingset/FileSizeText.h"
#include "workingset/WorkingListModel.h"

#include <QApplication>
#include <QFileInfo>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QPainterPath>

namespace tagmoor {

namespace {

bool isChecked(const QModelIndex& index) {
    return index.data(Qt::CheckStateRole).toInt() == Qt::Checked;
}

} // namespace

PhotoItemDelegate::PhotoItemDelegate(Look look, ThumbnailProvider& thumbnails, QObject* parent)
    : QStyledItemDelegate(parent), m_look(look), m_thumbnails(thumbnails) {}

QSize PhotoItemDelegate::sizeHint(const QStyleOptionViewItem& option, const QModelIndex&) const {
    if (m_look == Look::Grid)
        return kGridCell;
    return {option.rect.width() > 0 ? option.rect.width() : 300, kTableRowHeight};
}

QRect PhotoItemDelegate::checkBoxRect(const QRect& itemRect) const {
    const int box = 18;
    if (m_look == Look::Grid)
        return {itemRect.left() + 10, itemRect.top() + 10, box, box};
    return {itemRect.left() + 10, itemRect.center().y() - box / 2 + 1, box, box};
}

void PhotoItemDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option,
                              const QModelIndex& index) const {
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    if (m_look == Look::Grid)
        paintGrid(painter, option, index);
    else
        paintTable(painter, option, index);
    painter->restore();
}

void PhotoItemDelegate::paintGrid(QPainter* painter, const QStyleOptionViewItem& option,
                                  const QModelIndex& index) const {
    const QPalette& pal = option.palette;
    const bool selected = option.state & QStyle::State_Selected;
    const QRectF card = QRectF(option.rect).adjusted(4, 4, -4, -4);
    QPainterPath path;
    path.addRoundedRect(card, 8, 8);
    painter->fillPath(path, pal.color(QPalette::Base));
    // A selected item gets a coloured border; the others the plain border colour.
    QPen pen(selected ? pal.color(QPalette::Highlight) : pal.color(QPalette::Midlight),
             selected ? 2.5 : 1.0);
    painter->setPen(pen);
    painter->drawPath(path);

    const QRect picture(option.rect.left() + (option.rect.width() - kGridSide) / 2,
                        option.rect.top() + 12, kGridSide, kGridSide);
    paintPicture(painter, picture, index);

    const QRect nameRect(option.rect.left() + 10, picture.bottom() + 6, option.rect.width() - 20,
                         option.fontMetrics.height() + 2);
    painter->setPen(pal.color(QPalette::Text));
    const QString name = option.fontMetrics.elidedText(index.data(Qt::DisplayRole).toString(),
                                                       Qt::ElideMiddle, nameRect.width());
    painter->drawText(nameRect, Qt::AlignHCenter | Qt::AlignVCenter, name);
    paintCheckBox(painter, option, index);
}

void PhotoItemDelegate::paintTable(QPainter* painter, const QStyleOptionViewItem& option,
                                   const QModelIndex& index) const {
    const QPalette& pal = option.palette;
    const bool selected = option.state & QStyle::State_Selected;
    if (selected)
        painter->fillRect(option.rect, pal.color(QPalette::Highlight));
    else if (index.row() % 2)
        painter->fillRect(option.rect, pal.color(QPalette::AlternateBase));

    const QRect picture(option.rect.left() + 38, option.rect.center().y() - kTableSide / 2 + 1,
                        kTableSide, kTableSide);
    paintPicture(painter, picture, index);

    const int textLeft = picture.right() + 12;
    const int textWidth = option.rect.right() - textLeft - 10;
    QFont titleFont = option.font;
    titleFont.setBold(true);
    const QFontMetrics titleMetrics(titleFont);
    const int lineGap = 2;
    const int block = titleMetrics.height() + lineGap + option.fontMetrics.height();
    const int top = option.rect.top() + (option.rect.height() - block) / 2;

    painter->setFont(titleFont);
    painter->setPen(pal.color(selected ? QPalette::HighlightedText : QPalette::Text));
    painter->drawText(QRect(textLeft, top, textWidth, titleMetrics.height()),
                      Qt::AlignLeft | Qt::AlignVCenter,
                      titleMetrics.elidedText(index.data(Qt::DisplayRole).toString(),
                                              Qt::ElideMiddle, textWidth));
    painter->setFont(option.font);
    QColor subtitleColor = pal.color(selected ? QPalette::HighlightedText : QPalette::Text);
    subtitleColor.setAlphaF(0.65);
    painter->setPen(subtitleColor);
    painter->drawText(QRect(textLeft, top + titleMetrics.height() + lineGap, textWidth,
                            option.fontMetrics.height()),
                      Qt::AlignLeft | Qt::AlignVCenter, subtitle(index));
    paintCheckBox(painter, option, index);
}

QString PhotoItemDelegate::subtitle(const QModelIndex& index) const {
    const QString text = index.data(WorkingListModel::SubtitleRole).toString();
    if (!text.startsWith(QStringLiteral("0 x 0")))
        return text;
    // A record without a pixel size (some RAW files): the decoder may know better.
    const QString path = index.data(WorkingListModel::PathRole).toString();
    const QSize pixels = m_thumbnails.originalSize(path);
    const qint64 bytes = m_thumbnails.fileSize(path);
    if (!pixels.isValid() || bytes < 0)
        return text;
    return QStringLiteral("%1 x %2 - %3")
        .arg(pixels.width())
        .arg(pixels.height())
        .arg(fileSizeText(std::uint64_t(bytes)));
}

void PhotoItemDelegate::paintPicture(QPainter* painter, const QRect& box,
                                     const QModelIndex& index) const {
    const QString path = index.data(WorkingListModel::PathRole).toString();
    const QImage image = m_thumbnails.thumbnail(path, thumbnailSide());
    if (!image.isNull()) {
        const QSize size = image.size().scaled(box.size(), Qt::KeepAspectRatio);
        const QRect target(box.left() + (box.width() - size.width()) / 2,
                           box.top() + (box.height() - size.height()) / 2, size.width(),
                           size.height());
        painter->drawImage(target, image);
        // A hairline keeps white and very light pictures apart from the card.
        QColor edge = QApplication::palette().color(QPalette::Mid);
        edge.setAlpha(90);
        painter->setPen(QPen(edge, 1));
        painter->setBrush(Qt::NoBrush);
        painter->drawRect(QRectF(target).adjusted(0.5, 0.5, -0.5, -0.5));
        return;
    }
    // No picture yet (or none to be had): a quiet tile with the file type.
    painter->save();
    QPainterPath tile;
    tile.addRoundedRect(QRectF(box).adjusted(1, 1, -1, -1), 4, 4);
    QColor fill = QApplication::palette().color(QPalette::Mid);
    fill.setAlpha(50);
    painter->fillPath(tile, fill);
    if (box.width() >= 60) {
        QFont font = painter->font();
        font.setBold(true);
        painter->setFont(font);
        QColor text = QApplication::palette().color(QPalette::Text);
        text.setAlpha(110);
        painter->setPen(text);
        painter->drawText(box, Qt::AlignCenter, QFileInfo(path).suffix().toUpper());
    }
    painter->restore();
}

void PhotoItemDelegate::paintCheckBox(QPainter* painter, const QStyleOptionViewItem& option,
                                      const QModelIndex& index) const {
    QStyleOptionButton box;
    box.rect = checkBoxRect(option.rect);
    box.state = QStyle::State_Enabled | (isChecked(index) ? QStyle::State_On : QStyle::State_Off);
    box.palette = option.palette;
    const QWidget* widget = option.widget;
    QStyle* style = widget ? widget->style() : QApplication::style();
    if (m_look == Look::Grid) {
        // A light plate keeps the box readable over dark pictures.
        QPainterPath plate;
        plate.addRoundedRect(QRectF(box.rect).adjusted(-3, -3, 3, 3), 4, 4);
        QColor base = option.palette.color(QPalette::Base);
        base.setAlpha(220);
        painter->fillPath(plate, base);
    }
    style->drawPrimitive(QStyle::PE_IndicatorCheckBox, &box, painter, widget);
}

bool PhotoItemDelegate::editorEvent(QEvent* event, QAbstractItemModel* model,
                                    const QStyleOptionViewItem& option, const QModelIndex& index) {
    if (!index.isValid())
        return false;
    const QRect hit = checkBoxRect(option.rect).adjusted(-4, -4, 4, 4);
    switch (event->type()) {
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonDblClick: {
        const auto* mouse = static_cast<QMouseEvent*>(event);
        return mouse->button() == Qt::LeftButton && hit.contains(mouse->position().toPoint());
    }
    case QEvent::MouseButtonRelease: {
        const auto* mouse = static_cast<QMouseEvent*>(event);
        if (mouse->button() != Qt::LeftButton || !hit.contains(mouse->position().toPoint()))
            return false;
        emit checkBoxToggled(index.row(), !isChecked(index));
        return true;
    }
    case QEvent::KeyPress: {
        const auto* key = static_cast<QKeyEvent*>(event);
        if (key->key() != Qt::Key_Space)
            return false;
        emit checkBoxToggled(index.row(), !isChecked(index));
        return true;
    }
    default:
        return QStyledItemDelegate::editorEvent(event, model, option, index);
    }
}

} // namespace tagmoor
