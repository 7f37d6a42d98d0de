#pragma once

#include <QWidget>

namespace tagmoor {

// The box that keeps the user out of the screen below a sheet or a running scan: black at
// alpha 0.7 over the whole of its parent, following the parent's size. `bottomMargin` leaves a
// strip of the parent uncovered at the bottom.
class DimmingCover : public QWidget {
    Q_OBJECT
public:
    explicit DimmingCover(QWidget* parent, int bottomMargin = 0);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    void fitParent();
    int m_bottomMargin;
};

} // namespace tagmoor
