#include "app/workingset/HomeScreen.h"

#include "app/batch/FinalProcessedVC.h"
#include "app/batch/ProcessingControls.h"
#include "app/batch/RenameViewController.h"
#include "app/batch/ReviewChangesWindow.h"
#include "app/editor/MetadataViewController.h"
#include "app/location/GeoLocationViewController.h"
#include "app/location/LocationView.h"
#include "app/location/PreviewViewController.h"
#include "app/photolibrary/AlbumChooser.h"
#include "app/presets/PresetsViewController.h"
#include "app/widgets/DesktopActions.h"
#include "app/widgets/DimmingCover.h"
#include "app/widgets/FileInfoDialog.h"
#include "app/widgets/GroupTabs.h"
#include "app/workingset/PhotoItemDelegate.h"
#include "app/workingset/PhotoListViews.h"
#include "app/workingset/ScanProgressBox.h"
#include "app/workingset/ThumbnailProvider.h"
#include "app/workingset/TutorialOverlay.h"
#include "batch/BatchController.h"
#include "editor/EditorState.h"
#include "editor/FieldDisplay.h"
#include "editor/MetadataForm.h"
#include "foundation/AppEvents.h"
#include "foundation/Settings.h"
#include "foundation/UserPrompt.h"
#include "foundation/WorkerThreads.h"
#include "geo/SharedLocation.h"
#include "model/FormFieldTable.h"
#include "presets/PresetForm.h"
#include "presets/PresetStore.h"
#include "processing/ReviewValues.h"
#include "processing/StartProcessChain.h"
#include "rename/Rename.h"
#include "rename/RenameNumbering.h"
#include "workingset/ListSelection.h"
#include "workingset/PanelFilter.h"
#include "workingset/ScanController.h"
#include "workingset/ScanProgressView.h"
#include "workingset/WorkingListModel.h"
#include "workingset/WorkingSet.h"

#include <QButtonGroup>
#include <QCheckBox>
#include <QComboBox>
#include <QDesktopServices>
#include <QFileInfo>
#include <QGridLayout>
#include <QLabel>
#include <QMenu>
#include <QPushButton>
#include <QStackedWidget>
#include <QToolButton>
#include <QUrl>
#include <QVBoxLayout>

#include <algorithm>

