#include "app/workingset/HomeScreen.h"

#include "app/batch/FinalProcessedVC.h"
#include "app/batch/ProcessingControls.h"
#include "app/batch/RenameViewController.h"
#include "app/batch/ReviewChangesWindow.h"
#include "app/location/GeoLocationViewController.h"
#include "app/location/LocationView.h"
#include "app/location/PreviewViewController.h"
#include "app/photolibrary/AlbumChooser.h"
#include "app/widgets/DesktopActions.h"
#include "app/widgets/DimmingCover.h"
#include "app/widgets/FileInfoDialog.h"
#include "app/workingset/HomeActionBar.h"
#include "app/workingset/HomeEditorBox.h"
#include "app/workingset/HomeListPane.h"
#include "app/workingset/HomeMenuActions.h"
#include "app/workingset/HomePaneParts.h"
#include "app/workingset/HomePreviewPane.h"
#include "app/workingset/HomeSummaryBar.h"
#include "app/workingset/PhotoItemDelegate.h"
#include "app/workingset/PhotoListViews.h"
#include "app/workingset/ScanProgressBox.h"
#include "app/workingset/TutorialOverlay.h"
#include "dates/DateField.h"
#include "editor/EditorState.h"
#include "editor/FieldDisplay.h"
#include "editor/FormSections.h"
#include "foundation/AppEvents.h"
#include "foundation/Settings.h"
#include "foundation/UserPrompt.h"
#include "foundation/ValueForm.h"
#include "foundation/WorkerThreads.h"
#include "model/FormFieldTable.h"
#include "processing/HomeSession.h"
#include "rename/RenameNumbering.h"
#include "workingset/ListSelection.h"
#include "workingset/PanelFilter.h"
#include "workingset/ScanController.h"
#include "workingset/ScanProgressView.h"
#include "workingset/WorkingListModel.h"
#include "workingset/WorkingSet.h"

#include <QAbstractItemView>
#include <QFrame>
#include <QGridLayout>
#include <QMenu>
#include <QPushButton>
#include <QSplitter>
#include <QTimer>
#include <QToolButton>
#include <QVBoxLayout>

