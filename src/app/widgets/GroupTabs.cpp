#include "app/widgets/GroupTabs.h"

#include <QButtonGroup>
#include <QCoreApplication>
#include <QHBoxLayout>
#include <QToolButton>

namespace tagmoor {

QList<QToolButton*> addGroupTabs(QButtonGroup* group, QHBoxLayout* row) {
    const QStringList names{QStringLiteral("btnExif"), QStringLiteral("btnIPTC"),
                            QStringLiteral("btnXMP")};
    const QStringList texts{QCoreApplication::translate("GroupTabs", "EXIF"),
                            QCoreApplication::translate("GroupTabs", "IPTC"),
                            QCoreApplication::translate("GroupTabs", "XMP")};
    QList<QToolButton*> tabs;
    row->setSpacing(0);
    for (int i = 0; i < names.size(); ++i) {
        auto* tab = new QToolButton;
        tab->setObjectName(names[i]);
        tab->setText(texts[i]);
        tab->setCheckable(true);
        tab->setChecked(i == 0);
        tab->setMinimumSize(74, 28);
        group->addButton(tab, i);
        row->addWidget(tab);
        tabs << tab;
    }
    return tabs;
}

} // namespace tagmoor
