#pragma once

#include "processing/ProcessingOptions.h"

#include <QWidget>

class QCheckBox;
class QComboBox;

namespace tagmoor {

// The editing options popup and the box of the five clean-metadata check boxes, showing and
// changing the application's ProcessingOptions.
class ProcessingControls : public QObject {
    Q_OBJECT
public:
    ProcessingControls(ProcessingOptions& options, QObject* parent = nullptr);

    QComboBox* popup() const { return m_popup; }
    // boxCleanMetadataInfo: shown in place of the editor on the remove row.
    QWidget* cleanBox() const { return m_cleanBox; }
    QCheckBox* checkBox(ProcessingOptions::Box box) const { return m_boxes[int(box)]; }

    void clickedChooseEditingOptions(int row);
    // Shows the options as they stand (after a reset, say).
    void refresh();

signals:
    void modeChanged(ProcessingMode mode);
    void startEnabledChanged(bool enabled);

private:
    ProcessingOptions& m_options;
    QComboBox* m_popup;
    QWidget* m_cleanBox;
    QCheckBox* m_boxes[5] = {};
};

} // namespace tagmoor