namespace tagmoor {

namespace {

constexpr int kPreviewSide = 208;

QPushButton* makeButton(const QString& name, const QString& text) {
    auto* button = new QPushButton(text);
    button->setObjectName(name);
    button->setMinimumHeight(30);
    return button;
}

QFrame* makeLine() {
    auto* line = new QFrame;
    line->setFrameShape(QFrame::HLine);
    line->setFrameShadow(QFrame::Sunken);
    return line;
}

} // namespace

HomeScreen::HomeScreen(const Objects& objects, QWidget* parent)
    : QWidget(parent), m_objects(objects), m_segment(new QButtonGroup(this)),
      m_gridButton(new QToolButton), m_tableButton(new QToolButton), m_selectAll(new QCheckBox),
      m_total(new QLabel), m_addMore(makeButton(QStringLiteral("btnAddMore"), tr("Add More"))),
      m_remove(makeButton(QStringLiteral("btnRemove"), tr("Remove"))), m_views(new QStackedWidget),
      m_grid(new PhotoGridView(objects.thumbnails)),
      m_table(new PhotoTableView(objects.thumbnails)), m_preview(new QLabel),
      m_imageName(new QLabel), m_editorHost(new QWidget),
      m_form(new MetadataForm(objects.workingSet, objects.editorState, objects.prompt, true, this)),
      m_editor(new MetadataViewController(*m_form, objects.events)),
      m_desktop(new DesktopActions(objects.prompt, this)), m_markedSummary(new QLabel),
      m_start(makeButton(QStringLiteral("btnStartProcess"), tr("Start Process"))), m_cover(nullptr),
      m_progress(nullptr) {
    setObjectName(QStringLiteral("Home"));
    m_processing = new ProcessingControls(objects.processingOptions, this);
    m_chain =
        new StartProcessChain({objects.workingSet, *m_form, objects.editorState,
                               objects.processingOptions, objects.folderAccess, objects.settings,
                               objects.prompt, objects.renameNumbering, objects.renameSettings},
                              this);
    m_batch = new BatchController(objects.prompt, objects.renameNumbering, this);
    connect(m_processing, &ProcessingControls::modeChanged, this, &HomeScreen::editingModeChanged);
    connect(m_processing, &ProcessingControls::startEnabledChanged, m_start, &QWidget::setEnabled);
    connect(m_start, &QPushButton::clicked, this, &HomeScreen::clickedStartProcess);
    connect(m_chain, &StartProcessChain::coverChanged, this,
            [this](bool on) { emit m_objects.events.HideUnhideTopLayerTM(!on); });
    connect(m_chain, &StartProcessChain::runReady, this, &HomeScreen::openRunSheet);
    // The chain's preset sheet saves the form and its date rules as a new preset.
    PresetStore& presets = objects.presets;
    m_chain->setPresetHooks({[&presets] { return presets.defaultName(); },
                             [&presets](const QString& name) {
                                 return presets.checkName(name) == PresetStore::NameCheck::Taken;
                             },
                             [this, &presets](const QString& name) {
                                 const qsizetype position = presets.addPreset(name);
                                 presets.replaceValues(position, presetValuesOf(*m_form),
                                                       m_objects.editorState.editorDates().rules());
                             }});

    m_grid->setModel(&objects.listModel);
    m_table->setModel(&objects.listModel);
    auto* gridBox = new QWidget;
    gridBox->setObjectName(QStringLiteral("boxCollectionView"));
    (new QVBoxLayout(gridBox))->addWidget(m_grid);
    gridBox->layout()->setContentsMargins(0, 0, 0, 0);
    auto* tableBox = new QWidget;
    tableBox->setObjectName(QStringLiteral("boxTableView"));
    (new QVBoxLayout(tableBox))->addWidget(m_table);
    tableBox->layout()->setContentsMargins(0, 0, 0, 0);
    m_views->addWidget(gridBox);
    m_views->addWidget(tableBox);

    auto* listSide = new QWidget;
    auto* listLayout = new QVBoxLayout(listSide);
    listLayout->setContentsMargins(0, 0, 0, 0);
    listLayout->setSpacing(0);
    listLayout->addWidget(makeTopBar());
    listLayout->addWidget(makeLine());
    listLayout->addWidget(m_views, 1);

    auto* divider = new QFrame;
    divider->setFrameShape(QFrame::VLine);
    divider->setFrameShadow(QFrame::Sunken);

    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(listSide, 1);
    layout->addWidget(divider);
    layout->addWidget(makeSidePane());

    // The scan's cover and its box, centred over the whole screen.
    m_cover = new DimmingCover(this);
    m_cover->setObjectName(QStringLiteral("loaderCover"));
    m_progress = new ScanProgressBox;
    auto* coverLayout = new QGridLayout(m_cover);
    coverLayout->addWidget(m_progress, 0, 0, Qt::AlignCenter);
    m_cover->hide();

    // The cover raised while an overlay panel is up.
    auto* topLayer = new DimmingCover(this);
    topLayer->setObjectName(QStringLiteral("boxTopLayer"));
    topLayer->hide();
    connect(&objects.events, &AppEvents::HideUnhideTopLayerTM, topLayer, [topLayer](bool isHidden) {
        topLayer->setHidden(isHidden);
        if (!isHidden)
            topLayer->raise();
    });

    for (QAbstractItemView* view :
         {static_cast<QAbstractItemView*>(m_grid), static_cast<QAbstractItemView*>(m_table)}) {
        auto* delegate = qobject_cast<PhotoItemDelegate*>(view->itemDelegate());
        connect(delegate, &PhotoItemDelegate::checkBoxToggled, this, &HomeScreen::clickedCheckBox);
        connect(view, &QAbstractItemView::clicked, this,
                [this](const QModelIndex& index) { showPreview(index.row()); });
        connect(view, &QAbstractItemView::doubleClicked, this,
                [this](const QModelIndex& index) { openPreview(index.row()); });
        view->setContextMenuPolicy(Qt::CustomContextMenu);
        connect(view, &QWidget::customContextMenuRequested, this,
                [this, view](const QPoint& pos) { showContextMenu(view, pos); });
    }

    ScanController& scans = objects.scans;
    connect(&scans, &ScanController::progressViewChanged, this, &HomeScreen::applyProgress);
    connect(&scans, &ScanController::selectionRefreshed, this, &HomeScreen::applyOutcome);
    connect(&scans, &ScanController::reloadViews, this, &HomeScreen::reloadViews);
    connect(&objects.workingSet, &WorkingSet::imagesAppended, this, &HomeScreen::updateTotal);
    connect(&objects.workingSet, &WorkingSet::imagesReset, this, &HomeScreen::updateTotal);
    connect(&objects.workingSet, &WorkingSet::imagesReset, this, [this] {
        if (m_objects.workingSet.isEmpty())
            startNewList();
    });
    connect(&objects.workingSet, &WorkingSet::selectionChanged, this,
            &HomeScreen::updateMarkedSummary);
    connect(&objects.events, &AppEvents::OpenWithItemsOTM, this,
            [this] { m_objects.scans.getOpenWithItems(); });
    connect(m_progress->btnStopScanning(), &QPushButton::clicked, this,
            &HomeScreen::clickedStopScanning);
    connect(&objects.thumbnails, &ThumbnailProvider::thumbnailReady, this,
            [this](const QString& path, int side) {
                if (path == m_previewPath && (side == kPreviewSide || side == 0))
                    refreshPreviewPicture();
            });

    m_tutorial = new TutorialOverlay(this);
    connect(&objects.scans, &ScanController::scanFinished, this, [this] {
        if (!m_objects.workingSet.isEmpty())
            showTutorialOnce();
    });

    setBatchControlsEnabled(false);
    clearPreview();
    m_preview->setForegroundRole(QPalette::PlaceholderText);
    updateTotal();
}

QWidget* HomeScreen::makeTopBar() {
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
    connect(m_segment, &QButtonGroup::idClicked, this,
            &HomeScreen::clickedSegmentCollectionnTableView);

    m_selectAll->setObjectName(QStringLiteral("btnSelectUnselectAllInInTabColl"));
    m_selectAll->setText(tr("Select All"));
    connect(m_selectAll, &QCheckBox::clicked, this, &HomeScreen::clickedSelectUnselectAll);
    m_total->setObjectName(QStringLiteral("lblTotalPhotos"));

    connect(m_addMore, &QPushButton::clicked, this, &HomeScreen::clickedAddMore);
    connect(m_remove, &QPushButton::clicked, this, &HomeScreen::clickedRemove);
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
    addBatchControl(m_remove);
    return bar;
}

QWidget* HomeScreen::makeSidePane() {
    auto* pane = new QWidget;
    pane->setObjectName(QStringLiteral("homeSidePane"));
    pane->setFixedWidth(430);

    m_preview->setObjectName(QStringLiteral("imgViewPreview"));
    fitPreviewToHeight();
    m_preview->setAlignment(Qt::AlignCenter);
    m_preview->setFrameShape(QFrame::StyledPanel);
    m_imageName->setObjectName(QStringLiteral("lblImageName"));
    m_imageName->setAlignment(Qt::AlignHCenter | Qt::AlignTop);
    m_imageName->setTextInteractionFlags(Qt::TextSelectableByMouse);
    // The place of the one marked photo and its pin.
    m_locationView = new LocationView(m_objects.settings);
    m_location = m_locationView->label();

    auto* tabs = new QHBoxLayout;
    m_tabs = new QButtonGroup(pane);
    for (QToolButton* tab : addGroupTabs(m_tabs, tabs)) {
        addBatchControl(tab);
        m_editingOnly.append(tab);
    }
    tabs->addStretch(1);
    tabs->addWidget(m_markedSummary);
    connect(m_tabs, &QButtonGroup::idClicked, this, &HomeScreen::clickedEditorTab);

    m_editorHost->setObjectName(QStringLiteral("scrollViewMetadata"));
    auto* editorLayout = new QVBoxLayout(m_editorHost);
    editorLayout->setContentsMargins(0, 0, 0, 0);
    m_markedSummary->setObjectName(QStringLiteral("lblMarkedSummary"));
    m_markedSummary->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    m_markedSummary->setForegroundRole(QPalette::PlaceholderText);
    editorLayout->addWidget(m_editor, 1);
    editorLayout->addWidget(m_processing->cleanBox(), 1);
    connect(&m_objects.events, &AppEvents::UpdateMetadataInfoOTM, m_form,
            [this](const QList<int>& indexes, bool isMultipleSelected, int index) {
                m_form->updateMetadataInfo(index, isMultipleSelected, indexes);
            });

    auto* gps = makeButton(QStringLiteral("btnShowEditorGPS"), tr("Location..."));
    auto* resetAll = makeButton(QStringLiteral("btnResetAll"), tr("Reset All"));
    auto* rename = makeButton(QStringLiteral("btnRename"), tr("Rename..."));
    auto* preset = makeButton(QStringLiteral("btnPreset"), tr("Presets..."));
    m_resetAll = resetAll;
    m_rename = rename;
    connect(rename, &QPushButton::clicked, this, &HomeScreen::clickedRename);
    connect(resetAll, &QPushButton::clicked, this, &HomeScreen::clickedResetAll);
    m_presetsMenu = new PresetsViewController({m_objects.presets, m_objects.events, *m_form}, this);
    connect(preset, &QPushButton::clicked, this, [this, preset] { m_presetsMenu->showAt(preset); });
    connect(gps, &QPushButton::clicked, this, &HomeScreen::clickShowEditorGPS);
    connect(&m_objects.events, &AppEvents::UpdateLocationFromGeoLocationOTM, this,
            &HomeScreen::updateLocationViewWithNotification);
    m_editingOnly.append(gps);
    m_start->setDefault(true);
    m_start->setMinimumHeight(36);
    QFont startFont = m_start->font();
    startFont.setBold(true);
    m_start->setFont(startFont);
    for (QWidget* control : {static_cast<QWidget*>(gps), static_cast<QWidget*>(resetAll),
                             static_cast<QWidget*>(rename), static_cast<QWidget*>(preset),
                             static_cast<QWidget*>(m_start)})
        addBatchControl(control);

    auto* small = new QGridLayout;
    small->setSpacing(8);
    small->addWidget(gps, 0, 0);
    small->addWidget(resetAll, 0, 1);
    small->addWidget(rename, 1, 0);
    small->addWidget(preset, 1, 1);

    auto* layout = new QVBoxLayout(pane);
    layout->setContentsMargins(16, 14, 16, 16);
    layout->setSpacing(10);
    layout->addWidget(m_preview, 0, Qt::AlignHCenter);
    layout->addWidget(m_imageName);
    layout->addWidget(m_locationView);
    layout->addWidget(makeLine());
    layout->addLayout(tabs);
    layout->addWidget(m_editorHost, 1);
    layout->addLayout(small);
    auto* mode = new QHBoxLayout;
    auto* modeLabel = new QLabel(tr("Mode:"));
    modeLabel->setBuddy(m_processing->popup());
    mode->addWidget(modeLabel);
    mode->addWidget(m_processing->popup(), 1);
    addBatchControl(m_processing->popup());
    for (int i = 0; i < 5; ++i)
        addBatchControl(m_processing->checkBox(ProcessingOptions::Box(i)));
    layout->addLayout(mode);
    auto* start = new QHBoxLayout;
    start->addWidget(makeReviewButton());
    start->addWidget(m_start, 1);
    layout->addLayout(start);
    return pane;
}

void HomeScreen::addBatchControl(QWidget* control) {
    m_batchControls.append(control);
    control->setEnabled(m_objects.workingSet.markedCount() > 0);
}

void HomeScreen::viewWillAppear() {
    WorkingSet& set = m_objects.workingSet;
    if (set.isScanning())
        return;
    if (set.takeFirstAdding()) {
        clearPreview();
        clickedSegmentCollectionnTableView(segmentIndex());
    }
    if (set.retrieveOnAppear())
        m_objects.scans.firstRetriving();
}

void HomeScreen::clickedAddMore() {
    if (m_objects.workingSet.isScanning())
        return;
    if (!m_chooser) {
        m_chooser =
            new AlbumChooser(m_objects.scans, m_objects.prompt, PanelScreen::HomeScreen, this);
        connect(m_chooser, &AlbumChooser::addFoldersChosen, this, &HomeScreen::addFoldersAndPhotos);
    }
    m_chooser->showHomeFace(m_addMore);
}

void HomeScreen::addFoldersAndPhotos() {
    if (m_objects.workingSet.isScanning())
        return;
    const QStringList chosen =
        m_objects.prompt.openPanel(addPhotosPanelRequest(PanelScreen::HomeScreen));
    if (chosen.isEmpty())
        return;
    m_objects.scans.addFromPanel(PanelScreen::HomeScreen, chosen);
}

void HomeScreen::clickedRemove() {
    m_objects.scans.clickedRemove();
}

void HomeScreen::clickedStopScanning() {
    m_objects.scans.clickedStopScanning();
}

void HomeScreen::clickedCheckBox(int row, bool on) {
    applyOutcome(m_objects.scans.selection().checkBoxClicked(row, on));
}

void HomeScreen::clickedSelectUnselectAll(bool on) {
    applyOutcome(m_objects.scans.selection().setAllMarked(on));
}

void HomeScreen::markUnmarkAll() {
    // The menu entry flips the box, then acts as the box does.
    clickedSelectUnselectAll(!m_selectAll->isChecked());
}

int HomeScreen::segmentIndex() const {
    return m_segment->checkedId() == 1 ? 1 : 0;
}

void HomeScreen::clickedSegmentCollectionnTableView(int index) {
    m_segment->button(index == 1 ? 1 : 0)->setChecked(true);
    m_views->setCurrentIndex(index == 1 ? 1 : 0);
    if (index == 1)
        m_table->reset();
    updateTotal();
    clearViewSelection();
}

void HomeScreen::applyProgress(const ScanProgressView& view) {
    m_progress->apply(view);
    m_cover->setVisible(view.boxLoaderVisible);
    if (view.boxLoaderVisible)
        m_cover->raise();
    m_addMore->setEnabled(view.addMoreEnabled);
}

void HomeScreen::applyOutcome(const SelectionOutcome& outcome) {
    if (outcome.ignored)
        return;
    setBatchControlsEnabled(outcome.buttons.batchControlsEnabled);
    clearViewSelection();
    if (outcome.buttons.clearEditorAndPreview && !outcome.buttons.batchControlsEnabled)
        clearPreview();
    if (outcome.showRecord) {
        showPreview(*outcome.showRecord);
        if (*outcome.showRecord < m_objects.workingSet.count())
            showLocation(m_objects.workingSet.workingImages().at(*outcome.showRecord));
    } else {
        if (outcome.geocodeDefaultAndClearPreview)
            clearPreview();
        // None or several marked: the view stands on the default coordinate.
        const SharedLocation& fallback = SharedLocation::instance();
        m_locationView->showPosition(fallback.latitude, fallback.longitude,
                                     LocationView::Naming::PlaceAndRegion);
    }
    if (outcome.editorAction == SelectionOutcome::EditorAction::RestoreEmpty)
        m_form->updateMetadataInfo(-1, false, {});
    if (outcome.metadataInfo) {
        const MetadataInfo& info = *outcome.metadataInfo;
        emit m_objects.events.UpdateMetadataInfoOTM(info.indexes, info.isMultipleSelected,
                                                    info.index);
    }
    m_selectAll->setChecked(outcome.selectAllOn);
    updateMarkedSummary();
    m_grid->viewport()->update();
    m_table->viewport()->update();
}

void HomeScreen::setBatchControlsEnabled(bool on) {
    for (const QPointer<QWidget>& control : m_batchControls) {
        if (control)
            control->setEnabled(on);
    }
    m_form->setEnableComponents(on);
}

void HomeScreen::clickedEditorTab(int editor) {
    if (QAbstractButton* tab = m_tabs->button(editor))
        tab->setChecked(true);
    m_editor->showEditor(editorOfTab(editor));
}

void HomeScreen::clickedResetAll() {
    m_form->resetAll();
    m_objects.processingOptions.clearChoices();
    m_processing->refresh();
    editingModeChanged(ProcessingMode::keepUnedited);
    clickedEditorTab(0);
    applyOutcome(m_objects.scans.selection().refresh());
}

void HomeScreen::startNewList() {
    // Nothing of the last list reaches the next one: no edit, date rule, rename rule, mode or
    // picked position. The boxes keep their values, as a change of row leaves them.
    m_form->resetAll();
    m_objects.renameSettings = Rename{};
    m_objects.processingOptions.reset();
    m_processing->refresh();
    editingModeChanged(ProcessingMode::keepUnedited);
    SharedLocation::instance() = SharedLocation{};
    clearPreview();
}

void HomeScreen::updateTotal() {
    const int count = m_objects.workingSet.count();
    m_total->setText(count == 1 ? tr("1 Photo") : tr("%1 Photos").arg(count));
    updateMarkedSummary();
}

void HomeScreen::updateMarkedSummary() {
    const int marked = m_objects.workingSet.markedCount();
    const int count = m_objects.workingSet.count();
    m_markedSummary->setText(tr("%1 of %2 marked").arg(marked).arg(count));
    m_markedSummary->setToolTip(marked == 0
                                    ? tr("Mark photos in the list to edit their metadata.")
                                    : tr("The editor and a run work on the marked photos."));
}

void HomeScreen::reloadViews() {
    updateTotal();
    m_grid->viewport()->update();
    m_table->viewport()->update();
    if (m_objects.workingSet.isEmpty())
        clearPreview();
}

void HomeScreen::clearViewSelection() {
    m_grid->clearSelection();
    m_table->clearSelection();
}

void HomeScreen::showPreview(int row) {
    const auto& images = m_objects.workingSet.workingImages();
    if (row < 0 || row >= images.size())
        return;
    m_previewPath = images[row].path();
    // One line: the middle of a long path gives way, the whole path is in the tooltip.
    m_imageName->setText(m_imageName->fontMetrics().elidedText(m_previewPath, Qt::ElideMiddle,
                                                               m_imageName->width() - 4));
    m_imageName->setToolTip(m_previewPath);
    refreshPreviewPicture();
}

void HomeScreen::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    fitPreviewToHeight();
}

