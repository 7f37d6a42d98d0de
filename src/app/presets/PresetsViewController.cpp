#include "app/presets/PresetsViewController.h"

#include "app/presets/PresetMenuRow.h"
#include "editor/MetadataForm.h"
#include "foundation/AppEvents.h"
#include "presets/PresetStore.h"

#include <QListWidget>
#include <QScreen>
#include <QVBoxLayout>

#include <algorithm>

namespace tagmoor {

namespace {

// The list grows with its rows up to this many, then scrolls.
constexpr int kMostRowsShown = 12;

} // namespace

PresetsViewController::PresetsViewController(const Objects& objects, QWidget* parent)
    : QFrame(parent, Qt::Popup), m_objects(objects), m_table(new QListWidget) {
    setObjectName(QStringLiteral("PresetsViewController"));
    setFrameShape(QFrame::StyledPanel);
    m_table->setObjectName(QStringLiteral("tableView"));
    m_table->setAccessibleName(tr("Presets"));
    m_table->setFrameShape(QFrame::NoFrame);
    m_table->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_table->setSelectionMode(QAbstractItemView::SingleSelection);
    m_table->setMouseTracking(true);
    m_table->setStyleSheet(QStringLiteral("QListWidget::item { padding: 5px 12px; }"));
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(4, 4, 4, 4);
    layout->addWidget(m_table);

    connect(m_table, &QListWidget::itemClicked, this,
            [this](QListWidgetItem* item) { chooseRow(m_table->row(item)); });
    connect(m_table, &QListWidget::itemActivated, this,
            [this](QListWidgetItem* item) { chooseRow(m_table->row(item)); });
    connect(&objects.presets, &PresetStore::presetsChanged, this,
            &PresetsViewController::reloadRows);
    reloadRows();
}

void PresetsViewController::reloadRows() {
    m_table->clear();
    const QList<ActualPreset> rows = m_objects.presets.menuRows();
    for (qsizetype i = 0; i < rows.size(); ++i) {
        const PresetMenuRow kind = presetMenuRow(i, rows.size() - 2);
        const bool fixed = kind != PresetMenuRow::savedPreset;
        // The fixed rows are translated; saved names are shown as the user wrote them.
        const QString name = kind == PresetMenuRow::newConfiguration ? tr("New Configuration")
                             : fixed                                 ? tr("Edit Presets...")
                                     : rows[i].name.value_or(QString());
        auto* item = new QListWidgetItem(name, m_table);
        if (fixed) {
            QFont font = item->font();
            font.setItalic(true);
            item->setFont(font);
        }
    }
    // The height follows the rows.
    const int rowHeight = std::max(m_table->sizeHintForRow(0), 20);
    const int shown = std::min<int>(int(rows.size()), kMostRowsShown);
    m_table->setFixedHeight(rowHeight * shown + 2 * m_table->frameWidth() + 2);
    m_table->setMinimumWidth(std::max(200, m_table->sizeHintForColumn(0) + 24));
    adjustSize();
}

void PresetsViewController::showAt(QWidget* anchor) {
    reloadRows();
    m_table->clearSelection();
    QPoint at = anchor->mapToGlobal(QPoint(0, anchor->height()));
    if (const QScreen* screen = anchor->screen()) {
        const QRect room = screen->availableGeometry();
        if (at.y() + height() > room.bottom())
            at.setY(anchor->mapToGlobal(QPoint(0, 0)).y() - height());
        at.setX(std::min(at.x(), room.right() - width()));
    }
    move(at);
    show();
    m_table->setFocus();
}

void PresetsViewController::chooseRow(int row) {
    const PresetsMenuChoice choice = presetsMenuChoice(row, m_objects.presets.size());
    if (choice.row == PresetMenuRow::outside)
        return;
    hide();
    emit m_objects.events.PresetsDetailsOTM(choice);
    // A saved preset goes into the home form at once; the fixed rows open the panel, which
    // watches the same notification.
    if (choice.row == PresetMenuRow::savedPreset) {
        const ActualPreset preset = m_objects.presets.preset(choice.presetIndex);
        m_objects.homeForm.showPreset(preset.properties.value_or(makeEmptyRecord(std::nullopt)),
                                      preset.timeSetting.value_or(OriginalFinalDate{}));
    }
}

} // namespace tagmoor
