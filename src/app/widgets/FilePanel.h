#pragma once

#include "foundation/UserPrompt.h"

#include <QFileDialog>

class QPushButton;

namespace tagmoor {

// The open panel: Qt's own file dialog set up from a request. When a request allows both files
// and folders, "Open" takes whatever is selected, folders included; a double click still walks
// into a folder.
class FilePanel : public QFileDialog {
    Q_OBJECT
public:
    FilePanel(QWidget* parent, const OpenPanelRequest& request);

    QStringList chosenPaths() const { return m_chosen; }
    // The request's accessory button, when it has one; pressing it closes the panel.
    QPushButton* accessory() const { return m_accessory; }
    bool accessoryClicked() const { return m_accessoryClicked; }

public slots:
    void accept() override;

private:
    void addMessage(const QString& text);

    bool m_filesAndFolders;
    QString m_onlyFolder; // canonical; empty when any entry the filter enables may be taken
    QStringList m_chosen;
    QPushButton* m_accessory = nullptr;
    bool m_accessoryClicked = false;
};

} // namespace tagmoor
