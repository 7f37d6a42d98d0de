#pragma once

#include <QList>

class QButtonGroup;
class QHBoxLayout;
class QToolButton;

namespace tagmoor {

// The row of the three metadata groups, EXIF, IPTC and XMP ("btnExif", "btnIPTC", "btnXMP"):
// checkable buttons in `group` under the ids 0 to 2, the first one checked, added to `row`.
// Gives the buttons, for what a screen adds to them.
QList<QToolButton*> addGroupTabs(QButtonGroup* group, QHBoxLayout* row);

} // namespace tagmoor