void HomeScreen::fitPreviewToHeight() {
    // Below about 920 pixels the preview gives up height, down to a small square, so that the
    // editor keeps room for several rows beside the location view.
    constexpr int kRestOfThePane = 712;
    const int side = std::clamp(height() - kRestOfThePane, 96, kPreviewSide);
    if (side == m_previewSide)
        return;
    m_previewSide = side;
    m_preview->setFixedSize(side + 16, side + 16);
    if (!m_previewPath.isEmpty())
        refreshPreviewPicture();
}

void HomeScreen::refreshPreviewPicture() {
    if (m_previewPath.isEmpty()) {
        clearPreview();
        return;
    }
    const QImage image = m_objects.thumbnails.thumbnail(m_previewPath, kPreviewSide);
    if (image.isNull())
        m_preview->setText(QFileInfo(m_previewPath).suffix().toUpper());
    else if (std::max(image.width(), image.height()) > m_previewSide)
        m_preview->setPixmap(QPixmap::fromImage(image.scaled(
            m_previewSide, m_previewSide, Qt::KeepAspectRatio, Qt::SmoothTransformation)));
    else
        m_preview->setPixmap(QPixmap::fromImage(image));
}

void HomeScreen::clearPreview() {
    m_previewPath.clear();
    m_preview->clear();
    m_preview->setText(tr("No photo selected"));
    m_imageName->clear();
    m_imageName->setToolTip(QString());
    m_locationView->clear();
}

