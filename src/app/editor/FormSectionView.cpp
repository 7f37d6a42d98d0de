#include "app/editor/FormSectionView.h"

#include "app/editor/FieldControl.h"
#include "editor/FormSections.h"
#include "model/FormFieldTable.h"

#include <QCoreApplication>
#include <QGridLayout>
#include <QLabel>

namespace tagmoor {

FormSectionView::FormSectionView(const FormSection& section, QWidget* parent)
    : QWidget(parent), m_title(new QLabel) {
    setObjectName(QStringLiteral("section_") + QString::fromLatin1(section.titleControl));
    m_title->setObjectName(QString::fromLatin1(section.titleControl));
    m_title->setText(QCoreApplication::translate("Form", section.title));
    QFont font = m_title->font();
    font.setBold(true);
    m_title->setFont(font);

    auto* grid = new QGridLayout(this);
    grid->setContentsMargins(0, 2, 0, 4);
    grid->setHorizontalSpacing(10);
    grid->setVerticalSpacing(3);
    grid->setColumnStretch(1, 1);
    grid->addWidget(m_title, 0, 0, 1, 2);
    int row = 1;
    for (const FormLine& line : section.lines) {
        const FormField& field = formField(line.field);
        auto* control = new FieldControl(field);
        auto* label = new QLabel(labelOf(line.field));
        label->setObjectName(QStringLiteral("lbl") + field.name());
        label->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
        label->setWordWrap(true);
        label->setFixedWidth(128);
        label->setBuddy(control->input());
        grid->addWidget(label, row, 0,
                        line.field == Field::UserComment ? Qt::AlignTop : Qt::Alignment());
        grid->addWidget(control, row, 1);
        m_controls.append(control);
        ++row;
        if (line.field == Field::Keywords) {
            auto* hint = new QLabel(tr("Enter keywords separated by commas"));
            hint->setObjectName(QStringLiteral("lblEnterKeywordsCommaSep"));
            hint->setForegroundRole(QPalette::PlaceholderText);
            grid->addWidget(hint, row++, 1);
        }
    }
}

} // namespace tagmoor
