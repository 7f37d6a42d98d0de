#include "app/workingset/PhotoItemDelegate.h"

#include "app/workingset/PhotoTableModel.h"
#include "app/workingset/ThumbnailProvider.h"
#include "workingset/FileSizeText.h"
#include "workingset/WorkingListModel.h"

#include <QApplication>
#include <QFileInfo>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QPainterPath>
#include <QSortFilterProxyModel>

#include <algorithm>
#include <cmath>

namespace tagmoor {

namespace {

bool isChecked(const QModelIndex& index) {
    return index.data(Qt::CheckStateRole).toInt() == Qt::Checked;
}

} // namespace

int PhotoItemDelegate::listRow(const QModelIndex& index) {
    QModelIndex item = index;
    while (const auto* proxy = qobject_cast<const QAbstractProxyModel*>(item.model()))
        item = proxy->mapToSource(item);
    return item.row();
}

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
    else if (index.column() == int(PhotoColumn::Name))
        paintTable(painter, option, index);
    else
        paintFact(painter, option, index);
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
    paintRowBackground(painter, option, index);

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

void PhotoItemDelegate::paintRowBackground(QPainter* painter, const QStyleOptionViewItem& option,
                                           const QModelIndex& index) const {
    if (option.state & QStyle::State_Selected)
        painter->fillRect(option.rect, option.palette.color(QPalette::Highlight));
    else if (index.row() % 2)
        painter->fillRect(option.rect, option.palette.color(QPalette::AlternateBase));
}

void PhotoItemDelegate::paintFact(QPainter* painter, const QStyleOptionViewItem& option,
                                  const QModelIndex& index) const {
    paintRowBackground(painter, option, index);
    const bool selected = option.state & QStyle::State_Selected;
    painter->setPen(option.palette.color(selected ? QPalette::HighlightedText : QPalette::Text));
    const QRect box = option.rect.adjusted(8, 0, -8, 0);
    const auto align = Qt::Alignment(index.data(Qt::TextAlignmentRole).toInt());
    painter->drawText(box, align,
                      option.fontMetrics.elidedText(factText(index), Qt::ElideRight, box.width()));
}

QString PhotoItemDelegate::factText(const QModelIndex& index) const {
    const QString text = index.data(Qt::DisplayRole).toString();
    const auto column = PhotoColumn(index.column());
    if (!text.isEmpty() || (column != PhotoColumn::Size && column != PhotoColumn::Dimensions))
        return text;
    // Facts a record lacks (the pixel size of some RAW files) that the decoder already found.
    const QString path = index.data(WorkingListModel::PathRole).toString();
    if (column == PhotoColumn::Size) {
        const qint64 bytes = m_thumbnails.fileSize(path);
        return bytes < 0 ? QString() : fileSizeText(std::uint64_t(bytes));
    }
    const QSize pixels = m_thumbnails.originalSize(path);
    return pixels.isValid() ? QStringLiteral("%1 x %2").arg(pixels.width()).arg(pixels.height())
                            : QString();
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
    // Decoded for the screen's pixels, so that pictures stay sharp on a scaled display.
    const qreal ratio = painter->device() ? painter->device()->devicePixelRatioF() : 1.0;
    const QImage image =
        m_thumbnails.thumbnail(path, int(std::ceil(thumbnailSide() * std::max(ratio, 1.0))));
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
    // The check box lives in the name column; Space on any cell of a row toggles it.
    if (!index.isValid())
        return false;
    const bool inBox = m_look == Look::Grid || index.column() == int(PhotoColumn::Name);
    if (!inBox && event->type() != QEvent::KeyPress)
        return QStyledItemDelegate::editorEvent(event, model, option, index);
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
        emit checkBoxToggled(listRow(index), !isChecked(index));
        return true;
    }
    case QEvent::KeyPress: {
        const auto* key = static_cast<QKeyEvent*>(event);
        if (key->key() != Qt::Key_Space)
            return false;
        const QModelIndex item = index.siblingAtColumn(int(PhotoColumn::Name));
        emit checkBoxToggled(listRow(item), !isChecked(item));
        return true;
    }
    default:
        return QStyledItemDelegate::editorEvent(event, model, option, index);
    }
}

} // namespace tagmoor