QMenu* HomeScreen::buildContextMenu(int row, QWidget* parent) {
    auto* menu = new QMenu(parent);
    menu->setObjectName(QStringLiteral("mainMenu"));
    menu->addAction(tr("Add More Images"), this, &HomeScreen::clickedAddMore);
    menu->addSeparator();
    QAction* removeSelected = menu->addAction(tr("Remove All Selected"));
    removeSelected->setData(100);
    if (m_remove->isEnabled())
        connect(removeSelected, &QAction::triggered, this,
                [this] { m_objects.scans.removeSelected(); });
    else
        removeSelected->setEnabled(false);
    menu->addAction(tr("Remove All"), this, [this] { m_objects.scans.removeAll(); });
    menu->addSeparator();
    const auto& images = m_objects.workingSet.workingImages();
    const bool onRow = row >= 0 && row < images.size();
    QAction* showMetadata =
        menu->addAction(tr("Show Metadata"), this, [this, row] { openPreview(row); });
    showMetadata->setEnabled(onRow);
    menu->addAction(tr("Mark/Unmark All"), this, &HomeScreen::markUnmarkAll);
    menu->addSeparator();
    const QString path = onRow ? images[row].path() : QString();
    QAction* info = menu->addAction(tr("Get Info"), this, [this, row] { showInfo(row); });
    QAction* open = menu->addAction(tr("Open with Default Application"), this,
                                    [this, path] { m_desktop->openInDefaultApplication(path); });
    QAction* reveal = menu->addAction(tr("Show in File Manager"), this,
                                      [this, path] { m_desktop->revealInFileManager(path); });
    for (QAction* action : {info, open, reveal})
        action->setEnabled(onRow);
    return menu;
}