namespace tagmoor {

HomeScreen::HomeScreen(const Objects& objects, QWidget* parent)
    : QWidget(parent), m_objects(objects),
      m_processing(new ProcessingControls(objects.session.objects().processingOptions, this)),
      m_list(new HomeListPane(objects.listModel, objects.thumbnails)),
      m_preview(new HomePreviewPane(objects.thumbnails, objects.session.objects().settings)),
      m_editorBox(
          new HomeEditorBox({objects.session.form(), objects.session.objects().events,
                             objects.session.objects().presets, *m_processing, objects.session})),
      m_actions(new HomeActionBar(*m_processing)),
      m_desktop(new DesktopActions(objects.session.objects().prompt, this)) {
    setObjectName(QStringLiteral("Home"));
    m_summary = new HomeSummaryBar(objects.session);
    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(makeSplitter());
    makeCovers();

    for (QWidget* control :
         m_list->batchControls() + m_editorBox->batchControls() + m_actions->batchControls())
        addBatchControl(control);
    for (QWidget* control : m_editorBox->editingOnlyControls())
        m_editingOnly.append(control);

    connectPanes();
    connectCore();
    m_list->rememberColumnsIn(objects.session.objects().settings);
    m_tutorial = new TutorialOverlay(this);
    m_menu = new HomeMenuActions(*this);

    setBatchControlsEnabled(false);
    updateTotal();
}

QSplitter* HomeScreen::makeSplitter() {
    m_splitter = new QSplitter(Qt::Horizontal);
    m_splitter->setObjectName(QStringLiteral("homeSplitter"));
    m_splitter->setChildrenCollapsible(false);
    m_splitter->addWidget(m_list);
    m_splitter->addWidget(makeSidePane());
    m_splitter->setStretchFactor(0, 1);
    m_splitter->setStretchFactor(1, 0);
    Settings& settings = m_objects.session.objects().settings;
    if (const auto state = settings.homeSplitterState();
        !state || !m_splitter->restoreState(*state))
        m_splitter->setSizes({850, 430});
    // Stored once the user lets go, not at every step of the drag.
    auto* store = new QTimer(this);
    store->setSingleShot(true);
    store->setInterval(400);
    connect(store, &QTimer::timeout, this,
            [this, &settings] { settings.setHomeSplitterState(m_splitter->saveState()); });
    connect(m_splitter, &QSplitter::splitterMoved, store, qOverload<>(&QTimer::start));
    return m_splitter;
}

QWidget* HomeScreen::makeSidePane() {
    auto* pane = new QWidget;
    pane->setObjectName(QStringLiteral("homeSidePane"));
    pane->setMinimumWidth(380);
    m_preview->fitToHeight(height());

    m_fold = new QToolButton;
    m_fold->setObjectName(QStringLiteral("btnFoldPreview"));
    m_fold->setText(tr("Preview"));
    m_fold->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    m_fold->setAutoRaise(true);
    m_fold->setCheckable(true);
    m_fold->setChecked(!m_objects.session.objects().settings.homePreviewFoldedOrDefault());
    m_fold->setToolTip(tr("Show or hide the picture and the map of the photo on display"));
    connect(m_fold, &QToolButton::toggled, this, [this](bool open) {
        m_objects.session.objects().settings.setHomePreviewFolded(!open);
        updatePreviewRoom();
    });

    auto* layout = new QVBoxLayout(pane);
    layout->setContentsMargins(12, 10, 12, 12);
    layout->setSpacing(6);
    m_editorBox->addToTabRow(m_fold);
    layout->addWidget(m_preview);
    m_previewLine = makePaneLine();
    layout->addWidget(m_previewLine);
    layout->addWidget(m_editorBox, 1);
    layout->addWidget(m_summary);
    layout->addWidget(m_actions);
    updatePreviewRoom();
    return pane;
}

void HomeScreen::setSinglePhotoShown(bool shown) {
    m_singlePhotoShown = shown;
    updatePreviewRoom();
}

void HomeScreen::updatePreviewRoom() {
    // The described form keeps the pane with its default position; the standard form gives
    // its room to the editor while no single photo is on display.
    const bool room = m_singlePhotoShown || !isStandardForm();
    const bool open = m_fold->isChecked();
    m_fold->setVisible(room);
    m_fold->setArrowType(open ? Qt::DownArrow : Qt::RightArrow);
    m_preview->setVisible(room && open);
    m_previewLine->setVisible(room && open);
}

void HomeScreen::makeCovers() {
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
    connect(&m_objects.session.objects().events, &AppEvents::HideUnhideTopLayerTM, topLayer,
            [topLayer](bool isHidden) {
                topLayer->setHidden(isHidden);
                if (!isHidden)
                    topLayer->raise();
            });
}

void HomeScreen::connectPanes() {
    connect(m_processing, &ProcessingControls::modeChanged, this, &HomeScreen::editingModeChanged);
    connect(m_list, &HomeListPane::segmentClicked, this,
            &HomeScreen::clickedSegmentCollectionnTableView);
    connect(m_list, &HomeListPane::selectAllClicked, this, &HomeScreen::clickedSelectUnselectAll);
    connect(m_list, &HomeListPane::addMoreClicked, this, &HomeScreen::clickedAddMore);
    connect(m_list, &HomeListPane::removeClicked, this, &HomeScreen::clickedRemove);
    connect(m_editorBox, &HomeEditorBox::tabClicked, this, &HomeScreen::clickedEditorTab);
    connect(m_editorBox, &HomeEditorBox::locationClicked, this, &HomeScreen::clickShowEditorGPS);
    connect(m_editorBox, &HomeEditorBox::resetAllClicked, this, &HomeScreen::clickedResetAll);
    connect(m_editorBox, &HomeEditorBox::renameClicked, this, &HomeScreen::clickedRename);
    connect(m_actions, &HomeActionBar::reviewClicked, this, &HomeScreen::openReview);
    connect(m_actions, &HomeActionBar::startClicked, this, &HomeScreen::clickedStartProcess);
    connect(m_summary, &HomeSummaryBar::openRequested, this, &HomeScreen::openSummaryItem);
    connect(m_progress->btnStopScanning(), &QPushButton::clicked, this,
            &HomeScreen::clickedStopScanning);
    auto* ratingKeys = new RatingKeys(this);
    connect(ratingKeys, &RatingKeys::ratingKey, this, [this](int stars) {
        if (m_objects.session.objects().workingSet.markedCount() > 0)
            m_objects.session.setRating(stars);
    });
    for (QAbstractItemView* view : m_list->views()) {
        view->installEventFilter(ratingKeys);
        auto* delegate = qobject_cast<PhotoItemDelegate*>(view->itemDelegate());
        connect(delegate, &PhotoItemDelegate::checkBoxToggled, this, &HomeScreen::clickedCheckBox);
        connect(view, &QAbstractItemView::clicked, this, [this](const QModelIndex& index) {
            showPreview(PhotoItemDelegate::listRow(index));
        });
        connect(view, &QAbstractItemView::doubleClicked, this, [this](const QModelIndex& index) {
            openPreview(PhotoItemDelegate::listRow(index));
        });
        view->setContextMenuPolicy(Qt::CustomContextMenu);
        connect(view, &QWidget::customContextMenuRequested, this,
                [this, view](const QPoint& pos) { showContextMenu(view, pos); });
    }
}

void HomeScreen::connectCore() {
    HomeSession& session = m_objects.session;
    const HomeSession::Objects& core = session.objects();
    connect(&session.chain(), &StartProcessChain::coverChanged, this,
            [&core](bool on) { emit core.events.HideUnhideTopLayerTM(!on); });
    connect(&session.chain(), &StartProcessChain::runReady, this, &HomeScreen::openRunSheet);
    connect(&session, &HomeSession::newListStarted, this, &HomeScreen::showNewList);
    connect(&core.events, &AppEvents::UpdateLocationFromGeoLocationOTM, this,
            &HomeScreen::updateLocationViewWithNotification);
    connect(&core.scans, &ScanController::progressViewChanged, this, &HomeScreen::applyProgress);
    connect(&core.scans, &ScanController::selectionRefreshed, this, &HomeScreen::applyOutcome);
    connect(&core.scans, &ScanController::reloadViews, this, &HomeScreen::reloadViews);
    connect(&core.workingSet, &WorkingSet::imagesAppended, this, &HomeScreen::updateTotal);
    connect(&session.form(), &MetadataForm::editedFlagsChanged, this,
            [this] { m_objects.listModel.setEditsPending(m_objects.session.form().hasEdits()); });
    connect(&core.workingSet, &WorkingSet::imagesReset, this, &HomeScreen::updateTotal);
    connect(&core.workingSet, &WorkingSet::selectionChanged, this,
            &HomeScreen::updateMarkedSummary);
    // An import marks the photos its rows matched: the screen refreshes as after a scan.
    connect(&session.exchange(), &ListExchange::imported, this,
            [this, &core] { applyOutcome(core.scans.selection().refresh()); });
    connect(&core.events, &AppEvents::OpenWithItemsOTM, this,
            [&core] { core.scans.getOpenWithItems(); });
    connect(&core.scans, &ScanController::scanFinished, this, [this, &core] {
        if (!core.workingSet.isEmpty())
            showTutorialOnce();
    });
}

void HomeScreen::addBatchControl(QWidget* control) {
    m_batchControls.append(control);
    control->setEnabled(m_objects.session.objects().workingSet.markedCount() > 0);
}

void HomeScreen::viewWillAppear() {
    const HomeSession::Objects& core = m_objects.session.objects();
    WorkingSet& set = core.workingSet;
    if (set.isScanning())
        return;
    if (set.takeFirstAdding()) {
        m_preview->clear();
        clickedSegmentCollectionnTableView(m_list->segmentIndex());
    }
    if (set.retrieveOnAppear())
        core.scans.firstRetriving();
}

void HomeScreen::clickedAddMore() {
    const HomeSession::Objects& core = m_objects.session.objects();
    if (core.workingSet.isScanning())
        return;
    if (!m_chooser) {
        m_chooser = new AlbumChooser(core.scans, core.prompt, PanelScreen::HomeScreen, this);
        connect(m_chooser, &AlbumChooser::addFoldersChosen, this, &HomeScreen::addFoldersAndPhotos);
    }
    m_chooser->showHomeFace(m_list->addMoreButton());
}

void HomeScreen::addFoldersAndPhotos() {
    const HomeSession::Objects& core = m_objects.session.objects();
    if (core.workingSet.isScanning())
        return;
    const QStringList chosen =
        core.prompt.openPanel(addPhotosPanelRequest(PanelScreen::HomeScreen));
    if (chosen.isEmpty())
        return;
    core.scans.addFromPanel(PanelScreen::HomeScreen, chosen);
}

void HomeScreen::clickedRemove() {
    m_objects.session.objects().scans.clickedRemove();
}

void HomeScreen::clickedStopScanning() {
    m_objects.session.objects().scans.clickedStopScanning();
}

void HomeScreen::clickedCheckBox(int row, bool on) {
    applyOutcome(m_objects.session.objects().scans.selection().checkBoxClicked(row, on));
}

void HomeScreen::copyMetadata() {
    HomeSession& session = m_objects.session;
    if (!session.copyMetadata())
        session.objects().prompt.ask(
            Alert::ok(tr("Copy Metadata"), tr("Mark a photo to show it, then copy its values.")));
}

void HomeScreen::pasteMetadata() {
    m_objects.session.askAndPasteMetadata();
}

void HomeScreen::exportMetadata() {
    m_objects.session.exchange().exportMetadata();
}

void HomeScreen::importMetadata() {
    m_objects.session.exchange().importMetadata();
}

void HomeScreen::clickedSelectUnselectAll(bool on) {
    applyOutcome(m_objects.session.objects().scans.selection().setAllMarked(on));
}

void HomeScreen::markUnmarkAll() {
    // The menu entry flips the box, then acts as the box does.
    clickedSelectUnselectAll(!m_list->isSelectAllChecked());
}

void HomeScreen::clickedSegmentCollectionnTableView(int index) {
    m_list->showSegment(index);
    updateTotal();
    m_list->clearViewSelection();
}

void HomeScreen::applyProgress(const ScanProgressView& view) {
    m_progress->apply(view);
    m_cover->setVisible(view.boxLoaderVisible);
    if (view.boxLoaderVisible)
        m_cover->raise();
    m_list->setAddMoreEnabled(view.addMoreEnabled);
}

void HomeScreen::applyOutcome(const SelectionOutcome& outcome) {
    if (outcome.ignored)
        return;
    HomeSession& session = m_objects.session;
    const WorkingSet& set = session.objects().workingSet;
    setBatchControlsEnabled(outcome.buttons.batchControlsEnabled);
    m_list->clearViewSelection();
    if (outcome.buttons.clearEditorAndPreview && !outcome.buttons.batchControlsEnabled) {
        m_preview->clear();
        setSinglePhotoShown(false);
    }
    if (outcome.showRecord) {
        showPreview(*outcome.showRecord);
        if (*outcome.showRecord < set.count())
            showLocation(set.workingImages().at(*outcome.showRecord));
    } else {
        setSinglePhotoShown(false);
        if (outcome.geocodeDefaultAndClearPreview)
            m_preview->clear();
        // None or several marked: the view stands on the default coordinate.
        const SharedLocation& fallback = session.location();
        m_preview->locationView()->showPosition(fallback.latitude(), fallback.longitude(),
                                                LocationView::Naming::Region);
    }
    if (outcome.editorAction == SelectionOutcome::EditorAction::RestoreEmpty)
        session.form().updateMetadataInfo(-1, false, {});
    if (outcome.metadataInfo) {
        const MetadataInfo& info = *outcome.metadataInfo;
        emit session.objects().events.UpdateMetadataInfoOTM(info.indexes, info.isMultipleSelected,
                                                            info.index);
    }
    m_list->setSelectAllChecked(outcome.selectAllOn);
    updateMarkedSummary();
    m_list->repaintViews();
}

void HomeScreen::setBatchControlsEnabled(bool on) {
    for (const QPointer<QWidget>& control : m_batchControls) {
        if (control)
            control->setEnabled(on);
    }
    if (m_menu)
        m_menu->update(isVisible(), on);
    m_objects.session.form().setEnableComponents(on);
}

void HomeScreen::clickedEditorTab(int editor) {
    m_editorBox->showTab(editor);
}

void HomeScreen::clickedResetAll() {
    m_objects.session.resetAll();
    m_processing->refresh();
    editingModeChanged(ProcessingMode::keepUnedited);
    clickedEditorTab(0);
    applyOutcome(m_objects.session.objects().scans.selection().refresh());
}

void HomeScreen::showNewList() {
    // The session let go of the last list; the boxes keep their values, as a change of row
    // leaves them.
    m_processing->refresh();
    editingModeChanged(ProcessingMode::keepUnedited);
    m_preview->clear();
    setSinglePhotoShown(false);
}

void HomeScreen::updateTotal() {
    m_list->setTotal(m_objects.session.objects().workingSet.count());
    updateMarkedSummary();
}

void HomeScreen::updateMarkedSummary() {
    const WorkingSet& set = m_objects.session.objects().workingSet;
    m_editorBox->setMarkedSummary(set.markedCount(), set.count());
}

void HomeScreen::reloadViews() {
    updateTotal();
    m_list->repaintViews();
    if (m_objects.session.objects().workingSet.isEmpty()) {
        m_preview->clear();
        setSinglePhotoShown(false);
    }
}

void HomeScreen::showPreview(int row) {
    const auto& images = m_objects.session.objects().workingSet.workingImages();
    if (row < 0 || row >= images.size())
        return;
    m_preview->showPhoto(images[row].path());
    setSinglePhotoShown(true);
}

void HomeScreen::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    m_preview->fitToHeight(height());
}

