#include "workingset/PhotoListViews.h"

#include "workingset/PhotoItemDelegate.h"
#include "workingset/ThumbnailProvider.h"

#include <QHeaderView>
#include <QScrollBar>

namespace tagmoor {

namespace {

// Thumbnails are asked for while painting, so only visible items ask. Scrolling tells the
// provider to drop what it has not started, and finished pictures repaint the view.
void followThumbnails(QAbstractItemView* view, ThumbnailProvider& thumbnails) {
    QObject::connect(view->verticalScrollBar(), &QScrollBar::valueChanged, view,
                     [&thumbnails] { thumbnails.viewScrolled(); });
    QObject::connect(&thumbnails, &ThumbnailProvider::thumbnailReady, view,
                     [view] { view->viewport()->update(); });
}

} // namespace

PhotoGridView::PhotoGridView(ThumbnailProvider& thumbnails, QWidget* parent)
    : QListView(parent),
      m_delegate(new PhotoItemDelegate(PhotoItemDelegate::Look::Grid, thumbnails, this)) {
    setObjectName(QStringLiteral("collectionView"));
    setViewMode(QListView::IconMode);
    setMovement(QListView::Static);
    setResizeMode(QListView::Adjust);
    setFlow(QListView::LeftToRight);
    setWrapping(true);
    setUniformItemSizes(true);
    setGridSize(PhotoItemDelegate::kGridCell);
    setSpacing(0);
    setSelectionMode(QAbstractItemView::SingleSelection);
    setEditTriggers(QAbstractItemView::NoEditTriggers);
    setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
    verticalScrollBar()->setSingleStep(24);
    setFrameShape(QFrame::NoFrame);
    setItemDelegate(m_delegate);
    followThumbnails(this, thumbnails);
}

void PhotoGridView::resizeEvent(QResizeEvent* event) {
    // Spreads the room left over by whole columns across the columns, so that the grid fills
    // the width instead of leaving a strip on the right.
    const int width = viewport()->width();
    const int cell = PhotoItemDelegate::kGridCell.width();
    const int columns = std::max(1, width / cell);
    const int spread = std::min(cell + cell / 3, width / columns);
    if (gridSize().width() != spread)
        setGridSize({spread, PhotoItemDelegate::kGridCell.height()});
    QListView::resizeEvent(event);
}

PhotoTableView::PhotoTableView(ThumbnailProvider& thumbnails, QWidget* parent)
    : QTableView(parent),
      m_delegate(new PhotoItemDelegate(PhotoItemDelegate::Look::Table, thumbnails, this)) {
    setObjectName(QStringLiteral("tableView"));
    horizontalHeader()->hide();
    horizontalHeader()->setStretchLastSection(true);
    verticalHeader()->hide();
    verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    verticalHeader()->setDefaultSectionSize(PhotoItemDelegate::kTableRowHeight);
    setShowGrid(false);
    setSelectionBehavior(QAbstractItemView::SelectRows);
    setSelectionMode(QAbstractItemView::SingleSelection);
    setEditTriggers(QAbstractItemView::NoEditTriggers);
    setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
    setWordWrap(false);
    setFrameShape(QFrame::NoFrame);
    setItemDelegate(m_delegate);
    followThumbnails(this, thumbnails);
}

} // namespace tagmoor
