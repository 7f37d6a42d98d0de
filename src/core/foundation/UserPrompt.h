#pragma once

#include <QList>
#include <QString>
#include <QStringList>

#include <optional>

namespace tagmoor {

// One alert: a title, a text and its buttons in order. A question has "YES" first.
struct Alert {
    QString title;
    QString text;
    QStringList buttons{QStringLiteral("OK")};

    static Alert ok(const QString& title, const QString& text) { return {title, text, {"OK"}}; }
    static Alert yesNo(const QString& title, const QString& text) {
        return {title, text, {QStringLiteral("YES"), QStringLiteral("NO")}};
    }
    bool operator==(const Alert&) const = default;
};

// What an open panel is asked to show.
struct OpenPanelRequest {
    QString prompt;
    bool canChooseFiles = true;
    bool canChooseDirectories = true;
    bool allowsMultipleSelection = true;
    bool showsHiddenFiles = false;
    QStringList allowedExtensions; // empty: any file
    QString directory;             // where it opens; empty: the last place
    bool canCreateDirectories = false;
    // A line of text above the panel's list; none when empty.
    QString message;
    // When set, the one folder the panel lets the user choose; every other entry is greyed.
    QString onlyEnabledFolder;
    // A button shown below the panel's list ("Keep Source Folder Path"); none when empty.
    // Pressing it closes the panel with no paths and `accessoryClicked` set.
    QString accessoryButton;
};

// What the user did with a panel that may carry an accessory button.
struct PanelAnswer {
    QStringList paths; // empty when cancelled or when the accessory was pressed
    bool accessoryClicked = false;
};

// An alert that also takes a line of text and may offer a "Do not show again" box.
struct TextQuestion {
    Alert alert;
    QString text;             // what the field holds when the alert opens
    QString suppressionTitle; // the check box's title; none when empty
};

struct TextAnswer {
    int button = 0;
    QString text;
    bool suppressed = false;
};

// A panel that asks where to save one file.
struct SavePanelRequest {
    QString prompt;
    QString directory;             // where it opens; empty: the last place
    QString fileName;              // the name it proposes
    QStringList allowedExtensions; // the first is added to a name typed without one
};

// An alert with a list of items to tick, all ticked when it opens.
struct TickQuestion {
    Alert alert;
    QStringList items;
};

struct TickAnswer {
    int button = 0;
    // One per item of the question, in its order.
    QList<bool> ticked;
};

// Every alert, question and file panel reaches the user through this interface. The
// application shows real dialogs; tests answer with ScriptedPrompt. Called on the main thread.
class UserPrompt {
public:
    virtual ~UserPrompt() = default;

    // Shows the alert and gives the index of the button chosen (0 is the first).
    virtual int ask(const Alert& alert) = 0;

    // Shows an open panel; the chosen paths, or an empty list when cancelled.
    virtual QStringList openPanel(const OpenPanelRequest& request) = 0;

    // The same with the request's accessory button.
    virtual PanelAnswer openPanelWithAccessory(const OpenPanelRequest& request) {
        return {openPanel(request), false};
    }

    // Shows the alert with a text field (and the suppression box, if any).
    virtual TextAnswer askForText(const TextQuestion& question) {
        return {ask(question.alert), question.text, false};
    }

    // Shows a save panel; the chosen path, or an empty text when cancelled.
    virtual QString savePanel(const SavePanelRequest& request) {
        Q_UNUSED(request);
        return {};
    }

    // Shows the alert with its list of items to tick.
    virtual TickAnswer askToTick(const TickQuestion& question) {
        return {ask(question.alert), QList<bool>(question.items.size(), true)};
    }

    bool askYesNo(const QString& title, const QString& text) {
        return ask(Alert::yesNo(title, text)) == 0;
    }
    void tell(const QString& title, const QString& text) { ask(Alert::ok(title, text)); }
};

} // namespace tagmoor