void HomeScreen::clickedRename() {
    if (!m_renamePanel) {
        m_renamePanel = new RenameViewController(m_objects.renameSettings,
                                                 m_objects.processingOptions.overwriteExisting,
                                                 m_objects.prompt, this);
        connect(m_renamePanel, &QDialog::finished, this,
                [this] { emit m_objects.events.HideUnhideTopLayerTM(true); });
    }
    const auto& images = m_objects.workingSet.workingImages();
    m_renamePanel->showFor(images.isEmpty() ? QString() : images.first().path());
    emit m_objects.events.HideUnhideTopLayerTM(false);
    m_renamePanel->open();
}

QPushButton* HomeScreen::makeReviewButton() {
    // The plan of the run as Start Process would make it now, before any question.
    auto* review = makeButton(QStringLiteral("btnReviewChanges"), tr("Review changes..."));
    review->setMinimumHeight(36);
    connect(review, &QPushButton::clicked, this, [this] {
        const RunValues values =
            reviewRunValues(m_objects.processingOptions, m_objects.settings,
                            m_objects.renameSettings, *m_form, m_objects.editorState);
        auto* window = new ReviewChangesWindow(values, m_objects.workingSet.workingImages(),
                                               m_objects.renameNumbering.next(), this);
        connect(window, &ReviewChangesWindow::startClicked, this, &HomeScreen::clickedStartProcess);
        window->open();
    });
    addBatchControl(review);
    return review;
}

