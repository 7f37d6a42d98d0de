#include "app/shell/Appearance.h"

#include <QApplication>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusReply>
#include <QDBusVariant>
#include <QStyle>
#include <QStyleFactory>
#include <QWidget>

namespace tagmoor {

namespace {

const QString kPortalService = QStringLiteral("org.freedesktop.portal.Desktop");
const QString kPortalPath = QStringLiteral("/org/freedesktop/portal/desktop");
const QString kPortalSettings = QStringLiteral("org.freedesktop.portal.Settings");
const QString kAppearanceGroup = QStringLiteral("org.freedesktop.appearance");
const QString kColorScheme = QStringLiteral("color-scheme");

// The portal's colour scheme: 1 prefers dark, 2 prefers light, 0 has no preference. The value
// arrives wrapped in one or two variants, depending on the call.
std::optional<bool> schemeOfPortalValue(QVariant value) {
    while (value.canConvert<QDBusVariant>() && value.userType() == qMetaTypeId<QDBusVariant>())
        value = value.value<QDBusVariant>().variant();
    bool ok = false;
    const uint scheme = value.toUInt(&ok);
    if (!ok || scheme == 0 || scheme > 2)
        return std::nullopt;
    return scheme == 1;
}

bool paletteIsDark(const QPalette& palette) {
    return palette.color(QPalette::Window).lightness() < 128;
}

} // namespace

Appearance::Appearance(QObject* parent)
    : QObject(parent), m_platformPalette(QApplication::palette()),
      m_platformStyle(QApplication::style() ? QApplication::style()->name() : QString()) {}

Appearance::Choice Appearance::choiceFromName(const QString& name) {
    if (name == QLatin1String("light"))
        return Choice::Light;
    if (name == QLatin1String("dark"))
        return Choice::Dark;
    return Choice::System;
}

QString Appearance::nameOfChoice(Choice choice) {
    switch (choice) {
    case Choice::Light:
        return QStringLiteral("light");
    case Choice::Dark:
        return QStringLiteral("dark");
    case Choice::System:
        break;
    }
    return QStringLiteral("system");
}

std::optional<bool> Appearance::desktopPrefersDark() {
    // An explicit wish in the environment first (GTK's theme variant), then the portal.
    const QString gtkTheme = qEnvironmentVariable("GTK_THEME");
    if (!gtkTheme.isEmpty())
        return gtkTheme.contains(QLatin1String("dark"), Qt::CaseInsensitive);
    QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected())
        return std::nullopt;
    QDBusMessage call =
        QDBusMessage::createMethodCall(kPortalService, kPortalPath, kPortalSettings, "Read");
    call << kAppearanceGroup << kColorScheme;
    // A missing portal answers at once; a hung one must not hold the start for long.
    const QDBusMessage reply = bus.call(call, QDBus::Block, 400);
    if (reply.type() != QDBusMessage::ReplyMessage || reply.arguments().isEmpty())
        return std::nullopt;
    return schemeOfPortalValue(reply.arguments().constFirst());
}

QPalette Appearance::darkPalette() {
    QPalette p;
    const QColor window(0x2d, 0x2f, 0x33);
    const QColor base(0x1f, 0x21, 0x24);
    const QColor text(0xe8, 0xe8, 0xe8);
    const QColor disabledText(0x80, 0x83, 0x88);
    const QColor highlight(0x3d, 0x84, 0xd6);
    p.setColor(QPalette::Window, window);
    p.setColor(QPalette::WindowText, text);
    p.setColor(QPalette::Base, base);
    p.setColor(QPalette::AlternateBase, QColor(0x27, 0x29, 0x2d));
    p.setColor(QPalette::ToolTipBase, QColor(0x3a, 0x3c, 0x41));
    p.setColor(QPalette::ToolTipText, text);
    p.setColor(QPalette::PlaceholderText, QColor(0x9a, 0x9d, 0xa3));
    p.setColor(QPalette::Text, text);
    p.setColor(QPalette::Button, QColor(0x3a, 0x3c, 0x41));
    p.setColor(QPalette::ButtonText, text);
    p.setColor(QPalette::BrightText, QColor(0xff, 0x6b, 0x6b));
    p.setColor(QPalette::Light, QColor(0x4a, 0x4d, 0x53));
    p.setColor(QPalette::Midlight, QColor(0x40, 0x43, 0x48));
    p.setColor(QPalette::Mid, QColor(0x55, 0x58, 0x5e));
    p.setColor(QPalette::Dark, QColor(0x18, 0x19, 0x1b));
    p.setColor(QPalette::Shadow, QColor(0x0c, 0x0c, 0x0d));
    p.setColor(QPalette::Highlight, highlight);
    p.setColor(QPalette::HighlightedText, Qt::white);
    p.setColor(QPalette::Link, QColor(0x7a, 0xb4, 0xf5));
    p.setColor(QPalette::LinkVisited, QColor(0xb3, 0x9d, 0xf0));
    for (const QPalette::ColorRole role :
         {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
        p.setColor(QPalette::Disabled, role, disabledText);
    p.setColor(QPalette::Disabled, QPalette::Highlight, QColor(0x50, 0x53, 0x58));
    return p;
}

bool Appearance::isDark() const {
    return paletteIsDark(QApplication::palette());
}

void Appearance::apply(Choice choice) {
    m_choice = choice;
    if (choice == Choice::System && !m_listening) {
        m_listening = QDBusConnection::sessionBus().connect(
            kPortalService, kPortalPath, kPortalSettings, QStringLiteral("SettingChanged"), this,
            SLOT(portalSettingChanged(QString, QString, QVariant)));
    }
    switch (choice) {
    case Choice::Light:
        applyScheme(false);
        break;
    case Choice::Dark:
        applyScheme(true);
        break;
    case Choice::System: {
        if (!m_portalDark)
            m_portalDark = desktopPrefersDark();
        // Without a word from the desktop its own palette holds, light or dark.
        applyScheme(m_portalDark.value_or(paletteIsDark(m_platformPalette)));
        break;
    }
    }
}

namespace {

// A widget under a style sheet keeps the colours it was polished with; setting its sheet again
// polishes it with the new palette.
void repolishStyleSheets() {
    for (QWidget* widget : QApplication::allWidgets()) {
        const QString sheet = widget->styleSheet();
        if (!sheet.isEmpty()) {
            widget->setStyleSheet(QString());
            widget->setStyleSheet(sheet);
        }
    }
}

} // namespace

void Appearance::applyScheme(bool dark) {
    // The platform's own palette is kept where it already is what is asked for, so that a
    // desktop theme's colours stay.
    if (dark == paletteIsDark(m_platformPalette)) {
        if (QApplication::style()->name() != m_platformStyle)
            QApplication::setStyle(QStyleFactory::create(m_platformStyle));
        QApplication::setPalette(m_platformPalette);
        repolishStyleSheets();
        return;
    }
    // Fusion draws from the palette alone, so it follows either scheme.
    if (QApplication::style()->name().compare(QLatin1String("fusion"), Qt::CaseInsensitive) != 0)
        QApplication::setStyle(QStyleFactory::create(QStringLiteral("Fusion")));
    QApplication::setPalette(dark ? darkPalette() : QApplication::style()->standardPalette());
    repolishStyleSheets();
}

void Appearance::portalSettingChanged(const QString& group, const QString& key,
                                      const QVariant& value) {
    if (group != kAppearanceGroup || key != kColorScheme)
        return;
    m_portalDark = schemeOfPortalValue(value);
    if (m_choice == Choice::System)
        apply(Choice::System);
}

} // namespace tagmoor
