#pragma once

#include "foundation/UserPrompt.h"

#include <QDialog>

class QListWidget;

namespace tagmoor {

// A window-modal box with a title, a text, a list of items with tick boxes (all ticked when it
// opens) and the alert's buttons in order, the first the default. "Tick All" and "Tick None"
// sit below the list. The dialog prompt shows it for askToTick.
class TickListDialog : public QDialog {
    Q_OBJECT
public:
    TickListDialog(QWidget* parent, const TickQuestion& question);

    // The button pressed (the last when the box was closed otherwise) and the items ticked.
    TickAnswer answer() const;

private:
    void tickAll(bool ticked);

    QListWidget* m_list;
    int m_chosen;
};

} // namespace tagmoor
