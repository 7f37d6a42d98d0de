#include "app/workingset/HomeEditorBox.h"

#include "app/batch/ProcessingControls.h"
#include "app/editor/FieldControl.h"
#include "app/editor/KeywordsMorePanel.h"
#include "app/editor/MetadataViewController.h"
#include "app/presets/PresetsViewController.h"
#include "app/widgets/FittingLabel.h"
#include "app/widgets/GroupTabs.h"
#include "app/workingset/HomePaneParts.h"
#include "editor/FormSections.h"
#include "foundation/AppEvents.h"
#include "model/Field.h"

#include <QAbstractButton>
#include <QButtonGroup>
#include <QHBoxLayout>
#include <QLabel>
#include <QLocale>
#include <QPushButton>
#include <QScrollArea>
#include <QToolButton>
#include <QVBoxLayout>

namespace tagmoor {

HomeEditorBox::HomeEditorBox(const Objects& objects, QWidget* parent)
    : QWidget(parent), m_objects(objects), m_tabs(new QButtonGroup(this)),
      m_markedSummary(new FittingLabel),
      m_editor(new MetadataViewController(objects.form, objects.events)),
      m_keywordsPage(new QScrollArea), m_keywords(new KeywordsMorePanel(objects.session)),
      m_gps(makePaneButton(QStringLiteral("btnShowEditorGPS"), tr("Location..."))),
      m_resetAll(makePaneButton(QStringLiteral("btnResetAll"), tr("Reset All"))),
      m_rename(makePaneButton(QStringLiteral("btnRename"), tr("Rename..."))),
      m_preset(makePaneButton(QStringLiteral("btnPreset"), tr("Presets..."))) {
    setObjectName(QStringLiteral("homeEditorBox"));
    auto* host = new QWidget;
    host->setObjectName(QStringLiteral("scrollViewMetadata"));
    auto* hostLayout = new QVBoxLayout(host);
    hostLayout->setContentsMargins(0, 0, 0, 0);
    hostLayout->addWidget(m_editor, 1);
    m_keywordsPage->setObjectName(QStringLiteral("scrollKeywordsMore"));
    m_keywordsPage->setWidgetResizable(true);
    m_keywordsPage->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_keywordsPage->setFrameShape(QFrame::NoFrame);
    m_keywordsPage->setWidget(m_keywords);
    m_keywordsPage->hide();
    hostLayout->addWidget(m_keywordsPage, 1);
    connect(&objects.events, &AppEvents::UpdateMetadataInfoOTM, m_keywords,
            &KeywordsMorePanel::markedPhotosChanged);
    hostLayout->addWidget(objects.processing.cleanBox(), 1);

    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(6);
    layout->addLayout(makeTabs());
    layout->addWidget(host, 1);
    layout->addLayout(makeButtons());
}

QLayout* HomeEditorBox::makeTabs() {
    auto* tabs = new QHBoxLayout;
    // Four tabs and the count share the pane's width: the group tabs give up some of theirs.
    for (QToolButton* tab : addGroupTabs(m_tabs, tabs)) {
        tab->setMinimumWidth(56);
        m_tabButtons.append(tab);
    }
    auto* keywordsTab = new QToolButton;
    keywordsTab->setObjectName(QStringLiteral("btnKeywordsMore"));
    keywordsTab->setText(tr("Keywords && More"));
    keywordsTab->setAccessibleName(tr("Keywords and more"));
    keywordsTab->setCheckable(true);
    keywordsTab->setMinimumHeight(28);
    // The tab keeps its whole name; the count beside it gives way first.
    keywordsTab->setMinimumWidth(keywordsTab->sizeHint().width());
    m_tabs->addButton(keywordsTab, kKeywordsTab);
    tabs->addWidget(keywordsTab);
    m_tabButtons.append(keywordsTab);
    tabs->addStretch(1);
    tabs->addWidget(m_markedSummary);
    m_tabRow = tabs;
    connect(m_tabs, &QButtonGroup::idClicked, this, &HomeEditorBox::tabClicked);
    m_markedSummary->setObjectName(QStringLiteral("lblMarkedSummary"));
    m_markedSummary->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    m_markedSummary->setForegroundRole(QPalette::PlaceholderText);
    return tabs;
}

QLayout* HomeEditorBox::makeButtons() {
    connect(m_rename, &QPushButton::clicked, this, &HomeEditorBox::renameClicked);
    connect(m_resetAll, &QPushButton::clicked, this, &HomeEditorBox::resetAllClicked);
    m_presetsMenu =
        new PresetsViewController({m_objects.presets, m_objects.events, m_objects.form}, this);
    connect(m_preset, &QPushButton::clicked, this, [this] { m_presetsMenu->showAt(m_preset); });
    connect(m_gps, &QPushButton::clicked, this, &HomeEditorBox::locationClicked);

    // One row, so that the editor above keeps the height.
    auto* buttons = new QHBoxLayout;
    buttons->setSpacing(6);
    for (QPushButton* button : {m_gps, m_rename, m_preset, m_resetAll}) {
        button->setMinimumWidth(0);
        buttons->addWidget(button, 1);
    }
    return buttons;
}

void HomeEditorBox::openField(Field field) {
    for (const FormSection& section : formSections()) {
        for (const FormLine& line : section.lines) {
            if (line.field == field)
                showTab(int(section.editor));
        }
    }
    m_editor->reveal(field);
    FieldControl* control = m_editor->control(field);
    if (control && control->dateButton() && control->dateButton()->isEnabled())
        control->dateButton()->click();
}

void HomeEditorBox::addToTabRow(QWidget* widget) {
    m_tabRow->addWidget(widget);
}

void HomeEditorBox::focusFirstField() {
    for (const FormSection& section : formSections()) {
        if (section.editor == m_editor->currentEditor() && !section.lines.empty()) {
            m_editor->reveal(section.lines.front().field);
            return;
        }
    }
}

void HomeEditorBox::openPresets() {
    if (m_preset->isEnabled())
        m_presetsMenu->showAt(m_preset);
}

void HomeEditorBox::showTab(int editor) {
    if (QAbstractButton* tab = m_tabs->button(editor))
        tab->setChecked(true);
    const bool keywords = editor == kKeywordsTab;
    m_keywordsPage->setVisible(keywords && !m_removing);
    m_editor->setVisible(!keywords && !m_removing);
    if (!keywords)
        m_editor->showEditor(editorOfTab(editor));
}

void HomeEditorBox::setMarkedSummary(int marked, int count) {
    m_markedSummary->setText(
        tr("%1 of %2 marked").arg(QLocale().toString(marked), QLocale().toString(count)));
    m_markedSummary->setToolTip(marked == 0
                                    ? tr("Mark photos in the list to edit their metadata.")
                                    : tr("The editor and a run work on the marked photos."));
}

void HomeEditorBox::showRemoving(bool removing) {
    m_removing = removing;
    const bool keywords = m_tabs->checkedId() == kKeywordsTab;
    m_editor->setVisible(!removing && !keywords);
    m_keywordsPage->setVisible(!removing && keywords);
    m_objects.processing.cleanBox()->setVisible(removing);
}

QList<QWidget*> HomeEditorBox::batchControls() const {
    return m_tabButtons + QList<QWidget*>{m_gps, m_resetAll, m_rename, m_preset};
}

QList<QWidget*> HomeEditorBox::editingOnlyControls() const {
    return m_tabButtons + QList<QWidget*>{m_gps};
}

} // namespace tagmoor
