#pragma once

#include <QObject>
#include <QString>

namespace tagmoor {

class UserPrompt;

// What the desktop does with a photo: open it in the default application, reveal it in the
// file manager. A failure is told to the user, never swallowed.
class DesktopActions : public QObject {
    Q_OBJECT
public:
    explicit DesktopActions(UserPrompt& prompt, QObject* parent = nullptr);

    // Opens the file with the desktop's default application for its type (xdg-open). When
    // no application takes it, an alert says so once the opener has answered.
    void openInDefaultApplication(const QString& path);
    // Reveals the file through the file manager's D-Bus interface; without one, opens the
    // folder that holds it.
    void revealInFileManager(const QString& path);

    // The opener program; tests point it at a stand-in.
    void setOpener(const QString& program) { m_opener = program; }

signals:
    // The opener has answered; `opened` is false when the alert was shown.
    void openFinished(const QString& path, bool opened);

private:
    void tellNotOpened(const QString& path);
    UserPrompt& m_prompt;
    QString m_opener = QStringLiteral("xdg-open");
};

} // namespace tagmoor
