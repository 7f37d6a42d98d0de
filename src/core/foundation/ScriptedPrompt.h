#pragma once

#include "foundation/UserPrompt.h"

#include <QList>

#include <functional>

namespace tagmoor {

// A UserPrompt for tests and headless runs: it records every alert and panel, and answers
// from queues. With an empty queue an alert gets its first button and a panel is cancelled.
class ScriptedPrompt : public UserPrompt {
public:
    int ask(const Alert& alert) override {
        alerts.append(alert);
        if (onAlert)
            onAlert(alert);
        if (!answers.isEmpty())
            return answers.takeFirst();
        return 0;
    }
    QStringList openPanel(const OpenPanelRequest& request) override {
        panels.append(request);
        return panelAnswers.isEmpty() ? QStringList() : panelAnswers.takeFirst();
    }

    PanelAnswer openPanelWithAccessory(const OpenPanelRequest& request) override {
        if (!accessoryAnswers.isEmpty() && accessoryAnswers.takeFirst()) {
            panels.append(request);
            return {{}, true};
        }
        return {openPanel(request), false};
    }
    TextAnswer askForText(const TextQuestion& question) override {
        textQuestions.append(question);
        alerts.append(question.alert);
        if (onAlert)
            onAlert(question.alert);
        if (!textAnswers.isEmpty())
            return textAnswers.takeFirst();
        return {0, question.text, false};
    }

    QString savePanel(const SavePanelRequest& request) override {
        savePanels.append(request);
        return saveAnswers.isEmpty() ? QString() : saveAnswers.takeFirst();
    }
    // With no answer queued, the first button and every item as it was ticked.
    TickAnswer askToTick(const TickQuestion& question) override {
        tickQuestions.append(question);
        alerts.append(question.alert);
        if (onAlert)
            onAlert(question.alert);
        if (!tickAnswers.isEmpty())
            return tickAnswers.takeFirst();
        return {0, QList<bool>(question.items.size(), true)};
    }

    // Queues the answer to the next alert by button text.
    void answerNext(const QString& button, const QStringList& buttons = {"YES", "NO"}) {
        answers.append(std::max(0, int(buttons.indexOf(button))));
    }

    QList<Alert> alerts;
    QList<OpenPanelRequest> panels;
    QList<int> answers;
    QList<QStringList> panelAnswers;
    // For panels with an accessory: true presses the accessory instead of the next answer.
    QList<bool> accessoryAnswers;
    QList<TextQuestion> textQuestions;
    QList<TextAnswer> textAnswers;
    QList<SavePanelRequest> savePanels;
    QStringList saveAnswers;
    QList<TickQuestion> tickQuestions;
    QList<TickAnswer> tickAnswers;
    std::function<void(const Alert&)> onAlert;
};

} // namespace tagmoor
