#pragma once

#include <QString>

namespace tagmoor {

// The login item as an XDG autostart entry: $XDG_CONFIG_HOME/autostart/tagmoor.desktop
// (~/.config when the variable is unset), written when on and removed when off.
class LoginItem {
public:
    // `executable` is the command the entry starts; empty: this process's executable.
    explicit LoginItem(QString executable = {});

    static QString entryPath();
    bool isInstalled() const;
    // Brings the entry in line with `on`. Errors are logged and otherwise ignored.
    void apply(bool on) const;

private:
    QString m_executable;
};

} // namespace tagmoor