void HomeScreen::clickedStartProcess() {
    if (m_objects.workingSet.isScanning())
        return;
    m_chain->clickedStartProcess();
}

void HomeScreen::editingModeChanged(ProcessingMode mode) {
    const bool removing = mode == ProcessingMode::removeGroups;
    m_editor->setVisible(!removing);
    m_processing->cleanBox()->setVisible(removing);
    for (const QPointer<QWidget>& control : std::as_const(m_editingOnly)) {
        if (control)
            control->setEnabled(!removing && m_objects.workingSet.markedCount() > 0);
    }
    if (removing)
        m_form->leaveEditingMode();
    else
        m_form->returnToEditingMode();
}

void HomeScreen::openRunSheet(const RunValues& values) {
    if (!m_runSheet) {
        m_runSheet = new FinalProcessedVC(*m_batch, this);
        connect(m_runSheet, &FinalProcessedVC::finishClicked, this, &HomeScreen::finishRun);
    }
    m_runSheet->open();
    m_runSheet->startRun(values, m_objects.workingSet.workingImages(), workerThreadCount());
}

void HomeScreen::finishRun() {
    RunValues live;
    m_batch->clickedFinish(live, m_objects.editorState.editorDates(),
                           m_objects.settings.isOverwriteIfAFileWithASameNameOrDefault());
    m_objects.renameSettings = live.renameSettings;
    if (m_runSheet)
        m_runSheet->hide();
    m_chain->runClosed();
    // The list empties, so the edits and the options start anew; the add screen comes back.
    m_objects.workingSet.clearImages();
    emit m_objects.events.UpdateVCOTM(RootPage::addFiles);
    emit m_objects.events.AfterFinishOTM();
}

