#pragma once

#include "foundation/UserPrompt.h"

#include <QPointer>
#include <QWidget>

namespace tagmoor {

// The application's way of asking: window-modal message boxes with the exact texts and buttons
// (the first button is the default, the last answers Escape), and open panels over a dimming
// cover. Tests use ScriptedPrompt instead.
class DialogPrompt : public UserPrompt {
public:
    explicit DialogPrompt(QWidget* window = nullptr) : m_window(window) {}

    void setWindow(QWidget* window) { m_window = window; }

    int ask(const Alert& alert) override;
    QStringList openPanel(const OpenPanelRequest& request) override;

private:
    QPointer<QWidget> m_window;
};

} // namespace tagmoor