void HomeScreen::showEvent(QShowEvent* event) {
    QWidget::showEvent(event);
    m_menu->update(true, m_objects.session.objects().workingSet.markedCount() > 0);
}

void HomeScreen::hideEvent(QHideEvent* event) {
    QWidget::hideEvent(event);
    m_menu->update(false, false);
}

void HomeScreen::openPresets() {
    m_editorBox->openPresets();
}

void HomeScreen::focusEditor() {
    m_editorBox->focusFirstField();
}

void HomeScreen::showTips() {
    m_tutorial->showTutorial();
}

QMenu* HomeScreen::buildContextMenu(int row, QWidget* parent) {
    ScanController& scans = m_objects.session.objects().scans;
    auto* menu = new QMenu(parent);
    menu->setObjectName(QStringLiteral("mainMenu"));
    // The menu's entry goes straight to the open panel; the Add More button offers the sources.
    menu->addAction(tr("Add More Images"), this, &HomeScreen::addFoldersAndPhotos);
    menu->addSeparator();
    QAction* removeSelected = menu->addAction(tr("Remove All Selected"));
    removeSelected->setData(100);
    if (m_list->isRemoveEnabled())
        connect(removeSelected, &QAction::triggered, this, [&scans] { scans.removeSelected(); });
    else
        removeSelected->setEnabled(false);
    menu->addAction(tr("Remove All"), this, [&scans] { scans.removeAll(); });
    menu->addSeparator();
    const auto& images = m_objects.session.objects().workingSet.workingImages();
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

void HomeScreen::openSummaryItem(const RunSummaryItem& item) {
    const EditorState& state = m_objects.session.objects().editorState;
    switch (item.kind) {
    case RunSummaryItem::Kind::fields:
        for (const FormField& field : formFields()) {
            if (state.fieldEditedFlags.test(field.field) && !dateFieldOf(field.field) &&
                !isPositionField(field.field)) {
                m_editorBox->openField(field.field);
                return;
            }
        }
        return;
    case RunSummaryItem::Kind::date:
        if (item.dateIndex >= 0 && item.dateIndex < int(allDateFields.size()))
            m_editorBox->openField(formFieldOf(allDateFields[std::size_t(item.dateIndex)]));
        return;
    case RunSummaryItem::Kind::rename:
        clickedRename();
        return;
    case RunSummaryItem::Kind::location:
        clickShowEditorGPS();
        return;
    case RunSummaryItem::Kind::preset:
        m_editorBox->openPresets();
        return;
    case RunSummaryItem::Kind::keywords:
    case RunSummaryItem::Kind::rating:
    case RunSummaryItem::Kind::label:
    case RunSummaryItem::Kind::texts:
        clickedEditorTab(HomeEditorBox::kKeywordsTab);
        return;
    case RunSummaryItem::Kind::table:
        openReview();
        return;
    }
}

void HomeScreen::clickedRename() {
    const HomeSession::Objects& core = m_objects.session.objects();
    if (!m_renamePanel) {
        m_renamePanel =
            new RenameViewController(core.renameSettings, core.processingOptions.overwriteExisting,
                                     core.settings, core.prompt, this);
        connect(m_renamePanel, &QDialog::finished, this, [this, &core] {
            emit core.events.HideUnhideTopLayerTM(true);
            m_summary->refresh();
        });
    }
    const auto& images = core.workingSet.workingImages();
    m_renamePanel->showFor(images.isEmpty() ? QString() : images.first().path());
    emit core.events.HideUnhideTopLayerTM(false);
    m_renamePanel->open();
}

void HomeScreen::openReview() {
    // The plan of the run as Start Process would make it now, before any question.
    const HomeSession::Objects& core = m_objects.session.objects();
    auto* window =
        new ReviewChangesWindow(m_objects.session.reviewValues(), core.workingSet.workingImages(),
                                core.renameNumbering.next(), this);
    connect(window, &ReviewChangesWindow::startClicked, this, &HomeScreen::clickedStartProcess);
    window->open();
}

void HomeScreen::clickedStartProcess() {
    m_objects.session.startProcess();
}

void HomeScreen::editingModeChanged(ProcessingMode mode) {
    const bool removing = mode == ProcessingMode::removeGroups;
    m_editorBox->showRemoving(removing);
    const bool anyMarked = m_objects.session.objects().workingSet.markedCount() > 0;
    for (const QPointer<QWidget>& control : std::as_const(m_editingOnly)) {
        if (control)
            control->setEnabled(!removing && anyMarked);
    }
    if (removing)
        m_objects.session.form().leaveEditingMode();
    else
        m_objects.session.form().returnToEditingMode();
}

void HomeScreen::openRunSheet(const RunValues& values) {
    if (!m_runSheet) {
        m_runSheet = new FinalProcessedVC(m_objects.session.batch(), this);
        connect(m_runSheet, &FinalProcessedVC::finishClicked, this, &HomeScreen::finishRun);
    }
    m_runSheet->open();
    m_runSheet->startRun(values, m_objects.session.objects().workingSet.workingImages(),
                         workerThreadCount());
}

void HomeScreen::finishRun() {
    if (m_runSheet)
        m_runSheet->hide();
    m_objects.session.finishRun();
}

void HomeScreen::showTutorialOnce() {
    Settings& settings = m_objects.session.objects().settings;
    if (settings.tutorialShow().has_value())
        return;
    settings.setTutorialShow(true);
    m_tutorial->showTutorial();
}

void HomeScreen::showLocation(const CGImageProperties& record) {
    if (const auto position = m_objects.session.takePositionOf(record))
        m_preview->locationView()->showPosition(position->latitude(), position->longitude(),
                                                LocationView::Naming::Region);
    else if (isStandardForm())
        m_preview->locationView()->showText(tr("No location"));
    // The described form keeps the map and name of the position shown before.
}

void HomeScreen::clickShowEditorGPS() {
    const HomeSession::Objects& core = m_objects.session.objects();
    m_objects.session.locationPickerOpening();
    if (!m_picker) {
        m_picker = new GeoLocationViewController(core.events, core.settings, core.prompt,
                                                 m_objects.session.location(), this);
        connect(m_picker, &QDialog::finished, this,
                [&core] { emit core.events.HideUnhideTopLayerTM(true); });
    }
    emit core.events.HideUnhideTopLayerTM(false);
    m_picker->open();
}

void HomeScreen::updateLocationViewWithNotification() {
    m_objects.session.takePickedLocation();
    const SharedLocation& shared = m_objects.session.location();
    m_preview->locationView()->showPosition(shared.latitude(), shared.longitude(),
                                            LocationView::Naming::Place);
}

void HomeScreen::openPreview(int row) {
    const HomeSession::Objects& core = m_objects.session.objects();
    const auto& images = core.workingSet.workingImages();
    if (row < 0 || row >= images.size())
        return;
    if (!m_previewWindow)
        m_previewWindow = new PreviewViewController(core.settings, core.prompt, this);
    m_previewWindow->setImageProperties(images[row]);
    m_previewWindow->show();
    m_previewWindow->raise();
    m_previewWindow->activateWindow();
}

void HomeScreen::showInfo(int row) {
    const auto& images = m_objects.session.objects().workingSet.workingImages();
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
            facts.append({labelOf(field), value});
    }
    auto* dialog = new FileInfoDialog(record.path(), facts, this);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->open();
}

void HomeScreen::showContextMenu(QAbstractItemView* view, const QPoint& pos) {
    if (m_objects.session.objects().workingSet.isScanning())
        return;
    const QModelIndex index = view->indexAt(pos);
    QMenu* menu = buildContextMenu(index.isValid() ? PhotoItemDelegate::listRow(index) : -1, this);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    menu->popup(view->viewport()->mapToGlobal(pos));
}

} // namespace tagmoor
