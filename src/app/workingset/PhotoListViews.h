#pragma once

#include <QListView>
#include <QTableView>

namespace tagmoor {

class PhotoItemDelegate;
class ThumbnailProvider;

// The thumbnail grid (collectionView): icon mode, fixed cells, one check box per item.
class PhotoGridView : public QListView {
    Q_OBJECT
public:
    PhotoGridView(ThumbnailProvider& thumbnails, QWidget* parent = nullptr);
    PhotoItemDelegate* photoDelegate() const { return m_delegate; }

protected:
    void resizeEvent(QResizeEvent* event) override;

private:
    PhotoItemDelegate* m_delegate;
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
