#pragma once

#include <QObject>
#include <QPalette>
#include <QString>

#include <optional>

namespace tagmoor {

// The window's colours. Qt's platform theme gives the desktop's palette where it knows one;
// on desktops that only say "prefer dark" (the settings portal's colour scheme, a dark GTK
// theme) the palette is built here, on the Fusion style, so that every screen follows. The
// user can also hold light or dark in Preferences.
class Appearance : public QObject {
    Q_OBJECT

public:
    enum class Choice { System, Light, Dark };

    explicit Appearance(QObject* parent = nullptr);

    static Choice choiceFromName(const QString& name);
    static QString nameOfChoice(Choice choice);

    // Applies the choice to the application and keeps following the desktop while it is
    // System.
    void apply(Choice choice);
    Choice choice() const { return m_choice; }
    bool isDark() const;

    static QPalette darkPalette();
    // What the desktop asks for: true for dark, false for light, none when it does not say.
    static std::optional<bool> desktopPrefersDark();

private slots:
    void portalSettingChanged(const QString& group, const QString& key, const QVariant& value);

private:
    void applyScheme(bool dark);

    Choice m_choice = Choice::System;
    QPalette m_platformPalette;
    QString m_platformStyle;
    bool m_listening = false;
    std::optional<bool> m_portalDark;
};

} // namespace tagmoor
