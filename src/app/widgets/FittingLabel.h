#pragma once

#include <QLabel>
#include <QPainter>
#include <QStyle>

namespace tagmoor {

// A one-line label that gives up its width to its neighbours: it asks for no room of its own
// and draws its text only when the whole text fits, never a cut one. The text stays readable
// in the tooltip and to screen readers.
class FittingLabel : public QLabel {
public:
    using QLabel::QLabel;

    QSize minimumSizeHint() const override { return {0, QLabel::minimumSizeHint().height()}; }

protected:
    void paintEvent(QPaintEvent*) override {
        if (fontMetrics().horizontalAdvance(text()) > contentsRect().width())
            return;
        QPainter painter(this);
        style()->drawItemText(&painter, contentsRect(), int(alignment()), palette(), isEnabled(),
                              text(), foregroundRole());
    }
};

} // namespace tagmoor