void HomeScreen::showTutorialOnce() {
    if (m_objects.settings.tutorialShow().has_value())
        return;
    m_objects.settings.setTutorialShow(true);
    m_tutorial->showTutorial();
}

void HomeScreen::showLocation(const CGImageProperties& record) {
    const auto lat = record.gpsProperties ? record.gpsProperties->latitude.real() : std::nullopt;
    const auto lon = record.gpsProperties ? record.gpsProperties->longitude.real() : std::nullopt;
    if (lat && lon) {
        SharedLocation::instance() = {*lat, *lon};
        m_locationView->showPosition(*lat, *lon, LocationView::Naming::PlaceAndRegion);
    } else {
        m_locationView->showText(tr("No location"));
    }
}

void HomeScreen::clickShowEditorGPS() {
    SharedLocation& shared = SharedLocation::instance();
    if (m_form->selectedLatitude() && m_form->selectedLongitude())
        shared = {*m_form->selectedLatitude(), *m_form->selectedLongitude()};
    if (!m_picker) {
        m_picker = new GeoLocationViewController(m_objects.events, m_objects.settings,
                                                 m_objects.prompt, this);
        connect(m_picker, &QDialog::finished, this,
                [this] { emit m_objects.events.HideUnhideTopLayerTM(true); });
    }
    emit m_objects.events.HideUnhideTopLayerTM(false);
    m_picker->open();
}

