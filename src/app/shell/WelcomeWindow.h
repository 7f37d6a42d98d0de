#pragma once

#include <QWidget>

class QCheckBox;
class QPushButton;

namespace tagmoor {

// The first-run welcome: a short greeting and the "launch at login" choice. Leaving it, by
// its button or by closing it, reports the choice once.
class WelcomeWindow : public QWidget {
    Q_OBJECT
public:
    explicit WelcomeWindow(QWidget* parent = nullptr);

signals:
    void left(bool launchAtLogin);

protected:
    void closeEvent(QCloseEvent* event) override;

private:
    void leave();

    QCheckBox* m_launchAtLogin;
    QPushButton* m_start;
    bool m_left = false;
};

} // namespace tagmoor
