#include "editor/MinimalDatePanel.h"

#include <QButtonGroup>
#include <QDateTimeEdit>
#include <QDialogButtonBox>
#include <QLabel>
#include <QRadioButton>
#include <QVBoxLayout>

namespace tagmoor {

MinimalDatePanel::MinimalDatePanel(const QString& fieldLabel, const DateTimeConfiguration& current,
                                   const std::optional<QDateTime>& photoDate, QWidget* parent)
    : QDialog(parent), m_keep(new QRadioButton(tr("Keep Original"))),
      m_select(new QRadioButton(tr("Select Date:"))), m_date(new QDateTimeEdit) {
    setObjectName(QStringLiteral("DateTimeConfiguration"));
    setWindowTitle(tr("Date/Time Configuration"));
    m_keep->setObjectName(QStringLiteral("btnKeepOriginal"));
    m_select->setObjectName(QStringLiteral("btnSelectDate"));
    m_date->setObjectName(QStringLiteral("datePickerSelectDate"));
    m_date->setDisplayFormat(QStringLiteral("yyyy-MM-dd HH:mm:ss"));
    m_date->setCalendarPopup(true);
    m_date->setDateTime(current.selectDate ? *current.selectDate
                                           : photoDate.value_or(QDateTime::currentDateTime()));
    (current.isSelectDate ? m_select : m_keep)->setChecked(true);
    m_date->setEnabled(current.isSelectDate);
    connect(m_select, &QRadioButton::toggled, m_date, &QWidget::setEnabled);

    auto* group = new QButtonGroup(this);
    group->addButton(m_keep);
    group->addButton(m_select);

    auto* title = new QLabel(fieldLabel);
    QFont font = title->font();
    font.setBold(true);
    title->setFont(font);

    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);

    auto* layout = new QVBoxLayout(this);
    layout->addWidget(title);
    layout->addWidget(m_keep);
    layout->addWidget(m_select);
    layout->addWidget(m_date);
    layout->addSpacing(6);
    layout->addWidget(buttons);
}

DateTimeConfiguration MinimalDatePanel::rule() const {
    DateTimeConfiguration rule;
    if (m_select->isChecked()) {
        rule.isKeepOriginal = false;
        rule.isSelectDate = true;
        rule.selectDate = m_date->dateTime();
    }
    return rule;
}

std::optional<QDateTime> MinimalDatePanel::slot() const {
    if (m_select->isChecked())
        return m_date->dateTime();
    return std::nullopt;
}

} // namespace tagmoor
