#pragma once

#include <QFrame>

class QLabel;
class QPushButton;

namespace tagmoor {

class UserPrompt;
struct PinAnnotation;

// The small popup above a map's pin: the pin's title and subtitle (its position when it has
// no title) and the button "More Info". The map opens it when the pin is clicked.
class PinCallout : public QFrame {
    Q_OBJECT
public:
    explicit PinCallout(QWidget* parent = nullptr);
    // Takes the texts of `pin` and fits the popup to them.
    void showTextsOf(const PinAnnotation& pin);

signals:
    void moreInfoClicked();

private:
    QLabel* m_title;
    QLabel* m_subtitle;
    QPushButton* m_moreInfo;
};

// What "More Info" of a pin does, in the picker and the preview alike: a line in the log and
// the details sheet.
void showMoreInfo(UserPrompt& prompt);

} // namespace tagmoor