void HomeScreen::updateLocationViewWithNotification() {
    const SharedLocation& shared = SharedLocation::instance();
    m_form->takeLocation(shared.latitude, shared.longitude);
    m_locationView->showPosition(shared.latitude, shared.longitude, LocationView::Naming::Place);
}

PreviewViewController* HomeScreen::previewWindow() const {
    return m_previewWindow;
}

void HomeScreen::openPreview(int row) {
    const auto& images = m_objects.workingSet.workingImages();
    if (row < 0 || row >= images.size())
        return;
    if (!m_previewWindow)
        m_previewWindow = new PreviewViewController(m_objects.settings, this);
    m_previewWindow->setImageProperties(images[row]);
    m_previewWindow->show();
    m_previewWindow->raise();
    m_previewWindow->activateWindow();
}

void HomeScreen::showInfo(int row) {
    const auto& images = m_objects.workingSet.workingImages();
    if (row < 0 || row >= images.size())
        return;
    const CGImageProperties& record = images[row];
    FileInfoDialog::Facts facts;
    const QString width = FieldDisplay::numberText(record.pixelWidth);
    const QString height = FieldDisplay::numberText(record.pixelHeight);
    if (!width.isEmpty() && !height.isEmpty())
        facts.append({tr("Dimensions"), tr("%1 x %2 pixels").arg(width, height)});
    for (Field field :
         {Field::Make, Field::CameraModalName, Field::DateTimeOriginal, Field::Artist}) {
        const QString value = FieldDisplay::text(record, formField(field));
        if (!value.isEmpty())
            facts.append({labelOf(formPosition(field)), value});
    }
    auto* dialog = new FileInfoDialog(record.path(), facts, this);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->open();
}

void HomeScreen::showContextMenu(QAbstractItemView* view, const QPoint& pos) {
    if (m_objects.workingSet.isScanning())
        return;
    const QModelIndex index = view->indexAt(pos);
    QMenu* menu = buildContextMenu(index.isValid() ? index.row() : -1, this);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    menu->popup(view->viewport()->mapToGlobal(pos));
}

} // namespace tagmoor
