#include "app/workingset/PhotoListViews.h"

#include "app/workingset/PhotoItemDelegate.h"
#include "app/workingset/PhotoTableModel.h"
#include "app/workingset/ThumbnailProvider.h"
#include "foundation/Settings.h"

#include <QCursor>
#include <QHeaderView>
#include <QKeyEvent>
#include <QMenu>
#include <QPaintEvent>
#include <QPainter>
#include <QScrollBar>
#include <QSortFilterProxyModel>
#include <QTimer>

#include <algorithm>

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
    : QAbstractItemView(parent),
      m_delegate(new PhotoItemDelegate(PhotoItemDelegate::Look::Grid, thumbnails, this)),
      m_cell(PhotoItemDelegate::kGridCell) {
    setObjectName(QStringLiteral("collectionView"));
    setSelectionMode(QAbstractItemView::SingleSelection);
    setEditTriggers(QAbstractItemView::NoEditTriggers);
    setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setFrameShape(QFrame::NoFrame);
    setMouseTracking(true);
    setItemDelegate(m_delegate);
    followThumbnails(this, thumbnails);
}

void PhotoGridView::setModel(QAbstractItemModel* model) {
    if (QAbstractItemModel* old = this->model())
        disconnect(old, nullptr, this, nullptr);
    QAbstractItemView::setModel(model);
    if (!model)
        return;
    connect(model, &QAbstractItemModel::rowsInserted, this,
            [this](const QModelIndex& parent, int first) {
                if (parent == rootIndex())
                    rowsAdded(first);
            });
    connect(model, &QAbstractItemModel::rowsRemoved, this, &PhotoGridView::listChanged);
    connect(model, &QAbstractItemModel::modelReset, this, &PhotoGridView::listChanged);
    connect(model, &QAbstractItemModel::layoutChanged, this, &PhotoGridView::listChanged);
    listChanged();
}

void PhotoGridView::listChanged() {
    updateGeometries();
    viewport()->update();
}

void PhotoGridView::rowsAdded(int first) {
    updateGeometries();
    // The cells from `first` on are new or moved: only those on screen are painted again. A
    // long scan appends below the screen, where nothing needs a repaint.
    const int top = (first / m_columns) * m_cell.height() - verticalOffset();
    const QRect changed = viewport()->rect().intersected(
        QRect(0, top, viewport()->width(), viewport()->height() - top));
    if (!changed.isEmpty())
        viewport()->update(changed);
}

int PhotoGridView::itemCount() const {
    return model() ? model()->rowCount(rootIndex()) : 0;
}

int PhotoGridView::lineCount() const {
    return (itemCount() + m_columns - 1) / m_columns;
}

int PhotoGridView::verticalOffset() const {
    return verticalScrollBar()->value();
}

QRect PhotoGridView::visualRect(const QModelIndex& index) const {
    if (!index.isValid() || index.parent() != rootIndex())
        return {};
    const int row = index.row();
    return {(row % m_columns) * m_cell.width(),
            (row / m_columns) * m_cell.height() - verticalOffset(), m_cell.width(),
            m_cell.height()};
}

QModelIndex PhotoGridView::indexAt(const QPoint& point) const {
    if (point.x() < 0 || point.x() >= m_columns * m_cell.width())
        return {};
    const int y = point.y() + verticalOffset();
    if (y < 0)
        return {};
    const qint64 row = qint64(y / m_cell.height()) * m_columns + point.x() / m_cell.width();
    if (row >= itemCount())
        return {};
    return model()->index(int(row), 0, rootIndex());
}

void PhotoGridView::scrollTo(const QModelIndex& index, ScrollHint hint) {
    const QRect rect = visualRect(index);
    if (!rect.isValid())
        return;
    const int height = viewport()->height();
    QScrollBar* bar = verticalScrollBar();
    const int top = rect.top() + verticalOffset();
    switch (hint) {
    case PositionAtTop:
        bar->setValue(top);
        break;
    case PositionAtBottom:
        bar->setValue(top + rect.height() - height);
        break;
    case PositionAtCenter:
        bar->setValue(top + rect.height() / 2 - height / 2);
        break;
    case EnsureVisible:
        if (rect.top() < 0)
            bar->setValue(top);
        else if (rect.bottom() >= height)
            bar->setValue(top + rect.height() - height);
        break;
    }
}

QModelIndex PhotoGridView::moveCursor(CursorAction action, Qt::KeyboardModifiers) {
    const int count = itemCount();
    if (count == 0)
        return {};
    const QModelIndex current = currentIndex();
    const int row = current.isValid() ? current.row() : 0;
    const int page = std::max(1, viewport()->height() / m_cell.height()) * m_columns;
    int next = row;
    switch (action) {
    case MoveLeft:
    case MovePrevious:
        next = row - 1;
        break;
    case MoveRight:
    case MoveNext:
        next = row + 1;
        break;
    case MoveUp:
        next = row - m_columns;
        break;
    case MoveDown:
        next = row + m_columns;
        break;
    case MovePageUp:
        next = row - page;
        break;
    case MovePageDown:
        next = row + page;
        break;
    case MoveHome:
        next = 0;
        break;
    case MoveEnd:
        next = count - 1;
        break;
    }
    if (!current.isValid())
        next = 0;
    return model()->index(std::clamp(next, 0, count - 1), 0, rootIndex());
}

