#pragma once

#include <QWidget>

class QPushButton;

namespace tagmoor {

class ProcessingControls;

// The foot of the home screen's side pane: the mode popup, Review changes... and Start
// Process.
class HomeActionBar : public QWidget {
    Q_OBJECT
public:
    explicit HomeActionBar(ProcessingControls& processing, QWidget* parent = nullptr);

    // The controls that are on only while a photo is marked: these and the clean boxes.
    QList<QWidget*> batchControls() const;

signals:
    void reviewClicked();
    void startClicked();

private:
    ProcessingControls& m_processing;
    QPushButton* m_review;
    QPushButton* m_start;
};

} // namespace tagmoor
