#pragma once

#include <QStyledItemDelegate>

namespace tagmoor {

class ThumbnailProvider;

// Paints one photo of the working list, in the grid's look (a card with the picture at 120)
// or the table's (a row with the picture at 30, the name and "W x H - size"), each with the
// check box of the photo's mark. A click on the box, or Space on the current item, reports
// the new state instead of changing the model: the screen runs the marking rules.
class PhotoItemDelegate : public QStyledItemDelegate {
    Q_OBJECT
public:
    enum class Look { Grid, Table };

    PhotoItemDelegate(Look look, ThumbnailProvider& thumbnails, QObject* parent = nullptr);

    static constexpr int kGridSide = 120;
    static constexpr int kTableSide = 30;
    static constexpr QSize kGridCell{150, 172};
    static constexpr int kTableRowHeight = 44;

    int thumbnailSide() const { return m_look == Look::Grid ? kGridSide : kTableSide; }
    // The working list's row of an item of either view (the table's rows may be sorted).
    static int listRow(const QModelIndex& index);
    // Where the check box of an item drawn in `itemRect` lies.
    QRect checkBoxRect(const QRect& itemRect) const;

    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override;
    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;

signals:
    void checkBoxToggled(int row, bool on);

protected:
    bool editorEvent(QEvent* event, QAbstractItemModel* model, const QStyleOptionViewItem& option,
                     const QModelIndex& index) override;

private:
    void paintGrid(QPainter* painter, const QStyleOptionViewItem& option,
                   const QModelIndex& index) const;
    void paintTable(QPainter* painter, const QStyleOptionViewItem& option,
                    const QModelIndex& index) const;
    // A plain fact of the table's other columns.
    void paintFact(QPainter* painter, const QStyleOptionViewItem& option,
                   const QModelIndex& index) const;
    QString factText(const QModelIndex& index) const;
    void paintRowBackground(QPainter* painter, const QStyleOptionViewItem& option,
                            const QModelIndex& index) const;
    QString subtitle(const QModelIndex& index) const;
    void paintPicture(QPainter* painter, const QRect& box, const QModelIndex& index) const;
    void paintCheckBox(QPainter* painter, const QStyleOptionViewItem& option,
                       const QModelIndex& index) const;

    Look m_look;
    ThumbnailProvider& m_thumbnails;
};

} // namespace tagmoor