QItemSelection PhotoGridView::rowsIn(const QRect& rect) const {
    QItemSelection selection;
    const int count = itemCount();
    const QRect area = rect.normalized();
    if (count == 0 || area.isEmpty())
        return selection;
    const int offset = verticalOffset();
    const int firstLine = std::max(0, (area.top() + offset) / m_cell.height());
    const int lastLine = std::min(lineCount() - 1, (area.bottom() + offset) / m_cell.height());
    const int firstColumn = std::max(0, area.left() / m_cell.width());
    const int lastColumn = std::min(m_columns - 1, area.right() / m_cell.width());
    if (firstColumn > lastColumn)
        return selection;
    for (int line = firstLine; line <= lastLine; ++line) {
        const int first = line * m_columns + firstColumn;
        const int last = std::min(count - 1, line * m_columns + lastColumn);
        if (first <= last)
            selection.select(model()->index(first, 0, rootIndex()),
                             model()->index(last, 0, rootIndex()));
    }
    return selection;
}

void PhotoGridView::setSelection(const QRect& rect, QItemSelectionModel::SelectionFlags command) {
    if (selectionModel())
        selectionModel()->select(rowsIn(rect), command);
}

QRegion PhotoGridView::visualRegionForSelection(const QItemSelection& selection) const {
    QRegion region;
    // Only the rows on screen matter for a repaint.
    const QItemSelection shown = rowsIn(viewport()->rect());
    for (const QItemSelectionRange& range : selection) {
        for (const QItemSelectionRange& line : shown) {
            const int first = std::max(line.top(), range.top());
            const int last = std::min(line.bottom(), range.bottom());
            for (int row = first; row <= last; ++row)
                region += visualRect(model()->index(row, 0, rootIndex()));
        }
    }
    return region;
}

void PhotoGridView::updateGeometries() {
    const int height = viewport()->height();
    const int total = lineCount() * m_cell.height();
    QScrollBar* bar = verticalScrollBar();
    bar->setRange(0, std::max(0, total - height));
    bar->setPageStep(height);
    bar->setSingleStep(24);
    QAbstractItemView::updateGeometries();
}

void PhotoGridView::resizeEvent(QResizeEvent* event) {
    // Spreads the room left over by whole columns across the columns, so that the grid fills
    // the width instead of leaving a strip on the right.
    const int width = viewport()->width();
    const int cell = PhotoItemDelegate::kGridCell.width();
    m_columns = std::max(1, width / cell);
    m_cell = {std::min(cell + cell / 3, width / m_columns), PhotoItemDelegate::kGridCell.height()};
    QAbstractItemView::resizeEvent(event);
    updateGeometries();
}

void PhotoGridView::paintEvent(QPaintEvent* event) {
    QPainter painter(viewport());
    const QItemSelection shown = rowsIn(event->rect());
    QStyleOptionViewItem option;
    initViewItemOption(&option);
    const QModelIndex current = currentIndex();
    const QModelIndex hover = viewport()->underMouse()
                                  ? indexAt(viewport()->mapFromGlobal(QCursor::pos()))
                                  : QModelIndex();
    const QStyle::State base = option.state;
    for (const QItemSelectionRange& line : shown) {
        for (int row = line.top(); row <= line.bottom(); ++row) {
            const QModelIndex index = model()->index(row, 0, rootIndex());
            option.rect = visualRect(index);
            option.state = base;
            if (selectionModel() && selectionModel()->isSelected(index))
                option.state |= QStyle::State_Selected;
            if (index == current && hasFocus())
                option.state |= QStyle::State_HasFocus;
            if (index == hover)
                option.state |= QStyle::State_MouseOver;
            itemDelegateForIndex(index)->paint(&painter, option, index);
        }
    }
}

PhotoTableView::PhotoTableView(ThumbnailProvider& thumbnails, QWidget* parent)
    : QTableView(parent),
      m_delegate(new PhotoItemDelegate(PhotoItemDelegate::Look::Table, thumbnails, this)),
      m_saveLater(new QTimer(this)) {
    setObjectName(QStringLiteral("tableView"));
    verticalHeader()->hide();
    verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    verticalHeader()->setDefaultSectionSize(PhotoItemDelegate::kTableRowHeight);
    setShowGrid(false);
    setSelectionBehavior(QAbstractItemView::SelectRows);
    setSelectionMode(QAbstractItemView::SingleSelection);
    setEditTriggers(QAbstractItemView::NoEditTriggers);
    setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
    setHorizontalScrollMode(QAbstractItemView::ScrollPerPixel);
    setWordWrap(false);
    setFrameShape(QFrame::NoFrame);
    setItemDelegate(m_delegate);
    followThumbnails(this, thumbnails);
    // Dragging a column's edge writes the settings once, when the hand rests.
    m_saveLater->setObjectName(QStringLiteral("timerSaveColumns"));
    m_saveLater->setSingleShot(true);
    m_saveLater->setInterval(400);
    connect(m_saveLater, &QTimer::timeout, this, &PhotoTableView::saveColumns);
}

