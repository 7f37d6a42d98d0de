#include "app/widgets/TickListDialog.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QShortcut>
#include <QVBoxLayout>

namespace tagmoor {

TickListDialog::TickListDialog(QWidget* parent, const TickQuestion& question)
    : QDialog(parent), m_list(new QListWidget), m_chosen(int(question.alert.buttons.size()) - 1) {
    setObjectName(QStringLiteral("tickQuestion"));
    setWindowModality(Qt::WindowModal);
    setWindowTitle(question.alert.title);
    auto* title = new QLabel(QStringLiteral("<b>%1</b>").arg(question.alert.title.toHtmlEscaped()));
    auto* text = new QLabel(question.alert.text);
    text->setWordWrap(true);
    text->setVisible(!question.alert.text.isEmpty());

    m_list->setObjectName(QStringLiteral("tickList"));
    m_list->setAccessibleName(question.alert.title);
    for (const QString& item : question.items) {
        auto* row = new QListWidgetItem(item, m_list);
        // The list turns the boxes itself, so that a click on the box and one on the text
        // turn it once each.
        row->setFlags(Qt::ItemIsEnabled | Qt::ItemIsSelectable);
        row->setCheckState(Qt::Checked);
    }
    const auto turn = [](QListWidgetItem* row) {
        if (row)
            row->setCheckState(row->checkState() == Qt::Checked ? Qt::Unchecked : Qt::Checked);
    };
    connect(m_list, &QListWidget::itemClicked, this, turn);
    // The space bar turns the box of the current row.
    auto* space = new QShortcut(QKeySequence(Qt::Key_Space), m_list);
    space->setContext(Qt::WidgetShortcut);
    connect(space, &QShortcut::activated, this, [this, turn] { turn(m_list->currentItem()); });

    auto* all = new QPushButton(tr("Tick All"));
    all->setObjectName(QStringLiteral("btnTickAll"));
    all->setAutoDefault(false);
    connect(all, &QPushButton::clicked, this, [this] { tickAll(true); });
    auto* none = new QPushButton(tr("Tick None"));
    none->setObjectName(QStringLiteral("btnTickNone"));
    none->setAutoDefault(false);
    connect(none, &QPushButton::clicked, this, [this] { tickAll(false); });
    auto* ticks = new QHBoxLayout;
    ticks->addWidget(all);
    ticks->addWidget(none);
    ticks->addStretch(1);

    auto* buttons = new QHBoxLayout;
    buttons->addStretch(1);
    for (int i = 0; i < question.alert.buttons.size(); ++i) {
        auto* button = new QPushButton(question.alert.buttons[i]);
        button->setDefault(i == 0);
        connect(button, &QPushButton::clicked, this, [this, i] {
            m_chosen = i;
            accept();
        });
        buttons->addWidget(button);
    }

    auto* layout = new QVBoxLayout(this);
    layout->addWidget(title);
    layout->addWidget(text);
    layout->addWidget(m_list, 1);
    layout->addLayout(ticks);
    layout->addLayout(buttons);
    setMinimumWidth(460);
    resize(520, 440);
}

void TickListDialog::tickAll(bool ticked) {
    for (int i = 0; i < m_list->count(); ++i)
        m_list->item(i)->setCheckState(ticked ? Qt::Checked : Qt::Unchecked);
}

TickAnswer TickListDialog::answer() const {
    TickAnswer answer{m_chosen, {}};
    for (int i = 0; i < m_list->count(); ++i)
        answer.ticked << (m_list->item(i)->checkState() == Qt::Checked);
    return answer;
}

} // namespace tagmoor
