#pragma once

#include "foundation/UserPrompt.h"

#include <QPointer>
#include <QWidget>

#include <memory>

namespace tagmoor {

class DimmingCover;

// The application's way of asking: window-modal message boxes over a dimming cover with the exact
// texts and buttons (the first button is the default, the last answers Escape), and open panels
// over the same cover. Tests use ScriptedPrompt instead.
class DialogPrompt : public UserPrompt {
public:
    explicit DialogPrompt(QWidget* window = nullptr) : m_window(window) {}

    void setWindow(QWidget* window) { m_window = window; }

    int ask(const Alert& alert) override;
    QStringList openPanel(const OpenPanelRequest& request) override;
    PanelAnswer openPanelWithAccessory(const OpenPanelRequest& request) override;
    TextAnswer askForText(const TextQuestion& question) override;
    QString savePanel(const SavePanelRequest& request) override;
    TickAnswer askToTick(const TickQuestion& question) override;

private:
    // Dims the window's content while a box or panel is up; nothing when it is not shown.
    std::unique_ptr<DimmingCover> coverWindow() const;

    QPointer<QWidget> m_window;
};

} // namespace tagmoor
