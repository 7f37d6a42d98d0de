#pragma once

#include <QWidget>

class QGraphicsOpacityEffect;
class QLabel;
class QPropertyAnimation;
class QTimer;

namespace tagmoor {

// The short tour over the home screen after the first scan: seven boxes, one at a time, each
// fading in with a line about one part of the screen. It moves on by itself; "Skip Intro" or
// a click ends it at any moment.
class TutorialOverlay : public QWidget {
    Q_OBJECT
public:
    explicit TutorialOverlay(QWidget* parent);

    static constexpr int kSteps = 7;
    // Starts at the first box.
    void showTutorial();
    // Ends the tour (the "Skip Intro" link, a click, or the last box passed).
    void clickedHideTutorial();

    int tutorialStep() const { return m_step; }

signals:
    void finished();

protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void showStep(int step);
    void advance();

    QWidget* m_box;
    QLabel* m_counter;
    QLabel* m_text;
    QLabel* m_skip;
    QTimer* m_timer;
    QGraphicsOpacityEffect* m_fade;
    QPropertyAnimation* m_fadeIn;
    int m_step = 0;
};

} // namespace tagmoor
