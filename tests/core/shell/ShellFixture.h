#pragma once

// Settings in a scratch file and XDG_CONFIG_HOME pointed at a scratch folder, restored after.

#include "foundation/Settings.h"
#include "foundation/ValueForm.h"

#include <QByteArray>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace tagmoor::test {

class ScratchConfig {
public:
    ScratchConfig()
        : m_old(qgetenv("XDG_CONFIG_HOME")),
          m_hadOld(qEnvironmentVariableIsSet("XDG_CONFIG_HOME")) {
        qputenv("XDG_CONFIG_HOME", QFile::encodeName(m_dir.path() + "/config"));
    }
    ~ScratchConfig() {
        if (m_hadOld)
            qputenv("XDG_CONFIG_HOME", m_old);
        else
            qunsetenv("XDG_CONFIG_HOME");
    }
    QString settingsFile() const { return m_dir.path() + "/Tagmoor.conf"; }
    QString autostartEntry() const { return m_dir.path() + "/config/autostart/tagmoor.desktop"; }
    QString path() const { return m_dir.path(); }

private:
    // A shell made in the test sets the process's form from its settings; the next test starts
    // in the form this one started in.
    ValueFormScope m_form{valueForm()};

public:
private:
    QTemporaryDir m_dir;
    QByteArray m_old;
    bool m_hadOld;
};

} // namespace tagmoor::test
