#pragma once

#include <QAbstractItemView>
#include <QTableView>

class QSortFilterProxyModel;
class QTimer;

namespace tagmoor {

class PhotoItemDelegate;
class PhotoTableModel;
class Settings;
class ThumbnailProvider;
class WorkingListModel;

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

// The table (tableView): one row per photo, its name (with picture and check box), an edited
// mark, size, dimensions, capture date and camera. A click on a column's header sorts by it
// (a third click goes back to the list's order); the header's context menu shows and hides
// columns. Sorting moves rows only in the view: marks live in the records, and the selection
// follows its photos. Column choices, widths, order and sorting are kept in the settings.
class PhotoTableView : public QTableView {
    Q_OBJECT
public:
    PhotoTableView(ThumbnailProvider& thumbnails, QWidget* parent = nullptr);
    ~PhotoTableView() override;
    PhotoItemDelegate* photoDelegate() const { return m_delegate; }

    // Shows the working list through the table's columns and its sorting.
    void setListModel(WorkingListModel& list);
    // Restores the columns from the settings and keeps them there as they change.
    void rememberColumnsIn(Settings& settings);

private:
    void setUpHeader();
    void showColumnMenu(const QPoint& pos);
    void columnsChanged();
    void saveColumns();

    PhotoItemDelegate* m_delegate;
    PhotoTableModel* m_columns = nullptr;
    QSortFilterProxyModel* m_sorted = nullptr;
    Settings* m_settings = nullptr;
    QTimer* m_saveLater;
};

// The keys 0 to 5 on a view of the list, the keypad's included, without a modifier: the
// rating of the marked photos. Installed on the grid and the table, so that typing into a
// field never sets one.
class RatingKeys : public QObject {
    Q_OBJECT
public:
    using QObject::QObject;

signals:
    void ratingKey(int stars);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
};

} // namespace tagmoor
