#pragma once

#include <QString>

class QFrame;
class QPushButton;

namespace tagmoor {

// The pieces the home screen's panes share: a named button of the screen's height and the
// sunken line between sections.
QPushButton* makePaneButton(const QString& name, const QString& text);
QFrame* makePaneLine();

} // namespace tagmoor
