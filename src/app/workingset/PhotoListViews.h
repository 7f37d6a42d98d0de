#pragma once

#include <QAbstractItemView>
#include <QTableView>

namespace tagmoor {

class PhotoItemDelegate;
class ThumbnailProvider;

// The thumbnail grid (collectionView): cells of one size, filled left to right and wrapped,
// one check box per item. Every cell's place follows from its row, so a list of any length is
// laid out at once: adding or removing photos never walks the whole list.
class PhotoGridView : public QAbstractItemView {
    Q_OBJECT
public:
    PhotoGridView(ThumbnailProvider& thumbnails, QWidget* parent = nullptr);
    PhotoItemDelegate* photoDelegate() const { return m_delegate; }

    void setModel(QAbstractItemModel* model) override;
    QRect visualRect(const QModelIndex& index) const override;
    void scrollTo(const QModelIndex& index, ScrollHint hint = EnsureVisible) override;
    QModelIndex indexAt(const QPoint& point) const override;
    // The size of one cell at the current width.
    QSize cellSize() const { return m_cell; }
    int columnCount() const { return m_columns; }

protected:
    QModelIndex moveCursor(CursorAction action, Qt::KeyboardModifiers modifiers) override;
    int horizontalOffset() const override { return 0; }
    int verticalOffset() const override;
    bool isIndexHidden(const QModelIndex&) const override { return false; }
    void setSelection(const QRect& rect, QItemSelectionModel::SelectionFlags command) override;
    QRegion visualRegionForSelection(const QItemSelection& selection) const override;
    void updateGeometries() override;
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    int itemCount() const;
    int lineCount() const;
    // The rows of the cells that `rect` (viewport coordinates) touches, line by line.
    QItemSelection rowsIn(const QRect& rect) const;
    void listChanged();
    void rowsAdded(int first);

    PhotoItemDelegate* m_delegate;
    QSize m_cell;
    int m_columns = 1;
};

// The table (tableView): one row per photo with its picture, name, size and check box.
class PhotoTableView : public QTableView {
    Q_OBJECT
public:
    PhotoTableView(ThumbnailProvider& thumbnails, QWidget* parent = nullptr);
    PhotoItemDelegate* photoDelegate() const { return m_delegate; }

private:
    PhotoItemDelegate* m_delegate;
};

} // namespace tagmoor
