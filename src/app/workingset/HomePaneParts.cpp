#include "app/workingset/HomePaneParts.h"

#include <QFrame>
#include <QPushButton>

namespace tagmoor {

QPushButton* makePaneButton(const QString& name, const QString& text) {
    auto* button = new QPushButton(text);
    button->setObjectName(name);
    button->setMinimumHeight(30);
    return button;
}

QFrame* makePaneLine() {
    auto* line = new QFrame;
    line->setFrameShape(QFrame::HLine);
    line->setFrameShadow(QFrame::Sunken);
    return line;
}

} // namespace tagmoor