PhotoTableView::~PhotoTableView() {
    if (m_saveLater->isActive())
        saveColumns();
}

void PhotoTableView::setListModel(WorkingListModel& list) {
    m_columns = new PhotoTableModel(list, this);
    m_sorted = new QSortFilterProxyModel(this);
    m_sorted->setObjectName(QStringLiteral("tableSort"));
    m_sorted->setSortRole(PhotoTableModel::SortRole);
    m_sorted->setSortCaseSensitivity(Qt::CaseInsensitive);
    m_sorted->setSourceModel(m_columns);
    setModel(m_sorted);
    setUpHeader();
}

void PhotoTableView::setUpHeader() {
    QHeaderView* header = horizontalHeader();
    header->setObjectName(QStringLiteral("tableHeader"));
    header->show();
    header->setSectionsMovable(true);
    header->setSectionsClickable(true);
    header->setHighlightSections(false);
    header->setStretchLastSection(true);
    header->setSectionResizeMode(QHeaderView::Interactive);
    header->setSortIndicatorShown(true);
    header->setSortIndicatorClearable(true);
    // The list's own order until the user asks for another.
    header->setSortIndicator(-1, Qt::AscendingOrder);
    header->resizeSection(int(PhotoColumn::Name), 300);
    header->resizeSection(int(PhotoColumn::Edited), 64);
    header->resizeSection(int(PhotoColumn::Size), 90);
    header->resizeSection(int(PhotoColumn::Dimensions), 110);
    header->resizeSection(int(PhotoColumn::CaptureDate), 160);
    // The edited mark stands first, beside the photo's name.
    header->moveSection(header->visualIndex(int(PhotoColumn::Edited)), 0);
    setSortingEnabled(true);
    header->setContextMenuPolicy(Qt::CustomContextMenu);
    connect(header, &QWidget::customContextMenuRequested, this, &PhotoTableView::showColumnMenu);
    connect(header, &QHeaderView::sectionResized, this, &PhotoTableView::columnsChanged);
    connect(header, &QHeaderView::sectionMoved, this, &PhotoTableView::columnsChanged);
    connect(header, &QHeaderView::sortIndicatorChanged, this, &PhotoTableView::columnsChanged);
}

void PhotoTableView::showColumnMenu(const QPoint& pos) {
    QHeaderView* header = horizontalHeader();
    auto* menu = new QMenu(this);
    menu->setObjectName(QStringLiteral("tableColumnsMenu"));
    menu->setAttribute(Qt::WA_DeleteOnClose);
    for (int column = 0; column < kPhotoColumnCount; ++column) {
        QAction* action = menu->addAction(model()->headerData(column, Qt::Horizontal).toString());
        action->setCheckable(true);
        action->setChecked(!header->isSectionHidden(column));
        // The name stays: without it a row would have no check box.
        action->setEnabled(PhotoColumn(column) != PhotoColumn::Name);
        connect(action, &QAction::toggled, this, [this, header, column](bool on) {
            header->setSectionHidden(column, !on);
            columnsChanged();
        });
    }
    menu->popup(header->mapToGlobal(pos));
}

void PhotoTableView::rememberColumnsIn(Settings& settings) {
    m_settings = &settings;
    if (const auto state = settings.photoTableColumns(); state && !state->isEmpty()) {
        QHeaderView* header = horizontalHeader();
        if (header->restoreState(*state)) {
            header->setSectionHidden(int(PhotoColumn::Name), false);
            sortByColumn(header->sortIndicatorSection(), header->sortIndicatorOrder());
        }
    }
}

void PhotoTableView::columnsChanged() {
    if (m_settings)
        m_saveLater->start();
}

void PhotoTableView::saveColumns() {
    m_saveLater->stop();
    if (m_settings)
        m_settings->setPhotoTableColumns(horizontalHeader()->saveState());
}

bool RatingKeys::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() != QEvent::KeyPress)
        return QObject::eventFilter(watched, event);
    const auto* key = static_cast<QKeyEvent*>(event);
    const auto modifiers = key->modifiers() & ~Qt::KeypadModifier;
    if (modifiers != Qt::NoModifier || key->key() < Qt::Key_0 || key->key() > Qt::Key_5)
        return QObject::eventFilter(watched, event);
    emit ratingKey(key->key() - Qt::Key_0);
    return true;
}

} // namespace tagmoor
