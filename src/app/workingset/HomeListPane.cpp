#include "app/workingset/HomeListPane.h"

#include "app/workingset/HomePaneParts.h"
#include "app/workingset/PhotoListViews.h"
#include "workingset/WorkingListModel.h"

#include <QButtonGroup>
#include <QCheckBox>
#include <QLabel>
#include <QLocale>
#include <QPushButton>
#include <QStackedWidget>
#include <QToolButton>
#include <QVBoxLayout>

namespace tagmoor {

namespace {

QWidget* boxAround(const QString& name, QWidget* view) {
    auto* box = new QWidget;
    box->setObjectName(name);
    (new QVBoxLayout(box))->addWidget(view);
    box->layout()->setContentsMargins(0, 0, 0, 0);
    return box;
}

} // namespace

HomeListPane::HomeListPane(WorkingListModel& model, ThumbnailProvider& thumbnails, QWidget* parent)
    : QWidget(parent), m_segment(new QButtonGroup(this)), m_gridButton(new QToolButton),
      m_tableButton(new QToolButton), m_selectAll(new QCheckBox), m_total(new QLabel),
      m_addMore(makePaneButton(QStringLiteral("btnAddMore"), tr("Add More"))),
      m_remove(makePaneButton(QStringLiteral("btnRemove"), tr("Remove"))),
      m_views(new QStackedWidget), m_grid(new PhotoGridView(thumbnails)),
      m_table(new PhotoTableView(thumbnails)) {
    setObjectName(QStringLiteral("homeListPane"));
    m_grid->setModel(&model);
    m_grid->setAccessibleName(tr("Photos"));
    m_grid->setAccessibleDescription(tr("The photos in the list as thumbnails"));
    m_table->setListModel(model);
    m_table->setAccessibleName(tr("Photos"));
    m_table->setAccessibleDescription(tr("The photos in the list as a table"));
    m_views->addWidget(boxAround(QStringLiteral("boxCollectionView"), m_grid));
    m_views->addWidget(boxAround(QStringLiteral("boxTableView"), m_table));

    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(makeTopBar());
    layout->addWidget(makePaneLine());
    layout->addWidget(m_views, 1);
}

QWidget* HomeListPane::makeTopBar() {
    auto* bar = new QWidget;
    bar->setObjectName(QStringLiteral("homeTopBar"));
    m_gridButton->setObjectName(QStringLiteral("segmentGrid"));
    m_gridButton->setText(tr("Grid"));
    m_tableButton->setObjectName(QStringLiteral("segmentTable"));
    m_tableButton->setText(tr("Table"));
    for (QToolButton* b : {m_gridButton, m_tableButton}) {
        b->setCheckable(true);
        b->setToolButtonStyle(Qt::ToolButtonTextOnly);
        b->setMinimumSize(64, 28);
    }
    m_segment->setObjectName(QStringLiteral("segmentCollectionnTable"));
    m_segment->setExclusive(true);
    m_segment->addButton(m_gridButton, 0);
    m_segment->addButton(m_tableButton, 1);
    m_gridButton->setChecked(true);
    connect(m_segment, &QButtonGroup::idClicked, this, &HomeListPane::segmentClicked);

    m_selectAll->setObjectName(QStringLiteral("btnSelectUnselectAllInInTabColl"));
    m_selectAll->setText(tr("Select All"));
    connect(m_selectAll, &QCheckBox::clicked, this, &HomeListPane::selectAllClicked);
    m_total->setObjectName(QStringLiteral("lblTotalPhotos"));

    connect(m_addMore, &QPushButton::clicked, this, &HomeListPane::addMoreClicked);
    connect(m_remove, &QPushButton::clicked, this, &HomeListPane::removeClicked);
    m_remove->setToolTip(tr("Remove the marked photos from the list"));

    auto* segment = new QHBoxLayout;
    segment->setSpacing(0);
    segment->addWidget(m_gridButton);
    segment->addWidget(m_tableButton);

    auto* layout = new QHBoxLayout(bar);
    layout->setContentsMargins(14, 10, 14, 10);
    layout->setSpacing(14);
    layout->addLayout(segment);
    layout->addWidget(m_selectAll);
    layout->addWidget(m_total);
    layout->addStretch(1);
    layout->addWidget(m_addMore);
    layout->addWidget(m_remove);
    return bar;
}

int HomeListPane::segmentIndex() const {
    return m_segment->checkedId() == 1 ? 1 : 0;
}

void HomeListPane::showSegment(int index) {
    m_segment->button(index == 1 ? 1 : 0)->setChecked(true);
    m_views->setCurrentIndex(index == 1 ? 1 : 0);
    if (index == 1)
        m_table->reset();
}

void HomeListPane::setTotal(int count) {
    m_total->setText(count == 1 ? tr("1 Photo") : tr("%1 Photos").arg(QLocale().toString(count)));
}

void HomeListPane::setSelectAllChecked(bool on) {
    m_selectAll->setChecked(on);
}

bool HomeListPane::isSelectAllChecked() const {
    return m_selectAll->isChecked();
}

void HomeListPane::setAddMoreEnabled(bool on) {
    m_addMore->setEnabled(on);
}

bool HomeListPane::isRemoveEnabled() const {
    return m_remove->isEnabled();
}

void HomeListPane::clearViewSelection() {
    m_grid->clearSelection();
    m_table->clearSelection();
}

void HomeListPane::repaintViews() {
    m_grid->viewport()->update();
    m_table->viewport()->update();
}

void HomeListPane::rememberColumnsIn(Settings& settings) {
    m_table->rememberColumnsIn(settings);
}

QList<QAbstractItemView*> HomeListPane::views() const {
    return {m_grid, m_table};
}

QList<QWidget*> HomeListPane::batchControls() const {
    return {m_remove};
}

} // namespace tagmoor
