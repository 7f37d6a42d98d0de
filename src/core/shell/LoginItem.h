#pragma once

#include <QByteArray>
#include <QString>

namespace tagmoor {

// The login item as an XDG autostart entry: $XDG_CONFIG_HOME/autostart/tagmoor.desktop
// (~/.config when the variable is unset), written when on and removed when off. An entry the
// user turned off on the desktop's side (Hidden=true, or GNOME's X-GNOME-Autostart-enabled
// set to false) is left as it is either way; an entry that starts another path than this
// program's (the program moved) is brought up to date.
class LoginItem {
public:
    // `executable` is the command the entry starts; empty: this process's executable.
    explicit LoginItem(QString executable = {});

    static QString entryPath();
    // An entry exists and the user has not turned it off.
    bool isInstalled() const;
    // Brings the entry in line with `on`. Errors are logged and otherwise ignored.
    void apply(bool on) const;

    // The value of an Exec key that starts `program` with no arguments, escaped by the
    // rules of desktop entries: quoted when it holds a reserved character, with the quoting
    // escapes and then the string escapes applied, and % doubled.
    static QString execValue(const QString& program);

private:
    QString executable() const;
    QString m_executable;
};

} // namespace tagmoor
