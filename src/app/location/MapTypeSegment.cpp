#include "app/location/MapTypeSegment.h"

#include <QButtonGroup>
#include <QHBoxLayout>
#include <QToolButton>

namespace tagmoor {

MapTypeSegment::MapTypeSegment(const QString& objectName, QWidget* parent)
    : QWidget(parent), m_group(new QButtonGroup(this)) {
    setObjectName(objectName);
    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    const QStringList texts{tr("Standard"), tr("Satellite"), tr("Hybrid")};
    for (int i = 0; i < texts.size(); ++i) {
        auto* button = new QToolButton;
        button->setText(texts[i]);
        button->setCheckable(true);
        button->setChecked(i == 0);
        button->setMinimumWidth(78);
        m_group->addButton(button, i);
        layout->addWidget(button);
    }
}

MapType MapTypeSegment::selectedType() const {
    return mapTypeOfSegment(m_group->checkedId());
}

} // namespace tagmoor
