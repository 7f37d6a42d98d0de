#pragma once

#include <QFrame>

class QGraphicsOpacityEffect;
class QLabel;
class QPropertyAnimation;
class QPushButton;
class QTimer;

namespace tagmoor {

// The short tour over the home screen after the first scan: seven tips, one at a time, in a
// card that fades in beside the part of the screen it is about. Back and Next step through
// them, Skip Intro (or Done on the last) ends it. Until the user takes over (a button, or the
// pointer resting on the card) it moves on by itself and stops at the last tip. The card
// covers only itself: the screen around it takes every click as usual.
class TutorialOverlay : public QFrame {
    Q_OBJECT
public:
    explicit TutorialOverlay(QWidget* parent);

    static constexpr int kSteps = 7;
    // Starts at the first tip.
    void showTutorial();
    // Ends the tour (Skip Intro, Done).
    void clickedHideTutorial();

    int tutorialStep() const { return m_step; }

signals:
    void finished();

protected:
    void enterEvent(QEnterEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void showStep(int step);
    void advance();
    void clickedNext();
    void clickedBack();
    void takeOver();
    void place();

    QLabel* m_counter;
    QLabel* m_text;
    QPushButton* m_back;
    QPushButton* m_next;
    QPushButton* m_skip;
    QTimer* m_timer;
    QGraphicsOpacityEffect* m_fade;
    QPropertyAnimation* m_fadeIn;
    int m_step = 0;
};

} // namespace tagmoor
