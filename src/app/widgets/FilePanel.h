#pragma once

#include "foundation/UserPrompt.h"

#include <QFileDialog>

#include <optional>

class QPushButton;

namespace tagmoor {

class Settings;

// The open panel, set up from a request. A request that a desktop's own file chooser can serve
// (one kind of entry, no message, no accessory, no greyed entries) gets it where the platform
// theme offers one (the portal, GTK, KDE); every other request, and every desktop without one,
// gets Qt's own dialog, which carries the message, the accessory and the enable filter. When a
// request allows both files and folders, "Open" takes whatever is selected, folders included;
// a double click, or a folder's path typed into the name field and Enter, walks into it. In a
// folder chooser a typed folder and Enter chooses it.
//
// A panel whose request names no folder opens where the last accepted panel was, else in the
// user's Pictures folder, else in the home folder.
class FilePanel : public QFileDialog {
    Q_OBJECT
public:
    FilePanel(QWidget* parent, const OpenPanelRequest& request);

    QStringList chosenPaths() const { return m_chosen; }
    // The request's accessory button, when it has one; pressing it closes the panel.
    QPushButton* accessory() const { return m_accessory; }
    bool accessoryClicked() const { return m_accessoryClicked; }

    // Whether the request needs Qt's own dialog for something a desktop's chooser cannot show.
    static bool needsOwnDialog(const OpenPanelRequest& request);
    // Where a panel opens: the request's folder, the remembered one while it exists, Pictures
    // while it exists, home.
    static QString startFolder(const OpenPanelRequest& request,
                               const std::optional<QString>& remembered);
    // The settings that keep the last folder (the application's); none: panels remember
    // nothing. `forgetFolders` lets go of them only if they are still the ones in use.
    static void rememberFoldersIn(Settings* settings);
    static void forgetFolders(const Settings* settings);

public slots:
    void accept() override;

private:
    void setUpOwnDialog(const OpenPanelRequest& request);
    void addMessage(const QString& text);
    void addAccessory(const QString& title);
    // The folder to walk into that the user typed into the name field of a panel of files;
    // empty otherwise.
    QString typedFolder() const;
    void acceptFilesAndFolders();
    void finish(const QStringList& chosen);

    bool m_filesAndFolders;
    bool m_remembers;     // opened at the remembered folder: keeps where it was accepted
    QString m_onlyFolder; // canonical; empty when any entry the filter enables may be taken
    QString m_typedName;  // the name field's text as the user last typed it
    QStringList m_chosen;
    QPushButton* m_accessory = nullptr;
    bool m_accessoryClicked = false;
};

} // namespace tagmoor
