#include "app/presets/PresetsDetailsViewController.h"

#include "app/editor/MetadataViewController.h"
#include "app/presets/PresetMenuRow.h"
#include "app/widgets/GroupTabs.h"
#include "editor/EditorState.h"
#include "editor/FormSections.h"
#include "editor/MetadataForm.h"
#include "foundation/AppEvents.h"
#include "foundation/UserPrompt.h"
#include "presets/PresetForm.h"
#include "presets/PresetStore.h"

#include <QButtonGroup>
#include <QFrame>
#include <QHBoxLayout>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QTimer>
#include <QToolButton>
#include <QVBoxLayout>

#include <algorithm>

namespace tagmoor {

namespace {

// How long the panel waits before it comes up after a menu choice: long enough for the
// popup to close in the current turn of the event loop.
constexpr int kOpenDelayMs = 50;

// The tabs: the chosen one drawn in the selection colour, the others plain.
const char* kTabStyle = "QToolButton { padding: 4px 14px; border: 1px solid palette(mid); }"
                        " QToolButton:checked { background: palette(highlight);"
                        " color: palette(highlighted-text); border-color: palette(highlight); }";

QPushButton* makeButton(const QString& name, const QString& text) {
    auto* button = new QPushButton(text);
    button->setObjectName(name);
    button->setMinimumHeight(30);
    return button;
}

} // namespace

PresetsDetailsViewController::PresetsDetailsViewController(const Objects& objects, QWidget* parent)
    : QWidget(parent), m_objects(objects),
      m_form(
          new MetadataForm(objects.workingSet, objects.editorState, objects.prompt, false, this)),
      // The panel's form hears only its own notifications: what the home screen posts to its
      // form ("Multiple Values", the photo shown) is not for this one.
      m_editor(new MetadataViewController(*m_form, *new AppEvents(this))),
      m_title(new QLabel(tr("Presets"))), m_table(new QListWidget),
      m_add(makeButton(QStringLiteral("btnAdd"), tr("Add"))),
      m_remove(makeButton(QStringLiteral("btnRemove"), tr("Remove"))),
      m_save(makeButton(QStringLiteral("btnSave"), tr("Save"))),
      m_cancel(makeButton(QStringLiteral("btnCancel"), tr("Cancel"))),
      m_tabs(new QButtonGroup(this)), m_hint(new QLabel) {
    setObjectName(QStringLiteral("PresetsDetailsViewController"));
    setUpControls();
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(18, 14, 18, 14);
    layout->setSpacing(10);
    layout->addLayout(makePanes(), 1);
    auto* line = new QFrame;
    line->setFrameShape(QFrame::HLine);
    line->setFrameShadow(QFrame::Sunken);
    layout->addWidget(line);
    layout->addLayout(makeBottomRow());
    connectControls();
    reloadTable();
    selectionChanged();
}

void PresetsDetailsViewController::setUpControls() {
    m_title->setObjectName(QStringLiteral("lblPresets"));
    QFont titleFont = m_title->font();
    titleFont.setBold(true);
    titleFont.setPointSizeF(titleFont.pointSizeF() * 1.3);
    m_title->setFont(titleFont);

    m_table->setObjectName(QStringLiteral("tableView"));
    m_table->setAccessibleName(tr("Presets"));
    m_table->setSelectionMode(QAbstractItemView::SingleSelection);
    m_table->setEditTriggers(QAbstractItemView::DoubleClicked | QAbstractItemView::EditKeyPressed);
    m_table->setMinimumWidth(220);
    m_table->setStyleSheet(QStringLiteral("QListWidget::item { padding: 4px 6px; }"));
    m_add->setToolTip(tr("Add a preset with empty values"));
    m_remove->setToolTip(tr("Remove the selected preset"));
    m_hint->setObjectName(QStringLiteral("lblRenameHint"));
    m_hint->setText(tr("Double-click a name to rename it."));
    m_hint->setForegroundRole(QPalette::PlaceholderText);
    m_hint->setWordWrap(true);
}

// The presets, with Add and Remove below them.
QVBoxLayout* PresetsDetailsViewController::makeListSide() {
    auto* listButtons = new QHBoxLayout;
    listButtons->addWidget(m_add);
    listButtons->addWidget(m_remove);
    listButtons->addStretch(1);
    auto* listSide = new QVBoxLayout;
    listSide->setSpacing(8);
    listSide->addWidget(m_title);
    listSide->addWidget(m_table, 1);
    listSide->addLayout(listButtons);
    listSide->addWidget(m_hint);
    return listSide;
}

// The family tabs over the preset's form.
QVBoxLayout* PresetsDetailsViewController::makeFormSide() {
    auto* tabs = new QHBoxLayout;
    for (QToolButton* tab : addGroupTabs(m_tabs, tabs))
        tab->setStyleSheet(QString::fromLatin1(kTabStyle));
    tabs->addStretch(1);
    auto* formSide = new QVBoxLayout;
    formSide->setSpacing(8);
    formSide->addLayout(tabs);
    formSide->addWidget(m_editor, 1);
    return formSide;
}

QHBoxLayout* PresetsDetailsViewController::makePanes() {
    auto* panes = new QHBoxLayout;
    panes->setSpacing(16);
    panes->addLayout(makeListSide(), 0);
    auto* divider = new QFrame;
    divider->setFrameShape(QFrame::VLine);
    divider->setFrameShadow(QFrame::Sunken);
    panes->addWidget(divider);
    panes->addLayout(makeFormSide(), 1);
    return panes;
}

QHBoxLayout* PresetsDetailsViewController::makeBottomRow() {
    auto* bottom = new QHBoxLayout;
    bottom->addStretch(1);
    bottom->addWidget(m_cancel);
    bottom->addWidget(m_save);
    m_save->setDefault(true);
    m_save->setMinimumWidth(110);
    m_cancel->setMinimumWidth(110);
    return bottom;
}

void PresetsDetailsViewController::connectControls() {
    connect(m_add, &QPushButton::clicked, this, &PresetsDetailsViewController::addPreset);
    connect(m_remove, &QPushButton::clicked, this, &PresetsDetailsViewController::removePreset);
    connect(m_save, &QPushButton::clicked, this, &PresetsDetailsViewController::clickedSave);
    connect(m_cancel, &QPushButton::clicked, this, &PresetsDetailsViewController::clickedCancel);
    connect(&m_objects.presets, &PresetStore::changedElsewhere, this,
            &PresetsDetailsViewController::followChangesElsewhere);
    connect(m_tabs, &QButtonGroup::idClicked, this, &PresetsDetailsViewController::clickedEditor);
    connect(m_table, &QListWidget::currentRowChanged, this,
            &PresetsDetailsViewController::selectionChanged);
    connect(m_table, &QListWidget::itemChanged, this, &PresetsDetailsViewController::itemChanged);
    connect(&m_objects.events, &AppEvents::PresetsDetailsOTM, this,
            &PresetsDetailsViewController::presetsDetailsRequested);
}

void PresetsDetailsViewController::presetsDetailsRequested(const PresetsMenuChoice& choice) {
    m_isPresetLoaded = false;
    if (choice.row != PresetMenuRow::newConfiguration && choice.row != PresetMenuRow::editPresets)
        return; // a saved preset: the home form takes it, the panel stays closed
    m_isNewPreset = choice.row == PresetMenuRow::newConfiguration;
    QTimer::singleShot(kOpenDelayMs, this,
                       [this] { emit m_objects.events.UpdateVCOTM(RootPage::presetsDetails); });
}

void PresetsDetailsViewController::viewWillAppear() {
    reloadTable();
    m_isLoaded = true;
    if (m_isNewPreset) {
        m_isNewPreset = false;
        addPreset();
        return;
    }
    const int count = m_table->count();
    selectRow(count == 0 ? -1 : std::clamp(m_indexActualPreset, 0, count - 1));
    m_table->setFocus();
    // The keyboard starts in the chosen preset's name, ready to rename it.
    if (QListWidgetItem* current = m_table->currentItem())
        m_table->editItem(current);
}

void PresetsDetailsViewController::reloadTable() {
    m_reloading = true;
    m_table->clear();
    for (const ActualPreset& preset : m_objects.presets.presets()) {
        auto* item = new QListWidgetItem(preset.name.value_or(QString()), m_table);
        item->setFlags(item->flags() | Qt::ItemIsEditable);
    }
    m_reloading = false;
}

void PresetsDetailsViewController::followChangesElsewhere() {
    const QListWidgetItem* current = m_table->currentItem();
    const QString shown = current ? current->text() : QString();
    reloadTable();
    const QList<QListWidgetItem*> same = m_table->findItems(shown, Qt::MatchFixedString);
    if (!current || same.isEmpty()) {
        selectRow(-1);
        return;
    }
    // Chosen again without showing it anew: unsaved changes in the form stay.
    m_reloading = true;
    m_table->setCurrentItem(same.first());
    m_reloading = false;
    m_indexActualPreset = m_table->row(same.first());
}

void PresetsDetailsViewController::selectRow(int row) {
    if (row < 0 || row >= m_table->count()) {
        m_table->setCurrentRow(-1);
        selectionChanged();
        return;
    }
    if (m_table->currentRow() == row)
        selectionChanged(); // acts as a click on the row
    else
        m_table->setCurrentRow(row);
    m_table->scrollToItem(m_table->item(row));
}

void PresetsDetailsViewController::selectionChanged() {
    if (m_reloading)
        return;
    const int row = m_table->currentRow();
    const bool chosen = m_objects.presets.isValidPosition(row);
    m_remove->setEnabled(chosen);
    m_save->setEnabled(chosen);
    m_form->setEnableComponents(chosen);
    if (!chosen) {
        m_form->showPreset(makeEmptyRecord(std::nullopt), OriginalFinalDate{});
        m_isPresetLoaded = false;
        return;
    }
    m_indexActualPreset = row;
    const ActualPreset preset = m_objects.presets.preset(row);
    m_form->showPreset(preset.properties.value_or(makeEmptyRecord(std::nullopt)),
                       preset.timeSetting.value_or(OriginalFinalDate{}));
    m_isPresetLoaded = true;
}

int PresetsDetailsViewController::addNewPresetWithName(const QString& name) {
    const int row = int(m_objects.presets.addPreset(name));
    reloadTable();
    return row;
}

void PresetsDetailsViewController::addPreset() {
    addNewPresetWithName(QString());
    if (m_table->count() == 0)
        return;
    const int last = m_table->count() - 1;
    selectRow(last);
    // The user starts on the fresh row with its name in edit.
    m_table->setFocus();
    m_table->editItem(m_table->item(last));
}

void PresetsDetailsViewController::removePreset() {
    const int row = m_table->currentRow();
    if (!m_objects.presets.removePreset(row))
        return;
    reloadTable();
    const int count = m_table->count();
    selectRow(count == 0 ? -1 : std::min(row, count - 1));
}

void PresetsDetailsViewController::itemChanged(QListWidgetItem* item) {
    if (m_reloading)
        return;
    renameRow(m_table->row(item), item->text());
}

void PresetsDetailsViewController::renameRow(int row, const QString& name) {
    if (m_objects.presets.size() == 0 || m_table->currentRow() < 0 ||
        !m_objects.presets.isValidPosition(row))
        return;
    const QString old = m_objects.presets.presets().at(row).name.value_or(QString());
    if (name == old)
        return;
    if (const std::optional<Alert> refused = m_objects.presets.renamePreset(row, name)) {
        // Put back first: the alert is modal and the field must not keep the refused text.
        m_reloading = true;
        if (QListWidgetItem* item = m_table->item(row))
            item->setText(old);
        m_reloading = false;
        m_objects.prompt.ask(*refused);
        return;
    }
    m_reloading = true;
    if (QListWidgetItem* item = m_table->item(row))
        item->setText(name);
    m_reloading = false;
}

void PresetsDetailsViewController::clickedSave() {
    const int row = m_table->currentRow();
    if (!m_objects.presets.isValidPosition(row))
        return;
    m_objects.presets.replaceValues(row, presetValuesOf(*m_form),
                                    m_objects.editorState.dateStores.presetDates.rules());
    m_objects.prompt.ask(
        Alert::ok(tr("Preset Saved!"), tr("The values for the selected preset have been saved.")));
}

void PresetsDetailsViewController::clickedCancel() {
    emit m_objects.events.UpdateVCOTM(RootPage::home);
}

void PresetsDetailsViewController::clickedEditor(int editor) {
    const Editor chosen = editorOfTab(editor);
    if (QAbstractButton* tab = m_tabs->button(int(chosen)))
        tab->setChecked(true);
    m_editor->showEditor(chosen);
}

} // namespace tagmoor
